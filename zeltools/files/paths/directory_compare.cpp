// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/directory_compare.h"

#include "zeltools/files/paths/path_kind.h"
#include "zeltools/files/paths/path_parts.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/text_view_private.h"

using detail::PathParts;
using detail::Text;
using detail::View;

bool fileIsSameFile(CXTString<char16_t> const& a, CXTString<char16_t> const& b) {
    return a == b || PathParts(a).GetCompleteName().CompareNoCase(PathParts(b).GetCompleteName()) == 0;
}

bool fileIsSameDir(CXTString<char16_t> const& a, CXTString<char16_t> const& b) {
    return a == b || Text(PathParts(a).GetPath()).CompareNoCase(Text(PathParts(b).GetPath())) == 0;
}

DirCompare fileCompareDirectory(CXTString<char16_t> a, CXTString<char16_t> b) {
    fileSlashTerminate(a.MakeLower());
    fileSlashTerminate(b.MakeLower());
    if (View(a) == View(b)) {
        return DirSame;
    }
    if (fileIsPathRelative(a) || fileIsPathRelative(b)) {
        return DirDifferent;
    }
    if (View(a).find(View(b)) != std::u16string_view::npos) {
        return DirFirstInSecond;
    }
    return View(b).find(View(a)) != std::u16string_view::npos ? DirSecondInFirst : DirDifferent;
}
