// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_kind.h"

#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/platform/shell_path.h"

bool fileIsUNCPath(CXTString<char16_t> const& path) {
    return platform::PathIsUNCW(detail::View(path));
}

bool fileIsPathRelative(CXTString<char16_t> const& path) {
    return platform::PathIsRelativeW(detail::View(path));
}

bool fileIsOnNetworkDrive(CXTString<char16_t> const& path) {
    return platform::PathIsNetworkPathW(detail::View(path));
}
