// SPDX-License-Identifier: MIT
// The file types of a shell, in a table that is generated when the plug-in is built, and the answers that a plug-in
// gives from it.

#pragma once

#include <zeltools/files/file_ext.h>
#include <zeltools/files/file_parser.h>
#include <zeltools/foundation/xarray.h>

#include <span>

/// One row.
struct PluginType {
    char16_t const* description;
    char16_t const* extensions; ///< Dotted, separated by `|`.
    unsigned int classId;
    unsigned int properties; ///< FileProperty bits.
    char const* format;      ///< In the words of the library behind the plug-in.
};

/// The answer to every call of a plug-in's entry point.
/// @param makeParser  Called with the record of IoPluginCreateParser and the row of its class; gives the new parser.
template <class MakeParser>
bool AnswerPluginCall(std::span<PluginType const> types, IoPluginMode mode, void* argument,
                      MakeParser const& makeParser) {
    if (mode == IoPluginEnumerate) {
        auto& list = *static_cast<CXArray<CFileExt>*>(argument);
        for (PluginType const& type : types) {
            bool const savable = (type.properties & FilePropertyAnySave) != 0;
            bool const loadable = (type.properties & FilePropertyAnyLoad) != 0;
            list.Add(CFileExt(type.description, type.extensions, type.classId, type.properties,
                              loadable ? FileIdPlugin : FileIdUnknown, savable ? FileIdPlugin : FileIdUnknown,
                              nullptr));
        }
        return true;
    }
    if (mode == IoPluginCreateParser) {
        auto& record = *static_cast<IoPluginParserInfo*>(argument);
        for (PluginType const& type : types) {
            if (type.classId == record.classId) {
                record.parser = makeParser(record, type);
                return record.parser != nullptr;
            }
        }
        return false;
    }
    return mode == IoPluginRelease;
}
