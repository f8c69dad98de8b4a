// SPDX-License-Identifier: MIT
#include "zeltools/persistence/stdio_file_ex.h"

#include "tests/persistence/file_kinds.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/foundation/string_conversion.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>

using support::NextLine;
using support::OpenDescriptors;
using support::Thrown;

namespace {

constexpr unsigned int Read = XFILE_OPEN_READ | XFILE_TYPE_TEXT | XFILE_SHARE_DENY_NONE;
constexpr unsigned int WideOutput = XFILE_OPEN_CREATE | XFILE_OPEN_WRITE | XFILE_TYPE_TEXT | XFILE_TYPE_WIDE;
std::string const Utf8Mark = "\xEF\xBB\xBF";
std::string const Utf16Mark = "\xFF\xFE";

std::string Utf16(std::u16string_view text) {
    return {reinterpret_cast<char const*>(text.data()), text.size() * 2};
}

class CStdioFileExTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::u16string path = folder.Path(std::string_view("file"));
    CStdioFileEx file;

    void OpenWith(std::string const& content, unsigned int flags = 0) {
        folder.Write("file", content);
        ASSERT_TRUE(file.Open(path.c_str(), Read | flags, nullptr));
    }
    std::u16string Lines() {
        std::u16string text;
        CXTString<char16_t> line;
        while (file.ReadString(line))
            (text += line) += u'|';
        return text;
    }
};

TEST_F(CStdioFileExTest, ReadsLinesInEveryEncoding) {
    struct {
        char const* name;
        std::string content;
        unsigned int flags;
        std::u16string lines;
        unsigned long long characters;
        int kind; // 8: UTF-8, 16: UTF-16
    } const rows[] = {
        {"plain", "one\ntwo", 0, u"one|two|", 7, 0},
        {"windows", "one\r\n\r\ntwo\r\n", 0, u"one||two|", 12, 0},
        {"marked UTF-8", Utf8Mark + "\xC3\xA9\n\xF0\x9F\x98\x80", 0, u"\xE9|\xD83D\xDE00|", 10, 8},
        {"UTF-8 by flag", "\xC3\xA9\xFF", XFILE_TYPE_UTF8, u"\xE9\xFFFD|", 3, 8},
        {"UTF-16", Utf16Mark + Utf16(u"\xE9t\xE9\r\n\x0A0A\x0A00\r\nend"), 0, u"\xE9t\xE9|\x0A0A\x0A00|end|", 12, 16},
        {"UTF-16 of odd length", Utf16Mark + Utf16(u"a\nb") + "c", 0, u"a|b|", 3, 16},
        {"only a mark", Utf16Mark, 0, u"", 0, 16},
        {"big-endian is narrow", std::string("\xFE\xFF\0a", 4), 0, u"\xFFFD\xFFFD|", 4, 0},
        {"half a mark", "\xEF\xBB", 0, u"\xFFFD|", 2, 0},
        {"a zero ends a line's text", std::string("a\0b\nc", 5), 0, u"a|c|", 5, 0},
        {"empty", "", 0, u"", 0, 0},
        {"CR lines", "a\rb\rc", 0, u"a|b|b|", 5, 0}, // what follows the last one is lost, and the line stays
        {"CR lines, the last ended", "a\rb\r", 0, u"a|b|", 4, 0},
        {"CR lines of UTF-16", Utf16Mark + Utf16(u"a\r\rb\r"), 0, u"a||b|", 5, 16},
        {"a CR behind a zero", std::string("a\0\rb\nc\rd\n", 9), 0, u"a|c\rd|", 9, 0},
        {"CR at an end only", "a\r", 0, u"a|", 2, 0},
        {"LF CR", Utf16Mark + Utf16(u"x\n\ry"), 0, u"x|\ry|", 4, 16},
    };
    for (auto const& row : rows) {
        OpenWith(row.content, row.flags);
        EXPECT_EQ(Lines(), row.lines) << row.name;
        EXPECT_EQ(file.GetCharCount(), row.characters) << row.name;
        EXPECT_EQ(file.IsFileUTF8(), row.kind == 8) << row.name;
        EXPECT_EQ(file.IsFileUnicodeText(), row.kind == 16) << row.name;
        EXPECT_EQ(file.Seek(0, CXFile::begin), 0U);
        EXPECT_EQ(Lines(), row.lines) << row.name << ", once more";
    }
}

