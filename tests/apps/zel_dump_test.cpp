// SPDX-License-Identifier: MIT
#include "tests/support/format_page.h"
#include "zel_fixture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST_F(Zel, DumpPrintsStreamsAndRecords) {
    std::string const one = support::HexExample("custom_data", 1);
    Outcome const kinds = Run({"dump", Make("kinds", support::HexExample("custom_data", 2))});
    EXPECT_EQ(kinds.status, 0) << kinds.errors;
    EXPECT_THAT(kinds.output, StartsWith(" ( INT) : -2\n (UINT) : 4000000000\n"));
    EXPECT_THAT(kinds.output, HasSubstr(" (UNIC) : Z\u00E9\n"));
    EXPECT_EQ(Run({"dump", Make("narrow", support::HexExample("custom_data", 6))}).output,
              " (    ) : ?\n (    ) : ?\n");

    std::string const record = "ESOIRPBG" + one;
    std::string const expected = "record IOSE GBPR (0x494F5345 0x47425052)\n ( INT) : 2\n";
    Outcome const records = Run({"dump", Make("a.prefs", std::string("\2\0\0\0", 4) + record + record)});
    EXPECT_EQ(records.output, expected + "\n" + expected);
    EXPECT_EQ(records.status, 0) << records.errors;
    Outcome const torn = Run({"dump", Make("b.prefs", std::string("\2\0\0\0", 4) + record + record.substr(0, 30))});
    EXPECT_EQ(torn.output, expected); // what is good is shown
    EXPECT_THAT(torn.errors, HasSubstr("record 2 of 2 is damaged"));
    EXPECT_EQ(torn.status, 1);
}

TEST_F(Zel, DumpTellsWhatIsNoStream) {
    std::string const one = support::HexExample("custom_data", 1);
    struct {
        std::string file;
        char const* errors;
    } const rows[] = {
        {Make("text", "no stream at all, but long enough"), "it is no custom data and no preferences file\n"},
        {Make("short", "ab"), "it is no custom data and no preferences file\n"},
        {Make("cut", one.substr(0, one.size() - 1)), "it is damaged\n"},
        {Make("magic", one.substr(0, 4)), "it ends too early\n"},
        {Make("rest", one + "abc"), "3 bytes at its end belong to nothing\n"},
        {folder / "absent", "was not found.\n"},
        {folder, "was denied.\n"},
    };
    for (auto const& row : rows) {
        ExpectFailure(1, {"dump", row.file}, row.errors);
    }
}

TEST_F(Zel, DumpCannotCommandATerminal) {
    // UNIC, six bytes: escape, [, and the terminator.
    std::string const stream("5SUC\x26\0\0\0\1\0\0\0\1\0\0\0\6\0\0\0\0\0\0\0\0\0\0\0"
                             "NAME\6\0\0\0CINU\x1b\0[\0\0\0",
                             46);
    Outcome const outcome = Run({"dump", Make("escape", stream)});
    EXPECT_EQ(outcome.output, "EMAN (UNIC) : \\x1B[\n") << outcome.errors;
}

} // namespace
