// SPDX-License-Identifier: MIT
// Runs the real program on a real tree of files whose names are as odd as the system allows.

#include "zel_fixture.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

/// The rows of a JSON list by name; a name that is not UTF-8 stands under its hexadecimal bytes.
std::map<std::string, Json> RowsByName(Outcome const& outcome) {
    std::map<std::string, Json> rows;
    Json const list = Json::parse(outcome.output);
    for (Json const& row : list.at("files")) {
        rows[row.contains("nameBytes") ? row.at("nameBytes") : row.at("name")] = row;
    }
    return rows;
}

TEST_F(Zel, ListTellsWhatTheRegistryKnowsByTheName) {
    Make("a.BMP", "12345");
    Make("film.wmv");
    Make("notes");
    Make("sub/b.max");
    Outcome const outcome = Run({"list", "--json", Tree()});
    EXPECT_EQ(outcome.status, 0);
    auto const rows = RowsByName(outcome);
    ASSERT_EQ(rows.size(), 4u) << outcome.output;
    Json const& bitmap = rows.at("a.BMP");
    EXPECT_EQ(bitmap.at("class"), "BMP ");
    EXPECT_EQ(bitmap.at("kind"), "bitmap");
    EXPECT_EQ(bitmap.at("description"), "BMP - Bmp files");
    EXPECT_EQ(bitmap.at("loadable"), true);
    EXPECT_EQ(bitmap.at("savable"), false);
    EXPECT_EQ(bitmap.at("size"), 5);
    EXPECT_EQ(rows.at("film.wmv").at("parsers"), 2);
    EXPECT_EQ(rows.at("notes").at("class"), nullptr);
    EXPECT_EQ(rows.at("notes").at("kind"), "other");
    EXPECT_EQ(rows.at("sub").at("kind"), "folder");
    EXPECT_EQ(Json::parse(outcome.output).at("totals").at("bitmap").at("size"), 5);
}

TEST_F(Zel, EveryNameThatTheSystemAllowsMakesTheRoundTrip) {
    std::vector<std::string> const names = {"two words.bmp",
                                            "quote'\"s.bmp",
                                            "back\\slash.bmp",
                                            "C:colon.bmp",
                                            "star*?.bmp",
                                            "less<more>|.bmp",
                                            "tab\there.bmp",
                                            "\xE6\x97\xA5\xE6\x9C\xAC.bmp",
                                            ".hidden",
                                            "...",
                                            "trailing. ",
                                            "\xEF\x80\xAA.bmp" /* U+F02A */,
                                            std::string(255, 'n'),
                                            std::string(251, 'x') + ".bmp"};
    for (std::string const& name : names) {
        Make(name, name);
    }
    Make("broken\xFF\xC3.bmp", "123");
    Outcome const outcome = Run({"list", "--json", Tree()});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    auto const rows = RowsByName(outcome);
    EXPECT_EQ(rows.size(), names.size() + 1);
    for (std::string const& name : names) {
        ASSERT_TRUE(rows.contains(name)) << name;
        EXPECT_EQ(rows.at(name).at("size"), name.size()) << name;
    }
    ASSERT_TRUE(rows.contains("62726f6b656effc32e626d70")) << outcome.output;
    EXPECT_EQ(rows.at("62726f6b656effc32e626d70").at("class"), "BMP ");

    for (std::string const& name : {names[2], names[3], names[4], std::string("broken\xFF\xC3.bmp")}) {
        Outcome const single = Run({"list", Tree() + "/" + name});
        EXPECT_EQ(single.status, 0) << single.errors;
        EXPECT_THAT(single.output, HasSubstr(name));
    }
}

