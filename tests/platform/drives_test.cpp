// SPDX-License-Identifier: MIT
#include "zeltools/platform/drives.h"

#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/mount_table.h"
#include "zeltools/platform/linux/samba_shares.h"
#include "zeltools/platform/network_drives.h"

#include <gtest/gtest.h>

using namespace platform;

namespace {

/// Points the seam at tables of the test's own.
class Drives : public testing::Test {
protected:
    Drives() {
        folder.Write("mounts", "1 0 0:20 / / rw - ext4 /dev/none rw\n"
                               "2 1 0:21 / /media/dvd rw - iso9660 /dev/sr0 ro\n"
                               "3 1 0:22 / /run rw - tmpfs tmpfs rw\n"
                               "4 1 0:23 / /mnt/nas rw - cifs //nas/pictures rw\n"
                               "5 1 0:24 /sub /mnt/part rw - cifs //nas/whole rw\n"
                               "6 1 0:25 / /mnt/nas/local rw - ext4 /dev/none rw\n"
                               "7 1 0:26 / /mnt/plan9 rw - 9p host rw\n");
        folder.Write("fstab", "# comment\n"
                              "//nas/pictures /mnt/nas cifs user 0 0\n"
                              "away:/export\t/mnt/away nfs noauto 0 0\n"
                              "//nas/other /mnt/other\\040one cifs\n");
        GetMountTablePaths() = {folder.Native() + "mounts", folder.Native() + "fstab"};
    }
    ~Drives() override { GetMountTablePaths() = {}; }

    TemporaryFolder const folder;
    ScopedVariable const drives{"ZELTOOLS_DRIVES",
                                "C=/home;D=/media/dvd;N=/mnt/nas/2024;A=/mnt/away;S=//nas/pictures;G=//gone/x;"
                                "O=/mnt/other one/sub;L=/mnt/nas/local;P=/mnt/part"};
};

TEST_F(Drives, Types) {
    std::pair<DriveType, std::vector<char16_t const*>> const rows[] = {
        {DriveFixed, {u"C:\\", u"\\running"}},
        {DriveCDRom, {u"D:\\"}},
        {DriveRemote, {u"N:\\", u"S:\\", u"\\mnt\\nas\\a\\", u"\\mnt\\plan9", u"\\\\NAS\\Pictures\\"}},
        {DriveNoRootDir, {u"G:\\", u"\\\\nas\\other\\", u"relative"}},
        {DriveRamDisk, {u"\\run\\user\\"}},
    };
    for (auto const& [type, paths] : rows) {
        for (char16_t const* const path : paths) {
            EXPECT_EQ(GetDriveTypeW(path), type) << testing::PrintToString(path);
        }
    }
    EXPECT_TRUE(IsNetworkDrive(u'n') && IsNetworkDrive(u'A') && IsNetworkDrive(u'G'));
    EXPECT_FALSE(IsNetworkDrive(u'C') || IsNetworkDrive(u'L') || IsNetworkDrive(u'Z') || IsNetworkDrive(u'1'));
}

TEST_F(Drives, ConnectionsAndTheirServerForm) {
    struct {
        char16_t const* drive;
        unsigned int error;
        char16_t const* remote;
    } const rows[] = {{u"N:", ErrorSuccess, u"\\\\nas\\pictures\\2024"},
                      {u"P:", ErrorSuccess, u"\\\\nas\\whole\\sub"},
                      {u"S:\\", ErrorSuccess, u"\\\\nas\\pictures"},
                      {u"A:", ErrorConnectionUnavailable, u"\\\\away\\export"},
                      {u"O:", ErrorConnectionUnavailable, u"\\\\nas\\other\\sub"},
                      {u"C:", ErrorNotConnected, u""},
                      {u"Z:", ErrorBadDevice, u""},
                      {u"C:\\a", ErrorBadDevice, u""}};
    for (auto const& row : rows) {
        std::u16string remote;
        EXPECT_EQ(WNetGetConnectionW(row.drive, remote), row.error) << testing::PrintToString(row.drive);
        EXPECT_EQ(remote, row.remote);
    }
    std::u16string universal;
    EXPECT_EQ(WNetGetUniversalNameW(u"\\mnt\\away\\a", universal), ErrorConnectionUnavailable);
    EXPECT_EQ(WNetGetUniversalNameW(u"\\home\\a", universal), ErrorNotConnected);
}

TEST(MountTable, APathFallsOnTheMountThatCoversIt) {
    std::vector<Mount> const mounts = ParseMountInfo("1 0 0:1 / / rw - ext4 a rw\n"
                                                     "2 1 0:2 / /mnt rw - ext4 b rw\n"
                                                     "3 1 0:3 / /mnt rw shared:1 master:2 - ext4 c rw\n"
                                                     "4 1 0:4 / /mnt/a\\040b rw - ext4 d rw");
    EXPECT_EQ(FindMountOfPath(mounts, "/mnt/x")->source, "c"); // the later one lies on top
    EXPECT_EQ(FindMountOfPath(mounts, "/mnt/a b/x")->source, "d");
    EXPECT_EQ(FindMountOfPath(mounts, "/mntx")->source, "a");
    EXPECT_EQ(FindMountOfPath({}, "/"), nullptr);
    for (char const* const broken :
         {"", "\n\n", "1 2 3", "1 0 0:1 / relative rw - ext4 a rw", "1 0 0:1 / / rw -", " - "}) {
        EXPECT_TRUE(ParseMountInfo(broken).empty()) << broken;
        EXPECT_TRUE(ParseFileSystemTable(broken).empty() || broken[0] == '1') << broken;
    }
}

TEST(Shares, OfTheServersOwnFiles) {
    TemporaryFolder const folder;
    folder.Write("smb.conf", "[global]\n  workgroup = X\n  UserShare Path = " + folder.Native() +
                                 "user\n"
                                 "[Media Files]\n path = /srv/media/\n comment = \\\n goes on\n"
                                 "# [hidden]\n# path = /hidden\n"
                                 "[print$]\npath=/var/print\nprintable = Yes\n"
                                 "[homes]\npath = /home/%S\n[users]\npath = /home/%U\n"
                                 "[off]\npath = /off\navailable = no\n[empty]\n");
    folder.Write("user/projects", "#VERSION 2\npath=/home/ana/projects\ncomment=\nsharename=Projects\n");
    folder.Write("user/broken", "nonsense");
    GetSambaPaths() = {folder.Native() + "smb.conf", folder.Native() + "none"};
    std::vector<ShareInfo> const shares = NetShareEnum();
    ASSERT_EQ(shares.size(), 2U);
    EXPECT_EQ(shares[0].name + u"=" + shares[0].path, u"Media Files=\\srv\\media");
    EXPECT_EQ(shares[1].name + u"=" + shares[1].path, u"Projects=\\home\\ana\\projects");
    GetSambaPaths() = {folder.Native() + "none", folder.Native() + "none"};
    EXPECT_TRUE(NetShareEnum().empty());
    GetSambaPaths() = {};
}

} // namespace
