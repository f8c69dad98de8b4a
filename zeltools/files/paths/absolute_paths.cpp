// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/absolute_paths.h"

#include "zeltools/files/paths/path_kind.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/platform/shell_path.h"

CXTString<char16_t> fileMakeRelativePath(CXTString<char16_t> const& base, CXTString<char16_t> const& path,
                                         bool removeDotSlash, FILENAME_TYPE type) {
    char16_t relative[platform::MaxPath];
    bool const isDirectory = (type & FileNameTypeDirectory) != 0;
    if (!fileIsSlashTerminated(base) || fileIsPathRelative(path) ||
        !platform::PathRelativePathToW(relative, base, true, path, isDirectory)) {
        return path;
    }
    std::u16string_view result = relative;
    if ((removeDotSlash || type == FileNameTypeFile) && result.starts_with(u".\\")) {
        result.remove_prefix(2);
    }
    return detail::Text(result);
}

CXTString<char16_t> fileMakeAbsolutePath(CXTString<char16_t> const& base, CXTString<char16_t> const& path,
                                         bool terminate) {
    CXTString<char16_t> result = path;
    bool isDirectory = terminate;
    if ((!base.IsEmpty() || !path.IsEmpty()) && fileIsPathRelative(path)) {
        result = detail::Join(detail::View(base), fileIsSlashTerminated(base) ? u"" : u"\\", detail::View(path));
        fileMakePathShortest(result);
        isDirectory = terminate || (!fileIsSlashTerminated(result) && fileIsDirectory(result, true, nullptr));
    }
    if (isDirectory) {
        fileSlashTerminate(result);
    }
    return result;
}

bool fileMakePathShortest(CXTString<char16_t>& path) {
    if (platform::PathNeedsCanonicalization(detail::View(path))) {
        std::size_t const length = detail::View(path).size();
        path.SetLength(length + 1);
        char16_t* const text = path.GetText();
        path.SetLength(platform::PathCanonicalize({text, length}, text));
    }
    return true;
}
