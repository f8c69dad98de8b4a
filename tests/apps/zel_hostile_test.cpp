// SPDX-License-Identifier: MIT
// zel list over the folder of hostile files: each costs a row and, where it is refused, a reason; none takes the
// program down or keeps the rest from being told.
#include "tests/apps/zel_fixture.h"

#include <sstream>

namespace {

using Json = nlohmann::json;

TEST_F(Zel, ListsHostileFilesAndSaysOfEachWhatIsWrong) {
    pluginFolder = ZEL_BUILT_PLUGINS;
    fs::path const tree = folder / "tree";
    fs::copy(ZELTOOLS_TEST_DATA "/hostile", tree);
    fs::copy(ZELTOOLS_TEST_DATA "/../../examples/media/globe.png", tree / "zzz last and sound.png");
    Outcome const outcome =
        Run({"list", "--json", "--sort=name", "--max-pixels=1000000", "--max-faces=1000000", "--max-seconds=5", tree});
    ASSERT_EQ(outcome.status, 1) << outcome.errors;

    std::map<std::string, Json> const rows = Rows(outcome);
    EXPECT_EQ(rows.at("zzz last and sound.png").at("width"), 96);

    std::size_t failed = 0; // of those that are opened: without a plug-in for scenes those are names only
    std::istringstream table(ReadWhole(ZELTOOLS_TEST_DATA "/hostile/defects.tsv"));
    std::string file;
    std::string expected; // what must come of the file
    std::string defect;
    for (std::getline(table, defect); std::getline(table, file, '\t');) {
        std::getline(std::getline(table, expected, '\t'), defect);
        ASSERT_TRUE(rows.contains(file)) << file;
        Json const& row = rows.at(file);
        bool const isOpened = row["kind"] == "bitmap" || row["kind"] == "3d";
        failed += row.contains("error") ? 1 : 0;
        if (isOpened && expected != "any") {
            EXPECT_EQ(row.contains("error"), expected != "pixels") << row;
        }
        if (isOpened && expected == "limit") {
            EXPECT_NE(row.value("error", "").find(file + ": "), std::string::npos) << row;
            EXPECT_NE(row.value("error", "").find(" where 1000000 are allowed"), std::string::npos) << row;
        }
    }
    EXPECT_EQ(Json::parse(outcome.output).at("failures").size(), failed);
}

} // namespace
