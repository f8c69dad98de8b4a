// SPDX-License-Identifier: MIT
#include "zeltools/foundation/text_scan.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/format_form_private.h"
#include "zeltools/foundation/text_scan_private.h"
#include "zeltools/platform/code_pages.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using detail::FormatForm;
using detail::ValueSize;

// What became of a conversion.
enum class Scanned {
    Stored,    ///< The value is in its target, or was read and suppressed.
    Mismatch,  ///< The text is something else, or does not fit.
    TextEnded, ///< Nothing was left to read.
};

// The characters that `%[` takes: the part of the format between the brackets, without the caret.
template <typename T>
struct CharacterSet {
    T const* begin = nullptr;
    T const* end = nullptr;
    bool inverted = false;

    [[nodiscard]] bool Holds(T character) const {
        bool listed = false;
        for (T const* at = begin; at < end && !listed; ++at) {
            if (end - at > 2 && at[1] == T('-')) {
                T const first = std::min(Unsigned(at[0]), Unsigned(at[2]));
                T const last = std::max(Unsigned(at[0]), Unsigned(at[2]));
                listed = Unsigned(character) >= Unsigned(first) && Unsigned(character) <= Unsigned(last);
                at += 2;
            } else {
                listed = *at == character;
            }
        }
        return listed != inverted;
    }

private:
    static auto Unsigned(T character) { return static_cast<std::make_unsigned_t<T>>(character); }
};

template <typename T>
class Scanner {
public:
    Scanner(T const* text, va_list arguments) : m_begin(text), m_at(text) { va_copy(m_arguments, arguments); }
    Scanner(Scanner const&) = delete;
    Scanner& operator=(Scanner const&) = delete;
    ~Scanner() { va_end(m_arguments); }

    int Run(T const* format) {
        bool converted = false;
        while (*format) {
            if (xIsSpace(*format)) {
                SkipBlanks();
                ++format;
                continue;
            }
            bool const isForm = *format == T('%') && format[1] != T('%');
            Scanned const scanned = isForm ? ScanForm(format) : MatchLiteral(format);
            if (scanned == Scanned::TextEnded)
                return converted ? m_stored : -1;
            if (scanned == Scanned::Mismatch)
                return m_stored;
            converted = converted || isForm;
        }
        m_hasDoneAll = true;
        return m_stored;
    }

    /// After Run: where and how it ended.
    [[nodiscard]] detail::ScanEnd End() const {
        return {static_cast<std::size_t>(m_at - m_begin), m_hasDoneAll, m_lackedText || *m_at == 0};
    }

private:
    using OtherWidth = std::conditional_t<sizeof(T) == 1, char16_t, char>;

    void SkipBlanks() {
        while (*m_at && xIsSpace(*m_at))
            ++m_at;
    }

    // A literal character, or `%%`.
    Scanned MatchLiteral(T const*& format) {
        if (*m_at != *format)
            return *m_at ? Scanned::Mismatch : Scanned::TextEnded;
        ++m_at;
        format += *format == T('%') ? 2 : 1;
        return Scanned::Stored;
    }

    Scanned ScanForm(T const*& format) {
        T const* at = format + 1;
        m_suppressed = *at == T('*');
        if (m_suppressed)
            ++at;
        FormatForm<T> form;
        bool const hasWidth = *at >= T('0') && *at <= T('9');
        at = detail::ParseCount(at, form.width);
        m_width = hasWidth && form.width > 0 ? static_cast<std::size_t>(form.width) : SIZE_MAX;
        at = form.ParseSize(at);
        form.letter = *at;
        if (!*at)
            return Scanned::Mismatch;
        CharacterSet<T> set;
        ++at;
        if (form.letter == T('[')) {
            set.inverted = *at == T('^');
            set.begin = at = set.inverted ? at + 1 : at;
            while (*at && (*at != T(']') || at == set.begin)) // a bracket in front belongs to the set
                ++at;
            if (!*at)
                return Scanned::Mismatch;
            set.end = at++;
        }
        format = at;
        return Scan(form, set);
    }

    Scanned Scan(FormatForm<T> form, CharacterSet<T> const& set) {
        switch (form.letter) {
        case T('d'):
        case T('u'): return ScanInteger(form, 10);
        case T('i'): return ScanInteger(form, 0);
        case T('o'): return ScanInteger(form, 8);
        case T('p'): form.size = ValueSize::Bits64; [[fallthrough]];
        case T('x'):
        case T('X'): return ScanInteger(form, 16);
        case T('a'):
        case T('A'):
        case T('e'):
        case T('E'):
        case T('f'):
        case T('F'):
        case T('g'):
        case T('G'): return ScanReal(form);
        case T('s'):
        case T('S'): SkipBlanks(); return ScanText(form, [](T character) { return !xIsSpace(character); });
        case T('['): return ScanText(form, [&set](T character) { return set.Holds(character); });
        case T('c'):
        case T('C'): return ScanCharacters(form);
        case T('n'):
            if (!m_suppressed && !StoreInteger(form.size, static_cast<unsigned long long>(m_at - m_begin)))
                return Scanned::Mismatch;
            return Scanned::Stored;
        default: return Scanned::Mismatch;
        }
    }

