// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_slashes.h"

#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/platform/shell_path.h"

#include <algorithm>

namespace {

constexpr std::u16string_view InvalidCharacters = u"<>:\"/\\|?*.";

} // namespace

bool fileConvertSlash(CXTString<char16_t>& path) {
    std::size_t const first = detail::View(path).find(u'/');
    if (first == std::u16string_view::npos) {
        return false;
    }
    char16_t* text = path.GetBuffer(0);
    std::replace(text + first, text + path.GetLength(), u'/', u'\\');
    return true;
}

void fileRemoveDuplicatedSlash(CXTString<char16_t>& path) {
    char16_t* text = path.GetBuffer(0);
    char16_t* const begin = text + (platform::PathIsUNCW(detail::View(path)) ? 2 : 0);
    char16_t* const end = std::unique(begin, text + detail::View(path).size(),
                                      [](char16_t left, char16_t right) { return left == u'\\' && right == u'\\'; });
    path.GetBufferSetLength(static_cast<int>(end - text));
}

void fileSlashTerminate(CXTString<char16_t>& path) {
    if (!fileIsSlashTerminated(path)) {
        path += u'\\';
    }
}

bool fileIsSlashTerminated(CXTString<char16_t> const& path) {
    return detail::View(path).ends_with(u'\\');
}

void fileRemoveSlashTermination(CXTString<char16_t>& path) {
    if (fileIsSlashTerminated(path)) {
        path.GetBufferSetLength(path.GetLength() - 1);
    }
}

void fileRemoveInvalidChar(CXTString<char16_t>& name, char16_t replacement) {
    std::size_t const length = detail::View(name).size();
    if (length == 0) {
        return;
    }
    char16_t* text = name.GetBuffer(0);
    char16_t* const end = std::remove_if(
        text, text + length, [](char16_t c) { return InvalidCharacters.find(c) != InvalidCharacters.npos; });
    std::replace(text, end, u' ', replacement);
    name.GetBufferSetLength(static_cast<int>(end - text));
}
