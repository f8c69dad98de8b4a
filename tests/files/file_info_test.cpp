// SPDX-License-Identifier: MIT
#include "zeltools/files/file_info.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/files/file_types.h"

#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

CFileInfo Parse(Text const& text, unsigned int mode = FileNameTypeAuto) {
    CFileInfo info;
    info.Init(CFileNameSpec(text), mode, nullptr);
    return info;
}

struct SplitRow {
    char const* name;
    char16_t const* text;
    char16_t const* root;
    char16_t const* path;
    char16_t const* nameWithoutExtension;
    char16_t const* extension;
    char16_t const* query;
};

class FileInfoSplit : public testing::TestWithParam<SplitRow> {};

TEST_P(FileInfoSplit, GivesTheParts) {
    SplitRow const& row = GetParam();
    CFileInfo const info = Parse(row.text);
    EXPECT_EQ(info.GetRoot(), row.root);
    EXPECT_EQ(info.GetPath(), row.path);
    EXPECT_EQ(info.GetNameWithoutExt(), row.nameWithoutExtension);
    EXPECT_EQ(info.GetExtension(), row.extension);
    EXPECT_EQ(info.GetName(), Text(row.nameWithoutExtension) + row.extension);
    EXPECT_EQ(info.GetQuery(false), row.query);
}

SplitRow const splitRows[] = {
    {"Drive", u"C:\\a\\b.tar.gz", u"C:\\", u"C:\\a\\", u"b.tar", u".gz", u""},
    {"SlashesAndDots", u"C:/a/../b/./c.png", u"C:\\", u"C:\\b\\", u"c", u".png", u""},
    {"ColonWithoutBackslash", u"C:foo.txt", u"C:\\", u"C:\\", u"foo", u".txt", u""},
    {"Rooted", u"\\home\\ana\\a.png", u"\\", u"\\home\\ana\\", u"a", u".png", u""},
    {"Server", u"\\\\server\\share\\x.y", u"\\\\server\\share\\", u"\\\\server\\share\\", u"x", u".y", u""},
    {"Directory", u"C:\\dir.one\\", u"C:\\", u"C:\\dir.one\\", u"", u"", u""},
    {"DirectoryWithoutBackslashIsAFile", u"C:\\dir", u"C:\\", u"C:\\", u"dir", u"", u""},
    {"NameAloneHasNoPath", u"a.txt", u"", u"", u"a", u".txt", u""},
    {"DotOfTheFolderIsNoExtension", u"C:\\a.d\\b", u"C:\\", u"C:\\a.d\\", u"b", u"", u""},
    {"DotFile", u"C:\\.profile", u"C:\\", u"C:\\", u"", u".profile", u""},
    // The name of an address loses its query wherever it stands, and its dot is the last one before the question mark.
    {"Address", u"http://h/a/b.png?v=1.5", u"", u"http:\\\\h\\a\\", u"b", u".png", u"v=1.5"},
    {"AddressWithoutExtension", u"http://h/a/page?x", u"", u"http:\\\\h\\a\\", u"page", u"", u"x"},
};
INSTANTIATE_TEST_SUITE_P(Table, FileInfoSplit, testing::ValuesIn(splitRows),
                         [](auto const& test) { return test.param.name; });

TEST(FileInfo, DirectoriesHaveAClassOfTheirOwn) {
    CFileInfo const info = Parse(u"C:/a/b.bmp/");
    EXPECT_TRUE(info.IsDirectory());
    EXPECT_FALSE(info.IsFile());
    EXPECT_EQ(info.GetClass(), FourCC("FLDR"));
    EXPECT_EQ(info.GetKindOf(), 0x1000000u);
    EXPECT_EQ(info.GetTopDirectory(), u"b.bmp");
    EXPECT_EQ(info.GetParentDirectory(), u"C:\\a\\");
    EXPECT_EQ(info.GetPathWithoutRoot(), u"a\\b.bmp\\");
    EXPECT_EQ(Parse(u"C:\\a\\b", FileNameTypeDirectory).GetCompleteName(), u"C:\\a\\b\\");
}

// Takes the steps of the splitting again, as a class does that tells its names apart by rules of its own.
class SteppingInfo : public CFileInfo {
public:
    void Repeat() {
        ExtractRoot();
        ExtractPath();
        ExtractQuery();
        ExtractName();
        ExtractExtension();
    }
};

TEST(FileInfo, ADerivedClassCanTakeTheStepsAgain) {
    for (SplitRow const& row : splitRows) {
        SteppingInfo info;
        info.Init(CFileNameSpec(row.text), FileNameTypeAuto, nullptr);
        info.Repeat();
        SCOPED_TRACE(row.name);
        EXPECT_EQ(info.GetRoot(), row.root);
        EXPECT_EQ(info.GetPath(), row.path);
        EXPECT_EQ(info.GetName(), Text(row.nameWithoutExtension) + row.extension);
        EXPECT_EQ(info.GetQuery(false), row.query);
    }
    // A found directory lost its text, and with it what the root was taken from.
    TemporaryFolder const folder;
    SteppingInfo lost;
    Text const withoutBackslash = (folder.Path() + u"sub").c_str();
    folder.Write("sub/file");
    lost.Init(CFileNameSpec(withoutBackslash), FileNameTypeAuto | CFileInfo::AskDisk, nullptr);
    EXPECT_EQ(lost.GetRoot(), u"\\");
    lost.Repeat();
    EXPECT_EQ(lost.GetRoot(), u"");
}

