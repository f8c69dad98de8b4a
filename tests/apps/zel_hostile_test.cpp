// SPDX-License-Identifier: MIT
// zel list over the folder of hostile files: each costs a row and, where it is refused, a reason; none takes the
// program down or keeps the rest from being told.
#include "tests/apps/zel_fixture.h"

#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using Json = nlohmann::json;

/// What must come of each file.
std::map<std::string, std::string> ReadExpectations() {
    std::map<std::string, std::string> expectations;
    std::istringstream table(ReadWhole(ZELTOOLS_TEST_DATA "/hostile/defects.tsv"));
    std::string line;
    for (std::getline(table, line); std::getline(table, line);) {
        std::size_t const first = line.find('\t');
        expectations[line.substr(0, first)] = line.substr(first + 1, line.find('\t', first + 1) - first - 1);
    }
    return expectations;
}

TEST_F(Zel, ListsHostileFilesAndSaysOfEachWhatIsWrong) {
    pluginFolder = ZEL_BUILT_PLUGINS;
    fs::path const tree = folder / "tree";
    fs::copy(ZELTOOLS_TEST_DATA "/hostile", tree);
    fs::copy(ZELTOOLS_TEST_DATA "/../../examples/media/globe.png", tree / "zzz last and sound.png");
    Outcome const outcome =
        Run({"list", "--json", "--sort=name", "--max-pixels=1000000", "--max-faces=1000000", "--max-seconds=5", tree});
    ASSERT_EQ(outcome.status, 1) << outcome.errors;

    std::map<std::string, Json> rows;
    Json const report = Json::parse(outcome.output);
    for (Json const& row : report["files"]) {
        EXPECT_TRUE(rows.emplace(row["name"], row).second) << row["name"] << " has two rows";
    }
    EXPECT_EQ(rows.at("zzz last and sound.png")["width"], 96);

    std::size_t failed = 0; // of those that are opened: without a plug-in for scenes those are names only
    for (auto const& [file, expected] : ReadExpectations()) {
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
    EXPECT_EQ(report["failures"].size(), failed);
}

} // namespace
