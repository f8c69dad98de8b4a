// SPDX-License-Identifier: MIT
#include "zeltools/persistence/reg_util.h"

#include "tests/support/noting_desktop.h"
#include "tests/support/printers.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thrown.h"
#include "zeltools/persistence/registry_name.h"
#include "zeltools/platform/drives.h"
#include "zeltools/platform/registry.h"

#include <gtest/gtest.h>

namespace {

using Wide = CXTString<char16_t>;

class RegUtil : public testing::Test {
protected:
    bool Exists(char16_t const* path) { return CRegUtil(KeyRead).SetPath(path, false); }

    TemporaryFolder folder;
    ScopedVariable const store{"ZELTOOLS_REGISTRY", folder.Native() + "registry.db"};
    CRegUtil util{KeyAllAccess};
};

TEST_F(RegUtil, PathsNameARootOrKeepThePresentOne) {
    EXPECT_FALSE(util.SetPath(u"Software/A", false));
    EXPECT_EQ(util.GetExitCode(), 2);
    EXPECT_FALSE(folder.Exists("registry.db"));
    EXPECT_TRUE(util.SetPath(u"hkey_users\\/Software//A\\B/C/", true));
    EXPECT_TRUE(util.WriteKeyInt(u"n", 1));
    EXPECT_TRUE(util.SetPath(u"Software/A", false)); // still of HKEY_USERS
    EXPECT_TRUE(util.KeyExists(u"b"));
    EXPECT_FALSE(Exists(u"Software/A"));
    char16_t const* names[] = {u"Software", u"A", u"B", u"C"};
    EXPECT_TRUE(util.SetPath(names, 4, HKEY_USERS, false));
    EXPECT_EQ(util.GetKeyInt(u"N"), 1);
    EXPECT_FALSE(util.SetPath(names, 4, HKEY_CURRENT_USER, false));
    EXPECT_FALSE(util.SetPath(names, 1, nullptr, true));
    EXPECT_EQ(util.GetExitCode(), 6);
    EXPECT_EQ(support::Thrown([&] { util.SetPath(names, -1, HKEY_USERS, true); }), "argument");
    EXPECT_TRUE(util.SetPath(u"HKEY_USERS", false)); // the root itself
    EXPECT_TRUE(util.KeyExists(u"Software"));

    struct {
        char16_t const* name;
        unsigned int number;
    } const roots[] = {{u"HKEY_CLASSES_ROOT", 0}, {u"hkey_current_user", 1},   {u"HKEY_LOCAL_MACHINE", 2},
                       {u"HKEY_USERS", 3},        {u"HKEY_CURRENT_CONFIG", 5}, {u"HKEY_DYN_DATA", 6}};
    for (auto const& root : roots) {
        // The documented handles: 32 bits, widened with their sign.
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(CRegUtil::StrToRootKey(root.name)),
                  0xFFFFFFFF80000000 + root.number);
    }
    EXPECT_EQ(CRegUtil::StrToRootKey(u"HKCU"), nullptr);
}

TEST_F(RegUtil, RelativePathsGoUpADotAtATime) {
    EXPECT_FALSE(util.SetRelPath(u"A", true));
    struct {
        char16_t const* way;
        char16_t const* key; // empty: refused
    } const rows[] = {{u"D", u"A/B/C/D"}, {u".D", u"A/B/C/D"},   {u"./D/E", u"A/B/C/D/E"}, {u".", u"A/B/C"},
                      {u"..D", u"A/B/D"}, {u"..", u"A/B"},       {u"...\\D", u"A/D"},      {u"....D", u"D"},
                      {u".....", u""},    {u"..D.E", u"A/B/D.E"}};
    for (auto const& row : rows) {
        ASSERT_TRUE(util.SetPath(u"A/B/C", true));
        EXPECT_EQ(util.SetRelPath(row.way, true), row.key[0] != 0);
        EXPECT_TRUE(util.WriteKeyString(u"way", row.way));
        ASSERT_TRUE(util.SetPath(row.key[0] != 0 ? row.key : u"A/B/C", false));
        EXPECT_EQ(util.GetKeyString(u"way"), Wide(row.way)) << testing::PrintToString(row.way);
    }
}

