// SPDX-License-Identifier: MIT
#include "file_facts.h"

#include <zeltools/files/file_info.h>
#include <zeltools/files/file_types.h>
#include <zeltools/foundation/string_conversion.h>

namespace zel {

namespace {

/// Whether the present parser of a name is one that can be made and asked.
bool HasLoader(CFileInfo const& info) {
    bool const made = info.GetLoader() == FileIdPlugin || info.GetLoader() == FileIdCallback;
    return made && info.GetInitIoCallback() && (info.GetProperties() & FilePropertyAnyLoad) != 0;
}

} // namespace

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
