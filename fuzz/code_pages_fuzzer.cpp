// SPDX-License-Identifier: MIT
// Bytes in every code page: measuring, writing and the one-pass form must agree, whatever the bytes are. The first byte
// picks the page.

#include "zeltools/platform/code_pages.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

using namespace platform;

namespace {

constexpr unsigned pages[] = {65001, 1252, 437, 932, 936, 949, 950, 1258, 54936, 51932, 1361};

void Require(bool condition) {
    if (!condition)
        std::abort();
}

// Into memory of exactly the size that was measured, so that the sanitizer sees one unit too many; one less must fail.
template <typename To, typename From>
std::basic_string<To> Convert(int (*call)(unsigned, unsigned, From const*, int, To*, int), unsigned page,
                              std::basic_string_view<From> source) {
    auto const length = static_cast<int>(source.size());
    int const measured = call(page, 0, source.data(), length, nullptr, 0);
    if (measured <= 0) {
        Require(source.empty());
        return {};
    }
    std::unique_ptr<To[]> const target(new To[static_cast<std::size_t>(measured)]);
    Require(call(page, 0, source.data(), length, target.get(), measured) == measured);
    std::basic_string<To> const text(target.get(), static_cast<std::size_t>(measured));
    if (measured > 1)
        Require(call(page, 0, source.data(), length, target.get(), measured - 1) == 0);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 2)
        return 0;
    unsigned const page = pages[data[0] % std::size(pages)];
    // A copy of its own: a read behind the source is a fault too.
    std::unique_ptr<char[]> const bytes(new char[size - 1]);
    std::copy_n(reinterpret_cast<char const*>(data + 1), size - 1, bytes.get());
    std::u16string const text = Convert<char16_t>(&MultiByteToWideChar, page, std::string_view(bytes.get(), size - 1));
    std::string const back = Convert<char>(&WideCharToMultiByte, page, std::u16string_view(text));
    std::unique_ptr<char16_t[]> const units(new char16_t[size]);
    std::copy_n(bytes.get(), (size - 1) / 2 * 2, reinterpret_cast<char*>(units.get()));
    Convert<char>(&WideCharToMultiByte, page, std::u16string_view(units.get(), (size - 1) / 2));
    if (page == CodePageUtf8) {
        std::unique_ptr<char16_t[]> const target(new char16_t[Utf16Room(size - 1)]);
        std::size_t const count = Utf8ToUtf16(bytes.get(), size - 1, target.get());
        Require(std::u16string_view(target.get(), count) == text);
        Require(Utf8Length(text.data(), text.size()) == back.size());
        Require(Convert<char16_t>(&MultiByteToWideChar, page, std::string_view(back)) == text);
    }
    return 0;
}
