// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_parts.h"

#include "tests/support/temporary_folder.h"
#include "zeltools/files/paths/io_time_out.h"
#include "zeltools/files/paths/text_view_private.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace detail {
namespace {

std::u16string Owned(std::u16string_view view) {
    return std::u16string(view);
}

struct PartsRow {
    char16_t const* text;
    unsigned int mode;
    char16_t const *complete, *root, *path, *name, *extension, *query;
    unsigned int flags;
};

constexpr unsigned int File = PathParts::PathExtracted;
constexpr unsigned int Folder = PathParts::PathExtracted | PathParts::Directory;
constexpr unsigned int Address = PathParts::PathExtracted | PathParts::Url;

PartsRow const rows[] = {
    {u"C:\\a\\b.tar.gz", 0, u"C:\\a\\b.tar.gz", u"C:\\", u"C:\\a\\", u"b.tar", u".gz", u"", File},
    {u"C:foo.txt", 0, u"C:\\foo.txt", u"C:\\", u"C:\\", u"foo", u".txt", u"", File},
    {u"C:.\\a", 0, u"C:\\a", u"C:\\", u"C:\\", u"a", u"", u"", File}, // the repaired colon makes a segment of the dot
    {u"C:\\dir.x\\", 0, u"C:\\dir.x\\", u"C:\\", u"C:\\dir.x\\", u"", u"", u"", Folder},
    {u"..\\w\\b.png", 0, u"\\w\\b.png", u"\\", u"\\w\\", u"b", u".png", u"", File}, // nothing to leave
    {u"\\home\\.profile", 0, u"\\home\\.profile", u"\\", u"\\home\\", u"", u".profile", u"", File},
    {u"\\\\srv\\share", 0, u"\\\\srv\\share", u"\\\\srv\\share\\", u"\\\\srv\\", u"share", u"", u"", File},
    {u"a?b.c", 0, u"a?b.c", u"", u"", u"a?b.c", u"", u"", File}, // a dot behind the question mark is none
    {u".", 0, u"\\", u"\\", u"\\", u"", u"", u"", Folder},
    // Kinds that the caller states.
    {u"a.b:c", 1, u"a.b:\\c", u"", u"a.b:\\", u"c", u"", u"", 0},
    {u"C:\\dir", 2, u"C:\\dir\\", u"C:\\", u"C:\\dir\\", u"", u"", u"", Folder},
    {u"x\\y.z", 4, u"x\\y.z", u"", u"x\\", u"y", u".z", u"", File | PathParts::StaysRelative},
    // Addresses. Of one that is a directory only the query is left.
    {u"http://h/a.png?x=1.5", 0, u"http:\\\\h\\a.png?x=1.5", u"", u"http:\\\\h\\", u"a", u".png", u"x=1.5", Address},
    {u"http://h/d/?q", 0, u"", u"", u"", u"", u"", u"q", Address | PathParts::Directory},
    {u"ab", 5, u"ab", u"", u"", u"ab", u"", u"", Address},
};

TEST(PathParts, SplitsWithoutTheDisk) {
    for (PartsRow const& row : rows) {
        PathParts const parts(row.text, row.mode);
        std::string const trace = std::filesystem::path(row.text).string();
        SCOPED_TRACE(trace);
        EXPECT_EQ(Owned(View(parts.GetCompleteName())), row.complete);
        EXPECT_EQ(Owned(parts.GetRoot()), row.root);
        if (row.mode != FileNameTypeFile) {
            EXPECT_EQ(Owned(parts.GetPath()), row.path);
            EXPECT_EQ(parts.GetFlags(), row.flags);
        }
        EXPECT_EQ(Owned(parts.GetName()), row.name);
        EXPECT_EQ(Owned(parts.GetExtension()), row.extension);
        EXPECT_EQ(Owned(View(parts.GetQuery())), row.query);
    }
}

// The directory part of the tables that the walks through a path's levels go by.
TEST(PathParts, GivesTopAndParentDirectories) {
    struct {
        char16_t const *text, *parent, *withoutRoot;
    } const levels[] = {
        {u"C:\\a\\b\\c.txt", u"C:\\a\\", u"a\\b\\"}, {u"C:\\a\\", u"C:\\", u"a\\"}, {u"C:\\", u"", u""},
        {u"\\\\srv\\share\\x", u"\\\\srv\\", u""},   {u"\\\\srv\\", u"", u""}, // a server has no parent
        {u"C:\\a\\\\", u"C:\\a\\", u"a\\\\"},
    };
    for (auto const& row : levels) {
        PathParts const parts(row.text);
        EXPECT_EQ(Owned(parts.GetParentDirectory()), row.parent) << std::filesystem::path(row.text);
        EXPECT_EQ(Owned(parts.GetPathWithoutRoot()), row.withoutRoot) << std::filesystem::path(row.text);
    }
    EXPECT_EQ(Owned(PathParts(u"C:\\a\\b\\c.txt").GetTopDirectory()), u"b");
    EXPECT_EQ(Owned(PathParts(u"C:\\").GetTopDirectory()), u"C:");
    EXPECT_EQ(Owned(PathParts(u"C:\\a\\\\").GetTopDirectory()), u"\\");
}

TEST(PathParts, AsksTheDiskWhereToldTo) {
    TemporaryFolder const folder;
    folder.Write("sub/file.txt");
    std::u16string const sub = folder.Path("sub");

    // A directory that was written without its backslash loses its text; one that was asked for as such does not.
    PathParts const automatic(sub.c_str(), FileNameTypeAuto | PathParts::AskDisk);
    EXPECT_EQ(automatic.GetFlags(), Folder | PathParts::ExistenceTested | PathParts::Found);
    EXPECT_TRUE(automatic.GetCompleteName().IsEmpty());
    EXPECT_EQ(Owned(automatic.GetRoot()), u"\\");
    PathParts const stated(sub.c_str(), FileNameTypeDirectory | PathParts::AskDisk);
    EXPECT_EQ(Owned(View(stated.GetCompleteName())), sub + u"\\");

    PathParts existing(sub.c_str());
    EXPECT_FALSE(existing.IsDirectory());
    EXPECT_TRUE(existing.Exists());
    EXPECT_TRUE(existing.IsDirectory());
    EXPECT_EQ(Owned(View(existing.GetCompleteName())), sub + u"\\");
    EXPECT_EQ(existing.GetSlashPosition(), static_cast<int>(sub.size()));

    // A word that asks for no limit does not stand for an answer that came too late.
    unsigned int unlimited = IoTimedOut;
    PathParts asked;
    asked.Init(sub.c_str(), FileNameTypeDirectory | PathParts::AskDisk, &unlimited);
    EXPECT_EQ(asked.GetFlags(), Folder | PathParts::ExistenceTested | PathParts::Found);

    PathParts missing(folder.Path("later.txt").c_str());
    EXPECT_FALSE(missing.Exists());
    folder.Write("later.txt");
    EXPECT_FALSE(missing.Exists()); // the answer is remembered
    EXPECT_TRUE(PathParts(folder.Path("later.txt").c_str()).Exists());
}

TEST(PathParts, FindsTheNumberOfAName) {
    struct {
        char16_t const* name;
        bool trailingOnly;
        int number;
        char16_t const *pattern, *digits;
    } const numbers[] = {
        {u"12abc3", false, 3, u"12abc*", u"3"},
        {u"12abc3x", false, 12, u"*abc3x", u"12"}, // a leading number outranks one in the middle
        {u"12abc3x", true, 3, u"12abc*x", u"3"},
        {u"a1b2c", false, 2, u"a1b*c", u"2"},
        {u"  12  ", false, 12, u"  *  ", u"12"},
        {u"", false, -1, u"", u""},
        {u"x99999999999", false, 1215752191, u"x*", u"99999999999"}, // the low 32 bits
    };
    for (auto const& row : numbers) {
        CXTString<char16_t> pattern;
        CXTString<char16_t> digits;
        SCOPED_TRACE(std::filesystem::path(row.name).string());
        EXPECT_EQ(GetDigitInfo(row.name, pattern, digits, true, row.trailingOnly), row.number);
        EXPECT_EQ(Owned(View(pattern)), row.pattern);
        EXPECT_EQ(Owned(View(digits)), row.digits);
    }
}

} // namespace
} // namespace detail
