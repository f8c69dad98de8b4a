// SPDX-License-Identifier: MIT
// Templates as a person types them: in a list, and in what `zel tags` and `zel template check` tell.

#include "zel_fixture.h"

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

class ZelTemplate : public Zel {
protected:
    ZelTemplate() { pluginFolder = ZEL_TEST_PLUGINS; }

    /// The text for one file, without its end of line.
    std::string Expand(std::string const& text, fs::path const& file) const {
        Outcome const outcome = Run({"list", "--template", text, file});
        return outcome.output.substr(0, outcome.output.size() - 1);
    }
};

TEST_F(ZelTemplate, WhatIsNoTagIsText) {
    fs::path const file = Make("oak.bmp");
    struct {
        char const* text;
        std::string expanded;
    } const rows[] = {
        {"", ""},
        {"index", "index"}, // a tag's name, first in the text
        {"index> <index>", "index> 1"},
        {"a < b <index> > c", "a < b 1 > c"},
        {"<index", "<index"},
        {"<index<index>", "<index1"},
        {"<><<index>>", "<><1>"},
        {"<nosuch>><index>", "<nosuch>>1"},
        {"< index >", "< index >"},
        {"<INDEX> <File ( ShortName )>", "1 oak"},
        {"<file(name(ext))>", ".bmp"},
        {"<file(nosuch)>", file},
        {"<width(ext)><file(ext(d))>", ".bmp"},
        {"<tagifexist>a</tagifexist>b</tagifexist><tagifexist>c<index>", "bc1"},
        {"<TagIfExist><index><TagEndIfExist>", "1"},
        {"\\n\\t\\\\\\x\\", "\n\t\\\\x\\"},
        {"\xC3\xA9\xFF\xEF\x80\xBC<index>", "\xC3\xA9\xFF\xEF\x80\xBC\x31"}, // U+F03C is not what stands for "<" here
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Expand(row.text, file), row.expanded) << row.text;
    }
}

TEST_F(ZelTemplate, ValuesOfAFileAreNeverReadAsTags) {
    std::string const name = "<index>\\<file>\xFF\xEF\x80\xBE.tim";
    Make(name, "image 64 48 <width></tagifexist><meta:artist> \x1B[2J");
    Outcome const outcome =
        Run({"list", "--template", "<file(name)>|<tagifexist><meta:ARTIST></tagifexist>|<meta:shots>|<meta:nosuch>",
             Tree()});
    EXPECT_EQ(outcome.output, name + "|<width></tagifexist><meta:artist> \\x1B[2J|4711|\n");
    Make(name, "image 1 1");
    Json const list = Json::parse(Run({"list", "--json", "--template", "<file(name)>", Tree()}).output);
    EXPECT_EQ(list.at("files").at(0).at("textBytes").get<std::string>().substr(0, 4), "3c69"); // "<i"
    Make(name, "nonsense");
    Json const broken = Json::parse(Run({"list", "--json", Tree()}).output);
    EXPECT_THAT(broken.at("failures").at(0).at("reason"), HasSubstr("TIM1: "));
}

TEST_F(ZelTemplate, OpensFilesOnlyForWhatIsInThem) {
    Make("a.tim", "nonsense");
    Make("b.txt");
    fs::create_directory(folder / "tree/sub");
    Outcome const byName = Run({"list", "--template", "<file(name)> <kind> <bytes>", Tree()});
    EXPECT_EQ(byName.status, 0) << byName.errors;
    EXPECT_EQ(byName.output, "a.tim bitmap 8\nb.txt other 1\n");
    Outcome const byContent = Run({"list", "--template", "<file(name)>:<width>:<error>", Tree()});
    EXPECT_EQ(byContent.status, 1);
    EXPECT_THAT(byContent.output, HasSubstr("a.tim::TIM1: "));
    EXPECT_THAT(byContent.output, HasSubstr("b.txt::\n"));
}

