// SPDX-License-Identifier: MIT
#include "zeltools/foundation/string_conversion.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/platform/code_pages.h"
#include "zeltools/platform/system_string.h"

#include <climits>

namespace {

constexpr unsigned NoCodePage = 0xFFFFFFFF;

// The number of a code page, with 0 resolved to the page that it stands for.
unsigned CodePageOf(int encoding) {
    switch (encoding) {
    case xEncodingDefault:
    case xEncodingAnsi:
    case platform::CodePageAcp: return platform::GetACP();
    case xEncodingUtf8: return platform::CodePageUtf8;
    case xEncodingUtf16: return NoCodePage;
    default: return static_cast<unsigned>(encoding);
    }
}

template <class T, class S, class Convert>
bool ConvertInTwoPasses(CXTCharArray<T>& target, S const* source, std::size_t length, Convert convert) {
    int const measured = convert(source, static_cast<int>(length), nullptr, 0);
    if (measured <= 0)
        return false;
    target.SetLength(static_cast<std::size_t>(measured));
    if (convert(source, static_cast<int>(length), target.GetText(), measured) == measured)
        return true;
    target.SetLength(0);
    return false;
}

} // namespace

bool XFASTCA2W(CXTCharArray<char16_t>& target, char const* source, int encoding) {
    target.Assign(nullptr, 0);
    unsigned const codePage = CodePageOf(encoding);
    std::size_t const length = xStrLen(source);
    if (!source || length > INT_MAX || codePage == NoCodePage)
        return false;
    if (length == 0) // measuring the terminator alone tells whether there is such a page
        return platform::MultiByteToWideChar(codePage, 0, source, 1, nullptr, 0) == 1;
    if (codePage == platform::CodePageUtf8) {
        target.SetLength(platform::Utf16Room(length));
        target.SetLength(platform::Utf8ToUtf16(source, length, target.GetText()));
        return true;
    }
    return ConvertInTwoPasses(target, source, length, [codePage](auto... arguments) {
        return platform::MultiByteToWideChar(codePage, 0, arguments...);
    });
}

bool XFASTCW2A(CXTCharArray<char>& target, char16_t const* source, int encoding) {
    target.Assign(nullptr, 0);
    unsigned const codePage = CodePageOf(encoding);
    std::size_t const length = xStrLen(source);
    if (!source || length > INT_MAX || codePage == NoCodePage)
        return false;
    if (length == 0) // measuring the terminator alone tells whether there is such a page
        return platform::WideCharToMultiByte(codePage, 0, source, 1, nullptr, 0) == 1;
    if (codePage == platform::CodePageUtf8) {
        if (length > INT_MAX / 3 && platform::Utf8Length(source, length) > INT_MAX)
            return false;
        // The fast path may write over the whole room of the worst case, which is three times an ASCII text.
        target.SetLength(platform::Utf8Room(length));
        target.SetLength(platform::Utf16ToUtf8(source, length, target.GetText()));
        return true;
    }
    return ConvertInTwoPasses(target, source, length, [codePage](auto... arguments) {
        return platform::WideCharToMultiByte(codePage, 0, arguments...);
    });
}

XCW2BSTR::XCW2BSTR(char16_t const* source) : pointer(platform::SysAllocString(source)) {}

XCW2BSTR::~XCW2BSTR() {
    platform::SysFreeString(pointer);
}
