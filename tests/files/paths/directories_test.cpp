// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/directories.h"

#include "tests/support/printers.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/files/paths/current_directory.h"
#include "zeltools/files/paths/io_time_out.h"
#include "zeltools/files/paths/network_paths.h"
#include "zeltools/platform/linux/mount_table.h"
#include "zeltools/platform/linux/samba_shares.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/network_drives.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/xsingle_lock.h"

#include <chrono>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Text = CXTString<char16_t>;

TEST(FileCreateDirectory, MakesTheWayAndTakesItBackOnFailure) {
    TemporaryFolder const disk;
    disk.Write("file");
    auto const make = [&](char const* name, bool recursive) {
        return fileCreateDirectory(disk.Path(name).c_str(), recursive);
    };
    EXPECT_FALSE(fileCreateDirectory(u"", true));
    EXPECT_TRUE(make("a", false) && make("a/", false) && make("a", true));
    EXPECT_FALSE(make("b/c/d", false));
    EXPECT_FALSE(disk.Exists("b"));
    EXPECT_TRUE(make("b/c/d/", true));
    EXPECT_TRUE(fs::is_directory(disk.Native() + "b/c/d"));
    EXPECT_FALSE(make("file/x", true));
    // The last one cannot be made: what the call made above it goes again, what was there stays.
    EXPECT_FALSE(make(("a/x/y/" + std::string(256, 'n')).c_str(), true));
    EXPECT_TRUE(disk.Exists("a"));
    EXPECT_FALSE(disk.Exists("a/x"));
    EXPECT_FALSE(fileCreateDirectory(u"\\\\no server\\share\\a", true));
}

TEST(FileRemoveDirectory, KeepsListedExtensions) {
    TemporaryFolder const disk;
    for (char const* const name : {"tree/a.TXT", "tree/b.png", "tree/sub/c.txt", "tree/gone/d.png"})
        disk.Write(name);
    Text const tree = disk.Path("tree/").c_str();
    CXArray<Text> keep;
    keep.Add(u".txt");
    EXPECT_FALSE(fileRemoveDirectory(tree, false, false, nullptr)); // not empty
    EXPECT_FALSE(fileRemoveDirectory(tree, false, true, &keep));
    EXPECT_TRUE(disk.Exists("tree/b.png"));
    EXPECT_FALSE(fileRemoveDirectory(tree, true, true, &keep));
    EXPECT_TRUE(disk.Exists("tree/a.TXT") && disk.Exists("tree/sub/c.txt"));
    EXPECT_FALSE(disk.Exists("tree/b.png") || disk.Exists("tree/gone"));
    EXPECT_TRUE(fileRemoveDirectory(tree, true, false, &keep)); // the list counts only where it is asked for
    EXPECT_FALSE(disk.Exists("tree"));
    EXPECT_FALSE(fileRemoveDirectory(tree, true, false, nullptr));
    disk.Write("file");
    EXPECT_FALSE(fileRemoveDirectory(disk.Path("file").c_str(), true, false, nullptr));
    EXPECT_TRUE(disk.Exists("file"));
}

TEST(FileGetFileCount, CountsFoldersAndEntersNoLink) {
    TemporaryFolder const disk;
    for (char const* const name : {"a", ".b", "sub/c", "sub/d.e", "sub/deeper/f"})
        disk.Write(name);
    fs::create_directory_symlink(".", disk.Native() + "sub/loop");
    EXPECT_EQ(fileGetFileCount(disk.Path().c_str(), false), 3);
    EXPECT_EQ(fileGetFileCount(disk.Path().c_str(), true), 8);
    EXPECT_EQ(fileGetFileCount(disk.Path("sub").c_str(), true), 0); // no trailing backslash
    EXPECT_EQ(fileGetFileCount(disk.Path("none/").c_str(), true), 0);
}

class CurrentDirectory : public testing::Test {
protected:
    ~CurrentDirectory() override { fs::current_path(before); }
    fs::path const before = fs::current_path();
};

