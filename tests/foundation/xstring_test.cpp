// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xstring.h"

#include "tests/support/printers.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/copy_safe_private.h"
#include "zeltools/platform/code_pages.h"

#include <clocale>
#include <cstdint>
#include <cstring>
#include <deque>
#include <gtest/gtest.h>
#include <random>
#include <string>

using support::Whole;

namespace {

// The same behaviour in both widths: texts of the tables are ASCII, S() gives them in the width under test.
template <class T>
class XString : public testing::Test {
protected:
    using Text = CXTString<T>;

    T const* S(std::string_view ascii) { return m_texts.emplace_back(ascii.begin(), ascii.end()).c_str(); }
    std::basic_string<T> Std(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

private:
    std::deque<std::basic_string<T>> m_texts; // the addresses hold while it grows
};

using Widths = testing::Types<char, char16_t>;
TYPED_TEST_SUITE(XString, Widths);

TYPED_TEST(XString, CopiesAreDeepAndWhole) {
    using String = typename TestFixture::Text;
    String text(this->S("abcde"));
    text.SetAt(2, 0);
    String const copy(text);
    String assigned(this->S("longer than what comes"));
    assigned = text;
    String const moved(std::move(text)); // NOLINT: a move copies
    text.SetAt(0, TypeParam('x'));
    for (String const& each : {copy, assigned, moved})
        EXPECT_EQ(Whole(each), this->Std({"ab\0de", 5}));
    EXPECT_EQ(text.GetAt(0), TypeParam('x'));
}

TYPED_TEST(XString, BufferAccessChangesTheLength) {
    using String = typename TestFixture::Text;
    String text(this->S("abc"));
    EXPECT_EQ(text.GetBuffer(2)[2], TypeParam('c'));
    EXPECT_EQ(text.GetLength(), 3);
    text.GetBuffer(5)[3] = 0;
    EXPECT_EQ(text.GetLength(), 5);
    text.ReleaseBuffer();
    EXPECT_EQ(Whole(text), this->Std("abc"));

    text.GetBuffer()[3] = TypeParam('!'); // over the terminator
    text.GetBuffer()[4] = 0;
    text.GetAtPtr(2)[1] = TypeParam('!');
    text.ReleaseBuffer();
    EXPECT_EQ(Whole(text), this->Std("ab"));
    text.ReleaseBuffer(100);
    EXPECT_EQ(Whole(text), this->Std("a"));
    text.ReleaseBuffer(0);
    text.ReleaseBuffer(1);
    EXPECT_EQ(text.GetLength(), 0);

    String taken(this->S("owned"));
    TypeParam* const buffer = taken.DetachBuffer();
    EXPECT_EQ(std::basic_string<TypeParam>(buffer), this->Std("owned"));
    std::free(buffer);
}

TYPED_TEST(XString, ElementsOutsideAreZeroNullOrUntouched) {
    typename TestFixture::Text text(this->S("ab"));
    EXPECT_EQ(text.GetAt(1), TypeParam('b'));
    EXPECT_EQ(text.GetAt(2), TypeParam(0));
    EXPECT_EQ(text.GetAtPtr(2), nullptr);
    text.SetAt(2, TypeParam('x'));
    EXPECT_EQ(text[2], TypeParam(0));
    EXPECT_DEBUG_DEATH(EXPECT_EQ(text.GetAt(-1), TypeParam(0)), "index >= 0");
    EXPECT_DEBUG_DEATH(EXPECT_EQ(text.GetAtPtr(INT32_MIN), nullptr), "index >= 0");
}

TYPED_TEST(XString, AppendsWhatIsInFrontOfTheFirstZero) {
    using String = typename TestFixture::Text;
    String operand(this->S("12345"));
    operand.SetAt(3, 0);
    String text(this->S("a"));
    text += operand;
    text += this->S("b");
    text += TypeParam('c');
    typename String::Other const other[] = {'d', 0};
    text += other;
    EXPECT_EQ(Whole(text), this->Std("a123bcd"));
    EXPECT_EQ(Whole(TypeParam('<') + operand + this->S("-") + operand + TypeParam('>')), this->Std("<123-123>"));
    EXPECT_EQ(Whole(this->S("p") + String(this->S("q"))), this->Std("pq"));
    EXPECT_EQ(Whole(String() + static_cast<TypeParam const*>(nullptr)), this->Std(""));
}

TYPED_TEST(XString, TextsInsideTheStringItselfAreSafeOperands) {
    using String = typename TestFixture::Text;
    for (int length : {1, 7, 8, 63, 200}) { // some fit the buffer, some make it move
        SCOPED_TRACE(length);
        std::basic_string<TypeParam> model;
        for (int i = 0; i < length; ++i)
            model += static_cast<TypeParam>('a' + i % 26);
        String text(model.c_str());
        EXPECT_EQ(Whole(text += text), model + model);
        EXPECT_EQ(Whole(text += text.GetAtPtr(length)), model + model + model);
        EXPECT_EQ(Whole(text = text.GetAtPtr(length)), model + model);
        text.Insert(length, text);
        EXPECT_EQ(Whole(text), model + model + model + model);
        text.Replace(text.GetAtPtr(3 * length), this->S("xy"));
        EXPECT_EQ(Whole(text), this->Std("xyxyxyxy"));
        text.Remove(text.GetAtPtr(6));
        EXPECT_TRUE(text.IsEmpty());
        text.Format(this->S("%s%s"), model.c_str(), this->S("."));
        text.Format(this->S("<%s>"), text.GetConstBuffer());
        EXPECT_EQ(Whole(text), this->Std("<") + model + this->Std(".>"));
    }
}

TYPED_TEST(XString, ComparesUnsignedAndUpToTheFirstZero) {
    using String = typename TestFixture::Text;
    TypeParam const high[] = {static_cast<TypeParam>(~0), 0};
    String text(this->S("b"));
    EXPECT_TRUE(text > this->S("a") && text >= this->S("b") && text < high && text <= String(high));
    EXPECT_TRUE(text != this->S("B") && text.CompareNoCase(this->S("B")) == 0);
    EXPECT_LT(String(this->S("_")).CompareNoCase(this->S("A")), 0); // letters are lowered, and _ stands before them
    EXPECT_LT(text.Collate(this->S("c")), 0);
    EXPECT_EQ(text.CollateNoCase(this->S("B")), 0);
    String zero(this->S("b?x"));
    zero.SetAt(1, 0);
    EXPECT_EQ(zero, text);

    for (String const& left : {String(), text}) {
        TypeParam const* const null = nullptr;
        int const expected = left.IsEmpty() ? 0 : 1;
        EXPECT_EQ(left.Compare(null), expected);
        EXPECT_EQ(left.CompareNoCase(null), expected);
        EXPECT_EQ(left.Collate(null), expected);
        EXPECT_EQ(left.CollateNoCase(null), expected);
    }
}

TYPED_TEST(XString, FindsOneOfASetInTheSetsOrder) {
    typename TestFixture::Text const text(this->S("abc"));
    EXPECT_EQ(text.FindOneOf(this->S("cb")), 2);
    EXPECT_EQ(text.FindOneOf(this->S("xyz")), -1);
    EXPECT_EQ(text.FindOneOf(nullptr), -1);
    EXPECT_EQ(text.Find(static_cast<TypeParam const*>(nullptr)), -1);
}

// The search written as it is told: one character at a time.
template <class T>
int PlainFind(std::basic_string<T> const& text, std::basic_string<T> const& part, std::size_t at, bool noCase) {
    auto const same = [noCase](T left, T right) { return noCase ? xToLower(left) == xToLower(right) : left == right; };
    while (at < text.size()) {
        std::size_t matched = 0;
        while (matched < part.size() && at + matched < text.size() && same(text[at + matched], part[matched]))
            ++matched;
        if (matched == part.size())
            return static_cast<int>(at);
        at += std::max<std::size_t>(matched, 1);
    }
    return -1;
}

TYPED_TEST(XString, BlockwiseSearchAgreesWithThePlainOne) {
    unsigned const seed = 20240229;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    // Either case, the neighbours of letters, and characters beyond ASCII that share their low bits.
    TypeParam const alphabet[] = {
        'a', 'A', 'b', 'B', '@', '`', static_cast<TypeParam>(0xE1), static_cast<TypeParam>(0xFF61)};
    auto const draw = [&](std::size_t length, std::size_t letters) {
        std::basic_string<TypeParam> text;
        while (text.size() < length)
            text += alphabet[random() % letters];
        return text;
    };
    for (int round = 0; round < 20000; ++round) {
        std::size_t const letters = 2 + random() % 7;
        auto const text = draw(random() % 80, letters);
        auto const part = draw(1 + random() % 5, letters);
        std::size_t const start = random() % 8;
        bool const noCase = random() % 2;
        CXTString<TypeParam> const string(text.c_str());
        int const found = PlainFind(text, part, start, noCase);
        ASSERT_EQ(string.Find(part.c_str(), static_cast<int>(start), noCase), found)
            << testing::PrintToString(string) << " round " << round;
        int const end = string.FindEndPos(part.c_str(), static_cast<int>(start), noCase);
        ASSERT_EQ(end, found < 0 ? -1 : found + static_cast<int>(part.size()));
        if (start < text.size()) { // the other way round it is the same search in the mirror
            int const mirrored =
                PlainFind<TypeParam>({text.rbegin(), text.rend()}, {part.rbegin(), part.rend()}, start, false);
            int const size = static_cast<int>(text.size());
            ASSERT_EQ(string.ReverseFind(part.c_str(), size - 1 - static_cast<int>(start)),
                      mirrored < 0 ? -1 : size - mirrored - static_cast<int>(part.size()));
        }
        ASSERT_EQ(string.ReverseFind(part[0]), static_cast<int>(text.rfind(part[0])));
        ASSERT_EQ(string.Find(part[0], static_cast<int>(start)), static_cast<int>(text.find(part[0], start)));
    }
}

TYPED_TEST(XString, RemovesAndReplaces) {
    typename TestFixture::Text text(this->S("aBcAbC"));
    EXPECT_EQ(text.Remove(this->S("bC"), true), 2);
    EXPECT_EQ(text.Remove(TypeParam('a')), 1);
    EXPECT_EQ(text, this->S("A"));
    EXPECT_EQ(text.Replace(this->S("A"), nullptr), 0);
    text = this->S("aaaa");
    EXPECT_EQ(text.Replace(this->S("a"), this->S("bbb"), -1, 4), 2); // the third would start at 6, beyond 4
    EXPECT_EQ(text, this->S("bbbbbbaa"));
    int position = 0;
    EXPECT_TRUE(text.Tokenize(nullptr, position).IsEmpty() && position == -1);
    EXPECT_EQ(text.SpanExcluding(nullptr), this->S(""));

    // One character is counted from the start on, but taken from the head on.
    text = this->S("aaaa");
    EXPECT_EQ(text.Replace(TypeParam('a'), TypeParam('b'), -1, -1, 3), 1);
    EXPECT_EQ(text, this->S("baaa"));
    EXPECT_EQ(text.Replace(TypeParam('a'), TypeParam('c'), 5, 3), 2);
    EXPECT_EQ(text, this->S("bcca"));
}

// An embedded zero ends the appended text, and no character in the terminator's place is taken for the text's own.
TYPED_TEST(XString, AppendsFormattedTextAndScansReversedText) {
    typename TestFixture::Text text(this->S("a"));
    text.AppendFormat(this->S("%s;b%cc"), text.GetConstBuffer(), 0);
    EXPECT_EQ(Whole(text), this->Std("aa;b"));
    for (int const width : {255, 256, 300}) { // around the room of the first pass
        text.Format(this->S("%*d"), width, 1);
        EXPECT_EQ(Whole(text), std::basic_string<TypeParam>(static_cast<std::size_t>(width) - 1, ' ') + TypeParam('1'));
    }
    int number = 0;
    EXPECT_EQ(typename TestFixture::Text(this->S("312")).MakeReverse().ScanS(1, this->S("%d"), &number), 1);
    EXPECT_EQ(number, 21);
}

TYPED_TEST(XString, SafeCopyRefusesWhatDoesNotFit) {
    TypeParam const source[] = {'a', 'b', 'c'};
    TypeParam target[] = {'x', 'y', 'z'};
    errno = 0;
    EXPECT_EQ(detail::CopySafe(target, 3, source, 3), 0);
    EXPECT_EQ(errno, 0);
    EXPECT_EQ(detail::CopySafe(target, 2, source, 3), ERANGE);
    EXPECT_EQ(std::basic_string<TypeParam>(target, 3), this->Std({"\0\0c", 3}));
    EXPECT_EQ(detail::CopySafe(target, 3, static_cast<TypeParam const*>(nullptr), 1), EINVAL);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(target[2], TypeParam(0));
}

// GetLength of such a text is negative. Only the pages that are written or asked for take memory.
TEST(XStringLimits, TextsBeyondAnIntAreCutByTheirStoredLength) {
    std::size_t const last = std::size_t(INT32_MAX) + 2;
    CXTString<char> text;
    text.SetLength(last + 1);
    std::memcpy(text.GetText(), "a,b,", 4);
    std::memcpy(text.GetText() + INT32_MAX, "xyz", 3);
    EXPECT_EQ(text.Left(3), "a,b");
    EXPECT_EQ(text.Mid(2, 1), "b");
    EXPECT_EQ(text.Mid(INT32_MAX), "xyz");
    EXPECT_EQ(text.Right(2), "yz");
    int position = 0;
    EXPECT_EQ(text.Tokenize(",", position), "a");
    EXPECT_EQ(text.Tokenize(",", position), "b");
    EXPECT_EQ(position, 4);
    EXPECT_EQ(text.Find("xy", INT32_MAX), INT32_MAX);
    EXPECT_EQ(text.FindEndPos("xy", INT32_MAX), -1); // no int tells the place
    EXPECT_EQ(text.Find('z', INT32_MAX), -1);
}

TEST(XStringWidths, WideCaseAndBlanksReachBeyondAscii) {
    CXTString<char16_t> text(u"\u00C9t\u00E9");
    EXPECT_EQ(text.MakeUpper(), u"\u00C9T\u00E9"); // the C locale knows ASCII
    std::string const before = std::setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    EXPECT_EQ(text.MakeLower(), u"\u00E9t\u00E9");
    EXPECT_EQ(text.Find(u"\u00C9T", 0, true), 0);
    EXPECT_EQ(CXTString<char16_t>(u"0123456789abcdef\u212Ag").Find(u"kg", 0, true), 16); // KELVIN SIGN is a k
    std::setlocale(LC_CTYPE, before.c_str());
    EXPECT_EQ(CXTString<char16_t>(u"\u00A0\u3000a\u2028").Trim(), u"a");
    EXPECT_EQ(CXTString<char16_t>(u"a\u0161b\u0261").SpanExcluding(u"\u0161"), u"ab\u0261"); // not by the low byte
}

} // namespace
