// SPDX-License-Identifier: MIT
// zel prefs on files of every generation, and the options that zel list remembers.

#include "terminal.h"
#include "zel_fixture.h"

#include <variant>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

/// The bytes of numbers and texts, one after the other.
std::string Bytes(std::initializer_list<std::variant<unsigned int, std::string>> parts) {
    std::string bytes;
    for (auto const& part : parts) {
        if (auto const* const number = std::get_if<unsigned int>(&part)) {
            bytes.append(reinterpret_cast<char const*>(number), sizeof(*number));
        } else {
            bytes += std::get<std::string>(part);
        }
    }
    return bytes;
}

TEST_F(Zel, PrefsSetsGetsAndComparesTypedValues) {
    std::string const file = folder / "a.prefs";
    struct {
        char const* type;
        std::vector<std::string> words;
        Json value; // null for none
    } const rows[] = {
        {"int", {"-5"}, -5},
        {"uint", {"-1"}, nullptr},
        {"int64", {"-9223372036854775808"}, std::numeric_limits<long long>::min()},
        {"uchar", {"256"}, nullptr},
        {"float", {"0.1"}, 0.1},
        {"double", {"1e300x"}, nullptr},
        {"bool", {"true"}, true},
        {"bool", {"1"}, nullptr},
        {"string", {"Z\xC3\xA9\xF0\x9F\x98\x80"}, "Z\xC3\xA9\xF0\x9F\x98\x80"},
        {"ansi", {""}, ""},
        {"strings", {"a", "", "b"}, {"a", "", "b"}},
        {"binary", {"00ff10"}, "00ff10"},
        {"binary", {"0"}, nullptr},
        {"time", {"1705320000"}, 1705320000},
        {"nonsense", {"1"}, nullptr},
        {"string", {"\xFF"}, nullptr}, // another text would be stored
        {"strings", {"a", "b\xED\xA0\x80"}, nullptr},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.type + (" " + row.words[0]));
        Outcome const set = Run({"prefs", "set", file, "IOSE", "0x2A", "VALU", "--type", row.type, "--"}, row.words);
        EXPECT_EQ(set.status, row.value.is_null() ? 2 : 0);
        Outcome const got = Run({"prefs", "get", file, "IOSE", "42", "VALU", "--json"});
        if (!row.value.is_null()) {
            EXPECT_EQ(Json::parse(got.output), Json({{"type", row.type}, {"value", row.value}}));
        }
    }
    Run({"prefs", "set", file, "IOSE", "42", "VALU", "1705320001"}); // keeps its type
    EXPECT_EQ(Run({"prefs", "get", file, "IOSE", "42", "VALU"}).output, "1705320001\n");

    std::string const other = folder / "b.prefs";
    fs::copy_file(file, other);
    EXPECT_EQ(Run({"prefs", "diff", file, other}).status, 0);
    Run({"prefs", "set", other, "IOSE", "42", "VALU", "7"});
    Run({"prefs", "set", other, "0x1", "2", "NEW", "x"});
    Outcome const diff = Run({"prefs", "diff", file, other});
    EXPECT_EQ(diff.status, 1);
    EXPECT_EQ(diff.output, "- IOSE 0x0000002A VALU  time  1705320001\n"
                           "+ IOSE 0x0000002A VALU  time  7\n"
                           "+ 0x00000001 0x00000002 NEW   string  x\n");
    EXPECT_EQ(Run({"prefs", "unset", other, "1", "2"}).status, 0);
    EXPECT_EQ(Run({"prefs", "unset", other, "1", "2"}).status, 1);
    EXPECT_EQ(Run({"prefs", "unset", other, "IOSE", "42", "VALU"}).status, 0);
    EXPECT_EQ(Json::parse(Run({"prefs", "list", other, "--json"}).output).at("records").at(0).at("values"), 0);
    EXPECT_THAT(Run({"prefs", "unset", other, "\x1B[m", "42"}).errors, HasSubstr("'\\x1B[m' is no key"));
}

