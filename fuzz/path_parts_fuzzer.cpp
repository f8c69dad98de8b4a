// SPDX-License-Identifier: MIT
// Any UTF-16 text as a file name: the splitter in every mode that leaves the disk alone, and the functions over it.
#include "zeltools/files/paths/directory_compare.h"
#include "zeltools/files/paths/path_numbering.h"
#include "zeltools/files/paths/path_parts.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void TryMode(CXTString<char16_t> const& text, unsigned int mode) {
    detail::PathParts const parts(text, mode);
    std::u16string_view const complete = detail::View(parts.GetCompleteName());
    Require(complete.find(u'/') == complete.npos);
    Require(parts.GetPath().empty() || parts.GetPath().ends_with(u'\\') || parts.IsUrl());
    Require(!parts.IsDirectory() || parts.GetName().empty());
    Require(parts.GetParentDirectory().size() <= parts.GetPath().size());
    Require(parts.GetPathWithoutRoot().size() <= parts.GetPath().size());
    parts.GetTopDirectory();
    CXTString<char16_t> pattern;
    CXTString<char16_t> digits;
    detail::GetDigitInfo(parts.GetName(), pattern, digits, (mode & 1) != 0, (mode & 2) != 0);
    Require(digits.GetLength() <= static_cast<int>(parts.GetName().size()));
    // What was taken apart into a file and its directory comes together again.
    if (!parts.IsDirectory() && !parts.IsUrl() && mode == FileNameTypeRelative) {
        Require(detail::View(parts.WithName(parts.GetName())) == complete);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), data, units.size() * 2);
    CXTString<char16_t> const text = units.c_str();
    for (unsigned int const mode : {0U, 1U, 2U, 3U, 4U, 5U}) {
        TryMode(text, mode);
    }
    int number = 0;
    fileRemoveNameDigitEnding(text, number);
    fileNextNumberedName(text, size % 2 != 0, static_cast<int>(size % 7));
    fileCutName(text, static_cast<int>(size % 20));
    CXTString<char16_t> changed = text;
    fileRemoveTopDirectory(changed, size % 2 != 0);
    Require(changed.GetLength() <= text.GetLength());
    fileRemoveDuplicatedSlash(changed);
    for (int steps = 0; fileGetParentDirectory(changed); ++steps) {
        Require(steps <= text.GetLength() + 4096); // 4096: the longest current directory
    }
    Require(fileIsSameFile(text, text));
    fileIsSameDir(text, changed);
    fileCompareDirectory(text, changed);
    return 0;
}
