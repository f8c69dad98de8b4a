// SPDX-License-Identifier: MIT
#include "zeltools/foundation/text_format.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/format_form_private.h"
#include "zeltools/foundation/real_text_private.h"
#include "zeltools/platform/code_pages.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <string>

namespace {

using detail::FormatForm;
using detail::ValueSize;

// The formatted text: keeps what fits and counts all of it, so that a fill of two thousand million blanks costs no more
// than the room there is.
template <typename T>
class Output {
public:
    Output(T* target, std::size_t capacity)
        : m_next(target), m_end(target && capacity ? target + (capacity - 1) : target) {}

    void Write(T character) {
        ++m_count;
        if (m_next != m_end)
            *m_next++ = character;
    }

    void Fill(T character, long long count) {
        if (count <= 0)
            return;
        m_next = std::fill_n(m_next, Fitting(count), character);
        m_count += count;
    }

    // Of the output's own width, or ASCII.
    template <typename Source>
    void Write(Source const* text, std::size_t length) {
        m_next = std::copy_n(text, Fitting(static_cast<long long>(length)), m_next);
        m_count += static_cast<long long>(length);
    }

    void Write(std::string_view ascii) { Write(ascii.data(), ascii.size()); }

    [[nodiscard]] bool IsTooLong() const { return m_count > INT_MAX; }
    [[nodiscard]] int Count() const { return static_cast<int>(m_count); }
    void Terminate() {
        if (m_next)
            *m_next = 0;
    }

private:
    [[nodiscard]] std::ptrdiff_t Fitting(long long count) const {
        return static_cast<std::ptrdiff_t>(std::min<long long>(count, m_end - m_next));
    }

    T* m_next;
    T* m_end;
    long long m_count = 0;
};

// Text of one width in the other, through code page 0; on the stack where it is short.
template <typename From, typename To>
class Converted {
public:
    Converted(From const* text, std::size_t length) {
        if (length == 0)
            return;
        m_isTooLong = length > INT_MAX;
        if (m_isTooLong)
            return;
        int const count = Convert(text, static_cast<int>(length), m_short, std::size(m_short));
        if (count > 0) {
            m_view = {m_short, static_cast<std::size_t>(count)};
            return;
        }
        int const needed = Convert(text, static_cast<int>(length), nullptr, 0);
        m_isTooLong = needed <= 0;
        if (m_isTooLong)
            return;
        m_long.resize(static_cast<std::size_t>(needed));
        Convert(text, static_cast<int>(length), m_long.data(), m_long.size());
        m_view = m_long;
    }

    [[nodiscard]] bool IsTooLong() const { return m_isTooLong; }
    [[nodiscard]] std::basic_string_view<To> View() const { return m_view; }

private:
    static int Convert(char const* text, int length, char16_t* target, std::size_t room) {
        return platform::MultiByteToWideChar(platform::CodePageAcp, 0, text, length, target, static_cast<int>(room));
    }
    static int Convert(char16_t const* text, int length, char* target, std::size_t room) {
        return platform::WideCharToMultiByte(platform::CodePageAcp, 0, text, length, target, static_cast<int>(room));
    }

    To m_short[256];
    std::basic_string<To> m_long;
    std::basic_string_view<To> m_view;
    bool m_isTooLong = false;
};

template <typename T>
using OtherWidth = std::conditional_t<sizeof(T) == 1, char16_t, char>;

template <typename T>
class Formatter {
public:
    Formatter(T* target, std::size_t capacity, va_list arguments) : m_output(target, capacity) {
        va_copy(m_arguments, arguments);
    }
    Formatter(Formatter const&) = delete;
    Formatter& operator=(Formatter const&) = delete;
    ~Formatter() { va_end(m_arguments); }

    // False when the text is too long for the count.
    bool Run(T const* format) {
        for (;;) {
            T const* const literal = format;
            while (*format && *format != T('%'))
                ++format;
            if (format != literal)
                m_output.Write(literal, static_cast<std::size_t>(format - literal));
            if (!*format)
                return !m_output.IsTooLong();
            format = FormatOne(format + 1);
            if (m_output.IsTooLong() || m_isTooLong)
                return false;
        }
    }

    Output<T>& Result() { return m_output; }

private:
    // Takes the form behind a percent sign, writes its value, and returns what follows.
    T const* FormatOne(T const* at) {
        // The commonest forms have nothing between the percent sign and the letter.
        if (*at == T('d')) {
            WriteInteger(FormatForm<T>{.letter = T('d')});
            return at + 1;
        }
        FormatForm<T> form;
        at = form.ParseFlags(at);
        if (*at == T('*')) {
            form.width = va_arg(m_arguments, int);
            form.left = form.left || form.width < 0;
            form.width = form.width < 0 ? -form.width : form.width;
            ++at;
        } else {
            at = detail::ParseCount(at, form.width);
        }
        if (*at == T('.')) {
            form.precision = 0;
            if (*++at == T('*')) {
                form.precision = std::max(va_arg(m_arguments, int), -1);
                ++at;
            } else {
                at = detail::ParseCount(at, form.precision);
            }
        }
        at = form.ParseSize(at);
        if (!*at)
            return at;
        form.letter = *at;
        WriteForm(form);
        return at + 1;
    }

