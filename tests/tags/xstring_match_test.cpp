// SPDX-License-Identifier: MIT
#include "zeltools/tags/xstring_match.h"

#include "tests/support/format_page.h"
#include "tests/support/plain_string_match.h"
#include "tests/support/printers.h"
#include "tests/support/repeated.h"
#include "zeltools/foundation/log_file.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

using Text = CXTString<char16_t>;
using Units = std::u16string;

Text Make(Units const& units) {
    return Text(units.data(), static_cast<int>(units.size()));
}

/// What the page on the language does not show.
TEST(XStringMatch, AnswersExpressions) {
    struct {
        char16_t const* expression;
        char16_t const* text;
        bool isMatch;
        CXStringMatch::Mode mode = CXStringMatch::ModeExpression;
    } const rows[] = {
        {u"", u"anything", true},
        {u"  ", u"", true},
        {u"table", u"", false},
        {u"!table", u"", true},
        {u"*", u" ", false}, // a text without words has nothing that a pattern could fit
        {u"table !leg", u"a table", true},
        {u"a !(b c)", u"a b", true},
        {u"a !(b c)", u"a b c", false},
        {u"a !\"b c\"", u"a b c", false},
        {u"woo?", u"plywood", true},
        {u"a*a", u"a", false},
        {u"a\\&b", u"a&b", true},
        {u"a\\*b", u"a\\xb", true}, // no mark, so the \ stays and the star is one
        {u"\"a & b\"", u"an a & b", true},
        {u"\"(a\"", u"(a", true},
        {u"\"red table", u"red table", true}, // no end: to the end of the text
        {u"x \"red table\"", u"red table", true, CXStringMatch::ModeAnyWord},
        {u"()", u"x", true},
        {u"a (&)", u"a", true}, // an expression without operands matches everything
        // Each group is a text of its own, in which the blank behind `()` makes (a*b) a group, and that has no quote.
        {u"x (y ^ (() (a*b) ^ \"q\"))", u"x a b", false},
        {u"\x00C9", u"\x00E9", false}, // only ASCII has case
    };
    for (auto const& row : rows) {
        CXStringMatch match;
        EXPECT_EQ(match.Match(row.expression, row.text, row.mode), row.isMatch)
            << testing::PrintToString(Units(row.expression)) << testing::PrintToString(Units(row.text));
        EXPECT_TRUE(match.PrepareMatch(row.expression, row.mode));
    }
}

TEST(XStringMatch, AnswersTheExamplesOfItsPage) {
    int texts = 0;
    for (support::FencedBlock const& block : support::FencedBlocks("search-language", "search")) {
        auto const has = [&block](char const* word) {
            return std::find(block.words.begin(), block.words.end(), word) != block.words.end();
        };
        CXStringMatch::Mode const mode = has("any")   ? CXStringMatch::ModeAnyWord
                                         : has("all") ? CXStringMatch::ModeAllWords
                                                      : CXStringMatch::ModeExpression;
        CXStringMatch match;
        ASSERT_TRUE(match.PrepareMatch(block.lines.at(0).c_str(), mode, has("case")));
        for (std::size_t line = 1; line < block.lines.size(); ++line, ++texts) {
            EXPECT_EQ(match.Match(block.lines[line].substr(2).c_str()), block.lines[line][0] == '+')
                << block.lines[0] << '\n'
                << block.lines[line];
        }
    }
    EXPECT_GT(texts, 30);
}

/// The operations as `+*table*+leg ^ drawer-*chair*`: the operator, the pattern, and a group between parentheses.
Units Listed(CXStringMatch const& match) {
    Units text;
    for (CXStringMatch::WordOperation const& operation : match.GetOperations()) {
        text += u"?|+-"[operation.wordOperator];
        Units const expression(static_cast<char16_t const*>(operation.expression));
        text += operation.isExpression ? u"(" + expression + u")" : expression;
    }
    return text;
}

TEST(XStringMatch, CutsAnExpressionIntoOperations) {
    struct {
        char16_t const* expression;
        char16_t const* operations;
        CXStringMatch::Mode mode = CXStringMatch::ModeExpression;
    } const rows[] = {
        {u"wo* *wood w?? ?", u"+*wo*+*wood*+*w??+?"},
        {u"a b^c!d", u"+*a*+*b*|*c*-*d*"},
        {u"Table (Leg ^ drawer) !chair", u"+*table*+(& leg ^ drawer)-*chair*"},
        {u"((a) b", u"+((a)  & b)"},
        {u"\"a  b\"c", u"+*a  b*+*c*"},
        {u"\"a (b", u"+*a (b*"},
        {u"a \"b c\" d", u"+*a*|*b c*|*d*", CXStringMatch::ModeAnyWord},
        {u"a^b)", u"+*a*+*b*", CXStringMatch::ModeAllWords},
        {u"\\\\(a", u"+*\\(a*"},
        {u"\t\x3000 a\n", u"+*a*"},
    };
    for (auto const& row : rows) {
        CXStringMatch match;
        ASSERT_TRUE(match.PrepareMatch(row.expression, row.mode));
        EXPECT_EQ(Listed(match), row.operations) << testing::PrintToString(Units(row.expression));
    }
    EXPECT_EQ(CXStringMatch::hashChar.GetCount(), 6U);
}