TEST(FileInfo, AnEmptyNameAsksNothingAndExistsNowhere) {
    CFileInfo info = Parse(u"");
    EXPECT_FALSE(info.Exists(nullptr));
    EXPECT_FALSE(info.IsShortcut());
    EXPECT_EQ(info.GetClass(), 0u);
    EXPECT_EQ(info.GetLoader(), FileIdUnknown);
}

TEST(FileInfo, TriesTheParsersOfAnExtensionInTheirOrder) {
    CFileInfo info = Parse(u"\\films\\a.WMV");
    EXPECT_EQ(info.GetClass(), FourCC("MPG4"));
    EXPECT_EQ(info.GetParserNbr(), 2u);
    EXPECT_TRUE(info.CanTryAnotherParser());
    info.TryNextParser();
    EXPECT_EQ(info.GetClass(), FourCC("WMV "));
    EXPECT_FALSE(info.CanTryAnotherParser());
    info.TryNextParser();
    EXPECT_EQ(info.GetClass(), FourCC("WMV "));
    CHashTable<unsigned int> classes;
    EXPECT_EQ(info.GetClass(classes), 2u);
    EXPECT_TRUE(classes.IsFound(FourCC("MPG4")));
}

TEST(FileInfo, AnExplicitClassNeverFallsThroughToAnotherParser) {
    CFileInfo info;
    info.Init(CFileNameSpec(u"\\films\\a.wmv", FourCC("WMV ")), FileNameTypeAuto, nullptr);
    EXPECT_EQ(info.GetClass(), FourCC("WMV "));
    EXPECT_FALSE(info.CanTryAnotherParser());
    // A class that nobody registered leaves the extension's first parser to do the work.
    info.Init(CFileNameSpec(u"\\films\\a.wmv", FourCC("NONE")), FileNameTypeAuto, nullptr);
    EXPECT_EQ(info.GetProperties(), 0x100004u);
    EXPECT_EQ(info.GetClass(), FourCC("NONE"));
}

TEST(FileNameSpec, KeepsTheChoiceOfParserWithTheName) {
    CFileNameSpec spec(u"a/b.bmp");
    EXPECT_EQ(spec.GetFileName(), u"a\\b.bmp");
    EXPECT_EQ(spec.GetClass(), FourCC("BMP "));
    EXPECT_TRUE(spec.IsDefaultParserChoice());
    spec.SetClass(FourCC("PIC "));
    EXPECT_FALSE(spec.IsDefaultParserChoice());
    spec = Text(u"a/b.pic"); // assignment takes the text as it stands
    EXPECT_EQ(spec.GetFileName(), u"a/b.pic");
    EXPECT_TRUE(spec.IsDefaultParserChoice());
    EXPECT_EQ(spec.GetClass(), FourCC("PIC "));
    EXPECT_TRUE(CFileNameSpec(u"X.BMP").IsSameFile(CFileNameSpec(u"x.bmp")));
    EXPECT_FALSE(CFileNameSpec(u"x.bmp", 1).IsSameFile(CFileNameSpec(u"x.bmp")));
}

struct DigitRow {
    char const* name;
    char16_t const* text;
    bool trailingOnly;
    int number;
    char16_t const* pattern;
};

class FileInfoDigits : public testing::TestWithParam<DigitRow> {};

TEST_P(FileInfoDigits, FindsTheNumber) {
    Text pattern;
    Text digits;
    EXPECT_EQ(Parse(GetParam().text).GetDigitInfo(pattern, digits, true, GetParam().trailingOnly), GetParam().number);
    EXPECT_EQ(pattern, GetParam().pattern);
}

DigitRow const digitRows[] = {
    {"LastRunEndsTheName", u"12abc3.tif", false, 3, u"12abc*"},
    {"LeadingRunOutranksOneInTheMiddle", u"12abc3x", false, 12, u"*abc3x"},
    {"UnlessOnlyTrailingOnesCount", u"12abc3x", true, 3, u"12abc*x"},
    {"BlanksAroundAreSkipped", u"  12  .tif", false, 12, u"  *  "},
    {"LeadingZeros", u"img0007.tif", false, 7, u"img*"},
    {"None", u"image.tif", false, -1, u"image"},
};
INSTANTIATE_TEST_SUITE_P(Table, FileInfoDigits, testing::ValuesIn(digitRows),
                         [](auto const& test) { return test.param.name; });

TEST(FileInfo, TheDiskTurnsAnExistingFolderIntoADirectory) {
    TemporaryFolder const folder;
    Text withoutBackslash = folder.Path().c_str();
    if (withoutBackslash.Right(1) == u"\\") {
        withoutBackslash.Delete(withoutBackslash.GetLength() - 1, 1);
    }
    CFileInfo info = Parse(withoutBackslash);
    EXPECT_FALSE(info.IsDirectory());
    EXPECT_TRUE(info.Exists(nullptr));
    EXPECT_TRUE(info.IsDirectory());
    EXPECT_EQ(info.GetCompleteName(), withoutBackslash + u"\\");

    EXPECT_EQ(Parse(withoutBackslash, FileNameTypeDirectory | CFileInfo::AskDisk).GetPath().GetLength(),
              withoutBackslash.GetLength() + 1);
    // The automatic mode knows too late that it is a directory: without the backslash nothing is left of the name.
    EXPECT_EQ(Parse(withoutBackslash, FileNameTypeAuto | CFileInfo::AskDisk).GetCompleteName(), u"");
    EXPECT_EQ(Parse(withoutBackslash + u"\\", FileNameTypeAuto | CFileInfo::AskDisk).GetCompleteName(),
              withoutBackslash + u"\\");
}

} // namespace