    void WriteForm(FormatForm<T> const& form) {
        switch (form.letter) {
        case T('d'):
        case T('i'):
        case T('u'):
        case T('o'):
        case T('x'):
        case T('X'): WriteInteger(form); break;
        case T('c'):
        case T('C'): WriteCharacter(form); break;
        case T('s'):
        case T('S'): WriteString(form); break;
        case T('a'):
        case T('A'):
        case T('e'):
        case T('E'):
        case T('f'):
        case T('F'):
        case T('g'):
        case T('G'): WriteReal(form); break;
        case T('p'): WritePointer(form); break;
        case T('n'): static_cast<void>(va_arg(m_arguments, void*)); break; // a write through a format is never wanted
        default: m_output.Write(form.letter); break;
        }
    }

    // --- Integers ---------------------------------------------------------------------------------------------------

    unsigned long long NextUnsigned(ValueSize size) {
        if (size == ValueSize::Bits64)
            return va_arg(m_arguments, unsigned long long);
        unsigned const value = va_arg(m_arguments, unsigned);
        return size == ValueSize::Bits8 ? value & 0xFF : size == ValueSize::Bits16 ? value & 0xFFFF : value;
    }

    long long NextSigned(ValueSize size) {
        if (size == ValueSize::Bits64)
            return va_arg(m_arguments, long long);
        int const value = va_arg(m_arguments, int);
        return size == ValueSize::Bits8    ? static_cast<signed char>(value)
               : size == ValueSize::Bits16 ? static_cast<short>(value)
                                           : value;
    }

    void WriteInteger(FormatForm<T> const& form) {
        if (form.letter == T('d') || form.letter == T('i')) {
            long long const value = NextSigned(form.size);
            auto const bits = static_cast<unsigned long long>(value);
            WriteDigits(form, form.Sign(value < 0), value < 0 ? 0 - bits : bits, 10);
            return;
        }
        unsigned long long const value = NextUnsigned(form.size);
        int const base = form.letter == T('u') ? 10 : form.letter == T('o') ? 8 : 16;
        bool const prefixed = base == 16 && form.alternate && value != 0;
        WriteDigits(form, !prefixed ? "" : form.letter == T('x') ? "0x" : "0X", value, base);
    }

    void WriteDigits(FormatForm<T> const& form, std::string_view lead, unsigned long long value, int base) {
        char digits[22]; // the longest: 64 bits in octal
        char* end = std::to_chars(digits, digits + sizeof digits, value, base).ptr;
        if (form.precision == 0 && value == 0)
            end = digits;
        if (form.letter == T('X'))
            std::transform(digits, end, digits, [](char c) { return detail::UpperAscii(c); });
        long long zeros = std::max<long long>(form.precision - (end - digits), 0);
        if (base == 8 && form.alternate && zeros == 0 && (end == digits || digits[0] != '0'))
            zeros = 1;
        WritePadded(form, form.precision < 0, lead, static_cast<long long>(end - digits) + zeros, [&] {
            m_output.Fill(T('0'), zeros);
            m_output.Write(digits, static_cast<std::size_t>(end - digits));
        });
    }

    void WritePointer(FormatForm<T> const& form) {
        FormatForm<T> digits = form;
        digits.letter = T('X');
        digits.precision = 2 * sizeof(void*);
        auto const address = reinterpret_cast<std::uintptr_t>(va_arg(m_arguments, void*));
        WriteDigits(digits, form.alternate && address != 0 ? "0X" : "", address, 16);
    }

    // --- Reals ------------------------------------------------------------------------------------------------------

    void WriteReal(FormatForm<T> const& form) {
        double const value =
            form.isLongDouble ? static_cast<double>(va_arg(m_arguments, long double)) : va_arg(m_arguments, double);
        detail::RealText text;
        text.Set(value, static_cast<char>(form.letter), form.precision, form.alternate);
        char lead[4];
        char* leadEnd = std::copy_n(form.Sign(text.IsNegative()).data(), form.Sign(text.IsNegative()).size(), lead);
        leadEnd = std::copy_n(text.Prefix().data(), text.Prefix().size(), leadEnd);
        detail::DecimalPoint<T> const point;
        std::size_t const length = text.Whole().size() + (text.HasPoint() ? point.View().size() : 0) +
                                   text.Fraction().size() + text.Exponent().size();
        WritePadded(form, text.IsFinite(), {lead, static_cast<std::size_t>(leadEnd - lead)},
                    static_cast<long long>(length) + text.TrailingZeros(), [&] {
                        m_output.Write(text.Whole());
                        if (text.HasPoint())
                            m_output.Write(point.View().data(), point.View().size());
                        m_output.Write(text.Fraction());
                        m_output.Fill(T('0'), text.TrailingZeros());
                        m_output.Write(text.Exponent());
                    });
    }

