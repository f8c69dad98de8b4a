// SPDX-License-Identifier: MIT
#include "zeltools/foundation/text_scan.h"

#include "tests/support/comma_locale.h"
#include "tests/support/vectors.h"
#include "zeltools/foundation/text_format.h"
#include "zeltools/platform/code_pages.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>

namespace {

// A target that a table names (`i32`, `w:260`, ...): memory, the arguments that stand for it, and its value as the
// table shows it.
class Target {
public:
    explicit Target(std::string const& name) : m_kind(name.substr(0, name.find(':'))) {
        if (std::size_t const colon = name.find(':'); colon != std::string::npos)
            m_room = static_cast<unsigned>(std::stoul(name.substr(colon + 1)));
        m_size = m_room ? m_room * (IsWide() ? 2 : 1) : sizeof(long long);
        // Two fills tell what was written from what happens to look like a fill.
        m_memory.reset(new unsigned char[m_size + 8]);
        std::memset(m_memory.get(), fill, m_size + 8);
    }

    [[nodiscard]] bool IsText() const { return m_room > 0; }
    [[nodiscard]] void* Address() const { return m_memory.get(); }
    [[nodiscard]] unsigned Room() const { return m_room; }

    [[nodiscard]] std::string Value() const {
        for (std::size_t i = m_size; i < m_size + 8; ++i)
            EXPECT_EQ(m_memory[i], fill) << "written behind the target";
        if (std::all_of(m_memory.get(), m_memory.get() + m_size, [](unsigned char byte) { return byte == fill; }))
            return "-";
        char text[24];
        if (m_kind.front() == 'i' || m_kind == "n") {
            int const above = 64 - (m_kind == "n" ? 32 : std::stoi(m_kind.substr(1)));
            return std::to_string(As<long long>() << above >> above);
        }
        if (m_kind.front() == 'f') {
            if (m_kind == "f32")
                std::snprintf(text, sizeof text, "%08X", As<unsigned>());
            else
                std::snprintf(text, sizeof text, "%016llX", As<unsigned long long>());
            return text;
        }
        std::string shown = "=";
        for (unsigned i = 0; i < m_room; ++i) {
            unsigned const unit = IsWide() ? reinterpret_cast<char16_t const*>(m_memory.get())[i] : m_memory[i];
            if (unit == 0 && m_kind.front() != 'c')
                break;
            if (unit >= 0x20 && unit < 0x7F)
                shown += static_cast<char>(unit);
            else {
                std::snprintf(text, sizeof text, IsWide() ? "\\u%04X" : "\\x%02X", unit);
                shown += text;
            }
        }
        return shown;
    }

private:
    static constexpr unsigned char fill = 0xA5;

    template <typename Number>
    [[nodiscard]] Number As() const {
        Number number;
        std::memcpy(&number, m_memory.get(), sizeof number);
        return number;
    }
    [[nodiscard]] bool IsWide() const { return m_kind == "w" || m_kind == "cw"; }

