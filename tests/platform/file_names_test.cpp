// SPDX-License-Identifier: MIT
#include "zeltools/platform/file_names.h"

#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/remove_tree.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace platform;
namespace fs = std::filesystem;

namespace {

constexpr unsigned int ShareAll = ShareRead | ShareWrite | ShareDelete;

bool SpareNothing(std::u16string_view) {
    return false;
}

TEST(FileAttributes, OfEachKindOfEntry) {
    TemporaryFolder const folder;
    folder.Write("file", "12345");
    folder.Write(".hidden");
    folder.Write("readonly");
    fs::permissions(folder.Native() + "readonly", fs::perms(0444));
    fs::create_directory(folder.Native() + "dir");
    fs::create_symlink("file", folder.Native() + "link");
    fs::create_symlink("dir", folder.Native() + "dirlink");
    fs::create_symlink("none", folder.Native() + "dangling");
    std::pair<char const*, unsigned int> const rows[] = {
        {"file", FileAttributeNormal},       {".hidden", FileAttributeHidden},
        {"readonly", FileAttributeReadOnly}, {"dir", FileAttributeDirectory},
        {"link", FileAttributeReparsePoint}, {"dirlink", FileAttributeDirectory | FileAttributeReparsePoint},
        {"dangling", InvalidFileAttributes}, {"none", InvalidFileAttributes}};
    for (auto const& [name, attributes] : rows) {
        EXPECT_EQ(GetFileAttributesW(folder.Path(name).c_str()), attributes) << name;
    }
}

TEST(DeleteFile, FilesLinksAndWhatItRefuses) {
    TemporaryFolder const folder;
    folder.Write("file");
    folder.Write("open");
    fs::create_directory(folder.Native() + "dir");
    fs::create_directory_symlink("dir", folder.Native() + "link");
    HANDLE const file = CreateFileW(folder.Path("open").c_str(), GenericRead, ShareRead, OpenExisting, 0);
    std::pair<char const*, unsigned int> const rows[] = {{"file", 0},
                                                         {"file", ErrorFileNotFound},
                                                         {"link", 0},
                                                         {"dir", ErrorAccessDenied},
                                                         {"none/file", ErrorPathNotFound},
                                                         {"open", ErrorSharingViolation}};
    for (auto const& [name, error] : rows) {
        bool const isDeleted = DeleteFileW(folder.Path(name).c_str());
        EXPECT_EQ(isDeleted, error == 0) << name;
        EXPECT_TRUE(isDeleted || GetLastError() == error) << name << GetLastError();
    }
    CloseFile(file);
    EXPECT_TRUE(folder.Exists("dir"));
    EXPECT_TRUE(DeleteFileW(folder.Path("open").c_str()));
}

TEST(CopyFile, CopiesContentPermissionsAndTime) {
    TemporaryFolder const folder;
    std::string const content(3'000'000, 'c');
    folder.Write("from", content);
    folder.Write("to", "old");
    fs::permissions(folder.Native() + "from", fs::perms(0640));
    fs::last_write_time(folder.Native() + "from", fs::file_time_type::clock::now() - std::chrono::hours(1000));
    EXPECT_FALSE(CopyFileW(folder.Path("from").c_str(), folder.Path("to").c_str(), true));
    EXPECT_EQ(GetLastError(), ErrorFileExists);
    EXPECT_EQ(folder.Read("to"), "old");
    for (char const* const to : {"to", "new"}) {
        EXPECT_TRUE(CopyFileW(folder.Path("from").c_str(), folder.Path(to).c_str(), false));
        EXPECT_EQ(folder.Read(to), content);
        EXPECT_EQ(fs::status(folder.Native() + to).permissions(), fs::perms(0640));
        EXPECT_EQ(fs::last_write_time(folder.Native() + to), fs::last_write_time(folder.Native() + "from"));
    }
    EXPECT_TRUE(CopyFileW(folder.Path("from").c_str(), folder.Path("newer").c_str(), true));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Native()), {}), 4); // nothing temporary is left
}

