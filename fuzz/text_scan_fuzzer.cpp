// SPDX-License-Identifier: MIT
// Any text, in both widths, first under a format of any bytes and then under one that is made of whole forms, whose
// targets are then of the kinds that the forms name.

#include "zeltools/foundation/text_scan.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>

namespace {

struct Form {
    char const* text;
    bool takesRoom;
};

constexpr Form forms[] = {
    {"%d", false},   {" %i", false},  {"%3x", false},   {"%llu", false}, {"%hho", false},    {"%f", false},
    {"%5lf", false}, {" %La", false}, {"%n", false},    {"%p", false},   {"%s", true},       {"%4S", true},
    {"%c", true},    {"%3hc", true},  {"%[a-z]", true}, {"%[^,]", true}, {"%2l[0-9]", true}, {"%C", true},
};

// Room of a text target in characters; memory for the wider of both widths, and of the widest number.
constexpr unsigned room = 8;
struct Target {
    alignas(16) unsigned char memory[room * sizeof(char16_t)];
};

// Every second argument of a format of any bytes is null: a form then meets a true target first, and its room or the
// next form's target is null, which ends the scan before anything is written through a number.
template <typename T>
void TryAnyFormat(std::basic_string<T> const& text, std::basic_string<T> const& format) {
    Target target{};
    void* const null = nullptr;
    xScan(text.c_str(), format.c_str(), target.memory, null, null, null);
}

template <typename T, typename... Done>
void TryForms(std::basic_string<T> const& text, std::basic_string<T> const& format, std::uint8_t const* picks,
              Done... done) {
    if constexpr (sizeof...(Done) >= 4) {
        xScan(text.c_str(), format.c_str(), done...);
    } else {
        Form const& form = forms[*picks % std::size(forms)];
        std::string const added = form.text;
        Target target{};
        std::basic_string<T> const longer = format + std::basic_string<T>(added.begin(), added.end());
        if (form.takesRoom)
            TryForms(text, longer, picks + 1, done..., static_cast<void*>(target.memory), room);
        else
            TryForms(text, longer, picks + 1, done..., static_cast<void*>(target.memory));
    }
}

template <typename T>
std::basic_string<T> Widened(std::uint8_t const* begin, std::uint8_t const* end) {
    return std::basic_string<T>(begin, end);
}

template <typename T>
void Try(std::uint8_t const* data, std::size_t size) {
    // The first byte says where the format ends and the text begins; the next four pick whole forms.
    std::size_t const formatLength = std::min<std::size_t>(data[0], size - 5);
    std::uint8_t const* const text = data + 5 + formatLength;
    TryAnyFormat(Widened<T>(text, data + size), Widened<T>(data + 5, text));
    TryForms(Widened<T>(text, data + size), std::basic_string<T>(), data + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 5)
        return 0;
    Try<char>(data, size);
    Try<char16_t>(data, size);
    return 0;
}
