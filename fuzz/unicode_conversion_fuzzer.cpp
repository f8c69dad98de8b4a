// SPDX-License-Identifier: MIT
// Bytes and units from outside through every Unicode converter: nothing is read or written outside what was given,
// and what was understood makes the round trip.
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/foundation/unicode_conversion.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

void DecodeRaw(std::string const& bytes) {
    int const measured = xUTF8ToUTF16(bytes.c_str(), nullptr);
    // Exactly the room that is asked for, so that a unit too many is seen.
    auto const target = std::make_unique<char16_t[]>(bytes.size() + 1);
    int const written = xUTF8ToUTF16(bytes.c_str(), target.get());
    Require(bytes.empty() ? measured == 0 && written == 1 : (measured != 0) == (written != 0));
    if (written == 0)
        return;
    Require(measured == static_cast<int>(bytes.size()) && target[written - 1] == 0);
    // A text without overlong and surrogate forms reads the same through the ordinary converter.
    CXTString<char16_t> wide;
    Require(XFASTCA2W(wide, bytes.c_str(), xEncodingUtf8));
    if (wide.Find(u'\xFFFD') < 0)
        Require(wide == target.get() && wide.GetLength() == written - 1);
}

void RoundTrip(std::string const& bytes, int encoding) {
    CXTString<char16_t> wide;
    CXTString<char> narrow;
    CXTString<char16_t> again;
    Require(XFASTCA2W(wide, bytes.c_str(), encoding) && XFASTCW2A(narrow, wide, encoding) &&
            XFASTCA2W(again, narrow, encoding));
    if (encoding == xEncodingUtf8)
        Require(again == wide && (wide.Find(u'\xFFFD') >= 0 || narrow == bytes.c_str()));
}

void WidenRaw(std::uint8_t const* data, std::size_t size) {
    std::size_t const count = size / sizeof(char16_t);
    std::vector<char16_t> source(count);
    if (count != 0)
        std::memcpy(source.data(), data, count * sizeof(char16_t));
    std::vector<char32_t> target(count);
    int const written = xUTF16ToUTF32(source.data(), static_cast<int>(count), target.data());
    Require(written >= 0 && static_cast<std::size_t>(written) <= count);
    for (int i = 0; i < written; ++i)
        Require(target[static_cast<std::size_t>(i)] < 0x100000);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const all(reinterpret_cast<char const*>(data), size);
    std::string const bytes(all.c_str()); // up to the first zero
    DecodeRaw(bytes);
    for (int const encoding : {static_cast<int>(xEncodingUtf8), 1252, 932})
        RoundTrip(bytes, encoding);
    WidenRaw(data, size);
    return 0;
}