    // --- Text -------------------------------------------------------------------------------------------------------

    void WriteCharacter(FormatForm<T> const& form) {
        int const value = va_arg(m_arguments, int);
        if (form.IsOwnWidth()) {
            T const character = static_cast<T>(value);
            WriteText(form, {&character, 1});
        } else {
            auto const character = static_cast<OtherWidth<T>>(value);
            Converted<OtherWidth<T>, T> const converted(&character, 1);
            WriteText(form, converted.View());
        }
    }

    void WriteString(FormatForm<T> const& form) {
        // A precision bounds what is read as well: four characters of a code need no terminator.
        std::size_t const limit = form.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(form.precision);
        void const* const argument = va_arg(m_arguments, void const*);
        if (!argument) {
            static constexpr T null[] = {'(', 'n', 'u', 'l', 'l', ')'};
            WriteText(form, {null, std::min(std::size(null), limit)});
        } else if (form.IsOwnWidth()) {
            auto const* const text = static_cast<T const*>(argument);
            WriteText(form, {text, limit == SIZE_MAX ? xStrLen(text) : xStrNLen(text, limit)});
        } else {
            auto const* const text = static_cast<OtherWidth<T> const*>(argument);
            WriteOther(form, text, limit == SIZE_MAX ? xStrLen(text) : xStrNLen(text, limit), limit);
        }
    }

    // The precision counts characters of the output, and cuts between the source's.
    void WriteOther(FormatForm<T> const& form, OtherWidth<T> const* text, std::size_t length, std::size_t limit) {
        for (;;) {
            Converted<OtherWidth<T>, T> const converted(text, length);
            m_isTooLong = converted.IsTooLong();
            if (m_isTooLong)
                return;
            if (converted.View().size() <= limit) {
                WriteText(form, converted.View());
                return;
            }
            // No source character takes more than four of the output's, so none too many go.
            length -= (converted.View().size() - limit + 3) / 4;
            if constexpr (sizeof(T) == 1) {
                if (length > 0 && (text[length - 1] & 0xFC00) == 0xD800)
                    --length;
            }
        }
    }

    void WriteText(FormatForm<T> const& form, std::basic_string_view<T> text) {
        WritePadded(form, true, {}, static_cast<long long>(text.size()),
                    [&] { m_output.Write(text.data(), text.size()); });
    }

    // --- Padding ----------------------------------------------------------------------------------------------------

    // Writes lead (sign and prefix) and body at the form's width; `zeros` allows the flag 0, whose zeros stand between.
    template <typename Body>
    void WritePadded(FormatForm<T> const& form, bool zeros, std::string_view lead, long long length, Body body) {
        long long const padding = form.width - static_cast<long long>(lead.size()) - length;
        bool const withZeros = zeros && form.zero && !form.left;
        if (!form.left && !withZeros)
            m_output.Fill(T(' '), padding);
        m_output.Write(lead);
        if (withZeros)
            m_output.Fill(T('0'), padding);
        body();
        if (form.left)
            m_output.Fill(T(' '), padding);
    }

    Output<T> m_output;
    va_list m_arguments;
    bool m_isTooLong = false;
};

template <typename T>
int Format(T* target, std::size_t capacity, T const* format, va_list arguments) {
    if (format) {
        Formatter<T> formatter(target, capacity, arguments);
        if (formatter.Run(format)) {
            if (capacity > 0)
                formatter.Result().Terminate();
            return formatter.Result().Count();
        }
    }
    if (target && capacity > 0)
        *target = 0;
    return -1;
}

} // namespace

int xFormatV(char* target, std::size_t capacity, char const* format, va_list arguments) {
    return Format(target, capacity, format, arguments);
}

int xFormatV(char16_t* target, std::size_t capacity, char16_t const* format, va_list arguments) {
    return Format(target, capacity, format, arguments);
}

int xFormat(char* target, std::size_t capacity, char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    int const count = Format(target, capacity, format, arguments);
    va_end(arguments);
    return count;
}

int xFormat(char16_t* target, std::size_t capacity, char16_t const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    int const count = Format(target, capacity, format, arguments);
    va_end(arguments);
    return count;
}
