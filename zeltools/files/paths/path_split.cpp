// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_split.h"

#include "zeltools/files/paths/directory_compare.h"
#include "zeltools/files/paths/path_parts.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/platform/shell_path.h"

using detail::PathParts;
using detail::Text;
using detail::View;

CXTString<char16_t> fileGetRoot(CXTString<char16_t> const& path) {
    CXTString<char16_t> root = Text(View(path).substr(0, platform::PathRootLength(View(path))));
    if (!root.IsEmpty()) {
        fileSlashTerminate(root);
    }
    return root;
}

CXTString<char16_t> fileGetTopDirectory(CXTString<char16_t> const& path, bool terminate) {
    CXTString<char16_t> directory = Text(PathParts(path).GetTopDirectory());
    if (terminate) {
        fileSlashTerminate(directory);
    }
    return directory;
}

CXTString<char16_t> fileRemoveTopDirectory(CXTString<char16_t>& path, bool withName) {
    PathParts const parts(path);
    CXTString<char16_t> const directory = Text(parts.GetTopDirectory());
    if (directory.IsEmpty()) {
        return {};
    }
    CXTString<char16_t> const name = detail::Join(parts.GetName(), parts.GetExtension());
    CXTString<char16_t> const cut = detail::Join(View(directory), u"\\", withName ? View(name) : std::u16string_view());
    if (std::size_t const position = View(path).rfind(View(cut)); position != std::u16string_view::npos) {
        path.GetBufferSetLength(static_cast<int>(position));
    } else {
        path.Remove(directory);
        path.Remove(name);
    }
    return cut;
}

CXTString<char16_t> fileStripPath(CXTString<char16_t> const& path, bool removeExtension) {
    if (fileIsSlashTerminated(path)) {
        return {};
    }
    std::u16string_view name = View(path).substr(platform::PathFileNamePosition(View(path)));
    if (removeExtension) {
        name = name.substr(0, platform::PathExtensionPosition(name));
    }
    return Text(name);
}

CXTString<char16_t> fileStripPathAndExtension(CXTString<char16_t> const& path) {
    return fileStripPath(path, true);
}

CXTString<char16_t> fileStripName(CXTString<char16_t> const& path) {
    if (fileIsSlashTerminated(path)) {
        return path;
    }
    CXTString<char16_t> directory = Text(View(path).substr(0, platform::PathDirectoryLength(View(path))));
    if (!directory.IsEmpty()) {
        fileSlashTerminate(directory);
    }
    return directory;
}

CXTString<char16_t> fileRemoveExtension(CXTString<char16_t> const& path) {
    return Text(View(path).substr(0, platform::PathExtensionPosition(View(path))));
}

CXTString<char16_t> fileGetExtension(CXTString<char16_t> const& path) {
    std::u16string_view const text = View(path);
    if (!platform::PathIsURLW(text)) {
        return Text(text.substr(platform::PathExtensionPosition(text)));
    }
    std::u16string_view const address = text.substr(0, text.find(u'?'));
    std::size_t const dot = address.rfind(u'.');
    return dot == address.npos ? CXTString<char16_t>() : Text(address.substr(dot));
}

bool fileGetParentDirectory(CXTString<char16_t>& path) {
    CXTString<char16_t> const parent = Text(PathParts(path).GetParentDirectory());
    if (parent.IsEmpty() || fileCompareDirectory(parent, path) == DirSame) {
        return false;
    }
    path = parent;
    return true;
}
