// SPDX-License-Identifier: MIT
// A real number as the characters that printf gives it, in parts, so that the formatter can put in the locale's
// decimal point, fill with zeros behind the sign and write any count of trailing zeros without storing them.
//
//     RealText text;
//     text.Set(-1234.5, 'e', 3, false);    // m_isNegative, "1", point, "234", 0 zeros, "e+03"

#pragma once

#include <string_view>

namespace detail {

class RealText {
public:
    /// Sets the parts for one conversion.
    ///
    /// @param letter     One of a A e E f F g G, the conversion.
    /// @param precision  Digits behind the point (for g: all digits); below 0 is the letter's default.
    /// @param alternate  The flag `#`: keeps the point, and g's trailing zeros.
    void Set(double value, char letter, long long precision, bool alternate);

    [[nodiscard]] bool IsNegative() const { return m_isNegative; }
    /// False for infinities and for what is no number: these are never padded with zeros.
    [[nodiscard]] bool IsFinite() const { return m_isFinite; }
    /// `0x` or `0X` in front of hexadecimal digits, else empty.
    [[nodiscard]] std::string_view Prefix() const { return m_prefix; }
    [[nodiscard]] std::string_view Whole() const { return m_whole; }
    [[nodiscard]] bool HasPoint() const { return m_hasPoint; }
    [[nodiscard]] std::string_view Fraction() const { return m_fraction; }
    /// Zeros to be written behind the fraction.
    [[nodiscard]] long long TrailingZeros() const { return m_trailingZeros; }
    [[nodiscard]] std::string_view Exponent() const { return m_exponent; }

private:
    // The longest fraction of a double has 1074 digits, its longest whole part 309: what lies beyond is zeros.
    static constexpr int maximalPrecision = 1074;

    char* Convert(double magnitude, char letter, int precision, bool alternate);

    char m_buffer[309 + 1 + maximalPrecision + 8];
    bool m_isNegative;
    bool m_isFinite;
    bool m_hasPoint;
    long long m_trailingZeros;
    std::string_view m_prefix;
    std::string_view m_whole;
    std::string_view m_fraction;
    std::string_view m_exponent;
};

} // namespace detail
