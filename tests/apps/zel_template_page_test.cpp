// SPDX-License-Identifier: MIT
// What the page on templates shows, run on the files that it is about.

#include "tests/support/format_page.h"
#include "zel_fixture.h"

namespace {

TEST_F(Zel, PrintsWhatThePageOnTemplatesShows) {
    pluginFolder = ZEL_BUILT_PLUGINS;
    fs::copy(ZELTOOLS_TEST_DATA "/../../examples/media", Tree(), fs::copy_options::recursive);
    timespec const times[2] = {{1062540300, 0}, {1062540300, 0}}; // 2 September 2003, 22:05 UTC
    for (auto const& entry : fs::recursive_directory_iterator(Tree())) {
        utimensat(AT_FDCWD, entry.path().c_str(), times, AT_SYMLINK_NOFOLLOW);
    }
    int commands = 0;
    std::string const before = "zel() { " ZEL_PROGRAM " \"$@\"; }; cd '" + Tree() + "'; ";
    for (support::FencedBlock const& block : support::FencedBlocks("template-language", "console")) {
        std::string expected;
        std::string shown;
        for (std::string const& line : block.lines) {
            expected += line + "\n";
            if (line.starts_with("$ ")) {
                Outcome const outcome = RunProgram({"/bin/sh", "-c", before + line.substr(2)});
                shown += line + "\n" + outcome.output + outcome.errors;
                ++commands;
            }
        }
        EXPECT_EQ(shown, expected);
    }
    EXPECT_GT(commands, 10);
}

} // namespace
