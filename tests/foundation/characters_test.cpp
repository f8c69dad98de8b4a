// SPDX-License-Identifier: MIT
#include "zeltools/foundation/characters.h"

#include "tests/support/vectors.h"

#include <clocale>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

int SignOf(int number) {
    return (number > 0) - (number < 0);
}

TEST(Characters, GiveTheRecordedAnswersForUnits) {
    for (vectors::Row const& row : vectors::ReadTable("characters")) {
        auto const unit = static_cast<char16_t>(row.Hex("unit"));
        EXPECT_EQ(xToLower(unit), row.Hex("towlower")) << row;
        EXPECT_EQ(xToUpper(unit), row.Hex("towupper")) << row;
        EXPECT_EQ(xIsSpace(unit), row.Truth("iswspace")) << row;
        EXPECT_EQ(xIsDigit(unit), row.Truth("iswdigit")) << row;
        EXPECT_EQ(xIsAlpha(unit), row.Truth("iswalpha")) << row;
    }
    for (vectors::Row const& row : vectors::ReadTable("case")) {
        std::u16string text = row.Wide("text");
        for (char16_t& unit : text)
            unit = xToLower(unit);
        EXPECT_EQ(text, row.Wide("wcslwr")) << row;
    }
}

TEST(Characters, GiveTheRecordedAnswersForBytes) {
    for (vectors::Row const& row : vectors::ReadTable("bytes")) {
        auto const byte = static_cast<char>(row.Hex("byte"));
        EXPECT_EQ(static_cast<unsigned char>(xToLower(byte)), row.Hex("tolower")) << row;
        EXPECT_EQ(static_cast<unsigned char>(xToUpper(byte)), row.Hex("toupper")) << row;
        EXPECT_EQ(xIsSpace(byte), row.Truth("isspace")) << row;
        EXPECT_EQ(xIsDigit(byte), row.Truth("isdigit")) << row;
        EXPECT_EQ(xIsAlpha(byte), row.Truth("isalpha")) << row;
    }
}

TEST(Characters, CompareAsRecorded) {
    for (vectors::Row const& row : vectors::ReadTable("compare")) {
        std::u16string const left = row.Wide("left");
        std::u16string const right = row.Wide("right");
        EXPECT_EQ(SignOf(xStrCmp(left.c_str(), right.c_str())), row.Number("wcscmp")) << row;
        EXPECT_EQ(SignOf(xStrICmp(left.c_str(), right.c_str())), row.Number("wcsicmp")) << row;
        // In the C locale the collating order is the order of the values.
        EXPECT_EQ(SignOf(xStrColl(left.c_str(), right.c_str())), row.Number("wcscmp")) << row;
        EXPECT_EQ(SignOf(xStrIColl(left.c_str(), right.c_str())), row.Number("wcsicmp")) << row;
    }
    EXPECT_GT(xStrICmp("\xE9", "Z"), 0) << "bytes compare without their sign";
    EXPECT_EQ(xStrICmp("Wood.JPG", "wOOD.jpg"), 0);
    EXPECT_LT(xStrIColl("Alpha", "beta"), 0);
}

TEST(Characters, FollowTheLocaleBeyondAscii) {
    std::string const before = std::setlocale(LC_ALL, nullptr);
    ASSERT_TRUE(std::setlocale(LC_ALL, "C.UTF-8"));
    char16_t const lower = xToLower(u'É');
    int const collated = xStrIColl(u"Étoile", u"éTOILE");
    int const pairs = xStrColl(u"\uE000", u"\U0001F600"); // by characters here, where units would say the reverse
    int const folded = xStrICmp(u"0123456789ÉTÉ", u"0123456789éTé");
    int const ordered = xStrICmp(u"É", u"ê");
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(lower, u'é');
    EXPECT_EQ(collated, 0);
    EXPECT_LT(pairs, 0);
    EXPECT_EQ(folded, 0);
    EXPECT_LT(ordered, 0);
    EXPECT_NE(xStrICmp(u"É", u"é"), 0) << "the C locale knows ASCII";
}

// The length is read in blocks: every offset in a block, and a terminator that is the last unit before a page that
// cannot be read.
TEST(Characters, MeasureWithoutLeavingThePage) {
    auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const mapping = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(mapping, MAP_FAILED);
    ASSERT_EQ(mprotect(static_cast<char*>(mapping) + page, page, PROT_NONE), 0);
    auto* const end = reinterpret_cast<char16_t*>(static_cast<char*>(mapping) + page);
    std::fill(reinterpret_cast<char16_t*>(mapping), end, u'x');
    end[-1] = 0;
    for (std::size_t length = 0; length < 40; ++length) {
        char16_t const* const text = end - 1 - length;
        EXPECT_EQ(xStrLen(text), length);
        EXPECT_EQ(xStrNLen(text, 20), std::min<std::size_t>(length, 20));
        EXPECT_EQ(xMemChr(text, u'\0', length + 1), end - 1);
        EXPECT_EQ(xMemChr(text, u'\0', length), nullptr);
        EXPECT_EQ(xStrChr(text, u'\0'), end - 1);
        EXPECT_EQ(xStrStr(text, u"xy"), nullptr);
    }
    munmap(mapping, 2 * page);
    EXPECT_EQ(xStrLen(static_cast<char16_t const*>(nullptr)), 0u);
    EXPECT_EQ(xStrLen(static_cast<char const*>(nullptr)), 0u);
}

} // namespace
