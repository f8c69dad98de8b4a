// SPDX-License-Identifier: MIT
// Numbered sequences: "shot0001.exr" and its sisters. Each name is told from the others by its number alone, so the
// name with `*` in the number's place is what they share.
#include "zeltools/files/file_io.h"
#include "zeltools/files/io_file.h"
#include "zeltools/files/paths/path_queries.h"

#include <algorithm>
#include <vector>

namespace {

using Text = CXTString<char16_t>;

/// A name without its extension, split at its number.
struct NumberedName {
    Text pattern; ///< With `*` in the number's place.
    int number;   ///< -1 for none.

    NumberedName(CFileInfo const& file, bool trailingOnly) {
        Text digits;
        number = file.GetDigitInfo(pattern, digits, true, trailingOnly);
    }
};

/// Calls `visit(path)` for the files that a search text finds, until it answers false.
template <class Visit>
void ForEachFile(Text const& searchText, Visit const& visit) {
    IoFile finder;
    if (!finder.FindFileOpen(searchText, u"", FileNameTypeFile)) {
        return;
    }
    Text path;
    for (bool filterless = false; finder.FindFileNext(path, filterless, false);) {
        if (!visit(path)) {
            break;
        }
    }
    finder.FindFileClose();
}

} // namespace

int CFileIo::GetFileList(CXArray<Text>& files, bool (*filter)(char16_t const* path, void* context), void* context,
                         bool trailingOnly) const {
    struct Found {
        int number;
        Text path;
    };
    std::vector<Found> found;
    NumberedName const own(fileInfo, trailingOnly);
    ForEachFile(GetPath() + u"*" + GetExtension(), [&](Text const& path) {
        CFileInfo const other{CFileNameSpec(path)};
        NumberedName const name(other, trailingOnly);
        bool const isSister = !other.IsDirectory() && name.pattern.CompareNoCase(own.pattern) == 0 &&
                              other.GetExtension().CompareNoCase(GetExtension()) == 0;
        if (isSister && (!filter || filter(path, context))) {
            found.push_back({name.number, path});
        }
        return true;
    });
    std::stable_sort(found.begin(), found.end(), [](Found const& a, Found const& b) { return a.number < b.number; });
    files.RemoveAll();
    for (Found const& one : found) {
        files.Add(one.path);
    }
    return files.GetSize();
}

bool CFileIo::FindMatchingFile(Text& result, Text const& pattern, int digit) {
    if (pattern.Find(u'*') < 0) {
        bool const exists = fileExists(pattern);
        if (exists) {
            result = pattern;
        }
        return exists;
    }
    CFileInfo const wanted{CFileNameSpec(pattern)};
    Text const wantedName = wanted.GetNameWithoutExt();
    bool isFound = false;
    ForEachFile(pattern, [&](Text const& path) {
        CFileInfo const other{CFileNameSpec(path)};
        NumberedName const name(other, false);
        if (name.number == digit && name.pattern.CompareNoCase(wantedName) == 0) {
            result = path;
            isFound = true;
        }
        return !isFound;
    });
    return isFound;
}