TEST_F(RegUtil, ValuesHaveTypes) {
    ASSERT_TRUE(util.SetPath(u"Software/A", true));
    ScopedVariable const variable("ZEL_TEST_WORD", "word");
    EXPECT_TRUE(util.OpenBase(false));
    EXPECT_TRUE(util.OpenBase(false));
    EXPECT_TRUE(util.WriteKeyString(u"text", u"%ZEL_TEST_WORD%"));
    EXPECT_TRUE(util.WriteKeyInt(u"int", -7));
    EXPECT_TRUE(util.WriteKeyBin(u"bin", "\1\2\3", 3));
    EXPECT_TRUE(util.WriteRegNoneKey(u"none"));
    util.CloseBase();
    HKEY key = nullptr;
    ASSERT_EQ(platform::RegOpenKeyExW(HKEY_CURRENT_USER, u"Software\\A", KeyAllAccess, &key), 0);
    platform::RegSetValueExW(key, u"expand", RegExpandString, u"<%ZEL_TEST_WORD%>", 34); // without terminator
    platform::RegSetValueExW(key, u"multi", RegMultiString, u"a\0b\0", 10);
    platform::RegSetValueExW(key, u"odd", RegString, "x\0y", 3);

    EXPECT_EQ(util.GetKeyString(u"TEXT", true), Wide(u"%ZEL_TEST_WORD%")); // only type 2 is expanded
    EXPECT_EQ(util.GetKeyString(u"expand"), Wide(u"<%ZEL_TEST_WORD%>"));
    EXPECT_EQ(util.GetKeyString(u"expand", true), Wide(u"<word>"));
    EXPECT_EQ(support::Whole(util.GetKeyString(u"multi")), std::u16string(u"a\0b", 3));
    EXPECT_EQ(util.GetKeyString(u"odd"), Wide(u"x"));
    EXPECT_EQ(util.GetKeyInt(u"int", 5), -7);
    EXPECT_EQ(util.GetExitCode(), 0);
    EXPECT_EQ(util.GetKeyInt(u"absent", 5), 5);
    EXPECT_EQ(util.GetExitCode(), 2);
    EXPECT_EQ(util.GetKeyInt(u"bin", 5), 5);
    EXPECT_EQ(util.GetExitCode(), 13);
    EXPECT_EQ(util.GetKeyString(u"int"), Wide());
    char bytes[3] = {};
    unsigned int size = 2;
    EXPECT_FALSE(util.GetKeyBin(u"bin", bytes, size));
    EXPECT_EQ(util.GetExitCode(), 234);
    EXPECT_EQ(size, 3U);
    EXPECT_TRUE(util.GetKeyBin(u"bin", bytes, size));
    EXPECT_EQ(bytes[2], 3);
    EXPECT_TRUE(util.GetKeyBin(u"none", nullptr, size));
    EXPECT_EQ(size, 0U);
    EXPECT_TRUE(util.DeleteValue(u"none"));
    EXPECT_FALSE(util.DeleteValue(u"none"));
    platform::RegCloseKey(key);

    CRegUtil reader(KeyRead);
    ASSERT_TRUE(reader.SetPath(u"Software/A", false));
    EXPECT_FALSE(reader.WriteKeyInt(u"int", 1));
    EXPECT_EQ(reader.GetExitCode(), 5);
}

TEST_F(RegUtil, KeysBelow) {
    ASSERT_TRUE(util.SetPath(u"Software/A", true));
    EXPECT_TRUE(util.WriteSubKeyString(u"b", u"s", u"text"));
    EXPECT_TRUE(util.WriteSubKeyInt(u"B\\c", u"n", 4));
    EXPECT_TRUE(util.WriteSubKeyInt(u"a", u"n", 5));
    EXPECT_EQ(util.GetSubKeyString(u"B", u"S"), Wide(u"text"));
    EXPECT_EQ(util.GetSubKeyInt(u"b\\C", u"n"), 4);
    EXPECT_EQ(util.GetSubKeyInt(u"absent", u"n", 9), 9);

    std::u16string listed;
    Wide name;
    EXPECT_TRUE(util.StartSubKeyEnum());
    while (util.GetNextSubKeyName(name))
        listed += name.GetConstBuffer() + std::u16string(u" ");
    EXPECT_EQ(util.GetExitCode(), 259);
    util.EndSubKeyEnum();
    EXPECT_EQ(listed, u"a b ");
    EXPECT_TRUE(util.WriteSubKeyInt(u"b", u"t", 4));
    EXPECT_TRUE(util.StartValueSection(u"b"));
    CRegUtil const copy(util); // has its own, closed key
    for (listed.clear(); util.GetNextValueName(name);)
        listed += name.GetConstBuffer() + std::u16string(u" ");
    util.EndValueSection();
    EXPECT_EQ(listed, u"s t ");
    EXPECT_FALSE(util.GetNextValueName(name));
    EXPECT_FALSE(util.StartValueSection(u"absent"));

    EXPECT_FALSE(util.DeleteKey(u"b", false)); // c is below
    EXPECT_EQ(util.GetExitCode(), 5);
    EXPECT_TRUE(util.DeleteKey(u"b", true));
    EXPECT_FALSE(util.KeyExists(u"b"));
    EXPECT_TRUE(util.DeleteKey(u"a", false));
}

