// SPDX-License-Identifier: MIT
#include "zeltools/platform/code_pages.h"

#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/iconv_code_page.h"

#include <atomic>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace platform {

namespace {

// What SetACP chose; 0 follows the environment.
std::atomic<unsigned> chosenCodePage{0};

bool IsKnown(unsigned codePage) {
    return codePage == CodePageUtf8 || IsIconvCodePage(codePage);
}

unsigned CodePageOfEnvironment() {
    char const* const value = std::getenv("ZELTOOLS_CODEPAGE");
    if (!value)
        return CodePageUtf8;
    unsigned number = 0;
    char const* const end = value + std::strlen(value);
    auto const [stopped, error] = std::from_chars(value, end, number);
    return error == std::errc{} && stopped == end && IsKnown(number) ? number : CodePageUtf8;
}

std::size_t LengthWithTerminator(char const* text) {
    return std::strlen(text) + 1;
}

std::size_t LengthWithTerminator(char16_t const* text) {
    return std::char_traits<char16_t>::length(text) + 1;
}

int Fail(unsigned error) {
    SetLastError(error);
    return 0;
}

// The contract that both directions share; `decode` or encode is what differs.
template <typename From, typename To, typename Convert>
int ConvertChecked(unsigned codePage, unsigned flags, unsigned refuseInvalid, From const* source, int sourceLength,
                   To* target, int targetLength, Convert convert) {
    bool const overlaps = static_cast<void const*>(source) == static_cast<void const*>(target);
    if (!source || sourceLength == 0 || targetLength < 0 || (targetLength > 0 && (!target || overlaps)))
        return Fail(ErrorInvalidParameter);
    if ((flags & ~refuseInvalid) != 0)
        return Fail(ErrorInvalidFlags);
    unsigned const page = codePage == CodePageAcp ? GetACP() : codePage;
    if (!IsKnown(page))
        return Fail(ErrorInvalidParameter);
    std::size_t const length = sourceLength < 0 ? LengthWithTerminator(source) : static_cast<std::size_t>(sourceLength);
    TextConversion const done =
        convert(page, source, length, targetLength > 0 ? target : nullptr, static_cast<std::size_t>(targetLength));
    if (done.invalid && (flags & refuseInvalid) != 0)
        return Fail(ErrorNoUnicodeTranslation);
    if (!done.fitted)
        return Fail(ErrorInsufficientBuffer);
    if (done.length > INT_MAX)
        return Fail(ErrorArithmeticOverflow);
    return static_cast<int>(done.length);
}

} // namespace

unsigned GetACP() {
    unsigned const chosen = chosenCodePage.load(std::memory_order_relaxed);
    if (chosen != CodePageAcp)
        return chosen;
    static unsigned const ofEnvironment = CodePageOfEnvironment();
    return ofEnvironment;
}

bool SetACP(unsigned codePage) {
    if (codePage != CodePageAcp && !IsKnown(codePage))
        return false;
    chosenCodePage.store(codePage, std::memory_order_relaxed);
    return true;
}

int MultiByteToWideChar(unsigned codePage, unsigned flags, char const* source, int sourceLength, char16_t* target,
                        int targetLength) {
    return ConvertChecked(codePage, flags, MultiByteErrInvalidChars, source, sourceLength, target, targetLength,
                          [](unsigned page, char const* text, std::size_t length, char16_t* units, std::size_t room) {
                              return page == CodePageUtf8 ? DecodeUtf8(text, length, units, room)
                                                          : DecodeIconv(page, text, length, units, room);
                          });
}

int WideCharToMultiByte(unsigned codePage, unsigned flags, char16_t const* source, int sourceLength, char* target,
                        int targetLength) {
    return ConvertChecked(codePage, flags, WideCharErrInvalidChars, source, sourceLength, target, targetLength,
                          [](unsigned page, char16_t const* text, std::size_t length, char* bytes, std::size_t room) {
                              return page == CodePageUtf8 ? EncodeUtf8(text, length, bytes, room)
                                                          : EncodeIconv(page, text, length, bytes, room);
                          });
}

} // namespace platform