TEST_F(Zel, LinksAreToldAndNeverFollowedInACircle) {
    Make("real/a.bmp", "abc");
    fs::create_directory_symlink("..", folder / "tree/real/up");
    fs::create_symlink("nowhere", folder / "tree/dangling.bmp");
    fs::create_symlink("real/a.bmp", folder / "tree/link.bmp");
    Outcome const outcome = Run({"list", "-r", "--json", Tree()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("dangling.bmp"));
    auto const rows = RowsByName(outcome);
    EXPECT_EQ(rows.size(), 4u) << outcome.output;
    EXPECT_EQ(rows.at("link.bmp").at("size"), 3);
    EXPECT_EQ(rows.at("real/up").at("kind"), "folder");
}

TEST_F(Zel, WhatCannotBeReadIsNamedAndTheRestGoesOn) {
    Make("a.bmp");
    Make("z.bmp");
    Outcome const missing = Run({"list", Tree() + "/none.bmp", Tree() + "/z.bmp"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.errors, HasSubstr("none.bmp"));
    EXPECT_THAT(missing.output, HasSubstr("z.bmp"));
    Make("locked/secret.bmp");
    chmod((folder / "tree/locked").c_str(), 0);
    Outcome const locked = RunWithoutPrivileges({"list", "-r", Tree()});
    if (locked.status == 126 || locked.status == 127) {
        GTEST_SKIP() << "another user cannot start the program from here";
    }
    EXPECT_EQ(locked.status, 1);
    EXPECT_THAT(locked.errors, HasSubstr("locked"));
    EXPECT_THAT(locked.output, HasSubstr("z.bmp"));
}

TEST_F(Zel, DeepNestingIsListedToTheBottom) {
    // Far beyond the 4,096 bytes that one system call takes as a path.
    std::string const name(100, 'd');
    fs::create_directory(folder / "tree");
    int parent = open(Tree().c_str(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < 60; ++level) {
        ASSERT_EQ(mkdirat(parent, name.c_str(), 0700), 0);
        int const child = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(parent);
        parent = child;
    }
    close(openat(parent, "bottom.bmp", O_WRONLY | O_CREAT, 0600));
    close(parent);
    Outcome const outcome = Run({"list", "-r", Tree()});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("bottom.bmp"));
}

TEST_F(Zel, ColumnsLineUpForNamesInAnyScript) {
    Make("plain.bmp");
    Make("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E.bmp"); // three wide characters, nine bytes, six columns
    Make("e\xCC\x81.bmp");                            // an accent of its own takes no column
    std::istringstream lines(Run({"list", Tree()}).output);
    std::map<std::string, std::size_t> bytesBeforeDescription;
    for (std::string line; std::getline(lines, line);) {
        std::size_t const description = line.find("BMP - ");
        if (description != std::string::npos) {
            bytesBeforeDescription[line.substr(description)] = 0;
            std::size_t const extra = line.find("\xE6\x97\xA5") != std::string::npos ? 3
                                      : line.find('\xCC') != std::string::npos       ? 2
                                                                                     : 0;
            bytesBeforeDescription[line] = description - extra;
        }
    }
    std::vector<std::size_t> columns;
    for (auto const& [line, column] : bytesBeforeDescription) {
        if (column) {
            columns.push_back(column);
        }
    }
    ASSERT_EQ(columns.size(), 3u);
    EXPECT_THAT(columns, testing::Each(columns.front()));
}

TEST_F(Zel, SortOrdersAllRows) {
    Make("b.bmp", "1");
    Make("c.max", "333");
    Make("a.zip", "22");
    auto const names = [&](std::string const& key) {
        std::vector<std::string> result;
        Json const list = Json::parse(Run({"list", "--json", "--sort", key, Tree()}).output);
        for (Json const& row : list.at("files")) {
            result.push_back(row.at("name"));
        }
        return result;
    };
    EXPECT_THAT(names("name"), testing::ElementsAre("a.zip", "b.bmp", "c.max"));
    EXPECT_THAT(names("size"), testing::ElementsAre("b.bmp", "a.zip", "c.max"));
    EXPECT_THAT(names("kind"), testing::ElementsAre("c.max", "a.zip", "b.bmp"));
}

TEST_F(Zel, PipesGetNoColours) {
    Make("a.bmp");
    EXPECT_THAT(Run({"list", Tree()}).output, Not(HasSubstr("\033[")));
}

TEST_F(Zel, TypesAndWherePrintWhatTheToolkitHolds) {
    Json const types = Json::parse(Run({"types", "--json"}).output);
    EXPECT_EQ(types.size(), 30u);
    EXPECT_THAT(Run({"types"}).output, HasSubstr(".mpeg .mpg .mp4 .m2v .m4v .wmv"));
    Json const where = Json::parse(Run({"where", "--json"}).output);
    EXPECT_EQ(where.at("applicationPath"), ZEL_PROGRAM);
    EXPECT_EQ(where.at("userData"), (folder / "home/data/Quenby/zel/").string());
    EXPECT_EQ(where.at("commonData"), (folder / "home/common/Quenby/zel/").string());
}

TEST_F(Zel, WrongUsageIsStatusTwo) {
    EXPECT_EQ(Run({}).status, 2);
    EXPECT_EQ(Run({"list"}).status, 2);
    EXPECT_EQ(Run({"list", "--sort", "colour", Tree()}).status, 2);
    EXPECT_EQ(Run({"nonsense"}).status, 2);
    EXPECT_EQ(Run({"list", "--help"}).status, 0);
}

} // namespace