TEST_F(RegUtil, DefaultPathNeedsAnApplicationName) {
    NotingDesktop const desktop;
    EXPECT_FALSE(util.SetPath());
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_GE(desktop.boxes[0].text.Find(u"requires you to specify the appname"), 0);
    CRegUtil named(u"Catalogue", KeyAllAccess);
    EXPECT_FALSE(named.SetPath());
    EXPECT_EQ(named.GetExitCode(), 2);
    ASSERT_TRUE(util.SetPath(u"Software/Test/Catalogue", true));
    EXPECT_TRUE(named.SetPath());
}

TEST_F(RegUtil, DrivesComeFromTheRegistryWithoutAVariable) {
    auto const drive = [](char16_t letter) {
        std::string target = "<none>";
        platform::GetDriveTarget(letter, target);
        return target;
    };
    ScopedVariable const home("ZEL_TEST_HOME", "/home/ana");
    ScopedVariable const drives("ZELTOOLS_DRIVES", "C=/environment");
    ASSERT_TRUE(util.SetPath(u"Software/ZelTools/Drives", true));
    EXPECT_TRUE(util.WriteKeyString(u"c", u"/registry/"));
    EXPECT_EQ(drive(u'C'), "/environment");
    unsetenv("ZELTOOLS_DRIVES");
    EXPECT_EQ(drive(u'C'), "/registry");
    EXPECT_TRUE(util.WriteKeyString(u"S", u"\\\\server\\share"));
    EXPECT_TRUE(util.WriteKeyString(u"R", u"relative"));
    EXPECT_TRUE(util.WriteKeyInt(u"I", 1));
    EXPECT_EQ(drive(u's'), "//server/share");
    EXPECT_EQ(platform::GetDriveLetters(), u"CS");
    EXPECT_TRUE(util.DeleteValue(u"C"));
    EXPECT_EQ(platform::GetDriveLetters(), u"S");
}

TEST_F(RegUtil, NamesOfPrograms) {
    folder.Write("folder.exe/x");
    ScopedVariable const variable("ZEL_TEST_FOLDER", "\\opt");
    struct {
        std::u16string value;
        unsigned int type;
        std::u16string result; // empty: 0
    } const rows[] = {
        {u"\"C:\\Tools\\VIEW.EXE\" /s \"%1\"", RegString, u"c:\\tools\\view.exe"},
        {u"run \"\\a\\b.exe\"", RegMultiString, u"\\a\\b.exe"},
        {u"%ZEL_TEST_FOLDER%\\v.exe -x", RegExpandString, u"\\opt\\v.exe"},
        {u"%ZEL_TEST_FOLDER%\\v.exe", RegString, u"%zel_test_folder%\\v.exe"},
        {u"\\\\Server\\Share\\A.exe.exe", RegString, u"\\\\server\\share\\a.exe"},
        {u"C:\\view.com", RegString, u""},
        {u".exe", RegBinary, u""},
        {u"\"", RegString, u""},
        {std::u16string(300, u'a') + u".exe", RegExpandString, u""},
        {std::u16string(300, u'a') + u".exe", RegString, std::u16string(300, u'a') + u".exe"},
    };
    for (auto const& row : rows) {
        Wide result(u"before");
        EXPECT_EQ(GetNameFromRegistry(row.value.c_str(), row.type, result), row.result.empty() ? 0 : 1);
        EXPECT_EQ(result, Wide(row.result.c_str()));
    }
    ScopedVariable const drives("ZELTOOLS_DRIVES", "T=" + folder.Native());
    Wide directory;
    EXPECT_EQ(GetNameFromRegistry(u"T:\\Folder.exe", RegString, directory), 1);
    EXPECT_EQ(directory, Wide(u"t:\\folder.exe\\"));
}

} // namespace