// Lines of every length, with everything that leaves the fast way at every place, against a conversion of each line.
TEST_F(CStdioFileExTest, DecodesAsAConversionOfTheWholeLine) {
    std::mt19937 random(3);
    char const* const pieces[] = {"\xC3\xA9",     "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xFF", "\xC3", "\xC0\x80",
                                  "\xED\xA0\x80", "\xE0\x80\x80", "\xE2\x82",         "\r",   "\t",   "\xEF\xBF\xBD",
                                  "\x7F"};
    std::string narrow = Utf8Mark + "first line without CR\n";
    std::u16string wide = u"\xFEFF"
                          u"first line without CR\n";
    std::u16string expected = u"first line without CR|";
    for (int count = 0; count < 3000; ++count) {
        std::string line(random() % 90, 'a');
        for (auto special = random() % 4; special > 0; --special) {
            line.insert(random() % (line.size() + 1), pieces[random() % std::size(pieces)]);
            line.append(random() % 100, 'z');
        }
        line += '.'; // no CR at the end, which would be part of it
        CXTString<char16_t> converted;
        XFASTCA2W(converted, line.c_str(), xEncodingUtf8);
        narrow += line + '\n';
        (wide += converted) += u'\n';
        (expected += converted) += u'|';
    }
    for (std::string const& content : {narrow, Utf16(wide)}) {
        OpenWith(content);
        EXPECT_TRUE(Lines() == expected);
    }
}

TEST_F(CStdioFileExTest, SkipsLinesAndKeepsItsPlaceBesideOtherReading) {
    OpenWith(Utf8Mark + "one\r\ntwo\r\nthree\r\nfour\r\nfive\r\n");
    file.SkipLines(1, 1);
    EXPECT_EQ(file.GetPosition(), 8U);
    EXPECT_EQ(std::fgetc(file.GetStream()), 't'); // by the host
    char bytes[3]{};
    EXPECT_EQ(file.Read(bytes, 1), 1U);
    EXPECT_EQ(NextLine(file), u"o");
    file.SkipLines(3, 0);
    EXPECT_EQ(NextLine(file), u"four");
    file.Seek(3, CXFile::begin); // behind the mark
    EXPECT_EQ(NextLine(file), u"one");
    file.SkipLines(0xFFFFFFFF, 1);
    CXTString<char16_t> line(u"before");
    EXPECT_FALSE(file.ReadString(line));
    EXPECT_EQ(line, u"");
}

TEST_F(CStdioFileExTest, WritesTextAsItIsStored) {
    struct {
        unsigned int flags;
        int codePage;
        std::string before, stored;
    } const rows[] = {
        {WideOutput, -1, "x", Utf16Mark + Utf16(u"\xE9\n\xE9\r\n")},
        {WideOutput | XFILE_OPEN_NO_TRUNCATE, -1, "", Utf16Mark + Utf16(u"\xE9\n\xE9\r\n")},
        {WideOutput | XFILE_OPEN_NO_TRUNCATE, -1, "old!", "old!" + Utf16(u"\xE9\n\xE9\r\n")},
        {XFILE_OPEN_READWRITE | XFILE_OPEN_CREATE | XFILE_OPEN_NO_TRUNCATE | XFILE_TYPE_WIDE, -1, "old!",
         "old!" + Utf16(u"\xE9\n\xE9\r\n")},
        {XFILE_OPEN_CREATE | XFILE_OPEN_WRITE | XFILE_TYPE_TEXT, -1, "x", "\xC3\xA9\r\n\xC3\xA9\r\r\n"},
        {XFILE_OPEN_CREATE | XFILE_OPEN_WRITE | XFILE_TYPE_BINARY, 1252, "x", "\xE9\n\xE9\r\n"},
        {XFILE_OPEN_WRITE | XFILE_TYPE_TEXT | XFILE_TYPE_UTF8, -1, "x", "x\xC3\xA9\r\n\xC3\xA9\r\r\n"},
    };
    for (auto const& row : rows) {
        folder.Write("file", row.before);
        ASSERT_TRUE(file.Open(path.c_str(), row.flags, nullptr));
        file.SetCodePage(static_cast<xStringEncoding>(row.codePage));
        file.WriteString(u"\xE9\n");
        file.WriteString(nullptr);
        file.WriteString(u"");
        file.WriteString(u"\xE9\r\n");
        file.Close();
        EXPECT_EQ(folder.Read("file"), row.stored) << row.flags;
    }
    CStdioFileEx constructed(path.c_str(), XFILE_OPEN_CREATE | XFILE_OPEN_WRITE | XFILE_TYPE_TEXT | XFILE_TYPE_UTF8);
    EXPECT_FALSE(constructed.IsFileUTF8()); // detection belongs to Open
    constructed.SetCodePage(static_cast<xStringEncoding>(65001));
    EXPECT_TRUE(constructed.IsFileUTF8());
}

TEST_F(CStdioFileExTest, ReadsACodePage) {
    OpenWith("\xE9t\xE9\n\x80");
    file.SetCodePage(static_cast<xStringEncoding>(1252));
    EXPECT_EQ(Lines(), u"\xE9t\xE9|\x20AC|");
    file.SeekToBegin();
    file.SetCodePage(static_cast<xStringEncoding>(4'000'000)); // there is none
    EXPECT_EQ(Lines(), u"||");
}

