// SPDX-License-Identifier: MIT
// zel with files that it opens: what their parsers do, the files say (test_plugin/test_plugin.cpp).

#include "terminal.h"
#include "tests/support/wait_until.h"
#include "zel_fixture.h"

#include <algorithm>

namespace {

using Json = nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class ZelMedia : public Zel {
protected:
    ZelMedia() { pluginFolder = ZEL_TEST_PLUGINS; }
};

TEST_F(ZelMedia, ListTellsWhatTheHeadersSay) {
    Make("a.tim", "image 64 48");
    Make("b.tim", "second");
    Make("sub/s.tsc", "12 a.png ../a.tim b.tim ..\\a.tim /nowhere/c.png");
    Make("n.txt");
    Outcome const outcome = Run({"list", "-r", "--json", Tree()});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    auto const rows = Rows(outcome);
    ExpectHolds(rows.at("a.tim"), R"({"width": 64, "height": 48, "channels": 1, "pixelType": "uint8",
                                      "subimages": 1, "parser": "TIM1", "firstChoice": true})");
    ExpectHolds(rows.at("b.tim"), R"({"parser": "TIM2", "firstChoice": false})");
    EXPECT_EQ(rows.at("b.tim").at("parserErrors").at(0).at("parser"), "TIM1");
    ExpectHolds(rows.at("sub/s.tsc"), R"({"faces": 12, "vertices": null, "animations": 2,
                                          "boundingBox": {"min": [0, 0, 0], "max": [1, 2, 3]},
                                          "missingTextures": ["a.png", "b.tim", "/nowhere/c.png"]})");
    EXPECT_FALSE(rows.at("n.txt").contains("width"));

    std::string const text = Run({"list", Tree()}).output;
    EXPECT_THAT(text, HasSubstr("64 x 48, Y, uint8\n"));
    EXPECT_THAT(text, HasSubstr("read by TIM2, not the first choice\n"));
    EXPECT_THAT(Run({"list", "--no-open", Tree()}).output, Not(HasSubstr("uint8")));
}

TEST_F(ZelMedia, OneBadFileCostsOneLine) {
    Make("a.tim", "image 1 1");
    Make("bad.tim", "nonsense");
    Make("z.tim", "image 1 1");
    Outcome const outcome = Run({"list", Tree()});
    EXPECT_EQ(outcome.status, 1);
    // What the parsers say is never a format nor a command to the terminal.
    std::string const reason = "100%s of \\x1B[31m it is wrong";
    EXPECT_EQ(outcome.errors, "zel: " + Tree() + "/bad.tim: TIM1: " + reason + "; TIM2: " + reason + "\n");
    EXPECT_THAT(outcome.output, HasSubstr("cannot be read\n"));
    EXPECT_THAT(outcome.output, HasSubstr("total            3"));
    EXPECT_THAT(outcome.output, HasSubstr("failed           1"));
    EXPECT_EQ(Rows(Run({"list", "--json", Tree()})).size(), 3u);
}

TEST_F(ZelMedia, OrderDoesNotDependOnTheWorkers) {
    // A lonely parser's image is as high as parsers are at work with it: one.
    std::string const waits[] = {"slow 9", "image 2 2", "slow 1", "nonsense", "second"};
    for (int i = 0; i < 300; ++i) {
        Make("d" + std::to_string(i % 7) + "/" + std::to_string(i) + (i % 11 == 0 ? ".alo" : ".tim"), waits[i % 5]);
    }
    for (std::string const sort : {"walk", "size"}) {
        Outcome const one = Run({"list", "-r", "--sort", sort, "--threads", "1", Tree()});
        Outcome const many = Run({"list", "-r", "--sort", sort, "--threads", "32", "--progress=json", Tree()});
        EXPECT_EQ(one.status, 1);
        EXPECT_EQ(one.output, many.output);
        EXPECT_THAT(many.errors, HasSubstr(R"("files":307,"ofFiles":307,)"));
    }
}