    std::string m_kind;
    unsigned m_room = 0;
    std::size_t m_size;
    std::unique_ptr<unsigned char[]> m_memory;
};

// Calls the scanner with the targets' arguments, each text target followed by its room.
template <typename T, typename... Done>
int ScanInto(T const* text, T const* format, std::vector<Target> const& targets, std::size_t next, Done... done) {
    if (next == targets.size())
        return xScan(text, format, done...);
    if constexpr (sizeof...(Done) < 6) {
        Target const& target = targets[next];
        return target.IsText() ? ScanInto(text, format, targets, next + 1, done..., target.Address(), target.Room())
                               : ScanInto(text, format, targets, next + 1, done..., target.Address());
    } else {
        throw std::runtime_error("too many targets");
    }
}

template <typename Text>
void CheckTable(char const* table, Text (*decode)(std::string_view)) {
    for (vectors::Row const& row : vectors::ReadTable(table)) {
        SCOPED_TRACE(testing::Message() << row);
        std::vector<Target> targets;
        if (!row.Raw("args").empty()) {
            for (std::string const& name : vectors::Split(row.Raw("args"), ","))
                targets.emplace_back(name);
        }
        Text const text = decode(row.Raw("text"));
        Text const format = decode(row.Raw("format"));
        EXPECT_EQ(ScanInto(text.c_str(), format.c_str(), targets, 0), row.Number("count"));
        std::string values;
        for (Target const& target : targets)
            values += (values.empty() ? "" : "|") + target.Value();
        EXPECT_EQ(values, row.Raw("values"));
    }
}

TEST(TextScan, GivesTheRecordedWideAnswers) {
    CheckTable("scan_wide", &vectors::DecodeWide);
}

TEST(TextScan, GivesTheRecordedNarrowAnswers) {
    CheckTable("scan_narrow", &vectors::DecodeNarrow);
}

TEST(TextScan, TakesTextWholeOrNotAtAll) {
    char narrow[5] = "####";
    int number = 7;
    EXPECT_EQ(xScan("hello 5", "%s %d", narrow, 5u, &number), 0) << "five letters and a zero need six";
    EXPECT_STREQ(narrow, "");
    EXPECT_EQ(number, 7);
    // In UTF-8 the two characters take five bytes; the zero makes six.
    EXPECT_EQ(xScan(u"\u00E9\u6F22", u"%S", narrow, 5u), 0);
    EXPECT_STREQ(narrow, "");
    char roomy[6] = "#####";
    EXPECT_EQ(xScan(u"\u00E9\u6F22", u"%hs", roomy, 6u), 1);
    EXPECT_STREQ(roomy, "\xC3\xA9\xE6\xBC\xA2");
    char16_t wide[2];
    EXPECT_EQ(xScan("\xC3\xA9 x", "%S", wide, 2u), 1);
    EXPECT_EQ(std::u16string(wide), u"\u00E9");
    EXPECT_EQ(xScan("abc", "%s", narrow, 0u), 0);
    EXPECT_EQ(xScan("abc", "%2c", narrow, 1u), 0);
}

TEST(TextScan, SurvivesFormatsThatMeanNothing) {
    int number = 5;
    char text[4];
    EXPECT_EQ(xScan(static_cast<char const*>(nullptr), "%d", &number), -1);
    EXPECT_EQ(xScan("1", static_cast<char const*>(nullptr), &number), -1);
    for (char const* format :
         {"%", "%5", "%*", "%l", "%[abc", "%[", "%[]", "%[^", "%[^]", "%y", "%-d", "%99999999999999y"})
        EXPECT_EQ(xScan("1", format, &number, &number, &number), 0) << format;
    EXPECT_EQ(number, 5);
    EXPECT_EQ(xScan("1 2", "%d %d", nullptr, &number), 0);
    EXPECT_EQ(xScan("b-a", "%[z-a]", text, 4u), 1) << "a range that runs backwards is the same range";
    EXPECT_STREQ(text, "b");
    EXPECT_EQ(xScan("12", "%99999999999d", &number), 1);
    EXPECT_EQ(number, 12);
    double real = 0;
    EXPECT_EQ(xScan("1.5e+", "%lf", &real), 1);
    EXPECT_EQ(real, 1.5);
    EXPECT_EQ(xScan("-inf nan", "%lf", &real), 1);
    EXPECT_TRUE(std::isinf(real));
}

// What the formatter writes in full comes back bit for bit, in both widths and under a decimal comma.
TEST(TextScan, ReadsBackWhatTheFormatterWrites) {
    unsigned const seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    CommaLocale const comma;
    for (int round = 0; round < 5000; ++round) {
        auto const real = std::bit_cast<double>(random());
        auto const number = static_cast<long long>(random());
        if (!std::isfinite(real))
            continue;
        char16_t wide[128];
        char narrow[128];
        char const* const form = round % 2 ? "%.17g;%lld;%a" : "%.16e;%I64d;%.13a";
        ASSERT_GT(xFormat(narrow, 128, form, real, number, real), 0);
        ASSERT_GT(xFormat(wide, 128, round % 2 ? u"%.17g;%lld;%a" : u"%.16e;%I64d;%.13a", real, number, real), 0);
        double reals[4] = {};
        long long numbers[2] = {};
        ASSERT_EQ(xScan(narrow, "%lf;%lld;%lf", &reals[0], &numbers[0], &reals[1]), 3) << narrow;
        ASSERT_EQ(xScan(wide, u"%lf;%lld;%lf", &reals[2], &numbers[1], &reals[3]), 3) << narrow;
        for (double const value : reals)
            ASSERT_EQ(std::bit_cast<long long>(value), std::bit_cast<long long>(real)) << narrow;
        ASSERT_EQ(numbers[0], number);
        ASSERT_EQ(numbers[1], number);
    }
}

} // namespace
