// SPDX-License-Identifier: MIT
#include "zeltools/foundation/text_format.h"

#include "tests/support/comma_locale.h"
#include "tests/support/vectors.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/platform/code_pages.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <list>
#include <random>
#include <variant>

namespace {

using Argument = std::variant<int, long long, double, void const*>;

// Calls a function with the arguments that a table names, each of its own type.
template <typename Call, typename... Done>
int CallWith(std::vector<Argument> const& arguments, Call const& call, Done... done) {
    if (arguments.size() == sizeof...(Done))
        return call(done...);
    if constexpr (sizeof...(Done) < 4)
        return std::visit([&](auto next) { return CallWith(arguments, call, done..., next); },
                          arguments[sizeof...(Done)]);
    else
        throw std::runtime_error("more than four arguments");
}

// Texts of a row's arguments live here while the row is tried.
struct Texts {
    std::list<std::string> narrow;
    std::list<std::u16string> wide;
};

Argument ParseArgument(std::string_view cell, Texts& texts) {
    if (cell == "null")
        return static_cast<void const*>(nullptr);
    std::string const value(cell.substr(2));
    switch (cell.front()) {
    case 'i': return static_cast<int>(std::stoll(value));
    case 'q': return std::stoll(value);
    case 'd': return std::strtod(value.c_str(), nullptr);
    case 'p': return reinterpret_cast<void const*>(std::stoull(value, nullptr, 16));
    case 's': return static_cast<void const*>(texts.narrow.emplace_back(vectors::DecodeNarrow(value)).c_str());
    case 'w': return static_cast<void const*>(texts.wide.emplace_back(vectors::DecodeWide(value)).c_str());
    default: throw std::runtime_error("argument of no known kind: " + std::string(cell));
    }
}

template <typename Text>
void CheckFormat(Text const& format, std::vector<std::string> const& cells, Text const& expected) {
    Texts texts;
    std::vector<Argument> arguments;
    for (std::string const& cell : cells)
        arguments.push_back(ParseArgument(cell, texts));
    auto const length = static_cast<int>(expected.size());
    auto const format_with = [&](auto* target, std::size_t capacity) {
        return CallWith(arguments,
                        [&](auto... values) { return xFormat(target, capacity, format.c_str(), values...); });
    };
    using T = typename Text::value_type;
    EXPECT_EQ(format_with(static_cast<T*>(nullptr), 0), length);
    Text target(expected.size() + 2, T('#'));
    EXPECT_EQ(format_with(target.data(), target.size()), length);
    EXPECT_EQ(target, expected + T('\0') + T('#'));
    // A room that ends in the middle cuts the text and still counts all of it.
    std::size_t const room = expected.size() / 2;
    Text cut(room + 1, T('#'));
    EXPECT_EQ(format_with(cut.data(), room), length);
    EXPECT_EQ(cut, room == 0 ? Text(1, T('#')) : expected.substr(0, room - 1) + T('\0') + T('#'));
}

template <typename Text>
void CheckTable(char const* table, Text (*decode)(std::string_view)) {
    ASSERT_TRUE(platform::SetACP(1252));
    for (vectors::Row const& row : vectors::ReadTable(table)) {
        SCOPED_TRACE(testing::Message() << row);
        std::vector<std::string> cells;
        for (char const* column : {"arg1", "arg2", "arg3", "arg4"}) {
            if (!row.Raw(column).empty())
                cells.push_back(row.Raw(column));
        }
        Text const expected = decode(row.Raw("result"));
        EXPECT_EQ(static_cast<long long>(expected.size()), row.Number("count"));
        CheckFormat(decode(row.Raw("format")), cells, expected);
    }
    platform::SetACP(platform::CodePageAcp);
}

template <typename T>
std::basic_string<T> Formatted(T const* format, ...) {
    std::basic_string<T> text(4096, T('#'));
    va_list arguments;
    va_start(arguments, format);
    int const count = xFormatV(text.data(), text.size(), format, arguments);
    va_end(arguments);
    text.resize(static_cast<std::size_t>(std::max(count, 0)));
    return text;
}

TEST(TextFormat, GivesTheRecordedWideAnswers) {
    CheckTable("format_wide", &vectors::DecodeWide);
}

TEST(TextFormat, GivesTheRecordedNarrowAnswers) {
    CheckTable("format_narrow", &vectors::DecodeNarrow);
}

TEST(TextFormat, GivesTheDocumentedAnswers) {
    for (vectors::DocumentedRow const& row : vectors::ReadDocumented("format_wide")) {
        SCOPED_TRACE(row.place);
        // Formats of these rows may hold a vertical bar themselves; the last input is the argument.
        std::string format = row.inputs.front();
        for (std::size_t i = 1; i + 1 < row.inputs.size(); ++i)
            format += " | " + row.inputs[i];
        CheckFormat(vectors::DecodeWide(format), {row.inputs.back()}, vectors::DecodeWide(row.answer));
    }
}

TEST(TextFormat, ReadsNoFurtherThanThePrecision) {
    // A four-character code has no terminator.
    std::unique_ptr<char[]> const unterminated(new char[4]{'B', 'M', 'P', ' '});
    std::unique_ptr<char16_t[]> const wide(new char16_t[2]{u'\u6F22', u'\u5B57'});
    EXPECT_EQ(Formatted("[%.4s]", unterminated.get()), "[BMP ]");
    EXPECT_EQ(Formatted(u"[%.4hs]", unterminated.get()), u"[BMP ]");
    EXPECT_EQ(Formatted(u"[%.2s]", wide.get()), u"[\u6F22\u5B57]");
    EXPECT_EQ(Formatted("[%.2S]", wide.get()), "[]") << "half a character is not written";
}

TEST(TextFormat, SurvivesFormatsThatMeanNothing) {
    EXPECT_EQ(xFormat(static_cast<char*>(nullptr), 0, nullptr), -1);
    EXPECT_EQ(Formatted("100%"), "100");
    EXPECT_EQ(Formatted("%5.3"), "");
    EXPECT_EQ(Formatted("%y %d", 7), "y 7");
    EXPECT_EQ(Formatted("%1$d", 7), "$d");
    EXPECT_EQ(Formatted("%-5%|"), "%|");
    int untouched = 5;
    EXPECT_EQ(Formatted("ab%n%d", static_cast<void*>(&untouched), 3), "ab3");
    EXPECT_EQ(untouched, 5);
}

TEST(TextFormat, RefusesCountsBeyondAnInt) {
    char text[8] = "before";
    EXPECT_EQ(xFormat(text, sizeof text, "%2147483648d", 1), -1);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(xFormat(text, sizeof text, "%2147483647d", 1), INT_MAX);
    EXPECT_STREQ(text, "       ");
    EXPECT_EQ(xFormat(text, sizeof text, " %2147483647d", 1), -1);
    EXPECT_EQ(xFormat(text, sizeof text, "%.2147483647f", 1.0), -1);
    EXPECT_EQ(xFormat(text, sizeof text, "%.99999999999999999999d", 1), -1);
    EXPECT_EQ(xFormat(text, sizeof text, "%*d", INT_MIN, 1), -1);
    EXPECT_EQ(xFormat(text, sizeof text, "%.2000000000f", 1.5), 2000000002);
    EXPECT_STREQ(text, "1.50000");
    EXPECT_EQ(xFormat(static_cast<char16_t*>(nullptr), 0, u"%.2000000000e", 1.5), 2000000006);
}

// Reals of every size and exact halves, each under random flags, against the C library's own text.
TEST(TextFormat, AgreesWithTheCLibraryOnRandomNumbers) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    char const* const flagSets[] = {"", "-", "+", " ", "#", "0", "+0", "-#", "#0", " 0"};
    for (int round = 0; round < 100000; ++round) {
        std::string form = "%";
        form += flagSets[random() % std::size(flagSets)];
        if (random() % 2)
            form += std::to_string(1 + random() % 40);
        bool const isReal = random() % 4 != 0;
        std::string_view const letters = isReal ? "fFeEgGaA" : "duxXoiii";
        char const letter = letters[random() % letters.size()];
        if (letter == 'a' || letter == 'A')
            form += "." + std::to_string(random() % 20);
        else if (random() % 2)
            form += "." + std::to_string(random() % 10 == 0 ? random() % 1200 : random() % 20);
        char expected[4096];
        std::string ours;
        if (isReal) {
            double const reals[] = {std::bit_cast<double>(random()),
                                    static_cast<double>(random() % 100000) / 8,
                                    static_cast<double>(static_cast<long long>(random())) / 1e6,
                                    0.0,
                                    -0.0,
                                    std::numeric_limits<double>::infinity(),
                                    5e-324 * static_cast<double>(random() % 9),
                                    static_cast<double>(random() % 1000) / 1000};
            double value = reals[random() % std::size(reals)];
            if (std::isnan(value))
                continue;
            // A subnormal's first hexadecimal digit is a matter of taste.
            if ((letter == 'a' || letter == 'A') && value != 0 && !std::isnormal(value))
                continue;
            form += letter;
            std::snprintf(expected, sizeof expected, form.c_str(), value);
            ours = Formatted(form.c_str(), value);
        } else {
            // Signs of unsigned forms are undefined in the C library.
            if (std::string_view("uxXo").find(letter) != std::string_view::npos)
                std::erase_if(form, [](char c) { return c == '+' || c == ' '; });
            auto const value = static_cast<long long>(random() >> random() % 64);
            form += std::string("ll") + letter;
            std::snprintf(expected, sizeof expected, form.c_str(), value);
            ours = Formatted(form.c_str(), value);
        }
        ASSERT_EQ(ours, expected) << form;
    }
}

TEST(TextFormat, FollowsTheDecimalPointOfTheLocale) {
    std::string narrow;
    std::u16string wide;
    {
        CommaLocale const comma;
        if (!comma.IsSet())
            GTEST_SKIP() << "no locale with a comma can be had on this machine";
        narrow = Formatted("%.2f %g %d %#.0f", 1.5, 2.25, 1, 3.0);
        wide = Formatted(u"%8.2f", 1.5);
    }
    EXPECT_EQ(narrow, "1,50 2,25 1 3,");
    EXPECT_EQ(wide, u"    1,50");
}

} // namespace