TEST(CopyFile, WhatItRefusesStaysAsItIs) {
    TemporaryFolder const folder;
    folder.Write("from", "new");
    folder.Write("open", "old");
    folder.Write("folder/x");
    fs::create_symlink("from", folder.Native() + "link");
    mkfifo((folder.Native() + "pipe").c_str(), 0600);
    HANDLE const file = CreateFileW(folder.Path("open").c_str(), GenericRead, ShareRead, OpenExisting, 0);
    struct {
        char const* from;
        char const* to;
        unsigned int error;
    } const rows[] = {{"from", "open", ErrorSharingViolation}, {"from", "from", ErrorSharingViolation},
                      {"from", "link", ErrorSharingViolation}, {"from", "folder", ErrorAccessDenied},
                      {"folder", "to", ErrorAccessDenied},     {"none", "to", ErrorFileNotFound},
                      {"from", "none/to", ErrorPathNotFound},  {"pipe", "to", ErrorAccessDenied}};
    for (auto const& row : rows) {
        EXPECT_FALSE(CopyFileW(folder.Path(row.from).c_str(), folder.Path(row.to).c_str(), false)) << row.to;
        EXPECT_EQ(GetLastError(), row.error) << row.from << row.to;
    }
    CloseFile(file);
    EXPECT_EQ(folder.Read("open"), "old");
    EXPECT_EQ(folder.Read("from"), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Native()), {}), 5);
}

TEST(CopyFile, TakesFilesWithoutAStatedSizeAndGoesThroughALink) {
    TemporaryFolder const folder;
    folder.Write("sub/target", "old");
    fs::create_symlink("sub/target", folder.Native() + "link");
    EXPECT_TRUE(CopyFileW(u"\\proc\\self\\status", folder.Path("link").c_str(), false));
    EXPECT_TRUE(fs::is_symlink(folder.Native() + "link"));
    EXPECT_TRUE(folder.Read("sub/target").starts_with("Name:"));
}

TEST(MoveFile, ReplacesOnlyWhereItMay) {
    struct {
        char const* from;
        char const* to;
        unsigned int flags;
        unsigned int error;
    } const rows[] = {{"a", "new", 0, 0},
                      {"a", "b", 0, ErrorAlreadyExists},
                      {"a", "b", MoveReplaceExisting, 0},
                      {"a", "dir", MoveReplaceExisting, ErrorAccessDenied},
                      {"a", "link", 0, ErrorAlreadyExists}, // a link is a name that is taken
                      {"dir", "newdir", 0, 0},
                      {"dir", "empty", 0, ErrorAlreadyExists},
                      {"dir", "empty", MoveReplaceExisting, ErrorAccessDenied},
                      {"dir", "dir/inside", 0, ErrorInvalidParameter},
                      {"a", "none/x", 0, ErrorPathNotFound},
                      {"a", "a", 0, 0},
                      {"second", "a", MoveReplaceExisting, 0}, // two names of one file
                      {"open", "x", 0, ErrorSharingViolation}};
    for (auto const& row : rows) {
        TemporaryFolder const folder;
        folder.Write("a", "a");
        folder.Write("b", "b");
        folder.Write("open", "o");
        folder.Write("dir/x", "x");
        fs::create_directory(folder.Native() + "empty");
        fs::create_symlink("nowhere", folder.Native() + "link");
        fs::create_hard_link(folder.Native() + "a", folder.Native() + "second");
        HANDLE const file = CreateFileW(folder.Path("open").c_str(), GenericRead, ShareRead, OpenExisting, 0);
        bool const isMoved = MoveFileExW(folder.Path(row.from).c_str(), folder.Path(row.to).c_str(), row.flags);
        EXPECT_EQ(isMoved ? 0 : GetLastError(), row.error) << row.from << ' ' << row.to;
        EXPECT_EQ(folder.Exists(row.from), !isMoved || std::string(row.from) == row.to) << row.from;
        if (!isMoved) {
            EXPECT_EQ(folder.Read("a") + folder.Read("b") + folder.Read("dir/x"), "abx");
        }
        CloseFile(file);
    }
}

TEST(MoveFile, GoesToAnotherFileSystemWhereItMay) {
    struct stat here {};
    struct stat there {};
    TemporaryFolder const folder;
    if (stat("/dev/shm", &there) != 0 || stat(folder.Native().c_str(), &here) != 0 || here.st_dev == there.st_dev ||
        access("/dev/shm", W_OK) != 0) {
        GTEST_SKIP() << "one file system only";
    }
    TemporaryFolder const other("/dev/shm");
    folder.Write("file", "content");
    other.Write("taken", "old");
    auto const move = [&](char const* to, unsigned int flags) {
        return MoveFileExW(folder.Path("file").c_str(), other.Path(to).c_str(), flags) ? 0 : GetLastError();
    };
    EXPECT_EQ(move("new", 0), ErrorNotSameDevice);
    EXPECT_EQ(move("taken", MoveCopyAllowed), ErrorAlreadyExists);
    EXPECT_EQ(other.Read("taken") + folder.Read("file"), "oldcontent");
    EXPECT_EQ(move("taken", MoveCopyAllowed | MoveReplaceExisting), 0U);
    EXPECT_EQ(other.Read("taken") + folder.Read("file"), "content<missing>");
}

