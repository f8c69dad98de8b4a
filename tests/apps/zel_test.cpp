// SPDX-License-Identifier: MIT
// Runs the real program on a real tree of files whose names are as odd as the system allows.

#include "zel_fixture.h"

#include <sstream>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

TEST_F(Zel, ListTellsWhatTheRegistryKnowsByTheName) {
    Make("a.BMP", "12345");
    Make("film.wmv");
    Make("notes");
    Make("sub/b.max");
    Outcome const outcome = Run({"list", "--json", Tree()});
    EXPECT_EQ(outcome.status, 0);
    auto const rows = Rows(outcome);
    ASSERT_EQ(rows.size(), 4u) << outcome.output;
    ExpectHolds(rows.at("a.BMP"), R"({"class": "BMP ", "kind": "bitmap", "description": "BMP - Bmp files",
                                      "loadable": true, "savable": false, "size": 5})");
    ExpectHolds(rows.at("film.wmv"), R"({"parsers": 2})");
    ExpectHolds(rows.at("notes"), R"({"class": null, "kind": "other"})");
    ExpectHolds(rows.at("sub"), R"({"kind": "folder", "size": null})");
    EXPECT_EQ(Json::parse(outcome.output).at("totals").at("bitmap").at("size"), 5);
}

TEST_F(Zel, EveryNameThatTheSystemAllowsMakesTheRoundTrip) {
    std::vector<std::string> names = {"two words.bmp",   "quote'\"s.bmp",
                                      "back\\slash.bmp", "C:colon.bmp",
                                      "star*?.bmp",      "less<more>|.bmp",
                                      "tab\there.bmp",   "\xE6\x97\xA5\xE6\x9C\xAC.bmp",
                                      ".hidden",         "...",
                                      "trailing. ",      "\xEF\x80\xAA.bmp"};
    names.emplace_back(255, 'n');
    names.push_back(std::string(251, 'x') + ".bmp");
    for (std::string const& name : names) {
        Make(name, name);
    }
    Make("broken\xFF\xC3.bmp", "123");
    Outcome const outcome = Run({"list", "--json", Tree()});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    auto const rows = Rows(outcome);
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
    auto const rows = Rows(outcome);
    EXPECT_EQ(rows.size(), 4u) << outcome.output;
    EXPECT_EQ(rows.at("link.bmp").at("size"), 3);
    EXPECT_EQ(rows.at("real/up").at("kind"), "folder");
}

TEST_F(Zel, WhatCannotBeReadIsNamedAndTheRestGoesOn) {
    Make("a.bmp");
    Make("z.bmp");
    ExpectFailure(1, {"list", Tree() + "/none.bmp", Tree() + "/z.bmp"}, "none.bmp");
    EXPECT_THAT(ReadWhole(folder / "output"), HasSubstr("z.bmp"));
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
    Outcome const outcome = Run({"list", Tree()});
    EXPECT_THAT(outcome.output, Not(HasSubstr("\033["))); // a pipe gets no colours
    std::istringstream lines(outcome.output);
    std::vector<std::size_t> columns;
    for (std::string line; std::getline(lines, line);) {
        if (std::size_t const description = line.find("BMP - "); description != std::string::npos) {
            bool const isWide = line.find("\xE6\x97\xA5") != std::string::npos;
            bool const isAccented = line.find('\xCC') != std::string::npos;
            columns.push_back(description - (isWide ? 3 : isAccented ? 2 : 0));
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
        return Run({"list", "--sort", key, "--template", "<file(name)>", Tree()}).output;
    };
    EXPECT_EQ(names("name"), "a.zip\nb.bmp\nc.max\n");
    EXPECT_EQ(names("size"), "b.bmp\na.zip\nc.max\n");
    EXPECT_EQ(names("kind"), "c.max\na.zip\nb.bmp\n");
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
    std::string const file = Make("a.txt");
    std::vector<std::string> const rows[] = {
        {},
        {"nonsense"},
        {"list"},
        {"list", "--sort", "colour", file},
        {"list", "--match", "any", file},
        {"list", "--case", file},
        {"list", "--template", "a", "--template-file", file, file},
        {"find", "oak"},
        {"find", "--match", "some", "oak", file},
        {"convert", "--option", "nothing", file, file + "x"},
        {"prefs", "show", file, "IOSE"}, // half a pair
        {"prefs", "set", "", "IOSE", "42", "VALU", "x"},
        {"rename", "--template", "x"},
        {"rename", "--apply", file},
        {"rename", "--template", "<index>", "--start", "-1", file},
        {"template", "check"},
    };
    for (auto const& row : rows) {
        ExpectFailure(2, row, "\n");
        EXPECT_EQ(ReadWhole(folder / "output"), "") << testing::PrintToString(row);
    }
    EXPECT_EQ(Run({"list", "--help"}).status, 0);
}

} // namespace
