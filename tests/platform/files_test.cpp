// SPDX-License-Identifier: MIT
#include "zeltools/platform/files.h"

#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"

#include <array>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace platform;

namespace {

constexpr unsigned int ShareAll = ShareRead | ShareWrite | ShareDelete;
constexpr char16_t const* Name = u"file";

struct Mode {
    unsigned int access;
    unsigned int share;
};

/// Every access that a file can be opened with, against everything that it can share.
std::vector<Mode> AllModes() {
    std::vector<Mode> modes;
    for (unsigned int const access : {GenericRead, GenericWrite, GenericRead | GenericWrite, AccessDelete, 0U}) {
        for (unsigned int share = 0; share <= ShareAll; ++share) {
            modes.push_back({access, share});
        }
    }
    return modes;
}

unsigned int RightsOf(unsigned int access) {
    return ((access & GenericRead) != 0 ? ShareRead : 0U) | ((access & GenericWrite) != 0 ? ShareWrite : 0U) |
           ((access & AccessDelete) != 0 ? ShareDelete : 0U);
}

/// The rule itself. Who asks for nothing is in nobody's way.
bool GetAlong(Mode const& a, Mode const& b) {
    return RightsOf(a.access) == 0 || RightsOf(b.access) == 0 ||
           ((RightsOf(a.access) & ~b.share) == 0 && (RightsOf(b.access) & ~a.share) == 0);
}

/// Opens with each mode in turn and tells, one character each, whether it worked ('1'), was in use ('0') or else ('?').
std::string TryAllModes(std::u16string const& path) {
    std::string answers;
    for (Mode const& mode : AllModes()) {
        HANDLE const file = CreateFileW(path.c_str(), mode.access, mode.share, OpenExisting, 0);
        answers += file != InvalidHandle ? '1' : GetLastError() == ErrorSharingViolation ? '0' : '?';
        if (file != InvalidHandle) {
            CloseFile(file);
        }
    }
    return answers;
}

std::string ExpectedAnswers(Mode const& first) {
    std::string answers;
    for (Mode const& second : AllModes()) {
        answers += GetAlong(first, second) ? '1' : '0';
    }
    return answers;
}

/// Runs a function in another process and gives its answer.
template <class Function>
std::string InAnotherProcess(Function function) {
    TemporaryFolder const folder;
    pid_t const child = fork();
    if (child == 0) {
        // The descriptors of the parent came along and would hold its locks; in another program they would be closed.
        folder.Write("answer", function());
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    return folder.Read("answer");
}

TEST(ShareModes, TheWholeMatrixInOneProcessAndInTwo) {
    TemporaryFolder const folder;
    folder.Write("file", "content");
    std::u16string const path = folder.Path() + Name;
    for (Mode const& first : AllModes()) {
        HANDLE const file = CreateFileW(path.c_str(), first.access, first.share, OpenExisting, 0);
        ASSERT_NE(file, InvalidHandle);
        EXPECT_EQ(TryAllModes(path), ExpectedAnswers(first)) << first.access << ' ' << first.share;
        EXPECT_EQ(InAnotherProcess([&] { return TryAllModes(path); }), ExpectedAnswers(first));
        CloseFile(file);
    }
    EXPECT_EQ(folder.Read("file"), "content");
}

TEST(ShareModes, OutliveAnotherHandleOfTheProcessAndEndWithTheLast) {
    TemporaryFolder const folder;
    folder.Write("file");
    std::u16string const path = folder.Path() + Name;
    auto const open = [&](unsigned int access, unsigned int share) {
        return CreateFileW(path.c_str(), access, share, OpenExisting, 0);
    };
    HANDLE const reader = open(GenericRead, ShareRead);
    HANDLE const other = open(GenericRead, ShareRead);
    CloseFile(other);
    ::close(::open((folder.Native() + "file").c_str(), O_RDONLY)); // would drop a lock of the process's own kind
    EXPECT_EQ(open(GenericWrite, ShareAll), InvalidHandle);
    HANDLE const duplicate = DuplicateFile(reader);
    CloseFile(reader);
    EXPECT_EQ(open(GenericWrite, ShareAll), InvalidHandle);
    CloseFile(duplicate);
    HANDLE const writer = open(GenericWrite, 0);
    EXPECT_NE(writer, InvalidHandle);
    CloseFile(writer);
}

TEST(ShareModes, AProcessThatIsKilledLeavesNothingLocked) {
    TemporaryFolder const folder;
    folder.Write("file");
    std::u16string const path = folder.Path() + Name;
    InAnotherProcess([&]() -> std::string {
        CreateFileW(path.c_str(), GenericRead | GenericWrite, 0, OpenExisting, 0);
        raise(SIGKILL);
        return {};
    });
    EXPECT_EQ(TryAllModes(path), std::string(AllModes().size(), '1'));
}

TEST(ShareModes, OfManyThatComeAtOnceOneGetsIn) {
    TemporaryFolder const folder;
    folder.Write("file");
    std::u16string const path = folder.Path() + Name;
    std::atomic<int> inside{0};
    std::atomic<bool> wasCrowded{false};
    std::atomic<int> entries{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int k = 0; k < 300; ++k) {
                HANDLE const file = CreateFileW(path.c_str(), i % 2 == 0 ? GenericWrite : GenericRead | GenericWrite, 0,
                                                OpenExisting, 0);
                if (file != InvalidHandle) {
                    if (++inside > 1) {
                        wasCrowded = true;
                    }
                    ++entries;
                    --inside;
                    CloseFile(file);
                }
            }
        });
    }
    threads.clear();
    EXPECT_FALSE(wasCrowded);
    EXPECT_GT(entries, 0);
}