TEST_F(ZelMedia, FileThatTakesTooLongIsGivenUp) {
    Make("a.tim", "loop");
    Make("b.tim", "hang");
    Make("c.tim", "image 1 1");
    mkfifo((folder / "tree/d.tim").c_str(), 0600);
    Outcome const outcome = Run({"list", "--threads", "1", "--max-seconds", "0.1", Tree()});
    EXPECT_EQ(outcome.status, 1);
    for (char const* const name : {"/a.tim: TIM1: it takes longer than the 0.1 seconds", "/b.tim: it takes longer than",
                                   "/d.tim: it takes longer than"}) {
        EXPECT_THAT(outcome.errors, HasSubstr(name));
    }
    EXPECT_THAT(outcome.output, HasSubstr("1 x 1, Y, uint8"));
    // Beside a thread that was left behind nothing can run alone.
    Make("e.alo", "image 1 1");
    ExpectFailure(1, {"list", "--threads", "2", "--max-seconds", "0.1", Tree()},
                  "/e.alo: its parser has to run alone, and another one does not end");
    ExpectFailure(1, {"list", "--max-pixels", "3", Make("big.tim", "image 2 2")}, "too many pixels");
}

/// What keeps a parser busy when the interruption comes.
class ZelInterrupted : public ZelMedia, public testing::WithParamInterface<char const*> {};

TEST_P(ZelInterrupted, EndsAtOnceWithWhatIsDone) {
    Make("a.tim", "image 1 1");
    if (std::string(GetParam()) == "fifo") {
        mkfifo((folder / "tree/b.tim").c_str(), 0600);
    } else {
        Make("b.tim", GetParam());
    }
    Make("c.tim", "image 7 7");
    std::vector<std::string> const commands[] = {{"list", "--json"}, {"show"}, {"find", "\"a.tim\""}};
    for (std::vector<std::string> arguments : commands) {
        std::string const command = arguments.front();
        arguments.insert(arguments.begin(), ZEL_PROGRAM);
        for (char const* const name : {"a.tim", "c.tim", "b.tim"}) {
            arguments.push_back(Tree() + "/" + name);
        }
        // What is known of the first files comes out before the last one is waited for.
        Pipe const pipe(folder / (command + "-pipe"));
        pid_t const child = Start(arguments, folder / (command + "-pipe"), folder / "errors");
        EXPECT_TRUE(pipe.HasSome());
        int status = 0;
        double const milliseconds = Interrupt(child, status);
        EXPECT_EQ(status, 130);
        EXPECT_LT(milliseconds, 1000) << "a tenth of a second, and patience with a machine that has other things to do";
        std::string const output = pipe.ReadAll();
        EXPECT_THAT(output, HasSubstr("a.tim"));
        if (command == "list") {
            Json const result = Json::parse(output);
            EXPECT_EQ(result.at("interrupted"), true);
            EXPECT_THAT(result.at("failures"), testing::IsEmpty());
        }
        EXPECT_THAT(output, Not(HasSubstr("cannot be read")));
    }
}
INSTANTIATE_TEST_SUITE_P(Parser, ZelInterrupted, testing::Values("loop", "hang", "fifo"));

TEST_F(ZelMedia, InterruptionMeetsBusyWorkers) {
    constexpr char const* contents[] = {"slow 3", "image 2 2", "nonsense", "second"};
    for (int i = 0; i < 400; ++i) {
        Make("d/" + std::to_string(i) + (i % 9 == 0 ? ".alo" : ".tim"), contents[i % 4]);
    }
    Make("e.tim", "loop"); // so that there is an end to interrupt, however fast the machine is
    Outcome const whole = Run({"list", "--json", "--threads", "8", Tree() + "/d"});
    Json const all = Json::parse(whole.output).at("files");
    Pipe const pipe(folder / "pipe");
    pid_t const child =
        Start({ZEL_PROGRAM, "list", "--json", "--progress=json", "--threads", "8", Tree() + "/d", Tree() + "/e.tim"},
              folder / "pipe", folder / "errors");
    EXPECT_TRUE(pipe.HasSome());
    kill(child, SIGINT);
    Json const result = Json::parse(pipe.ReadAll());
    EXPECT_EQ(Wait(child), 130) << ReadWhole(folder / "errors");
    EXPECT_EQ(result.at("interrupted"), true);
    // What is told comes in the order of a list that nobody interrupts; what was not done yet is left out.
    std::size_t place = 0;
    for (Json const& row : result.at("files")) {
        while (place < all.size() && all[place] != row) {
            ++place;
        }
        ASSERT_LT(place, all.size()) << row;
    }
}

