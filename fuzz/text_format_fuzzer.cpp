// SPDX-License-Identifier: MIT
// Formats of any bytes, in both widths. The arguments are eight-byte values in the general registers and reals in the
// vector ones; every text that a form may take is a pointer to real text, since a pointer is what the caller of a text
// form promises. The formatter must neither touch anything else nor write behind its room, and must count what it
// writes.

#include "zeltools/foundation/text_format.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

// Serves as narrow and as wide text, as an integer and as a target of %n.
alignas(8) char16_t const textOfBothWidths[] = u"Wood \u6F22\xD800 %s \u00E9.JPG";

// A form takes at most three arguments, so a format of this many percent signs stays within those of the call.
constexpr int maximalForms = 4;

template <typename T>
void Try(std::basic_string<T> const& format, double real, std::size_t room) {
    int forms = 0;
    for (T const unit : format)
        forms += unit == T('%');
    if (forms > maximalForms || format.find(T('L')) != format.npos) // a long double is on the stack
        return;
    void const* const p = textOfBothWidths;
    auto const run = [&](T* target, std::size_t capacity) {
        return xFormat(target, capacity, format.c_str(), p, p, p, p, p, p, p, p, p, p, p, p, real, real, real, real);
    };
    int const counted = run(nullptr, 0);
    // Text of the pointer's low bits as a width can be any length; the room is what is written.
    std::unique_ptr<T[]> const target(new T[room]);
    Require(run(target.get(), room) == counted);
    if (room > 0 && counted >= 0) {
        std::size_t const written = std::min<std::size_t>(room - 1, static_cast<std::size_t>(counted));
        Require(target[written] == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 10)
        return 0;
    double real;
    std::memcpy(&real, data, sizeof real);
    std::size_t const room = data[8];
    auto const* const rest = data + 9;
    size -= 9;
    Try(std::string(reinterpret_cast<char const*>(rest), size), real, room);
    std::u16string wide(rest, rest + size);
    Try(wide, real, room);
    return 0;
}
