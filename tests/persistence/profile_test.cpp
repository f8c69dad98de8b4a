// SPDX-License-Identifier: MIT
#include "zeltools/persistence/profile.h"

#include "tests/support/printers.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/foundation/win_app.h"
#include "zeltools/persistence/reg_util.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

using Wide = CXTString<char16_t>;

/// Both places in which a host may keep its settings.
class Profile : public testing::TestWithParam<bool> {
protected:
    Profile() {
        application.SetRegistryKey(u"Maker");
        application.SetProfileName(u"Catalogue");
        if (GetParam())
            application.SetProfileFile(folder.Path("profile.ini").c_str());
    }
    static std::string Binary(char16_t const* entry) {
        void* data = &data;
        unsigned int size = 77;
        int const isThere = GetProfileBinary(u"S", entry, &data, &size);
        std::string const bytes(static_cast<char*>(data), size);
        delete[] static_cast<unsigned char*>(data);
        return isThere ? bytes : "<none>" + bytes;
    }

    TemporaryFolder folder;
    ScopedVariable const store{"ZELTOOLS_REGISTRY", folder.Native() + "registry.db"};
    CWinApp application;
};

TEST_P(Profile, KeepsTextsNumbersAndBytes) {
    EXPECT_EQ(CWinApp::GetApp(), &application);
    EXPECT_EQ(application.GetProfileString(u"S", u"text", u"default"), Wide(u"default"));
    EXPECT_EQ(application.GetProfileInt(u"S", u"int", -1), -1);
    EXPECT_EQ(Binary(u"bin"), "<none>");
    EXPECT_FALSE(folder.Exists("registry.db"));

    EXPECT_TRUE(application.WriteProfileString(u"S", u"text", u" é "));
    EXPECT_TRUE(application.WriteProfileInt(u"S", u"int", -2147483647 - 1));
    EXPECT_TRUE(WriteProfileBinary(u"S", u"bin", "\0\x1F\xA0\xFF", 4));
    EXPECT_TRUE(WriteProfileFloat(u"S", u"float", 1.5F));
    EXPECT_TRUE(WriteProfileLongUInt(u"S", u"long", 0xFEDCBA9876543210));
    EXPECT_EQ(folder.Exists("registry.db"), !GetParam());
    EXPECT_EQ(folder.Exists("profile.ini"), GetParam());

    EXPECT_EQ(application.GetProfileString(u"s", u"TEXT"), Wide(u" é "));
    EXPECT_EQ(application.GetProfileInt(u"s", u"INT", 0), -2147483647 - 1);
    EXPECT_EQ(Binary(u"bin"), std::string("\0\x1F\xA0\xFF", 4));
    EXPECT_TRUE(WriteProfileBinary(u"S", u"five", "12345", 5));
    std::tuple<char16_t const*, int, float> const reals[] = {
        {u"float", 1, 1.5F}, {u"long", 0, 2.5F}, {u"five", 0, 2.5F}}; // of four, eight and five bytes
    for (auto const& [entry, isThere, expected] : reals) {
        float real = 0;
        EXPECT_EQ(GetProfileFloat(u"S", entry, real, 2.5F), isThere);
        EXPECT_EQ(real, expected);
    }
    unsigned long long whole = 0;
    EXPECT_EQ(GetProfileLongUInt(u"S", u"long", whole, 1), 1);
    EXPECT_EQ(whole, 0xFEDCBA9876543210);
    EXPECT_EQ(GetProfileLongUInt(u"S", u"absent", whole, 7), 0);
    EXPECT_EQ(whole, 7U);

    EXPECT_TRUE(application.WriteProfileString(u"S", u"text", nullptr));
    EXPECT_EQ(application.GetProfileString(u"S", u"text", u"gone"), Wide(u"gone"));
    EXPECT_TRUE(application.WriteProfileString(u"S", nullptr, nullptr));
    EXPECT_EQ(Binary(u"bin"), "<none>");
    EXPECT_FALSE(application.WriteProfileString(u"", u"a", u"b"));
    EXPECT_FALSE(WriteProfileBinary(nullptr, u"a", "", 0));
}