TEST_F(ZelMedia, ConvertWritesWholeFilesOrNone) {
    std::string const in = Make("in.tim", "image 3 4");
    std::string const out = folder / "tree/out.tim";
    std::string const zel = ZEL_PROGRAM;
    Outcome const relative =
        RunProgram({"/bin/sh", "-c",
                    "cd " + Tree() + "/../home && " + zel + " convert ../tree/in.tim ../tree/out.tim && " + zel +
                        " show ../tree/out.tim"});
    EXPECT_EQ(relative.status, 0) << relative.errors;
    Files const whole = {{"in.tim", "image 3 4"}, {"out.tim", "image 3 4\n"}};
    EXPECT_EQ(Content(), whole);
    ExpectFailure(1, {"convert", in, out}, "it exists; --overwrite replaces it");
    ExpectFailure(1, {"convert", "--overwrite", "--option", "mode=bad", in, out},
                  "TIM1: the mode is not good; TIM2: the mode is not good");
    EXPECT_EQ(Content(), whole);

    pid_t const child = Start({ZEL_PROGRAM, "convert", "--overwrite", "--option", "mode=half", in, out},
                              folder / "output", folder / "errors");
    WaitUntil([&] { // half of it is there, in a folder of its own
        Files const now = Content();
        return std::any_of(now.begin(), now.end(), [](auto const& file) { return file.second == "image"; });
    });
    int status = 0;
    EXPECT_LT(Interrupt(child, status), 1000);
    EXPECT_EQ(status, 130);
    EXPECT_EQ(Content(), whole);
}

TEST_F(ZelMedia, ConvertKeepsToOneKindAndBringsFilesBeside) {
    std::string const image = Make("a.tim", "image 3 4");
    std::string const scene = Make("a.tsc", "5");
    ExpectFailure(1, {"convert", image, folder / "tree/b.tsc"}, "it is an image and cannot become a scene");
    ExpectFailure(1, {"convert", image, folder / "b.zip"}, "no parser writes files of this type");
    EXPECT_EQ(Run({"convert", scene, folder / "tree/b.tsc"}).status, 0);
    EXPECT_EQ(Content(), (Files{{"a.tim", "image 3 4"}, {"a.tsc", "5"}, {"b.tsc", "5\n"}, {"b.tsc.side", "beside"}}));
    fs::remove(folder / "tree/b.tsc");
    ExpectFailure(1, {"convert", scene, folder / "tree/b.tsc"}, "b.tsc.side exists");
}

TEST_F(ZelMedia, OptionsAreRememberedForTheirFormat) {
    std::string const in = Make("in.tim", "image 3 4");
    auto const convert = [&](std::vector<std::string> const& arguments) {
        return Run({"convert", "--overwrite", in, folder / "out.tim"}, arguments).status;
    };
    fs::path const preferences = folder / "home/data/Quenby/zel/Preferences/zelio.prefs";
    EXPECT_EQ(convert({"--no-preferences", "--option", "mode=good"}), 0);
    EXPECT_FALSE(fs::exists(preferences));
    EXPECT_EQ(convert({"--option", "MODE=good", "--option", "size=1"}), 0);
    EXPECT_THAT(Run({"prefs", "show", preferences}).output, HasSubstr("MODE=good"));
    EXPECT_EQ(convert({"--option", "mode=bad"}), 1); // and what failed is not remembered
    EXPECT_EQ(convert({}), 0);
    EXPECT_EQ(convert({"--option", "mode="}), 0);
    EXPECT_THAT(Run({"prefs", "show", preferences}).output, Not(HasSubstr("MODE")));
}