/// The operations that a host's own class builds on.
struct Opened : CXStringMatch {
    using CXStringMatch::AddExpression;
    using CXStringMatch::ExtractTextWords;
    using CXStringMatch::ExtractWords;
    using CXStringMatch::InternalMatch;
    using CXStringMatch::IsChar;
    using CXStringMatch::MatchWord;
    using CXStringMatch::RemoveSpecialChar;
    using CXStringMatch::ShouldRecurse;
};

TEST(XStringMatch, GivesItsStepsToASubclass) {
    Opened match;
    Text text(u"a\\(b ^ c) (d");
    EXPECT_TRUE(match.ExtractWords(text));
    EXPECT_EQ(Listed(match), u"+*a(b*|*c*+*d*");
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_FALSE(match.AddExpression(u" \t", CXStringMatch::OperatorNot));
    EXPECT_TRUE(match.AddExpression(u"E (F)", CXStringMatch::OperatorNot));

    CXStringMatch::Texts words;
    words.Add(u"xA(b c");
    words.Add(u"D E");
    EXPECT_FALSE(match.InternalMatch(words, CXStringMatch::ModeExpression)); // words as they stand: no "d"
    EXPECT_FALSE(match.GetOperations()[3].result);
    words.Add(u"dEF");
    words.Add(u"c");
    EXPECT_FALSE(match.InternalMatch(words, CXStringMatch::ModeExpression));
    EXPECT_TRUE(match.GetOperations()[1].result);
    EXPECT_TRUE(match.GetOperations()[3].result); // a sub-expression lowers them and cuts them at blanks

    EXPECT_TRUE(match.MatchWord(u"DE*", words));
    EXPECT_FALSE(match.MatchWord(u"*de*", words));
    EXPECT_FALSE(match.MatchWord(u"*", CXStringMatch::Texts()));
    EXPECT_TRUE(match.ShouldRecurse(u"a\\&b!"));
    EXPECT_FALSE(match.ShouldRecurse(u"a\\&b*?"));
    EXPECT_TRUE(match.IsChar(u"ab", 'b', 1));
    EXPECT_FALSE(match.IsChar(u"ab", 'b', 2) || match.IsChar(u"ab", 'a', -1) || match.IsChar(u"ab", 'a', 1));
    Text marks(u"(a\\^\"b)");
    match.RemoveSpecialChar(marks, u'"');
    EXPECT_EQ(marks, u" a\\^\"b)"); // the last one stays

    ASSERT_TRUE(match.PrepareMatch(u"\"x\""));
    CXStringMatch::Texts texts;
    texts.Add(u"");
    texts.Add(u"My-old_file  b");
    words.RemoveAll();
    match.ExtractTextWords(texts, words);
    char16_t const* const wanted[] = {u"My-old_file  b", u"my-old_file", u"my", u"old", u"file", u"b"};
    ASSERT_EQ(words.GetSize(), 6);
    for (int index = 0; index < 6; ++index) {
        EXPECT_EQ(words[index], wanted[index]);
    }
}

TEST(XStringMatch, TakesSeveralTextsTogetherAndCopiesItself) {
    CXStringMatch match;
    CXStringMatch::Texts texts;
    texts.Add(u"a Table");
    texts.Add(u"LEG");
    EXPECT_TRUE(match.Match(u"table (leg)", texts));
    CXStringMatch copy(match);
    CXStringMatch moved(std::move(match));
    EXPECT_TRUE(copy.Match(texts) && moved.Match(texts));
    EXPECT_FALSE(copy.Match(u"a table") || moved.Match(u"a table"));
    match = copy; // what was moved from is good for use again
    EXPECT_FALSE(match.Match(u"a table"));
}