TEST_F(ZelTemplate, FilesAndOtherOptionsGoTogether) {
    std::string const one = Make("one.txt", "333");
    Make("two.txt", "22");
    std::string const page = Make("../page", "\xEF\xBB\xBF<index> <file(name)>\\n\n--\n");
    EXPECT_EQ(Run({"list", "--sort", "size", "--template-file", page, Tree()}).output,
              "1 two.txt\\n\n--\n2 one.txt\\n\n--\n");
    Json const list = Json::parse(Run({"list", "--json", "--template", "<index>", Tree()}).output);
    EXPECT_EQ(list.at("files").at(1).at("name"), "two.txt");
    EXPECT_EQ(list.at("files").at(1).at("text"), "2");

    Run({"list", "--preferences", "--json", Tree()}); // remembered, and not for a template
    EXPECT_EQ(Run({"list", "--preferences", "--template", "<index>", Tree()}).output, "1\n2\n");
    EXPECT_THAT(Run({"list", "--preferences", Tree()}).output, testing::StartsWith("{"));

    Outcome const unknown = Run({"list", "--template", "<nosuch> <nosuch>", one, one});
    EXPECT_EQ(unknown.output, "<nosuch> <nosuch>\n<nosuch> <nosuch>\n");
    EXPECT_EQ(unknown.errors, "zel: template:1:1: no tag <nosuch>\n"); // once
    Outcome const strict = Run({"list", "--strict", "--template", "<nosuch>", one});
    EXPECT_EQ(strict.status, 1);
    EXPECT_EQ(strict.output, "");
    for (char const* const file : {"/none", "/dev/zero", "/"}) {
        ExpectFailure(1, {"list", "--template-file", file, one}, std::string(file) + ": ");
    }
}

TEST_F(ZelTemplate, EveryTagThatIsToldOfCanBeAskedFor) {
    Json const told = Json::parse(Run({"tags", "--json"}).output);
    std::string all;
    std::map<std::string, Json> tags;
    for (Json const& tag : told.at("tags")) {
        all += tag.at("name").get<std::string>() + "|";
        tags[tag.at("name")] = tag;
        for (char const* const member : {"type", "class", "description"}) {
            EXPECT_NE(tag.at(member), "") << tag;
        }
    }
    EXPECT_EQ(tags.at("<file>").at("parameters").size(), 11u);
    EXPECT_EQ(tags.at("<written>").at("parameters"), Json({"d", "h", "d+h", "d+t", "d+h+t"}));
    EXPECT_EQ(tags.at("<width>").at("type"), "number");
    EXPECT_EQ(told.at("parameters").size(), 16u);
    fs::path const image = Make("a.tim", "image 64 48");
    EXPECT_THAT(Expand(all, image), testing::AllOf(HasSubstr("|64|48|"), Not(HasSubstr("<"))));
    EXPECT_THAT(Expand(all, Make("b.tsc", "12 a.png")), testing::AllOf(HasSubstr("|12|"), HasSubstr("|a.png ; |")));
    EXPECT_EQ(Json::parse(Run({"template", "check", all, "--json"}).output).at("faults"), Json::array());
}

TEST_F(ZelTemplate, CheckNamesFaultsWithTheirPlace) {
    struct {
        char const* text;
        char const* kind;
        int column;
        Json nearest;
    } const rows[] = {
        {"\xC3\xA9 <heigth>", "unknown tag", 3, "<height>"},
        {"<shortname>", "unknown tag", 1, "<file(shortname)>"},
        {"<d+h>", "unknown tag", 1, "<written(d+h)>"},
        {"<date>", "unknown tag", 1, nullptr}, // as far from <name> as from nothing
        {"<meta:>", "unknown tag", 1, nullptr},
        {"<file( exd )>", "unknown parameter", 8, "ext"},
        {"<file(lastwritedate(d+g))>", "unknown parameter", 21, "d+h"},
        {"<written(ext)>", "idle parameter", 10, nullptr},
        {"<file(name)(ext)>", "brackets", 6, nullptr},
        {"<file(ext>", "brackets", 6, nullptr},
        {"<file()>", "unknown parameter", 7, nullptr},
        {"a <file", "unclosed tag", 3, nullptr},
        {"x <TAGIFEXIST>", "unclosed block", 3, nullptr},
        {"</tagifexist>", "stray closer", 1, nullptr},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.text);
        Outcome const outcome = Run({"template", "check", row.text, "--strict", "--json"});
        EXPECT_EQ(outcome.status, 1);
        Json const faults = Json::parse(outcome.output).at("faults");
        ASSERT_EQ(faults.size(), 1u) << outcome.output;
        EXPECT_EQ(faults.at(0).at("kind"), row.kind);
        EXPECT_EQ(faults.at(0).at("column"), row.column);
        EXPECT_EQ(faults.at(0).at("nearest"), row.nearest);
        EXPECT_EQ(Run({"template", "check", row.text}).status, 0);
    }
    std::string const page = Make("page", "<width>\n1 < 2 <-\n  <widht>\n");
    EXPECT_EQ(Run({"template", "check", "--template-file", page}).output,
              page + ":3:3: no tag <widht>; <width> is the nearest\n");
    std::string const brackets = Make("brackets", std::string(500'000, '<') + "a" + std::string(500'000, '(') + ">");
    EXPECT_EQ(Run({"template", "check", "--template-file", brackets, "--json"}).status, 0); // and soon
}

} // namespace