    // --- Integers ---------------------------------------------------------------------------------------------------

    static unsigned DigitOf(T character) {
        if (character >= T('0') && character <= T('9'))
            return static_cast<unsigned>(character - T('0'));
        T const lower = detail::LowerAscii(character);
        return lower >= T('a') && lower <= T('z') ? static_cast<unsigned>(lower - T('a')) + 10 : 99;
    }

    Scanned ScanInteger(FormatForm<T> const& form, unsigned base) {
        SkipBlanks();
        if (!*m_at)
            return Scanned::TextEnded;
        T const* at = m_at;
        bool const negative = *at == T('-');
        if (negative || *at == T('+'))
            ++at;
        if ((base == 0 || base == 16) && *at == T('0') && detail::LowerAscii(at[1]) == T('x') && DigitOf(at[2]) < 16 &&
            IsWithin(at + 2)) {
            base = 16;
            at += 2;
        } else if (base == 0) {
            base = *at == T('0') && IsWithin(at) ? 8 : 10;
        }
        T const* const digits = at;
        unsigned long long magnitude = 0;
        bool overflow = false;
        for (; IsWithin(at) && DigitOf(*at) < base; ++at) {
            overflow = overflow || __builtin_mul_overflow(magnitude, base, &magnitude) ||
                       __builtin_add_overflow(magnitude, DigitOf(*at), &magnitude);
        }
        if (at == digits)
            return Scanned::Mismatch;
        m_at = at;
        unsigned long long value = negative ? 0 - magnitude : magnitude;
        if (form.letter == T('d') || form.letter == T('i')) {
            constexpr unsigned long long highest = LLONG_MAX;
            if (overflow || magnitude > highest + negative)
                value = highest + negative;
        } else if (overflow) {
            value = ULLONG_MAX;
        }
        return m_suppressed || (StoreInteger(form.size, value) && Counted()) ? Scanned::Stored : Scanned::Mismatch;
    }

    // False for a null target.
    bool StoreInteger(ValueSize size, unsigned long long value) {
        void* const target = va_arg(m_arguments, void*);
        if (!target)
            return false;
        switch (size) {
        case ValueSize::Bits8: *static_cast<std::uint8_t*>(target) = static_cast<std::uint8_t>(value); break;
        case ValueSize::Bits16: *static_cast<std::uint16_t*>(target) = static_cast<std::uint16_t>(value); break;
        case ValueSize::Bits32: *static_cast<std::uint32_t*>(target) = static_cast<std::uint32_t>(value); break;
        case ValueSize::Bits64: *static_cast<unsigned long long*>(target) = value; break;
        }
        return true;
    }

    // --- Reals ------------------------------------------------------------------------------------------------------

    static bool StartsWith(T const* text, std::basic_string_view<T> part) {
        return xStrNLen(text, part.size()) == part.size() && std::equal(part.begin(), part.end(), text);
    }

    // In front of a number or of its exponent.
    static bool TakesSign(std::string const& number) {
        return number.empty() || std::string_view("eEpP").find(number.back()) != std::string_view::npos;
    }

    Scanned ScanReal(FormatForm<T> const& form) {
        SkipBlanks();
        if (!*m_at)
            return Scanned::TextEnded;
        detail::DecimalPoint<T> const point;
        // strtod stops by itself where the number does; it is shown only what a number can consist of, within the
        // width.
        std::string ascii;
        std::string_view const nativePoint = std::localeconv()->decimal_point;
        T const* at = m_at;
        bool pointSeen = false;
        std::size_t pointAt = 0;
        while (*at && IsWithin(at + (StartsWith(at, point.View()) ? point.View().size() - 1 : 0))) {
            if (!pointSeen && StartsWith(at, point.View())) {
                pointSeen = true;
                pointAt = ascii.size();
                ascii += nativePoint;
                at += point.View().size();
            } else if (DigitOf(*at) < 36 || ((*at == T('+') || *at == T('-')) && TakesSign(ascii))) {
                ascii += static_cast<char>(*at++);
            } else {
                break;
            }
        }
        char* stopped = nullptr;
        double const value = std::strtod(ascii.c_str(), &stopped);
        auto length = static_cast<std::size_t>(stopped - ascii.c_str());
        if (length == 0)
            return Scanned::Mismatch;
        if (pointSeen && length > pointAt)
            length = length - nativePoint.size() + point.View().size();
        m_at += length;
        if (m_suppressed)
            return Scanned::Stored;
        void* const target = va_arg(m_arguments, void*);
        if (!target)
            return Scanned::Mismatch;
        if (form.isLongDouble)
            *static_cast<long double*>(target) = static_cast<long double>(value);
        else if (form.isLong)
            *static_cast<double*>(target) = value;
        else // not by way of the double, which would round twice
            *static_cast<float*>(target) = std::strtof(ascii.c_str(), nullptr);
        return Counted() ? Scanned::Stored : Scanned::Mismatch;
    }

