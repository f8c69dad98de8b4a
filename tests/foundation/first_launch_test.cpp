// SPDX-License-Identifier: MIT
#include "zeltools/foundation/first_launch.h"

#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/foundation/application_data.h"
#include "zeltools/foundation/application_preferences.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/foundation/win_app.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/reg_util.h"

#include <gtest/gtest.h>

namespace {

/// The three places in which the last run may be remembered.
enum class Place {
    Preferences,
    Registry,
    ProfileFile
};

class FirstLaunch : public testing::TestWithParam<Place> {
protected:
    FirstLaunch() {
        SetInternalProductName(u"Catalogue", 3, true);
        if (GetParam() == Place::ProfileFile)
            application.SetProfileFile(folder.Path("profile.ini").c_str());
    }

    bool Ask(int* major, int* minor, bool reset = false) {
        bool const isFile = GetParam() == Place::Preferences;
        return IsFirstLaunch(&application, reset, isFile, major, minor);
    }

    /// Makes the last run one of another build.
    void ForgetBuild() {
        if (GetParam() == Place::Preferences) {
            CCustomData record;
            EXPECT_TRUE(record.LoadFromPrefs(GetPreferencesFile(), FourCC("SE64"), FourCC("1STL"), false));
            record.SetString(FourCC("TIME"), u"00:00:00");
            EXPECT_TRUE(record.SaveToPrefs(GetPreferencesFile(), FourCC("SE64"), FourCC("1STL")));
        } else {
            EXPECT_TRUE(application.WriteProfileString(u"settings", u"currentVersionTime", u"00:00:00"));
        }
    }

    TemporaryFolder folder;
    ScopedVariable const data{"XDG_DATA_HOME", folder.Native() + "data"};
    ScopedVariable const store{"ZELTOOLS_REGISTRY", folder.Native() + "registry.db"};
    CWinApp application;
};

TEST_P(FirstLaunch, HandsBackTheVersionOfTheLastRun) {
    int major = 5;
    int minor = 1;
    EXPECT_TRUE(Ask(&major, &minor));
    EXPECT_EQ(major, -1);
    EXPECT_EQ(minor, -1);
    EXPECT_FALSE(Ask(&major, &minor));
    EXPECT_EQ(major, -1); // untouched
    ForgetBuild();
    EXPECT_TRUE(Ask(nullptr, nullptr)); // leaves the version that is remembered
    ForgetBuild();
    major = 6;
    minor = 2;
    EXPECT_TRUE(Ask(&major, &minor));
    EXPECT_EQ(major, 5);
    EXPECT_EQ(minor, 1);
    ForgetBuild();
    EXPECT_TRUE(Ask(&major, nullptr));
    EXPECT_EQ(major, 6);
    EXPECT_FALSE(Ask(nullptr, nullptr));
}

TEST_P(FirstLaunch, ResetDeletesTheSettingsOfThisHostAlone) {
    CRegUtil registry(KeyAllAccess);
    ASSERT_TRUE(registry.SetPath(u"Software/Quenby/Catalogue/Window", true));
    ASSERT_TRUE(registry.SetPath(u"Software/Quenby/Other", true));
    int major = 5;
    EXPECT_TRUE(Ask(&major, nullptr, true));
    EXPECT_FALSE(Ask(&major, nullptr, true)); // the stamp was written behind the deletion
    EXPECT_TRUE(registry.SetPath(u"Software/Quenby/Other", false));
    // A host with a profile file has no key of its own.
    EXPECT_EQ(registry.SetPath(u"Software/Quenby/Catalogue/Window", false), GetParam() == Place::ProfileFile);
}

INSTANTIATE_TEST_SUITE_P(Places, FirstLaunch, testing::Values(Place::Preferences, Place::Registry, Place::ProfileFile));

TEST(FirstLaunchNowhere, IsAlwaysTrue) {
    int major = 5;
    EXPECT_TRUE(IsFirstLaunch(nullptr, true, false, &major, nullptr));
    EXPECT_EQ(major, -1);
    EXPECT_TRUE(IsFirstLaunch(nullptr, true, false, nullptr, nullptr));
}

} // namespace
