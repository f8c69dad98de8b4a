// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_queries.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/files/paths/file_access.h"
#include "zeltools/files/paths/file_dates.h"
#include "zeltools/platform/files.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

class PathQueries : public testing::Test {
protected:
    PathQueries() {
        disk.Write("file.TXT", "12345");
        disk.Write(".hidden");
        disk.Write("folder/x");
        std::filesystem::create_symlink("none", disk.Native() + "dangling");
    }
    Text At(char const* name) const { return disk.Path(name).c_str(); }

    TemporaryFolder const disk;
};

TEST_F(PathQueries, WhatIsThere) {
    struct {
        char const* name;
        bool exists, isFolder;
        unsigned long long sizeBytes;
    } const rows[] = {{"file.TXT", true, false, 5},      {"folder", true, true, 0},
                      {"folder/", true, true, 0},        {"none", false, false, ~0ULL},
                      {"dangling", false, false, ~0ULL}, {"none/x", false, false, ~0ULL},
                      {"file.txt", false, false, ~0ULL}};
    for (auto const& row : rows) {
        EXPECT_EQ(fileExists(At(row.name)), row.exists) << row.name;
        EXPECT_EQ(fileDirectoryExists(At(row.name)), row.isFolder) << row.name;
        EXPECT_EQ(fileIsDirectory(At(row.name), true), row.isFolder) << row.name;
        EXPECT_EQ(fileGetSize(At(row.name)), row.sizeBytes) << row.name;
    }
    EXPECT_FALSE(fileExists(u"") || fileIsDirectory(u"", true) || fileIsDirectory(u"", false));
    EXPECT_TRUE(fileIsDirectory(At("none/"), false)); // the text alone
    EXPECT_FALSE(fileIsDirectory(At("folder"), false));
}

TEST_F(PathQueries, Dates) {
    CXTime date(1);
    for (char const* const name : {"file.TXT", "folder/"}) {
        for (long long const seconds : {0LL, 1'000'000'000LL, 2'000'000'000LL}) {
            EXPECT_TRUE(fileSetLastWriteDate(At(name), CXTime(seconds)));
            EXPECT_TRUE(fileGetLastWriteDate(At(name), date));
            EXPECT_EQ(date.GetTime(), seconds);
        }
    }
    EXPECT_TRUE(fileGetCreationDate(At("file.TXT"), date));
    EXPECT_NEAR(static_cast<double>(date.GetTime()), static_cast<double>(CXTime::GetTickCount().GetTime()), 3600);
    EXPECT_FALSE(fileSetCreationDate(At("file.TXT"), CXTime(0)));
    EXPECT_FALSE(fileSetLastWriteDate(At("file.TXT"), CXTime(-20'000'000'000LL))); // before 1601
    CXTime untouched(7);
    EXPECT_FALSE(fileGetLastWriteDate(At("none"), untouched) || fileGetCreationDate(At("none"), untouched));
    EXPECT_EQ(untouched.GetTime(), 7);
}

TEST_F(PathQueries, AccessIsTestedAgainstWhoHasItOpen) {
    using namespace platform;
    Text const path = At("file.TXT");
    HANDLE const reader = CreateFileW(path, GenericRead, ShareRead, OpenExisting, 0);
    struct {
        char const* name;
        unsigned int flags;
        bool isAllowed;
    } const rows[] = {
        {"file.TXT", FileAccessRead | FileAccessShareRead, true},
        {"file.TXT", FileAccessRead, false},
        {"file.TXT", FileAccessRead | FileAccessWrite | FileAccessShareRead | FileAccessShareWrite, false},
        {"file.TXT", FileAccessCreate | FileAccessShareRead | FileAccessShareWrite, false},
        {"file.TXT", 0, true},
        {"folder/x", FileAccessCreate, true},
        {"new", FileAccessCreate, true},
        {"none/new", FileAccessCreate, false},
    };
    for (auto const& row : rows)
        EXPECT_EQ(fileCheckAccess(At(row.name), row.flags), row.isAllowed) << row.name << ' ' << row.flags;
    CloseFile(reader);
    EXPECT_FALSE(disk.Exists("new"));
    EXPECT_EQ(disk.Read("file.TXT"), "12345");
}

} // namespace