TEST_F(CurrentDirectory, PushesAreTakenBackInTurn) {
    TemporaryFolder const disk;
    disk.Write("sub/x");
    Text const start = fileGetCurrentDirectory();
    EXPECT_FALSE(filePopCurrentDirectory());
    EXPECT_TRUE(filePushCurrentDirectory(disk.Path().c_str(), nullptr));
    EXPECT_EQ(fileGetCurrentDirectory(), disk.Path().c_str());
    EXPECT_TRUE(filePushCurrentDirectory(u"sub", nullptr));
    unsigned int timeOut = IoTimeOutAnyPath | 5000;
    EXPECT_FALSE(filePushCurrentDirectory(u"none", &timeOut)); // remembered all the same
    EXPECT_EQ(fileGetCurrentDirectory(), disk.Path("sub/").c_str());
    EXPECT_TRUE(filePopCurrentDirectory());
    EXPECT_EQ(fileGetCurrentDirectory(), disk.Path("sub/").c_str());
    EXPECT_TRUE(filePopCurrentDirectory() && filePopCurrentDirectory());
    EXPECT_EQ(fileGetCurrentDirectory(), start);
    EXPECT_FALSE(filePopCurrentDirectory());
    EXPECT_TRUE(filePushCurrentDirectory(u"\\", nullptr));
    EXPECT_EQ(fileGetCurrentDirectory(), u"\\");
    EXPECT_TRUE(filePopCurrentDirectory());
}

TEST_F(CurrentDirectory, ADirectoryThatIsGoneGivesTheModules) {
    TemporaryFolder const disk;
    disk.Write("sub/x");
    fs::current_path(disk.Native() + "sub");
    fs::remove_all(disk.Native() + "sub");
    std::string const module = fs::read_symlink("/proc/self/exe").parent_path() / "";
    EXPECT_EQ(fileGetCurrentDirectory(), platform::FromNativePath(module).c_str());
}

TEST_F(CurrentDirectory, APushDoesNotWaitForALibraryThatCloses) {
    CXSingleLock hold(&ApplicationLock(), true); // as the close does around the exit callbacks
    std::future<bool> pushed = std::async(std::launch::async, [] { return filePushCurrentDirectory(u"\\", nullptr); });
    EXPECT_EQ(pushed.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    hold.Unlock();
    EXPECT_TRUE(pushed.get() && filePopCurrentDirectory());
}

class NetworkPaths : public testing::Test {
protected:
    NetworkPaths() {
        disk.Write("mounts", "1 0 0:1 / / rw - ext4 /dev/none rw\n2 1 0:2 / /mnt/nas rw - cifs //nas/pictures rw\n");
        disk.Write("fstab", "");
        disk.Write("Shared/Deep/x");
        disk.Write("smb.conf", "[whole]\npath=" + disk.Native() + "\n[Part]\npath=" + disk.Native() + "shared\n");
        platform::GetMountTablePaths() = {disk.Native() + "mounts", disk.Native() + "fstab"};
        platform::GetSambaPaths() = {disk.Native() + "smb.conf", disk.Native() + "none"};
    }
    ~NetworkPaths() override {
        platform::GetMountTablePaths() = {};
        platform::GetSambaPaths() = {};
    }

    TemporaryFolder const disk;
    ScopedVariable const drives{"ZELTOOLS_DRIVES", "N=/mnt/nas/2024;C=" + disk.Native() + "Shared"};
};

TEST_F(NetworkPaths, ServerFormOfAPath) {
    Text const computer = platform::GetComputerNameW().c_str();
    Text const shared = disk.Path("Shared/Deep/a.png").c_str();
    struct {
        Text path, expected;
        bool isServerPath;
    } const rows[] = {
        {u"\\\\s\\h\\a", u"\\\\s\\h\\a", true},
        {u"N:\\b\\a.png", u"\\\\nas\\pictures\\2024\\b\\a.png", true},
        {u"\\mnt\\nas\\b\\a.png", u"\\\\nas\\pictures\\b\\a.png", true},
        {shared, u"\\\\" + computer + u"\\Part\\Deep\\a.png", true}, // the deepest share; case does not count
        {u"C:\\Deep\\a.png", u"\\\\" + computer + u"\\Part\\Deep\\a.png", true},
        {disk.Path("x").c_str(), u"\\\\" + computer + u"\\whole\\x", true},
        {u"\\home\\x", u"\\home\\x", false},
        {u"", u"", false},
    };
    for (auto const& row : rows) {
        Text out = row.path;
        EXPECT_EQ(fileConvertToUNCPath(out, out), row.isServerPath) << testing::PrintToString(row.path);
        EXPECT_EQ(out, row.expected);
    }
}

TEST_F(NetworkPaths, FoldersAreMadeBelowAShareAndNotAboveIt) {
    disk.Write("mounts", "1 0 0:1 / " + disk.Native() + "Shared rw - cifs //files/work rw\n");
    EXPECT_TRUE(fileCreateDirectory(u"\\\\files\\work\\new\\deep", true));
    EXPECT_TRUE(disk.Exists("Shared/new/deep"));
}

} // namespace