TEST_F(CStdioFileExTest, ScansOverLineEndsAndLeavesTheRest) {
    for (bool const isWide : {false, true}) {
        std::u16string const text = u"12\n\n\n 34 \xE9t\xE9 rest of it\nnext\n7";
        OpenWith(isWide ? Utf16Mark + Utf16(text) : Utf8Mark + "12\n\n\n 34 \xC3\xA9t\xC3\xA9 rest of it\nnext\n7");
        int first = 0;
        int second = 0;
        char16_t word[8]{};
        EXPECT_EQ(file.FScanfS(u"%d %d %s", &first, &second, word, 8U), 3);
        EXPECT_EQ(first + second, 46);
        EXPECT_EQ(std::u16string(word), u"\xE9t\xE9");
        EXPECT_EQ(NextLine(file), u" rest of it");
        EXPECT_EQ(file.FScanfS(u"%d", &first), 0); // "next" stays
        EXPECT_EQ(NextLine(file), u"next");
        EXPECT_EQ(file.FScanfS(u"%d", &first), 1);
        EXPECT_EQ(first, 7);
        EXPECT_EQ(file.FScanfS(u"%d", &first), -1);
        EXPECT_EQ(file.FScanfS(nullptr), -1);
    }
    OpenWith("1 2\r3 4\r5");
    int a = 0;
    int b = 0;
    EXPECT_EQ(NextLine(file), u"1 2");
    EXPECT_EQ(file.FScanfS(u"%d x", &a), 1); // did not get through, so the place stays
    EXPECT_EQ(file.FScanfS(u"%d %d", &a, &b), 2);
    EXPECT_EQ(a * 10 + b, 34);
    EXPECT_EQ(NextLine(file), u"");
    OpenWith(std::string(1'000'000, '\n') + "5"); // blank lines are one step
    EXPECT_EQ(file.FScanfS(u"%d", &a), 1);
    EXPECT_EQ(a, 5);

    for (std::size_t before = 100; before < 140; ++before) { // a number at every place of a long line
        OpenWith(std::string(before, 'a') + "-1.5e-3infinity" + std::string(1000, ' ') + "7");
        double number = 0;
        double endless = 0;
        EXPECT_EQ(file.FScanfS(u"%*[a]%lf%lf%d", &number, &endless, &a), 3);
        EXPECT_TRUE(number == -1.5e-3 && endless > 1e308 && a == 7) << before;
    }
    std::string numbers;
    for (int i = 0; i < 20'000; ++i)
        numbers += "10 ";
    OpenWith(numbers); // each scan looks only at its own
    for (b = 0; file.FScanfS(u"%d", &a) == 1; b += a) {
    }
    EXPECT_EQ(b, 200'000);
}

TEST_F(CStdioFileExTest, OpensWhatCannotBeSoughtAndLeaksNothing) {
    std::ptrdiff_t const before = OpenDescriptors();
    {
        ASSERT_EQ(mkfifo((folder.Native() + "pipe").c_str(), 0600), 0);
        CXFile writer(folder.Path(std::string_view("pipe")).c_str(), XFILE_OPEN_READWRITE);
        writer.Write("one\r\ntwo\r\n", 10);
        // Neither the detection nor the look at the first line may take anything.
        ASSERT_TRUE(file.Open(folder.Path(std::string_view("pipe")).c_str(), Read, nullptr));
        CXTString<char16_t> line;
        EXPECT_EQ(NextLine(file), u"one");

        CXFileException failure;
        EXPECT_FALSE(file.Open(folder.Path().c_str(), Read, &failure));
        EXPECT_EQ(failure.cause, CXFileException::accessDenied);
        EXPECT_FALSE(file.Open(nullptr, Read, &failure));
        ASSERT_TRUE(file.Open(u"\\proc\\self\\mem", Read, nullptr));
        EXPECT_EQ(Thrown([&] { file.ReadString(line); }), "argument"); // the stream has met EIO
        file.Abort();
        EXPECT_EQ(Thrown([&] { EXPECT_FALSE(file.ReadString(line)); }), "cause 6");
        bool hasBom = true;
        EXPECT_EQ(CStdioFileEx::GetFileEncoding(u"\\none", hasBom), xEncodingDefault);
        EXPECT_FALSE(hasBom);
        CXFile const exclusive(folder.Path(std::string_view("x")).c_str(), XFILE_OPEN_CREATE | XFILE_OPEN_WRITE);
        EXPECT_FALSE(file.Open(folder.Path(std::string_view("x")).c_str(), Read, &failure));
        EXPECT_EQ(failure.cause, CXFileException::sharingViolation);
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

} // namespace
