// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xstdio_file.h"

#include "tests/persistence/file_kinds.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"

#include <array>
#include <climits>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

using support::NextLine;
using support::OpenDescriptors;
using support::Thrown;

namespace {

constexpr unsigned int Text = XFILE_TYPE_TEXT;
constexpr unsigned int WideText = XFILE_TYPE_TEXT | XFILE_TYPE_WIDE;
constexpr unsigned int Create = XFILE_OPEN_CREATE | XFILE_OPEN_WRITE;
constexpr unsigned int Update = XFILE_OPEN_READWRITE | Text;

class StdioFile : public testing::Test {
protected:
    TemporaryFolder folder;
    std::u16string path = folder.Path(std::string_view("file"));

    /// Each character of a text as a little-endian unit.
    static std::string Units(std::string_view text) {
        std::string bytes;
        for (char const c : text)
            (bytes += c) += '\0';
        return bytes;
    }
};
using CXStdioFileTest = StdioFile;

TEST_F(CXStdioFileTest, ModesDecideWhereAndWhetherToWrite) {
    struct {
        unsigned int flags;
        std::string content; // of a file "old" after "new" was written
        bool writes;
    } const rows[] = {{Create | Text, "new", true},
                      {XFILE_OPEN_CREATE | XFILE_OPEN_READWRITE, "new", true},
                      {Create | XFILE_OPEN_NO_TRUNCATE, "oldnew", true},
                      {XFILE_OPEN_CREATE | XFILE_OPEN_READWRITE | XFILE_OPEN_NO_TRUNCATE, "oldnew", true},
                      {XFILE_OPEN_WRITE, "oldnew", true},
                      {XFILE_OPEN_READWRITE, "new", true},
                      {XFILE_OPEN_READ, "old", false}};
    for (auto const& row : rows) {
        folder.Write("file", "old");
        std::string const thrown = Thrown([&] {
            CXStdioFile file(path.c_str(), row.flags);
            file.WriteString(u"new");
            file.Close();
        });
        EXPECT_EQ(thrown, row.writes ? "nothing" : "argument") << row.flags;
        EXPECT_EQ(folder.Read("file"), row.content) << row.flags;
    }
    CXStdioFile both(path.c_str(), XFILE_OPEN_CREATE | XFILE_OPEN_READWRITE | XFILE_OPEN_NO_TRUNCATE);
    EXPECT_EQ(NextLine(both), u"old"); // from the begin
}

TEST_F(CXStdioFileTest, LinesOfEveryLengthAsTheyAreStored) {
    std::string text;
    std::string windows;
    for (std::size_t const length : {16'383U, 0U, 255U, 256U, 65'530U, 65'535U, 65'536U, 65'537U, 300'000U, 1U}) {
        std::string const line(length, static_cast<char>('a' + length % 26));
        text += line + '\n';
        windows += line + "\r\n";
    }
    struct {
        unsigned int flags;
        std::string stored;
    } const rows[] = {{Text, windows}, {WideText, Units(windows)}, {XFILE_TYPE_BINARY, Units(text)}};
    for (auto const& row : rows) {
        CXStdioFile file(path.c_str(), Create | row.flags);
        file.WriteString(std::u16string(text.begin(), text.end()).c_str());
        EXPECT_EQ(file.GetLength(), row.stored.size());
        file.Close();
        EXPECT_TRUE(folder.Read("file") == row.stored);
        bool const isOdd = row.flags == WideText;              // half a unit at the end is an empty line
        bool const isShifted = row.flags == XFILE_TYPE_BINARY; // units lie across the stream's blocks, newlines too
        folder.Write("file", (isShifted ? "!" : "") + row.stored + (isOdd ? "!" : ""));
        EXPECT_TRUE(file.Open(path.c_str(), row.flags, nullptr));
        char mark = 0;
        EXPECT_EQ(file.Read(&mark, isShifted ? 1 : 0), isShifted ? 1U : 0U);
        std::string joined;
        for (std::u16string line; (line = NextLine(file)) != u"<none>";)
            joined.append(line.begin(), line.end()) += '\n';
        EXPECT_TRUE(joined == (isOdd ? text + '\n' : text)) << row.flags;
    }
}

// The stream's own reading, seeking and telling against a model of the translation, over blocks of every alignment.
TEST_F(CXStdioFileTest, EveryPlaceOfALargeTranslatedFile) {
    std::mt19937 random(11);
    for (bool const isWide : {false, true}) {
        std::size_t const unit = isWide ? 2 : 1;
        std::string text;
        while (text.size() < 200'000)
            text += std::string(random() % 5, 'x') + "\r\r\n\n"[random() % 4] + (random() % 3 == 0 ? "\r\n" : "");
        folder.Write("file", isWide ? Units(text) : text);
        CXStdioFile file(path.c_str(), isWide ? WideText : Text);
        std::vector<std::pair<char, std::size_t>> model; // characters of the stream, and where the file has them
        for (std::size_t at = 0; at < text.size(); ++at) {
            std::size_t const place = at * unit;
            at += text.compare(at, 2, "\r\n") == 0 ? 1 : 0;
            model.emplace_back(text[at], place);
        }
        std::size_t at = 0;
        for (int step = 0; step < 400; ++step) {
            if (random() % 4 == 0) {
                at = random() % model.size();
                ASSERT_EQ(file.Seek(static_cast<long long>(model[at].second), CXFile::begin), model[at].second);
            }
            std::string bytes(std::min<std::size_t>(random() % 3000, model.size() - at) * unit, '?');
            ASSERT_EQ(file.Read(bytes.data(), bytes.size()), bytes.size());
            for (std::size_t i = 0; i < bytes.size(); i += unit)
                ASSERT_EQ(bytes[i], model[at++].first) << at;
            ASSERT_EQ(file.GetPosition(), at == model.size() ? text.size() * unit : model[at].second);
            ASSERT_EQ(std::ftell(file.GetStream()), static_cast<long>(file.GetPosition())); // the host asks the same
        }
        std::rewind(file.GetStream());
        char first = 0;
        EXPECT_TRUE(file.Read(&first, 1) == 1 && first == model[0].first);
    }
}

TEST_F(CXStdioFileTest, ReadingAndWritingMayAlternate) {
    folder.Write("file", "first\r\nsecond\r\nthird\r\n");
    CXStdioFile file(path.c_str(), Update);
    EXPECT_EQ(NextLine(file), u"first");
    file.WriteString(u"SEC"); // at the place that was read to
    EXPECT_EQ(NextLine(file), u"ond");
    EXPECT_EQ(NextLine(file), u"third");
    file.WriteString(u"end\n");
    EXPECT_EQ(file.GetPosition(), 27U); // with the CR that is still to be written
    EXPECT_TRUE(file.SetLength(26));
    file.Seek(-5, CXFile::current);
    char tail[8]{};
    EXPECT_EQ(file.Read(tail, 7), 5U);
    EXPECT_STREQ(tail, "\nend\r"); // the length has cut a line's end apart
    file.Close();
    EXPECT_EQ(folder.Read("file"), "first\r\nSECond\r\nthird\r\nend\r");
}

TEST_F(CXStdioFileTest, BoundedLinesKeepCharactersWhole) {
    folder.Write("file", "a\xF0\x9F\x98\x80\xC3\xA9\xE2\x82 b\n\xFFz");
    CXStdioFile file(path.c_str(), Text);
    char16_t units[4];
    std::u16string text;
    while (file.ReadString(units, 3))
        (text += units) += u'|';
    EXPECT_EQ(text, u"a|\xD83D\xDE00|\xE9\xFFFD| b|\n|\xFFFDz|");
    EXPECT_EQ(file.ReadString(nullptr, 3), nullptr);
    EXPECT_EQ(file.ReadString(units, 0), nullptr);
}

TEST_F(CXStdioFileTest, FailuresAsTheyAreTold) {
    folder.Write("file", "text");
    for (bool const throws : {true, false}) {
        auto const expected = [&](char const* name) { return std::string(throws ? name : "nothing"); };
        CXStdioFile file(throws);
        char byte = 0;
        EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.Read(&byte, 1), 0U); }), expected("cause 6")); // EBADF of a closed file
        EXPECT_EQ(Thrown([&] { file.WriteString(u"x"); }), expected("cause 6"));
        EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.GetPosition(), CXFile::BadPosition); }), expected("cause 6"));
        EXPECT_EQ(file.Read(nullptr, 0), 0U);
        ASSERT_TRUE(file.Open(path.c_str(), Text, nullptr));
        EXPECT_EQ(Thrown([&] { file.Read(nullptr, 1); }), expected("argument"));
        EXPECT_EQ(Thrown([&] { file.Write(nullptr, 1); }), expected("argument"));
        EXPECT_EQ(Thrown([&] { file.Seek(INT_MAX + 1LL, CXFile::begin); }), expected("cause 9"));
        EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.Seek(INT_MIN - 1LL, CXFile::current), 0U); }), expected("cause 9"));
        EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.Seek(-1, CXFile::begin), 0U); }), expected("cause 10")); // EINVAL

        ASSERT_TRUE(file.Open(u"\\dev\\full", XFILE_OPEN_WRITE, nullptr));
        file.WriteString(u"x");
        EXPECT_EQ(Thrown([&] { file.Flush(); }), expected("argument")); // the stream has met an error
        file.Abort();
        ASSERT_TRUE(file.Open(u"\\dev\\full", XFILE_OPEN_WRITE, nullptr));
        file.WriteString(u"x");
        EXPECT_EQ(Thrown([&] { file.Close(); }), expected("cause 13"));
        EXPECT_EQ(file.GetStream(), nullptr);
    }
    EXPECT_EQ(Thrown([] { CXStdioFile(static_cast<char16_t const*>(nullptr), 0); }), "cause 3");
    EXPECT_EQ(Thrown([] { CXStdioFile(static_cast<char16_t const*>(nullptr), XFILE_OPEN_OPTIONAL_PATH); }), "nothing");
    EXPECT_EQ(Thrown([&] { CXStdioFile(folder.Path().c_str(), 0); }), "cause 5");
    EXPECT_EQ(Thrown([] { CXStdioFile(static_cast<FILE*>(nullptr), true); }), "argument");
}

TEST_F(CXStdioFileTest, StreamsOfTheHostAndDescriptors) {
    folder.Write("file", "by the host\nnext");
    std::ptrdiff_t const before = OpenDescriptors();
    FILE* const host = std::fopen((folder.Native() + "file").c_str(), "r");
    {
        CXStdioFile file(host, true);
        EXPECT_NE(file.GetHandle(), nullptr);
        EXPECT_EQ(NextLine(file), u"by the host");
        EXPECT_EQ(file.GetPosition(), 12U);
    }
    EXPECT_EQ(std::fgetc(host), 'n'); // the destructor left it open
    CXStdioFile(host, true).Close();
    EXPECT_EQ(OpenDescriptors(), before);

    ASSERT_EQ(mkfifo((folder.Native() + "pipe").c_str(), 0600), 0);
    CXStdioFile pipe(folder.Path(std::string_view("pipe")).c_str(), Update); // both ends, so that nothing blocks
    pipe.Write("line\r\nrest", 10);
    pipe.Flush();
    EXPECT_EQ(Thrown([&] { pipe.GetPosition(); }), "cause 1"); // ESPIPE has no cause of its own
}

} // namespace