TEST_F(ZelMedia, ShowPrintsEverythingOfAFile) {
    Outcome const image = Run({"show", Make("a.tim", "second")});
    EXPECT_EQ(image.status, 0);
    EXPECT_THAT(image.output, HasSubstr("first choice               no\n"));
    EXPECT_THAT(image.output, HasSubstr("  pixel type               uint8\n"));
    Outcome const scene = Run({"show", "--json", Make("s.tsc", "5 a.png"), Make("n.txt"), folder / "none.tsc"});
    EXPECT_EQ(scene.status, 1);
    Json const shown = Json::parse(scene.output);
    EXPECT_EQ(shown.at(0).at("counts").at("faces"), 5);
    EXPECT_EQ(shown.at(0).at("materials").at(0).at("textures").at(0).at("missing"), true);
    EXPECT_EQ(shown.at(1).at("kind"), "other");
    EXPECT_TRUE(shown.at(2).contains("error"));
}

TEST_F(ZelMedia, PluginsAreToldWithTypesOrReason) {
    fs::path const own = folder / "plugins";
    fs::create_directory(own);
    fs::copy(fs::path(ZEL_TEST_PLUGINS) / "test_plugin.so", own);
    std::ofstream(own / "text.so") << "no library";
    std::ofstream(own / "notes.txt") << "notes";
    fs::create_symlink("nowhere", own / "dangling.so");
    pluginFolder = own;
    Outcome const outcome = Run({"plugins", "--json"});
    EXPECT_EQ(outcome.status, 1);
    std::map<std::string, Json> rows;
    Json const shown = Json::parse(outcome.output);
    for (Json const& row : shown.at("plugins")) {
        rows[row.at("file")] = row;
    }
    ASSERT_EQ(rows.size(), 4u) << outcome.output;
    EXPECT_EQ(rows.at("test_plugin.so").at("release"), "5.0");
    EXPECT_EQ(rows.at("test_plugin.so").at("types").size(), 4u);
    EXPECT_EQ(rows.at("text.so").at("loaded"), false);
    EXPECT_THAT(rows.at("text.so").at("reason").get<std::string>(), Not(testing::IsEmpty()));
    EXPECT_THAT(rows.at("notes.txt").at("reason").get<std::string>(), HasSubstr("not tried"));
    chmod(own.c_str(), 0777);
    EXPECT_THAT(Run({"plugins"}).output, HasSubstr("test_plugin.so                  "));
    EXPECT_EQ(Json::parse(Run({"plugins", "--json"}).output).at("plugins").at(0).at("loaded"), false);
}

TEST_F(ZelMedia, OutputThatNobodyTakesIsAFailure) {
    Make("a.tim", "image 1 1");
    std::vector<std::string> const commands[] = {{"list", Tree()}, {"list", "--template", "a", Tree()}, {"tags"}};
    for (std::vector<std::string> command : commands) {
        command.insert(command.begin(), ZEL_PROGRAM);
        EXPECT_EQ(Wait(Start(command, "/dev/full", folder / "errors")), 1) << command[1];
        EXPECT_THAT(ReadWhole(folder / "errors"), EndsWith("standard output: not everything could be written\n"));
    }
    // Without the standard streams their numbers would go to the files that are opened.
    Outcome const closed = RunProgram(
        {"/bin/sh", "-c",
         std::string("exec ") + ZEL_PROGRAM + " convert " + Tree() + "/a.tim " + Tree() + "/b.tim 0>&- 1>&- 2>&-"});
    EXPECT_EQ(closed.status, 1);
    EXPECT_EQ(ReadWhole(folder / "tree/b.tim"), "image 1 1\n");
}

} // namespace
