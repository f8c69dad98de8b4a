// SPDX-License-Identifier: MIT
// The file of parsers, on the disk and through memory: both must do the same.

#include "zeltools/files/io_file.h"

#include "tests/support/noting_desktop.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thrown.h"
#include "zeltools/files/reverse_buffer.h"
#include "zeltools/persistence/stdio_file_ex.h"
#include "zeltools/persistence/xfile_find.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using support::Thrown;
using Wide = CXTString<char16_t>;

class IoFileModes : public testing::TestWithParam<unsigned int> {
protected:
    Wide Path(char const* name = "a.bin") const { return folder.Path(name).c_str(); }

    TemporaryFolder folder;
};

std::string ModeName(testing::TestParamInfo<unsigned int> const& info) {
    return std::string(info.param & IoFileMemory ? "Memory" : "Disk") + (info.param & IoFileThrow ? "Throwing" : "");
}
INSTANTIATE_TEST_SUITE_P(Modes, IoFileModes, testing::Values(0u, IoFileMemory, IoFileThrow, IoFileMemory | IoFileThrow),
                         ModeName);

TEST_P(IoFileModes, ReadsWholeReversedAndShort) {
    folder.Write("a.bin", std::string("\1\2\3\4\5\6\7\x08\x09", 9));
    IoFile file(true, GetParam());
    ASSERT_TRUE(file.OpenFile(Path(), true, nullptr));
    EXPECT_FALSE(file.IsWriting());
    EXPECT_EQ(file.FileGetLength(), 9u);
    unsigned char bytes[8] = {};
    EXPECT_TRUE(file.FileRead(bytes, 2));
    EXPECT_THAT(bytes, testing::ElementsAre(1, 2, 0, 0, 0, 0, 0, 0));
    EXPECT_TRUE(file.FileReverseRead(bytes, 3)); // the middle one stays
    EXPECT_THAT(bytes, testing::ElementsAre(5, 4, 3, 0, 0, 0, 0, 0));
    EXPECT_TRUE(file.FileSeek(-4, CXFile::current));
    EXPECT_TRUE(file.FileReverseRead(bytes, 2, 4));
    EXPECT_THAT(bytes, testing::ElementsAre(5, 4, 3, 2, 9, 8, 7, 6));
    EXPECT_EQ(file.FileGetPosition(), 9u);

    EXPECT_TRUE(file.FileSeek(6, CXFile::begin));
    bool const throws = (GetParam() & IoFileThrow) != 0;
    auto const shortCause = throws ? "cause " + std::to_string(CXFileException::endOfFile) : "nothing";
    EXPECT_EQ(Thrown([&] { EXPECT_FALSE(file.FileReverseRead(bytes, 4)); }), shortCause);
    EXPECT_THAT(bytes, testing::ElementsAre(7, 8, 9, 2, 9, 8, 7, 6)); // in the file's order
    EXPECT_TRUE(file.FileSeek(-1, CXFile::end));
    EXPECT_EQ(file.FileBufferRead(bytes, 8), 1u);
    EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.FileBufferRead(bytes, 8), 0u); }), shortCause);
    EXPECT_EQ(Thrown([&] { EXPECT_FALSE(file.FileRead(bytes, 1)); }), shortCause);
    EXPECT_EQ(Thrown([&] { EXPECT_FALSE(file.FileReverseRead(bytes, 0xFFFFFFFF, 0xFFFFFFFF)); }) != "nothing",
              throws); // no wrap to a small number of bytes
    if (!throws) {
        EXPECT_FALSE(file.FileSeek(-1, CXFile::begin));
    }
    file.CloseFile(false);
    EXPECT_EQ(file.GetCFile(), nullptr);
    EXPECT_EQ(file.GetFileName(), Path()); // for messages
}

