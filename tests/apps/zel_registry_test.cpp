// SPDX-License-Identifier: MIT
#include "zel_fixture.h"

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
        Outcome const set = Run({"registry", "set", key, "Value"}, row.arguments);
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
    EXPECT_EQ(Run({"registry", "list", "Software//", "-r"}).output, "Cat\nCat/Window\n");
    EXPECT_EQ(Json::parse(Run({"registry", "list", "Software/", "--json"}).output).dump(),
              R"({"key":"Software","keys":["Cat"]})");
    EXPECT_EQ(Run({"registry", "show", "Software/Cat", "-r"}).output,
              "[Software/Cat]\n(default)                 string      default\n"
              "[Software/Cat/Window]\nColumns                   int         3\n");
    ExpectFailure(1, {"registry", "unset", "Software/Cat", "--key"}, "--recursive");
    EXPECT_EQ(Run({"registry", "unset", "Software/Cat", "--key", "-r"}).status, 0);
    EXPECT_EQ(Run({"registry", "list", "Software"}).output, "");
    EXPECT_EQ(Run({"registry", "unset", "software", "--key"}).status, 0); // right below the root
    EXPECT_EQ(Run({"registry", "list", "HKEY_CURRENT_USER"}).output, "");
}

TEST_F(Zel, RegistryComparesTwoKeys) {
    Run({"registry", "set", "A", "Same", "x"});
    Run({"registry", "set", "a", "Columns", "3", "--type", "int"});
    Run({"registry", "set", "A/Window/Left", "", "only here"});
    Run({"registry", "set", "HKEY_USERS/B", "SAME", "x"});
    Run({"registry", "set", "HKEY_USERS/B", "columns", "3"});
    Run({"registry", "set", "HKEY_USERS/B/Window", "Top", "7", "--type", "int"});
    Outcome const values = Run({"registry", "diff", "HKEY_USERS/B", "A"}); // the root of one is not that of the other
    EXPECT_EQ(values.status, 1);
    EXPECT_EQ(values.output, "- .: columns  string  3\n+ .: columns  int  3\n");
    EXPECT_EQ(Run({"registry", "diff", "A", "HKEY_USERS/B", "-r"}).output,
              "- .: Columns  int  3\n+ .: Columns  string  3\n- Window/Left  key\n"
              "- Window/Left: (default)  string  only here\n+ Window: Top  int  7\n");
    EXPECT_EQ(
        Json::parse(Run({"registry", "diff", "A", "HKEY_USERS/B", "--json"}).output).at("differences").dump(),
        R"([{"first":{"type":"int","value":3},"key":".","name":"Columns","second":{"type":"string","value":"3"}}])");
    EXPECT_EQ(Run({"registry", "diff", "A", "HKEY_CURRENT_USER/a", "-r"}).status, 0);
    EXPECT_THAT(Run({"registry", "diff", "A", "C"}).errors, HasSubstr("zel: C: no such key"));
}

TEST_F(Zel, RegistryThatIsDamagedIsToldOf) {
    Run({"registry", "set", "A", "a", "x"});
    Make("../home/.config/zeltools/registry.db", std::string(4096, 'x'));
    ExpectFailure(1, {"registry", "get", "A", "a"}, "registry.db.damaged-1");
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
        {{"unset", "/hkey_users/", "--key", "-r"}, 2, "a root cannot be deleted"},
        {{"set", "Software/\xFF", "a", "b"}, 2, "zel: 'Software/\\xFF' is no UTF-8\n"},
        {{"get", "Software/\x1B[31m"}, 1, "zel: Software/\\x1B[31m: (default): no such"},
    };
    for (auto const& row : rows) {
        Outcome const outcome = Run({"registry"}, row.arguments);
        EXPECT_EQ(outcome.status, row.status);
        EXPECT_THAT(outcome.errors, HasSubstr(row.errors));
    }
    EXPECT_FALSE(fs::exists(folder / "home/.config")); // nothing was written
}

} // namespace