    // --- Text -------------------------------------------------------------------------------------------------------

    template <typename Belongs>
    Scanned ScanText(FormatForm<T> const& form, Belongs belongs) {
        if (!*m_at)
            return Scanned::TextEnded;
        T const* at = m_at;
        while (*at && IsWithin(at) && belongs(*at))
            ++at;
        if (at == m_at)
            return Scanned::Mismatch;
        return StoreText(form, at, true);
    }

    Scanned ScanCharacters(FormatForm<T> const& form) {
        std::size_t const wanted = m_width == SIZE_MAX ? 1 : m_width;
        if (!*m_at)
            return Scanned::TextEnded;
        std::size_t const there = xStrNLen(m_at, wanted);
        if (there < wanted) {
            m_lackedText = true;
            return Scanned::Mismatch;
        }
        return StoreText(form, m_at + there, false);
    }

    // Copies the text up to `end` into the next target, which takes it whole or stays empty.
    Scanned StoreText(FormatForm<T> const& form, T const* end, bool terminated) {
        auto const length = static_cast<std::size_t>(end - m_at);
        if (m_suppressed) {
            m_at = end;
            return Scanned::Stored;
        }
        void* const target = va_arg(m_arguments, void*);
        std::size_t const room = va_arg(m_arguments, unsigned);
        if (!target || room == 0)
            return Scanned::Mismatch;
        std::size_t const forText = room - (terminated ? 1 : 0);
        bool const stored = form.IsOwnWidth() ? Copy(static_cast<T*>(target), forText, length, terminated)
                                              : Convert(static_cast<OtherWidth*>(target), forText, length, terminated);
        m_at = end;
        return stored && Counted() ? Scanned::Stored : Scanned::Mismatch;
    }

    bool Copy(T* target, std::size_t room, std::size_t length, bool terminated) {
        *target = 0;
        if (length > room)
            return false;
        std::copy_n(m_at, length, target);
        if (terminated)
            target[length] = 0;
        return true;
    }

    bool Convert(OtherWidth* target, std::size_t room, std::size_t length, bool terminated) {
        *target = 0;
        if (room == 0 || length > INT_MAX)
            return false;
        // The converter may leave a beginning, or write over what lies behind the result; the target gets it whole.
        int const needed = Convert(m_at, static_cast<int>(length), nullptr, 0);
        if (needed <= 0 || static_cast<std::size_t>(needed) > room)
            return false;
        Convert(m_at, static_cast<int>(length), target, needed);
        if (terminated)
            target[needed] = 0;
        return true;
    }

    static int Convert(char const* text, int length, char16_t* target, int room) {
        return platform::MultiByteToWideChar(platform::CodePageAcp, 0, text, length, target, room);
    }
    static int Convert(char16_t const* text, int length, char* target, int room) {
        return platform::WideCharToMultiByte(platform::CodePageAcp, 0, text, length, target, room);
    }

    // --- Common -----------------------------------------------------------------------------------------------------

    // Whether a place still belongs to the form's width. The text's end is told by its zero.
    [[nodiscard]] bool IsWithin(T const* at) const { return static_cast<std::size_t>(at - m_at) < m_width; }

    bool Counted() {
        ++m_stored;
        return true;
    }

    T const* m_begin;
    T const* m_at;
    va_list m_arguments;
    bool m_suppressed = false;
    std::size_t m_width = SIZE_MAX;
    int m_stored = 0;
    bool m_hasDoneAll = false;
    bool m_lackedText = false; ///< The text ended within a count of characters.
};

template <typename T>
int ScanWith(T const* text, T const* format, va_list arguments) {
    return text && format ? Scanner<T>(text, arguments).Run(format) : -1;
}

} // namespace

int detail::ScanText(char16_t const* text, char16_t const* format, va_list arguments, ScanEnd& end) {
    Scanner<char16_t> scanner(text, arguments);
    int const count = scanner.Run(format);
    end = scanner.End();
    return count;
}

int xScanV(char const* text, char const* format, va_list arguments) {
    return ScanWith(text, format, arguments);
}

int xScanV(char16_t const* text, char16_t const* format, va_list arguments) {
    return ScanWith(text, format, arguments);
}

int xScan(char const* text, char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    int const count = ScanWith(text, format, arguments);
    va_end(arguments);
    return count;
}

int xScan(char16_t const* text, char16_t const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    int const count = ScanWith(text, format, arguments);
    va_end(arguments);
    return count;
}
