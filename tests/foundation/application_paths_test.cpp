// SPDX-License-Identifier: MIT
// Path, name and folders of the application. The known folders are moved into a temporary one.

#include "tests/support/temporary_folder.h"
#include "zeltools/foundation/application_data.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/application_preferences.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/foundation/log_file.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

using Wide = CXTString<char16_t>;

std::u16string Text(Wide const& text) {
    return std::u16string(static_cast<char16_t const*>(text));
}

class Application : public testing::Test {
protected:
    Application() {
        ::setenv("ZELTOOLS_COMMON_DATA", (folder.Native() + "common").c_str(), 1);
        ::setenv("XDG_DATA_HOME", (folder.Native() + "user").c_str(), 1);
        Name(u"Catalogue", 3);
    }
    ~Application() override {
        detail::ForgetApplicationPath();
        detail::ForgetProductName();
        detail::ForgetVersionedDataPaths();
        detail::ForgetPreferencesPaths();
    }
    static void Name(char16_t const* name, int version) { SetInternalProductName(Wide(name), version, true); }
    std::u16string Below(char const* rest) const { return folder.Path(rest); }

    TemporaryFolder folder;
};

TEST_F(Application, PathIsTheProgramsUntilItIsSet) {
    std::u16string const program = Text(GetApplicationPath(false));
    ASSERT_FALSE(program.empty());
    EXPECT_EQ(program, Text(GetApplicationPath(true)) + Text(GetApplicationName(false)));
    EXPECT_EQ(program.front(), u'\\');

    folder.Write("bin/host.app");
    std::u16string const bin = Below("bin") + u'\\';
    std::u16string const programName = Text(GetApplicationName(false));
    struct Row {
        std::u16string set, path;
    } const rows[] = {
        {Below("bin/host.app"), bin + u"host.app"},
        {std::u16string(folder.Path()) + u"bin/host.app", bin + u"host.app"}, // either slash
        {Below("bin"), bin + programName},
        {bin, bin + programName},
        {Below("bin/other"), bin + u"other"},   // the file need not exist, its folder must
        {Below("absent/host"), bin + u"other"}, // ignored: the former path stays
        {u"", program},                         // the running program itself
    };
    for (Row const& row : rows) {
        SetApplicationPath(Wide(row.set.c_str()));
        EXPECT_EQ(Text(GetApplicationPath(false)), row.path);
    }
    SetApplicationPath(Wide(Below("bin/host.app").c_str()));
    EXPECT_EQ(Text(GetApplicationPath(true)), bin);
    EXPECT_EQ(Text(GetApplicationName(false)), u"host.app");
    EXPECT_EQ(Text(GetApplicationName(true)), u"host");
}

TEST_F(Application, DataFoldersAreMadeAndRemembered) {
    EXPECT_EQ(Text(GetUserApplicationDataPath(false, nullptr)), Below("user/Quenby/Catalogue 3") + u'\\');
    EXPECT_TRUE(folder.Exists("user/Quenby/Catalogue 3"));
    EXPECT_EQ(Text(GetUserApplicationDataPath(true, u"Cache")), Below("user/Quenby/Cache") + u'\\');
    folder.Write("common/Quenby/Catalogue 3/temp/x");
    EXPECT_EQ(Text(GetCommonApplicationDataPath(false, nullptr)), Below("common/Quenby/Catalogue 3") + u'\\');
    EXPECT_FALSE(folder.Exists("common/Quenby/Catalogue 3/temp1")); // the trial is taken away, what was there is not
    EXPECT_TRUE(folder.Exists("common/Quenby/Catalogue 3/temp/x"));

    SetInternalProductName(Wide(u"Other"), 4, false);
    EXPECT_EQ(Text(GetUserApplicationDataPath(false, nullptr)), Below("user/Quenby/Catalogue 3") + u'\\');
    Name(u"Other", 4);
    EXPECT_EQ(Text(GetUserApplicationDataPath(false, nullptr)), Below("user/Quenby/Other 4") + u'\\');
    EXPECT_EQ(Text(GetCommonApplicationDataPath(false, nullptr)), Below("common/Quenby/Other 4") + u'\\');
}

TEST_F(Application, CommonFolderThatCannotBeWrittenGivesWayToTheUsers) {
    folder.Write("common"); // a file, below which nobody can make a folder, root neither
    EXPECT_EQ(Text(GetCommonApplicationDataPath(false, nullptr)), Below("user/Quenby/Catalogue 3") + u'\\');
    std::u16string const named = Text(GetCommonApplicationDataPath(false, u"Cache"));
    EXPECT_EQ(named, Text(GetUserApplicationDataPath(true, nullptr))); // the name is lost, and the version with it
}

TEST_F(Application, FileComesFromTheLatestOfThreeVersionsBefore) {
    Name(u"Catalogue", 900013); // too long to stand in the random name of the folder, where it would be replaced too
    Wide const wanted(Below("app 900013/a.prefs").c_str());
    folder.Write("app 900013/other");
    folder.Write("app 900009/a.prefs", "nine");
    EXPECT_FALSE(CopyFileFromPreviousVersionIfMissing(wanted)); // four versions back
    folder.Write("app 900010/a.prefs", "ten");
    folder.Write("app 900012/a.prefs", "twelve");
    EXPECT_TRUE(CopyFileFromPreviousVersionIfMissing(wanted));
    EXPECT_EQ(folder.Read("app 900013/a.prefs"), "twelve");
    folder.Write("app 900013/a.prefs", "mine");
    EXPECT_FALSE(CopyFileFromPreviousVersionIfMissing(wanted));
    EXPECT_EQ(folder.Read("app 900013/a.prefs"), "mine");
    std::u16string logged;
    SetLogCallback(
        [](unsigned int, Wide text, bool, void* user) { static_cast<std::u16string*>(user)->append(Text(text)); },
        &logged);
    EXPECT_FALSE(CopyFileFromPreviousVersionIfMissing(wanted));
    EXPECT_FALSE(CopyFileFromPreviousVersionIfMissing(Wide(u"\\nowhere\\%s.prefs"))); // holds no version
    SetLogCallback(nullptr, nullptr);
    EXPECT_EQ(logged, u"InitApplication: \\nowhere\\%s.prefs file is missing. Get back from previous version\n");
}

} // namespace