TEST_P(IoFileModes, WritesNumbersAndReversedItems) {
    IoFile file(true, GetParam());
    ASSERT_TRUE(file.OpenFile(Path(), false, nullptr));
    file.WriteInt(-2);
    file.WriteUShort(0x0102);
    file.WriteUChar(9);
    file.WriteFloat(1.0f);
    unsigned char block[] = {1, 2, 3, 4, 5, 6};
    file.FileReverseWrite(block, 3);
    file.FileReverseWrite(block, 2, 3);
    EXPECT_THAT(block, testing::ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(file.FileGetLength(), 20u);
    EXPECT_TRUE(file.FileSeek(4, CXFile::begin));
    file.WriteUShort(0x0304);
    EXPECT_EQ(file.FileGetPosition(), 6u);
    file.CloseFile(false);
    EXPECT_EQ(folder.Read("a.bin"), std::string("\xFE\xFF\xFF\xFF\4\3\x9\0\0\x80\x3F\3\2\1\3\2\1\6\5\4", 20));

    // An item larger than the piece that is turned at a time.
    std::string large(10'001, '\0');
    for (std::size_t i = 0; i < large.size(); ++i)
        large[i] = static_cast<char>(i * 7);
    ASSERT_TRUE(file.OpenFile(Path(), false, nullptr));
    file.FileReverseWrite(large.data(), static_cast<unsigned int>(large.size()));
    file.CloseFile(true); // an abort still brings what lies in memory to the disk
    EXPECT_EQ(folder.Read("a.bin"), std::string(large.rbegin(), large.rend()));
    ASSERT_TRUE(file.OpenFile(Path(), false, nullptr));
    file.CloseAndDeleteFile(false);
    EXPECT_FALSE(folder.Exists("a.bin"));
}

TEST_P(IoFileModes, FailuresAreTold) {
    IoFile file(true, GetParam());
    CXFileException error;
    EXPECT_FALSE(file.OpenFile(Path("none"), true, &error));
    EXPECT_EQ(error.cause, CXFileException::fileNotFound);
    EXPECT_EQ(file.GetCFile(), nullptr);
    int number = 0;
    bool const throws = (GetParam() & IoFileThrow) != 0;
    EXPECT_EQ(Thrown([&] { EXPECT_FALSE(file.FileRead(&number, 4)); }) != "nothing", throws);
    file.FileWrite(&number, 4);
    EXPECT_FALSE(file.FileSeek(0, CXFile::begin));

    ASSERT_TRUE(file.OpenFile(u"\\dev\\full", false, nullptr));
    file.WriteInt(1);
    EXPECT_EQ(Thrown([&] { file.CloseFile(false); }) != "nothing", throws);
    EXPECT_EQ(file.GetCFile(), nullptr);
}

TEST(IoFile, MemoryHoldsFilesUpToTheLimit) {
    TemporaryFolder const folder;
    for (unsigned long long const size : {IoFileMemoryLimit, IoFileMemoryLimit + 1}) {
        folder.Write("large");
        std::filesystem::resize_file(folder.Native() + "large", size);
        IoFile file(true, IoFileMemory);
        ASSERT_TRUE(file.OpenFile(folder.Path("large").c_str(), true, nullptr));
        bool const isOnDisk = file.GetCFile() == file.GetTextFile();
        EXPECT_EQ(isOnDisk, size > IoFileMemoryLimit);
        EXPECT_EQ(file.FileGetLength(), size);
    }
}

TEST(IoFile, TextIsReadAndWrittenInItsEncoding) {
    TemporaryFolder const folder;
    Wide const path = folder.Path("a.txt").c_str();
    for (unsigned int const memory : {0u, static_cast<unsigned int>(IoFileMemory)}) {
        folder.Write("a.txt", "\xEF\xBB\xBF"
                              "Z\xC3\xA9\r\nlast");
        IoFile file(true, IoFileText | memory);
        ASSERT_TRUE(file.OpenFile(path, true, nullptr));
        EXPECT_FALSE(file.IsBinaryMode());
        Wide line;
        EXPECT_TRUE(file.ReadString(line));
        EXPECT_EQ(line, u"Z\u00E9");
        EXPECT_TRUE(file.ReadString(line));
        EXPECT_EQ(line, u"last");
        EXPECT_FALSE(file.ReadString(line));
        file.CloseFile(false);

        // Text between bytes stays between them, through memory too.
        IoFile binary(true, memory);
        ASSERT_TRUE(binary.OpenFile(path, false, nullptr));
        binary.WriteUChar('<');
        binary.WriteString(u"\u00E9");
        binary.WriteUChar('>');
        binary.CloseFile(false);
        EXPECT_EQ(folder.Read("a.txt"), "<\xC3\xA9>");

        IoFile wide(true, IoFileWideText | memory);
        ASSERT_TRUE(wide.OpenFile(path, false, nullptr));
        wide.WriteString(u"a\n");
        wide.WriteString(u"b");
        wide.CloseFile(false);
        EXPECT_EQ(folder.Read("a.txt"), std::string("\xFF\xFE"
                                                    "a\0\n\0b\0",
                                                    8));
    }
}

TEST(IoFile, FindsByBeginningExtensionAndType) {
    TemporaryFolder const folder;
    for (char const* const name : {"ab.png", "ab.tif", "abc", "b.png", "ab.mpeg", "ab.mpg", "sub/x.png"})
        folder.Write(name);
    struct {
        char const *name, *path;
        char16_t const* pattern;
        bool applyFilter, filterless;
        char const* found;
    } const rows[] = {
        {"everything", "", u"", true, true, "ab.mpeg ab.mpg ab.png ab.tif abc b.png sub/ "},
        {"beginning", "ab", u"", true, true, "ab.mpeg ab.mpg ab.png ab.tif abc "},
        {"any extension", "ab", u"x.*", true, true, "ab.mpeg ab.mpg ab.png ab.tif abc "},
        {"extension", "ab", u"x.png", false, false, "ab.png "},
        {"the path's own extension", "ab.tif", u"*.png", false, true, "ab.tif "},
        {"main extension", "", u"*.mpeg", true, false, "ab.mpeg "},
        {"no main extension", "", u"*.mpg", true, false, ""}, // its type's main extension is .mpeg
        {"no filter asked for", "", u"*.mpg", false, false, "ab.mpg "},
        {"nothing", "z", u"", true, true, ""},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        IoFile file;
        Wide const path = row.path[0] != '\0' ? Wide(folder.Path(row.path).c_str()) : Wide(folder.Path().c_str());
        bool const hasAny = file.FindFileOpen(path, row.pattern, FileNameTypeAuto);
        std::vector<std::string> names;
        Wide found;
        bool filterless = !row.filterless;
        while (file.FindFileNext(found, filterless, row.applyFilter)) {
            std::u16string const name = support::Whole(found).substr(folder.Path().size());
            names.emplace_back(name.begin(), name.end()); // ASCII
            EXPECT_EQ(filterless, row.filterless);
        }
        EXPECT_TRUE(hasAny || names.empty());
        std::sort(names.begin(), names.end());
        std::string all;
        for (std::string& name : names) {
            std::replace(name.begin(), name.end(), '\\', '/');
            all += name + " ";
        }
        EXPECT_EQ(all, row.found);
        EXPECT_FALSE(file.FindFileNext(found, filterless, row.applyFilter));
        file.FindFileClose();
        EXPECT_EQ(file.GetFileFinder(), nullptr);
    }
}

TEST(IoFile, ErrorMessageNamesTheShortenedPath) {
    TemporaryFolder const folder;
    std::string const name = "a file whose name is far too long for a message box";
    folder.Write(name);
    IoFile file(true, 0);
    ASSERT_TRUE(file.OpenFile(folder.Path(name).c_str(), true, nullptr));
    Wide text;
    CXArchiveException badClass(CXArchiveException::badClass, u"");
    CXArchiveException loading(CXArchiveException::archiveIsLoading, u"");
    CXFileException notFound(CXFileException::fileNotFound, u"");
    CXFileException denied(CXFileException::accessDenied, u"100%s%1.txt");
    CXFileException full(CXFileException::diskFull, u"100%s%1.txt");
    CXFileException nameless(CXFileException::none, u"100%s%1.txt");
    CXFileException told(CXFileException::badPath, u"100%s%1.txt", u"%1 is away: 100% sure");
    CXUserException user;
    struct {
        CXException* exception;
        char16_t const* part;
    } const rows[] = {
        {nullptr, u"could not be read"}, {&badClass, u"expected format"},   {&loading, u"could not be read"},
        {&notFound, u"its folder"},      {&nameless, u"could not be read"}, {&denied, u"may not be read"},
        {&full, u"no room left"},        {&told, u" is away: 100% sure"},
    };
    for (auto const& row : rows) {
        EXPECT_TRUE(file.GetErrorMessage(text, row.exception));
        EXPECT_GE(text.Find(row.part), 0) << testing::PrintToString(Wide(row.part));
        EXPECT_GE(text.Find(u"\\..."), 0) << "the path, shortened";
        EXPECT_EQ(text.Find(u"%1"), -1);
        EXPECT_EQ(text.Find(u"%s"), -1);
    }
    EXPECT_EQ(notFound.fileName, file.GetFileName());
    EXPECT_FALSE(file.GetErrorMessage(text, &user));
    EXPECT_TRUE(text.IsEmpty());

    ASSERT_TRUE(file.OpenFile(folder.Path(name).c_str(), false, nullptr));
    EXPECT_TRUE(file.GetErrorMessage(text, nullptr));
    EXPECT_GE(text.Find(u"could not be written"), 0);
    EXPECT_TRUE(file.GetErrorMessage(text, &denied));
    EXPECT_GE(text.Find(u"may not be written"), 0);
}

TEST(IoFile, OnlyAnExceptionWithoutATextOpensABox) {
    TemporaryFolder const folder;
    NotingDesktop desktop;
    folder.Write("a");
    CXUserException user;
    IoFile silent(true, 0);
    silent.ReportError(&user);
    EXPECT_EQ(desktop.boxes.size(), 0u);

    IoFile file(false, 0);
    EXPECT_FALSE(file.OpenFile(folder.Path("none").c_str(), true, nullptr)); // has a text, for whoever asks
    EXPECT_EQ(desktop.boxes.size(), 0u);
    file.ReportError(&user);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].buttons, 48u);

    EXPECT_TRUE(file.OpenFile(folder.Path("a").c_str(), true, nullptr));
    EXPECT_EQ(desktop.busyDepth, 1);
    file.CloseFile(false);
    EXPECT_EQ(desktop.busyDepth, 0);
}

TEST(ReverseBuffer, OddSizesAndNoneAtAll) {
    char text[] = "abcde";
    ReverseBuffer(text, 5);
    EXPECT_STREQ(text, "edcba");
    ReverseBuffer(text, -1);
    ReverseBuffer(nullptr, 5);
    EXPECT_STREQ(text, "edcba");
    char items[] = "abcdefghijklmnop";
    for (unsigned int const itemSize : {0u, 1u, 2u, 4u, 8u, 3u}) {
        detail::ReverseItems(items, itemSize ? 16 / itemSize : 16, itemSize);
        detail::ReverseItems(items, itemSize ? 16 / itemSize : 16, itemSize);
        EXPECT_STREQ(items, "abcdefghijklmnop") << itemSize;
    }
    detail::ReverseItems(items, 2, 3);
    EXPECT_STREQ(items, "cbafedghijklmnop");
    detail::ReverseItems(items, 2, 8);
    EXPECT_STREQ(items, "hgdefabcponmlkji");
}

} // namespace
