// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/compact_path.h"

#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/platform/shell_path.h"

#include <algorithm>

namespace {

constexpr int DefaultChars = 15;
constexpr int LeastChars = 10;
constexpr int ClientMarginPixels = 10;

} // namespace

CXTString<char16_t> fileCompactPath(CXTString<char16_t> const& path, int maxChars) {
    if (path.GetLength() <= maxChars) {
        return path;
    }
    return fileGetRoot(path) + u"..." + path.Right(std::max(maxChars, LeastChars) - 3);
}

CXTString<char16_t> fileCompactPath(CXTString<char16_t> const& path, CWnd* window, int width) {
    if (window == nullptr) {
        return fileCompactPath(path, DefaultChars);
    }
    detail::DesktopHooks& desktop = detail::GetDesktopHooks();
    if (path.IsEmpty() || path.GetLength() >= static_cast<int>(platform::MaxPath) ||
        !desktop.MeasureText(window, path)) {
        return path;
    }
    char16_t buffer[platform::MaxPath] = {};
    detail::View(path).copy(buffer, platform::MaxPath - 1);
    int const available = width != 0 ? width : desktop.GetClientWidth(window) - ClientMarginPixels;
    bool const isFit = platform::PathCompactPathW(buffer, available, [&](std::u16string_view text) {
        return desktop.MeasureText(window, detail::Text(text)).value_or(0);
    });
    return isFit ? CXTString<char16_t>(buffer) : path;
}