TEST(XStringMatch, AgreesWithThePlainForm) {
    unsigned int const seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    auto const pick = [&random](Units const& alphabet, unsigned int most) {
        Units text;
        for (auto count = random() % most; count > 0; --count) {
            text += alphabet[random() % alphabet.size()];
        }
        return text;
    };
    int matches = 0;
    constexpr int rounds = 20000;
    for (int round = 0; round < rounds; ++round) {
        Units const expression = pick(round % 2 ? u"aabB  *?-\"\\()&^!" : u"abAB c  ()()^!\"", 24);
        std::vector<Units> const texts = {pick(u"aabbAB -_ (", 14), pick(u"abc ABC\"&\t", 10)};
        auto const mode = static_cast<int>(random() % 4);
        bool const caseSensitive = random() % 2;
        support::PlainStringMatch plain;
        plain.Prepare(expression, mode, caseSensitive);
        CXStringMatch match;
        CXStringMatch::Texts list;
        list.Add(Make(texts[0]));
        list.Add(Make(texts[1]));
        bool const expected = plain.Match(texts);
        matches += expected;
        ASSERT_EQ(match.Match(Make(expression), list, static_cast<CXStringMatch::Mode>(mode), caseSensitive), expected)
            << testing::PrintToString(expression) << testing::PrintToString(texts) << mode << caseSensitive;
    }
    EXPECT_GT(matches, rounds / 10);
    EXPECT_LT(matches, rounds * 9 / 10);
}

TEST(XStringMatch, AgreesWithThePlainFormOnLongPieces) {
    // Pieces beyond 16 and beyond 64 units, in texts of their own period that nearly have them at every place.
    std::mt19937 random(5);
    int matches = 0;
    for (int round = 0; round < 400; ++round) {
        Units const period = round % 2 ? u"ab" : u"aab";
        Units piece = Repeated(6 + random() % 60, period);
        for (auto count = random() % 3; count > 0; --count) {
            piece[random() % piece.size()] = u"ab?"[random() % 3];
        }
        Units text = Repeated(1200, period);
        for (auto count = random() % 30; count > 0; --count) {
            text[random() % text.size()] = u"ab"[random() % 2];
        }
        Units const pattern = u"*" + piece + u"*" + piece.substr(0, random() % 40) + u"b*";
        bool const expected = support::PlainStringMatch::MatchWord(pattern, text);
        matches += expected;
        CXStringMatch match;
        ASSERT_EQ(match.Match(Make(pattern), Make(text)), expected)
            << testing::PrintToString(pattern) << testing::PrintToString(text);
    }
    EXPECT_GT(matches, 40);
    EXPECT_LT(matches, 360);
}

// Every row took the product of the two lengths, or an exponential time, if it were done as it is told. The limit is
// far above what a slow machine needs, and far below that.
TEST(XStringMatch, TakesLinearTimeForHostileExpressions) {
    constexpr std::size_t many = 1 << 15;
    Units const text = Repeated(4 * many, u"a");
    Units const pairs = Repeated(2 * many, u"ab");
    struct {
        char const* name;
        Units expression;
        bool isMatch;
        Units const& text;
    } const rows[] = {
        {"plain piece", Repeated(many, u"a") + u"b", false, text},
        {"plain piece of pairs", Repeated(many / 4, u"ab") + u"b" + Repeated(many / 4, u"ab"), false, pairs},
        {"pairs with ?", Repeated(100, u"ab?b") + u"aa" + Repeated(100, u"ab?b"), false, pairs},
        {"piece with ?", Repeated(200, u"a?") + u"b", false, text},
        {"many stars", Repeated(many, u"*a") + u"b", false, text},
        {"star question", Repeated(many, u"*?"), true, text},
        {"deep groups", Repeated(many, u"(") + u"a ^ b", true, text},
        {"deep groups, closed", Repeated(many, u"(!") + u"b" + Repeated(many, u")"), false, text}, // as often as not
        {"groups in a row", Repeated(many / 8, u"(a ^ b) "), true, text},
        {"quotes", Repeated(many, u"\"") + u"a", true, text},
        {"escapes", Repeated(many, u"\\(") + u"b", false, text},
    };
    for (auto const& row : rows) {
        auto const start = std::chrono::steady_clock::now();
        CXStringMatch match;
        EXPECT_EQ(match.Match(Make(row.expression), Make(row.text)), row.isMatch) << row.name;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << row.name;
    }
}

TEST(XStringMatch, RefusesAnExpressionWithoutEnd) {
    static int lines = 0;
    SetLogCallback([](unsigned int, Text line, bool, void*) { lines += line.Find(u"Search: ") == 0; }, nullptr);
    CXStringMatch match;
    Units const longest(CXStringMatch::MaxExpressionLength, u' ');
    EXPECT_TRUE(match.PrepareMatch(Make(longest)));
    EXPECT_TRUE(match.Match(u"a"));
    EXPECT_FALSE(match.PrepareMatch(Make(longest + u"a")));
    EXPECT_FALSE(match.Match(u"a")); // what was asked for is unknown, so nothing answers
    EXPECT_FALSE(match.Match(Make(longest + u"a"), u"a"));
    EXPECT_EQ(lines, 2);
    EXPECT_TRUE(match.Match(u"a", u"a"));
    SetLogCallback(nullptr, nullptr);
}

} // namespace
