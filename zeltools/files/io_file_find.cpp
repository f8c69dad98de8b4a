// SPDX-License-Identifier: MIT
// The walk through a folder.

#include "zeltools/files/busy_indicator_private.h"
#include "zeltools/files/file_types.h"
#include "zeltools/files/io_file.h"
#include "zeltools/files/io_memory_file_private.h"
#include "zeltools/files/paths/path_parts.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/persistence/stdio_file_ex.h"
#include "zeltools/persistence/xfile_find.h"

#include <string>

namespace {

constexpr char16_t const* AnyPattern = u"*.*";
constexpr char16_t const* AnyExtension = u".*";

bool IsFilterless(CXTString<char16_t> const& extension) {
    return extension.IsEmpty() || extension == AnyExtension;
}

/// What the filter is compared with: the main extension of the file's type, or its own where it has no type.
CXTString<char16_t> FilterExtensionOf(CXTString<char16_t> const& path) {
    unsigned int const classId = fileGetClass(path);
    return classId != 0 ? fileGetMainExtension(classId) : fileGetExtension(path);
}

CXTString<char16_t> ToString(std::u16string_view text) {
    return {text.data(), static_cast<int>(text.size())};
}

} // namespace

bool IoFile::FindFileOpen(CXTString<char16_t> const& searchPath, CXTString<char16_t> const& pattern,
                          FILENAME_TYPE type) {
    FindFileClose();
    detail::PathParts const place(searchPath, type);
    detail::PathParts const wanted(pattern.IsEmpty() ? CXTString<char16_t>(AnyPattern) : pattern);

    std::u16string search(place.GetPath());
    search += place.GetName();
    if (search.find(u'*') == std::u16string::npos) {
        search += u'*';
    }
    if (!place.GetExtension().empty()) {
        search += place.GetExtension();
    } else {
        extensionFilter = ToString(wanted.GetExtension());
        if (!IsFilterless(extensionFilter)) { // a name without a dot has any extension
            search += wanted.GetExtension();
        }
    }
    finder = std::make_unique<CXFileFind>();
    hasNextEntry = finder->FindFile(search.c_str());
    return hasNextEntry;
}

bool IoFile::FindFileNext(CXTString<char16_t>& found, bool& filterless, bool applyFilter) {
    bool const takesAny = IsFilterless(extensionFilter);
    while (hasNextEntry) {
        hasNextEntry = finder->FindNextFileW(); // what is current now counts, even where nothing follows
        if (finder->IsDots()) {
            continue;
        }
        CXTString<char16_t> const entry = finder->GetFilePath();
        if (applyFilter && !takesAny && FilterExtensionOf(entry).CompareNoCase(extensionFilter) != 0) {
            continue;
        }
        found = entry;
        filterless = takesAny;
        return true;
    }
    return false;
}

void IoFile::FindFileClose() {
    finder.reset();
    hasNextEntry = false;
    extensionFilter.Empty();
}
