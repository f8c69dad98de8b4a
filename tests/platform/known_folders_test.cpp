// SPDX-License-Identifier: MIT
#include "zeltools/platform/known_folders.h"

#include "tests/support/scoped_variable.h"
#include "zeltools/platform/native_path.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace platform {
namespace {

TEST(KnownFolders, FollowAbsoluteVariablesOnly) {
    struct {
        char const *data, *home;
        char16_t const* user; // null: the password table's home
    } const rows[] = {
        {"/d//", "/h", u"\\d"},         {"d", "/h/", u"\\h\\.local\\share"}, // what is relative counts as absent
        {"", "/", u"\\.local\\share"},  {nullptr, "", nullptr},
        {nullptr, "home/ana", nullptr}, {nullptr, nullptr, nullptr},
    };
    passwd const* const entry = getpwuid(getuid());
    std::string const listed = entry ? entry->pw_dir : "";
    for (auto const& row : rows) {
        ScopedVariable const data("XDG_DATA_HOME", row.data ? row.data : "");
        ScopedVariable const home("HOME", row.home ? row.home : "");
        if (!row.home) {
            unsetenv("HOME");
        }
        std::u16string const found = SHGetKnownFolderPath(KnownFolder::LocalAppData);
        if (row.user) {
            EXPECT_EQ(found, row.user);
        } else if (listed.size() > 1) {
            EXPECT_EQ(found, FromNativePath(listed + "/.local/share"));
        }
    }
    ScopedVariable const common("ZELTOOLS_COMMON_DATA", "relative");
    EXPECT_EQ(SHGetKnownFolderPath(KnownFolder::ProgramData), u"\\var\\lib");
    ScopedVariable const relative("TMPDIR", "tmp");
    EXPECT_EQ(GetTempPathW(), u"\\tmp\\");
    ScopedVariable const root("TMPDIR", "/");
    EXPECT_EQ(GetTempPathW(), u"\\");
}

} // namespace
} // namespace platform