TEST_F(Zel, PrefsShowsEveryGenerationAndRefusesDamage) {
    std::string const value = Bytes({1U, 4U, 0x20494E54U, 85U}); // id 1, INT
    std::string const nested = Bytes({2U, 16U, 0x43444132U, value});
    std::string const header = Bytes({1U, 1U, 4U, 0U, 0U});
    auto const legacy = [](unsigned int magic, std::string const& text) {
        return Bytes({magic, static_cast<unsigned int>(text.size()) + 15, 3U, static_cast<unsigned int>(text.size()),
                      0U, text, std::string(3, '\0')});
    };
    std::string const bytes = Bytes({4U, 10U, 1U, 0x43555335U, 48U, header, nested,              // present
                                     10U, 2U, 0x43555334U, 36U, header, value,                   // the one before
                                     10U, 3U, legacy(0x43555355U, std::string("o\0k\0\0\0", 6)), // wide
                                     10U, 4U, legacy(0x43555354U, std::string("oak\x1B", 5))});  // narrow
    std::string const file = Make("a.prefs", bytes);
    Outcome const shown = Run({"prefs", "show", file, "--json"});
    EXPECT_EQ(shown.status, 0) << shown.errors;
    Json const records = Json::parse(shown.output).at("records");
    Json const inner = {{"id", "0x00000001"}, {"type", "int"}, {"value", 85}};
    EXPECT_EQ(records.at(0).at("values").at(0),
              Json({{"id", "0x00000002"}, {"type", "store"}, {"value", Json::array({inner})}}));
    EXPECT_EQ(records.at(1).at("values").at(0), inner);
    EXPECT_EQ(records.at(2).at("values").at(0).at("value"), "ok");
    EXPECT_EQ(records.at(3).at("values").at(0).at("value"), "6f616b1b00"); // holds a control character
    EXPECT_EQ(records.at(3).at("generation"), "legacy narrow");

    Make("a.prefs", bytes.substr(0, bytes.size() - 9));
    Outcome const cut = Run({"prefs", "list", file, "--json"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(Json::parse(cut.output).at("records").size(), 3u); // those before the fault
    EXPECT_THAT(cut.errors, HasSubstr("record 4 of 4 is cut off"));
    EXPECT_EQ(Run({"prefs", "set", file, "IOSE", "1", "VALU", "x"}).status, 1); // a save would take the file away
    EXPECT_EQ(ReadWhole(file).size(), bytes.size() - 9);
    EXPECT_EQ(Run({"prefs", "list", Tree() + "/none"}).status, 1);
}

TEST_F(Zel, ListRemembersItsOptionsForAPersonAndNotForAScript) {
    Make("sub/a.bmp", "x");
    auto const rowCount = [this](std::vector<std::string> const& more) {
        return Rows(Run({"list", "--preferences", Tree()}, more)).size();
    };
    EXPECT_EQ(rowCount({"--json", "-r"}), 2u);
    EXPECT_EQ(rowCount({}), 2u);
    EXPECT_EQ(rowCount({"--no-recursive"}), 1u); // given: counts and stays
    EXPECT_EQ(rowCount({}), 1u);

    EXPECT_THAT(Run({"list", Tree()}).output, testing::StartsWith("TYPE")); // a pipe: the defaults
    Run({"list", "-r", "--sort", "size", Tree()});                          // which also teaches nothing
    Run({"list", "--no-preferences", "--no-json", Tree()});
    EXPECT_EQ(rowCount({}), 1u);

    Terminal const terminal(80);
    pid_t const child = Start({ZEL_PROGRAM, "list", Tree()}, terminal.Name(), folder / "errors");
    std::string const onTerminal = terminal.ReadAll();
    EXPECT_EQ(Wait(child), 0);
    EXPECT_THAT(onTerminal, HasSubstr("\"files\""));
}

} // namespace
