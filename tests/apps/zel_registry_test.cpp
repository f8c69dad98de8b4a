// SPDX-License-Identifier: MIT
#include "zel_fixture.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

TEST_F(Zel, RegistryKeepsEveryType) {
    struct {
        std::vector<std::string> arguments; // behind the key and the name
        std::string text;
        std::string json;
    } const rows[] = {
        {{"d\u00E9j\u00E0 vu"}, "d\u00E9j\u00E0 vu", "\"d\u00E9j\u00E0 vu\""},
        {{"--", "-7"}, "-7", "\"-7\""},
        {{"--type", "expand", "%HOME%"}, "%HOME%", "\"%HOME%\""},
        {{"--type=int", "--", "-7"}, "-7", "-7"},
        {{"--type", "int", "0xFFFFFFFF"}, "-1", "-1"},
        {{"--type", "int64", "9223372036854775807"}, "9223372036854775807", "9223372036854775807"},
        {{"--type", "multi", "a b", "c"}, "a b\nc", R"(["a b","c"])"},
        {{"--type", "multi"}, "", "[]"},
        {{"--type", "binary", "00fF7f"}, "00ff7f", "\"00ff7f\""},
        {{"--type", "none"}, "", "\"\""},
    };
    std::string const key = "HKEY_CURRENT_USER/Software/Cat";
    for (auto const& row : rows) {
        std::vector<std::string> arguments = {"registry", "set", key, "Value"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        Outcome const set = Run(arguments);
        EXPECT_EQ(set.status, 0) << set.errors;
        EXPECT_EQ(Run({"registry", "get", "software\\CAT", "value"}).output, row.text + "\n");
        EXPECT_EQ(Json::parse(Run({"registry", "get", key, "Value", "--json"}).output).at("value"),
                  Json::parse(row.json));
    }
    EXPECT_TRUE(fs::exists(folder / "home/.config/zeltools/registry.db"));
    EXPECT_EQ(Run({"registry", "unset", key, "VALUE"}).status, 0);
    EXPECT_EQ(Json::parse(Run({"registry", "show", key, "--json"}).output).at("values"), Json::array());
}

TEST_F(Zel, RegistryShowsItsTree) {
    Run({"registry", "set", "Software/Cat", "", "default"});
    Run({"registry", "set", "Software/Cat/Window", "Columns", "3", "--type", "int"});
    EXPECT_THAT(Run({"registry", "list"}).output, HasSubstr("HKEY_CURRENT_USER\nHKEY_LOCAL_MACHINE\n"));
    EXPECT_EQ(Run({"registry", "list", "Software", "-r"}).output, "Cat\nCat/Window\n");
    EXPECT_EQ(Json::parse(Run({"registry", "list", "Software/", "--json"}).output).dump(),
              R"({"key":"Software","keys":["Cat"]})");
    EXPECT_EQ(Run({"registry", "show", "Software/Cat", "-r"}).output,
              "[Software/Cat]\n(default)                 string      default\n"
              "[Software/Cat/Window]\nColumns                   int         3\n");
    Outcome const kept = Run({"registry", "unset", "Software/Cat", "--key"});
    EXPECT_EQ(kept.status, 1);
    EXPECT_THAT(kept.errors, HasSubstr("--recursive"));
    EXPECT_EQ(Run({"registry", "unset", "Software/Cat", "--key", "-r"}).status, 0);
    EXPECT_EQ(Run({"registry", "list", "Software"}).output, "");
}

TEST_F(Zel, RegistryTellsWhatIsWrong) {
    struct {
        std::vector<std::string> arguments;
        int status;
        char const* errors;
    } const rows[] = {
        {{"get", "Software/Cat", "a"}, 1, "zel: Software/Cat: a: no such key or value\n"},
        {{"get", "Software/Cat"}, 1, "zel: Software/Cat: (default): no such key or value\n"},
        {{"show", "Software"}, 1, "zel: Software: no such key or value\n"},
        {{"set", "Software", "a", "12x", "--type", "int"}, 2, "'12x' is no value of the type int"},
        {{"set", "Software", "a", "4294967296", "--type", "int"}, 2, "is no value of the type int"},
        {{"set", "Software", "a", "abc", "--type", "binary"}, 2, "is no value of the type binary"},
        {{"set", "Software", "a", "\xFF"}, 2, "is no value of the type string"},
        {{"set", "Software", "a"}, 2, "takes one VALUE"},
        {{"set", "Software", "a", "b", "--type", "none"}, 2, "takes no VALUE"},
        {{"unset", "HKEY_USERS", "--key"}, 2, "a root cannot be deleted"},
        {{}, 2, ""},
    };
    for (auto const& row : rows) {
        std::vector<std::string> arguments = {"registry"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(outcome.status, row.status);
        EXPECT_THAT(outcome.errors, HasSubstr(row.errors));
    }
    EXPECT_FALSE(fs::exists(folder / "home/.config")); // nothing was written
}

} // namespace
