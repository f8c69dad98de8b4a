// SPDX-License-Identifier: MIT
#include "zeltools/platform/native_path.h"

#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/platform/drives.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/linux/mount_table.h"

#include <fstream>
#include <gtest/gtest.h>

using namespace platform;

namespace {

std::u16string Form(std::string_view native) {
    std::u16string form;
    AppendFromNativeName(native, form);
    return form;
}

TEST(NativeName, FormsOfNames) {
    std::pair<char const*, char16_t const*> const rows[] = {
        {"/home/ana/", u"\\home\\ana\\"},
        {"a:b*c?d\"e<f>g|h", u"a\uF03Ab\uF02Ac\uF03Fd\uF022e\uF03Cf\uF03Eg\uF07Ch"},
        {"back\\slash", u"back\xF05Cslash"},
        {"caf\xC3\xA9 \xE2\x82\xAC", u"caf\u00E9 \u20AC"},
        {"\xF0\x9F\x8E\xA8", u"\U0001F3A8"},
        {"latin-1 \xE9!", u"latin-1 \xDCE9!"},
        {"\xC0\xAF", u"\xDCC0\xDCAF"},                             // a slash in two bytes is no UTF-8
        {"\xED\xA0\x80", u"\xDCED\xDCA0\xDC80"},                   // a surrogate in three
        {"\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},         // above U+10FFFF
        {"\xEF\x80\xBA", u"\xDCEF\xDC80\xDCBA"},                   // U+F03A itself, which means a colon here
        {"\xEF\x83\xBF\xEF\x84\x80", u"\xDCEF\xDC83\xDCBF\xF100"}, // last of the range, and the one behind it
    };
    for (auto const& [native, form] : rows) {
        EXPECT_EQ(Form(native), form) << native;
        std::string back;
        EXPECT_TRUE(ToNativeName(form, back)) << native;
        EXPECT_EQ(back, native);
    }
    EXPECT_EQ(FromNativePath("//server/share"), u"\\server\\share"); // leading slashes never mean a server
    EXPECT_EQ(FromNativePath("///"), u"\\");
}

TEST(NativeName, EveryNameOfOneTwoAndThreeBytesComesBack) {
    std::string back;
    std::string name;
    auto const check = [&] {
        ASSERT_TRUE(ToNativeName(Form(name), back));
        ASSERT_EQ(back, name);
    };
    for (int a = 1; a < 256; ++a) {
        name = {static_cast<char>(a)};
        check();
        for (int b = 1; b < 256; ++b) {
            name = {static_cast<char>(a), static_cast<char>(b)};
            check();
            for (int c = 0x7E; a >= 0xE0 && b >= 0x7E && b < 0xC2 && c < 0xC2; ++c) {
                name = {static_cast<char>(a), static_cast<char>(b), static_cast<char>(c)};
                check();
            }
        }
    }
}

// Meanings and the end; an escape of a plain letter; surrogates that stand for no byte; bytes of a character.
TEST(NativeName, ATextThatIsNoNamesFormIsRefused) {
    std::u16string const rows[] = {
        u"a*b",    u"what?",  u"a:b",     u"\"",     u"<",      u">",      u"|",           std::u16string(u"a\0b", 3),
        u"\xF041", u"\xD800", u"\xD800x", u"\xDC00", u"\xDC7F", u"\xDD00", u"\xDCC3\xDCA9"};
    for (std::u16string const& row : rows) {
        std::string native;
        EXPECT_FALSE(ToNativeName(row, native)) << native;
        EXPECT_FALSE(ToNativePath(u"\\tmp\\" + row, native));
        EXPECT_EQ(GetLastError(), ErrorInvalidName);
    }
}

TEST(NativePath, DrivesIgnoreCaseAndRootedPathsDoNot) {
    TemporaryFolder const folder;
    folder.Write("Textures/Wood.JPG");
    folder.Write("Textures/\xC3\x89t\xC3\xA9.png"); // capital E acute
    folder.Write("both/b");
    folder.Write("both/B");
    folder.Write("outside");
    ScopedVariable const drives("ZELTOOLS_DRIVES",
                                "T=" + folder.Native() + "Textures;b=" + folder.Native() + "both/;R=/;X=rel");
    std::string const root = folder.Native();
    std::pair<char16_t const*, std::string> const rows[] = {
        {u"t:\\wOOD.jpg", root + "Textures/Wood.JPG"},
        {u"T:wood.jpg", root + "Textures/Wood.JPG"},
        {u"\\\\?\\T:\\wood.jpg", root + "Textures/Wood.JPG"},
        {u"T:\\\u00E9T\u00C9.PNG", root + "Textures/\xC3\x89t\xC3\xA9.png"},
        {u"T:\\New.txt", root + "Textures/New.txt"},
        {u"T:\\..\\..\\outside", root + "Textures/outside"}, // never above the drive
        {u"T:\\a\\..\\.\\wood.jpg", root + "Textures/Wood.JPG"},
        {u"B:\\b", root + "both/b"}, // exact names win
        {u"T:\\", root + "Textures/"},
        {u"R:\\", "/"},
    };
    std::string native;
    for (auto const& [path, onDisk] : rows) {
        EXPECT_TRUE(ToNativePath(path, native));
        EXPECT_EQ(native, onDisk);
    }
    EXPECT_EQ(GetFileAttributesW((folder.Path() + u"Textures\\wood.jpg").c_str()), InvalidFileAttributes);
    EXPECT_EQ(GetLastError(), ErrorFileNotFound);
    EXPECT_EQ(GetDriveLetters(), u"BRT");
    for (char16_t const* const path : {u"Q:\\a", u"X:\\a", u"", u"1:\\a"}) {
        EXPECT_FALSE(ToNativePath(path, native));
        EXPECT_EQ(GetLastError(), path[0] == u'1' ? ErrorInvalidName : ErrorPathNotFound);
    }
}

TEST(NativePath, AServerPathFindsTheMostSpecificMount) {
    TemporaryFolder const folder;
    folder.Write("share/A/file.txt");
    folder.Write("deep/x");
    std::string const root = folder.Native();
    std::ofstream(root + "mounts") << "36 35 0:1 / " << root << "share rw - cifs //Nas/Share\\040One rw\n"
                                   << "37 35 0:2 / " << root << "deep rw - cifs //nas/Share\\040One/A/deep rw\n"
                                   << "38 35 0:3 / " << root << "nfs rw - nfs4 host.example:/export/home rw\n"
                                   << "39 35 0:3 / " << root << "ssh rw - fuse.sshfs ana@[fe80::1]:/srv rw\n"
                                   << "garbage\n40 35 0:4 / /cut\n";
    GetMountTablePaths().mountInfo = root + "mounts";
    // The path on the disk is empty where no mount is found.
    std::pair<char16_t const*, std::string> const rows[] = {
        {u"\\\\nas\\share one\\a\\FILE.txt", root + "share/A/file.txt"},
        {u"\\\\?\\UNC\\nas\\share one\\a\\FILE.txt", root + "share/A/file.txt"},
        {u"\\\\NAS\\Share One\\a\\Deep\\X", root + "deep/x"},
        {u"\\\\nas\\share one", root + "share"},
        {u"\\\\nas\\share one\\..\\..\\b", root + "share/b"},
        {u"\\\\host.example\\export\\home\\u", root + "nfs/u"},
        {u"\\\\fe80::1\\srv\\u", ""}, // a colon has no place in a name
        {u"\\\\nas\\other\\x", ""},
        {u"\\\\nas", ""},
        {u"\\\\", ""},
    };
    for (auto const& [path, onDisk] : rows) {
        std::string native;
        EXPECT_EQ(ToNativePath(path, native), !onDisk.empty());
        EXPECT_EQ(onDisk.empty() ? std::string() : native, onDisk);
    }
    GetMountTablePaths() = {};
}

TEST(NativePath, TheUsersVirtualFileSystemsAreShares) {
    TemporaryFolder const folder;
    folder.Write("gvfs/smb-share:server=nas,share=my%20pictures,user=ana/A.png");
    ScopedVariable const runtime("XDG_RUNTIME_DIR", folder.Native());
    std::string native;
    EXPECT_TRUE(ToNativePath(u"\\\\NAS\\My Pictures\\a.png", native));
    EXPECT_EQ(native, folder.Native() + "gvfs/smb-share:server=nas,share=my%20pictures,user=ana/A.png");
}

} // namespace