INSTANTIATE_TEST_SUITE_P(Place, Profile, testing::Bool(),
                         [](auto const& row) { return row.param ? "File" : "Registry"; });

using ProfileInFile = Profile;
INSTANTIATE_TEST_SUITE_P(Place, ProfileInFile, testing::Values(true));

TEST_P(ProfileInFile, BytesAreLettersWithTheLowHalfFirst) {
    struct {
        char const* letters;
        std::string bytes;
    } const rows[] = {{"BAAA", std::string("\1\0", 2)}, {"OPAPP", "\xFE\xF0"}, {"", "<none>"}, {"A", ""}};
    for (auto const& row : rows) {
        folder.Write("profile.ini", std::string("[S]\nx=") + row.letters);
        EXPECT_EQ(Binary(u"x"), row.bytes) << row.letters;
    }
    folder.Write("profile.ini", "[S]\nx=!\xC3\xA9\nint=-12z\nlarge=99999999999");
    EXPECT_EQ(Binary(u"x").size(), 1U); // no letters of the sixteen: some byte
    EXPECT_EQ(application.GetProfileInt(u"S", u"int", 0), -12);
    EXPECT_EQ(application.GetProfileInt(u"S", u"large", 0), 2147483647);
    EXPECT_EQ(application.GetProfileInt(u"S", u"x", 5), 0);
    WriteProfileBinary(u"S", u"x", "\x2F", 1);
    EXPECT_EQ(application.GetProfileString(u"S", u"x"), Wide(u"PC"));
    EXPECT_FALSE(DeleteProfileKey(u"S", u"x"));
}

using ProfileInRegistry = Profile;
INSTANTIATE_TEST_SUITE_P(Place, ProfileInRegistry, testing::Values(false));

TEST_P(ProfileInRegistry, LiesBelowTheNamesOfTheApplication) {
    application.WriteProfileInt(u"S", u"x", 5);
    CRegUtil util(KeyAllAccess);
    ASSERT_TRUE(util.SetPath(u"HKEY_CURRENT_USER/Software/Maker/Catalogue/S", false));
    EXPECT_EQ(util.GetKeyInt(u"x"), 5);
    EXPECT_TRUE(util.WriteSubKeyInt(u"Below", u"y", 6));
    EXPECT_FALSE(DeleteProfileKey(u"S", u"x")); // a value, not a key
    EXPECT_FALSE(DeleteProfileKey(u"S", u""));
    EXPECT_TRUE(DeleteProfileKey(u"S", u"below"));
    EXPECT_FALSE(DeleteProfileKey(u"S", u"below"));
    EXPECT_EQ(util.GetKeyInt(u"x"), 5);
    EXPECT_EQ(application.GetProfileString(u"S", u"x", u"no text"), Wide(u"no text"));

    // A host that names nothing has a place all the same.
    SetInternalProductName(u"Bare", 0, false);
    CWinApp const bare;
    EXPECT_EQ(CWinApp::GetApp(), &application);
    EXPECT_EQ(bare.GetRegistryKeyName(), Wide(u"Quenby"));
    EXPECT_EQ(bare.GetProfileName(), Wide(u"Bare"));
}

/// A host that keeps its texts to itself.
class KeepingHost : public CWinApp {
public:
    Wide GetProfileString(char16_t const*, char16_t const*, char16_t const*) const override { return kept; }
    bool WriteProfileString(char16_t const*, char16_t const*, char16_t const* value) override {
        kept = value;
        return true;
    }

private:
    Wide kept;
};

TEST(ProfileOfAHost, BytesGoByItsOwnOperationsBothWays) {
    KeepingHost host;
    host.SetProfileFile(u"\\nowhere\\a.ini");
    unsigned long long number = 0;
    EXPECT_TRUE(WriteProfileLongUInt(u"S", u"x", 7));
    EXPECT_EQ(GetProfileLongUInt(u"S", u"x", number, 0), 1);
    EXPECT_EQ(number, 7U);
}

} // namespace