TEST(CreateFile, Dispositions) {
    TemporaryFolder const folder;
    struct {
        unsigned int disposition;
        bool exists;
        unsigned int error; // of the last error, also after success
        std::string content;
    } const rows[] = {{CreateNew, false, 424242, ""},
                      {CreateNew, true, ErrorFileExists, "old"},
                      {CreateAlways, false, ErrorSuccess, ""},
                      {CreateAlways, true, ErrorAlreadyExists, ""},
                      {OpenExisting, false, ErrorFileNotFound, "<missing>"},
                      {OpenExisting, true, 424242, "old"},
                      {OpenAlways, false, ErrorSuccess, ""},
                      {OpenAlways, true, ErrorAlreadyExists, "old"},
                      {TruncateExisting, false, ErrorFileNotFound, "<missing>"},
                      {TruncateExisting, true, 424242, ""},
                      {0, true, ErrorInvalidParameter, "old"},
                      {6, true, ErrorInvalidParameter, "old"}};
    for (auto const& row : rows) {
        std::filesystem::remove(folder.Native() + "file");
        if (row.exists) {
            folder.Write("file", "old");
        }
        SetLastError(424242);
        HANDLE const file = CreateFileW((folder.Path() + Name).c_str(), GenericWrite, 0, row.disposition, 0);
        EXPECT_EQ(GetLastError(), row.error) << row.disposition;
        EXPECT_EQ(folder.Read("file"), row.content) << row.disposition;
        if (file != InvalidHandle) {
            CloseFile(file);
        }
    }
}

TEST(CreateFile, Failures) {
    TemporaryFolder const folder;
    folder.Write("file");
    struct {
        std::u16string path;
        unsigned int disposition;
        unsigned int error;
    } const rows[] = {{folder.Path(), CreateAlways, ErrorAccessDenied},
                      {folder.Path() + u"none\\file", CreateNew, ErrorPathNotFound},
                      {folder.Path() + u"file\\file", OpenExisting, ErrorPathNotFound},
                      {folder.Path() + u"a*", CreateAlways, ErrorInvalidName}};
    for (auto const& row : rows) {
        EXPECT_EQ(CreateFileW(row.path.c_str(), GenericRead | GenericWrite, 0, row.disposition, 0), InvalidHandle);
        EXPECT_EQ(GetLastError(), row.error) << testing::PrintToString(row.path);
    }
    EXPECT_FALSE(CloseFile(InvalidHandle));
    EXPECT_FALSE(CloseFile(nullptr));
}

TEST(CreateFile, DescriptorsDoNotReachOtherPrograms) {
    TemporaryFolder const folder;
    HANDLE const file = CreateFileW((folder.Path() + Name).c_str(), GenericWrite, 0, CreateNew, 0);
    HANDLE const duplicate = DuplicateFile(file);
    EXPECT_NE(fcntl(GetFileDescriptor(file), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_NE(fcntl(GetFileDescriptor(duplicate), F_GETFD) & FD_CLOEXEC, 0);
    CloseFile(file);
    CloseFile(duplicate);
}

TEST(CreateFile, DeleteOnCloseFollowsARenamedFileAndSparesAnotherOne) {
    TemporaryFolder const folder;
    auto const open = [&] {
        return CreateFileW((folder.Path() + Name).c_str(), GenericWrite, ShareAll, OpenAlways, FileFlagDeleteOnClose);
    };
    HANDLE file = open();
    std::filesystem::rename(folder.Native() + "file", folder.Native() + "renamed");
    CloseFile(file);
    EXPECT_FALSE(folder.Exists("renamed"));
    file = open();
    std::filesystem::remove(folder.Native() + "file");
    folder.Write("file", "another");
    CloseFile(file);
    EXPECT_EQ(folder.Read("file"), "another");
}

TEST(FileIo, GoesBeyond32Bits) {
    TemporaryFolder const folder;
    HANDLE const file = CreateFileW((folder.Path() + Name).c_str(), GenericRead | GenericWrite, ShareAll, CreateNew, 0);
    unsigned long long size = 0;
    EXPECT_TRUE(SetFilePointer(file, (1LL << 32) + 5, nullptr, FileBegin));
    EXPECT_TRUE(SetEndOfFile(file));
    EXPECT_TRUE(GetFileSize(file, size));
    EXPECT_EQ(size, (1ULL << 32) + 5);
    EXPECT_FALSE(SetFilePointer(file, -(1LL << 32) - 6, nullptr, FileCurrent));
    EXPECT_EQ(GetLastError(), ErrorNegativeSeek);
    CloseFile(file);
}

TEST(FileIo, ABrokenPipeIsAnError) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    close(ends[0]);
    HANDLE const broken = HandleFromFileDescriptor(ends[1]);
    std::size_t count = 0;
    EXPECT_FALSE(WriteFile(broken, "x", 1, count)); // and the process lives
    EXPECT_EQ(GetLastError(), ErrorBrokenPipe);
    CloseFile(broken);
}

} // namespace
