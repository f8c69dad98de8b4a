// SPDX-License-Identifier: MIT
#include "file_facts.h"

#include "json_text.h"
#include <zeltools/files/file_info.h>
#include <zeltools/files/file_types.h>
#include <zeltools/foundation/string_conversion.h>

#include <nlohmann/json.hpp>

namespace zel {

namespace {

/// Whether the present parser of a name is one that can be made and asked.
bool HasLoader(CFileInfo const& info) {
    bool const made = info.GetLoader() == FileIdPlugin || info.GetLoader() == FileIdCallback;
    return made && info.GetInitIoCallback() && (info.GetProperties() & FilePropertyAnyLoad) != 0;
}

} // namespace

void FileFacts::AddTypeTo(nlohmann::ordered_json& object) const {
    SetName(object, "name", name);
    object["class"] = classCode.empty() ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(classCode);
    object["kind"] = kind;
    object["description"] = description;
    object["parsers"] = parsers;
    object["loadable"] = loadable;
    object["savable"] = savable;
}

char const* KindName(unsigned int properties) {
    struct Row {
        unsigned int kind;
        char const* name;
    };
    // In this order, since a web page may count as a picture or a film too.
    constexpr Row rows[] = {
        {FileKindDirectory, "folder"}, {FileKindWeb, "web"},     {FileKindBitmap, "bitmap"},   {FileKind3D, "3d"},
        {FileKindAudio, "audio"},      {FileKindVideo, "video"}, {FileKindArchive, "archive"},
    };
    for (Row const& row : rows) {
        if (properties & row.kind) {
            return row.name;
        }
    }
    return "other";
}

void AddTypeFacts(CXTString<char16_t> const& path, bool isFolder, FileFacts& facts) {
    CFileInfo info;
    info.Init(CFileNameSpec(path), isFolder ? FileNameTypeDirectory : FileNameTypeFile, nullptr);
    facts.path = path;
    facts.isFolder = isFolder;
    facts.kind = KindName(info.GetProperties());
    facts.classCode = info.GetClass() ? FourCCText(info.GetClass()).data() : "";
    facts.parsers = info.GetParserNbr();
    facts.loadable = info.GetProperties() & FilePropertyAnyLoad;
    facts.savable = info.GetProperties() & FilePropertyAnySave;
    CFileExt type;
    if (info.GetClass() && fileGetExtensionInfo(info.GetClass(), type)) {
        facts.description = static_cast<char const*>(XCW2A(type.GetDescription(), xEncodingUtf8));
    }
    if ((info.GetKindOf() & (FileKindBitmap | FileKind3D)) != 0 && !isFolder) {
        facts.openable = HasLoader(info);
        while (!facts.openable && info.CanTryAnotherParser()) {
            info.TryNextParser();
            facts.openable = HasLoader(info);
        }
    }
}

} // namespace zel