TEST(MoveFile, LettersOfANameChangeTheirCase) {
    TemporaryFolder const folder;
    folder.Write("Wood.JPG");
    ScopedVariable const drives("ZELTOOLS_DRIVES", "T=" + folder.Native());
    EXPECT_TRUE(MoveFileW(u"T:\\wood.jpg", u"T:\\WOOD.jpg"));
    EXPECT_TRUE(folder.Exists("WOOD.jpg"));
}

TEST(Directories, MakingAndRemovingOne) {
    TemporaryFolder const folder;
    folder.Write("full/x");
    folder.Write("file");
    fs::create_directory(folder.Native() + "empty");
    fs::create_directory_symlink("full", folder.Native() + "link");
    struct {
        char const* name;
        unsigned int makeError;
        unsigned int removeError;
    } const rows[] = {{"full", ErrorAlreadyExists, ErrorDirectoryNotEmpty},
                      {"empty/", ErrorAlreadyExists, 0},
                      {"new/", 0, 0},
                      {"none/new", ErrorPathNotFound, ErrorPathNotFound},
                      {"file", ErrorAlreadyExists, ErrorDirectory},
                      {"link/", ErrorAlreadyExists, 0}};
    for (auto const& row : rows) {
        std::u16string const path = folder.Path(row.name);
        EXPECT_EQ(CreateDirectoryW(path.c_str()) ? 0 : GetLastError(), row.makeError) << row.name;
        EXPECT_EQ(RemoveDirectoryW(path.c_str()) ? 0 : GetLastError(), row.removeError) << row.name;
    }
    EXPECT_TRUE(folder.Exists("full/x"));
    EXPECT_FALSE(folder.Exists("link"));
}

TEST(RemoveTree, NeverLeavesTheTree) {
    TemporaryFolder const folder;
    folder.Write("outside/precious", "p");
    folder.Write("tree/a/b/c/file");
    folder.Write("tree/.hidden");
    fs::create_directory_symlink("../outside", folder.Native() + "tree/link");
    fs::create_directory_symlink("../../..", folder.Native() + "tree/a/up");
    fs::create_symlink("nowhere", folder.Native() + "tree/a/dangling");
    fs::create_directory_symlink("outside", folder.Native() + "top");
    EXPECT_TRUE(RemoveTree(folder.Path("tree/").c_str(), SpareNothing));
    EXPECT_TRUE(RemoveTree(folder.Path("top/").c_str(), SpareNothing));
    EXPECT_FALSE(folder.Exists("tree") || folder.Exists("top"));
    EXPECT_EQ(folder.Read("outside/precious"), "p");
    EXPECT_FALSE(RemoveTree(folder.Path("none").c_str(), SpareNothing));
    EXPECT_EQ(GetLastError(), ErrorFileNotFound);
    EXPECT_FALSE(RemoveTree(folder.Path("outside/precious").c_str(), SpareNothing));
    EXPECT_EQ(GetLastError(), ErrorDirectory);
}

TEST(RemoveTree, GoesOnBehindAFailure) {
    TemporaryFolder const folder;
    folder.Write("tree/a/open");
    folder.Write("tree/b/x");
    HANDLE const file = CreateFileW(folder.Path("tree/a/open").c_str(), GenericRead, ShareRead, OpenExisting, 0);
    EXPECT_FALSE(RemoveTree(folder.Path("tree").c_str(), SpareNothing));
    EXPECT_EQ(GetLastError(), ErrorSharingViolation);
    CloseFile(file);
    EXPECT_TRUE(folder.Exists("tree/a/open"));
    EXPECT_FALSE(folder.Exists("tree/b"));
}

TEST(NtCreateFile, AnswersWithoutWaitingAndWithoutATrace) {
    TemporaryFolder const folder;
    folder.Write("file", "old");
    mkfifo((folder.Native() + "pipe").c_str(), 0600);
    SetLastError(424242);
    EXPECT_EQ(NtCreateFile(folder.Path("pipe").c_str(), GenericRead, ShareAll, false), ErrorSuccess);
    EXPECT_EQ(NtCreateFile(folder.Path("new").c_str(), GenericWrite, 0, true), ErrorSuccess);
    EXPECT_EQ(NtCreateFile(folder.Path("file").c_str(), GenericWrite, 0, true), ErrorFileExists);
    EXPECT_EQ(NtCreateFile(folder.Path("").c_str(), GenericRead, ShareAll, false), ErrorAccessDenied);
    EXPECT_EQ(GetLastError(), 424242U);
    EXPECT_FALSE(folder.Exists("new"));
    EXPECT_EQ(folder.Read("file"), "old");
}

} // namespace
