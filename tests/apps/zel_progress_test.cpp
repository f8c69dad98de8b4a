// SPDX-License-Identifier: MIT
// What zel tells while it works: its progress on pipes and on a real terminal, and its log.

#include "terminal.h"
#include "zel_fixture.h"

#include <sstream>

namespace {

using Json = nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

TEST_F(Zel, ProgressNeverRunsBackwardsAndEndsWithEverything) {
    for (int i = 0; i < 40; ++i) {
        Make("a/" + std::to_string(i) + ".bmp");
        Make("b/c/" + std::string(static_cast<std::size_t>(i % 7), 'd') + "/" + std::to_string(i));
    }
    Make("b/z.max");
    fs::create_directories(folder / "tree/empty/empty");
    Outcome const outcome =
        Run({"list", "-r", "--json", "--progress=json", Tree(), Tree() + "/a", Tree() + "/b/z.max"});
    EXPECT_EQ(outcome.status, 0);
    std::size_t const rows = Json::parse(outcome.output).at("files").size();
    std::istringstream lines(outcome.errors);
    double percent = -1;
    std::size_t files = 0;
    int reports = 0;
    for (std::string line; std::getline(lines, line); ++reports) {
        Json const report = Json::parse(line);
        EXPECT_GT(report.at("percent").get<double>(), percent);
        EXPECT_GE(report.at("files").get<std::size_t>(), files);
        EXPECT_TRUE(report.contains("filesPerSecond") && report.contains("secondsLeft"));
        percent = report.at("percent");
        files = report.at("files");
    }
    EXPECT_EQ(percent, 100);
    EXPECT_EQ(files, rows);
    EXPECT_GT(reports, 10);
    EXPECT_THAT(Run({"list", "-r", "--progress=lines", Tree()}).errors, EndsWith("zel: 100 %, 92 files, 0:00 left\n"));
}

TEST_F(Zel, BarFitsTheTerminalAndLeavesNoTrace) {
    for (int i = 0; i < 100; ++i) {
        Make("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E/" + std::string(60, 'l') + "/" + std::to_string(i) + ".bmp");
    }
    for (int const columns : {100, 31, 8}) {
        Terminal const terminal(columns);
        pid_t const child =
            Start({ZEL_PROGRAM, "list", "-r", Tree(), Tree() + "/none"}, folder / "output", terminal.Name());
        std::string const shown = terminal.ReadAll();
        EXPECT_EQ(Wait(child), 1);
        EXPECT_THAT(shown, HasSubstr("\r  0 %"));
        // The message of the missing file starts a line of its own, behind an erased bar.
        EXPECT_THAT(shown, HasSubstr("\r\033[Kzel: "));
        std::size_t const last = shown.rfind('\r');
        EXPECT_TRUE(shown.substr(last) == "\r\033[K" || shown.substr(last) == "\r\n") << shown;
        std::istringstream pieces(shown);
        for (std::string piece; std::getline(pieces, piece, '\r');) {
            if (piece.ends_with("\033[K") && piece.find("zel:") == std::string::npos) {
                // Each of the wide characters is three bytes that take two columns.
                auto const wide = std::count_if(piece.begin(), piece.end(), [](char c) { return (c & 0xF0) == 0xE0; });
                EXPECT_LT(static_cast<int>(piece.size()) - 3 - wide, columns) << piece;
            }
        }
    }
    EXPECT_EQ(Run({"list", "-r", "--progress=bar", Tree()}).errors, "");
}

/// The characters of a log, all of which are ASCII here.
std::string LogText(fs::path const& path) {
    std::string const bytes = ReadWhole(path);
    std::string text;
    for (std::size_t i = 2; i < bytes.size(); i += 2) {
        text += bytes[i];
    }
    return text;
}

TEST_F(Zel, LogTellsFoldersAndFailures) {
    Make("a/b/c.bmp", "12345");
    Make("a/new\nline/d.max");
    Outcome const outcome = Run({"list", "-r", "--log", folder / "zel.log", Tree(), Tree() + "/none"});
    EXPECT_EQ(outcome.status, 1);
    std::string const log = LogText(folder / "zel.log");
    EXPECT_THAT(log, HasSubstr("Logging information for zel ("));
    EXPECT_THAT(log, HasSubstr(" core will be used by default"));
    EXPECT_THAT(log, HasSubstr("\nzel list: " + Tree() + "\n\t" + Tree() + "/\n\t" + Tree() + "/a/\n"));
    EXPECT_THAT(log, HasSubstr("/a/new\\x0Aline/\n")); // a name cannot forge a line
    EXPECT_THAT(log, HasSubstr("/none was not found.\nzel list: 5 files, 6 bytes, 1 failures\nLog time : "));
    EXPECT_EQ(Run({"list", "--log", "/dev/full", Tree()}).status, 1);
    ExpectFailure(1, {"list", "--log", folder / "missing/zel.log", Tree()}, "/zel.log: the log cannot be written");
    EXPECT_EQ(ReadWhole(folder / "output"), "");
}

TEST_F(Zel, InterruptionErasesTheBarAndEndsByItsSignal) {
    for (int i = 0; i < 3000; ++i) {
        Make(std::to_string(i) + std::string(50, 'n') + ".bmp");
    }
    Terminal const terminal(80);
    Pipe const pipe(folder / "pipe"); // where it is full, the program is in the middle of its work
    pid_t const child =
        Start({ZEL_PROGRAM, "list", "--log", folder / "zel.log", Tree()}, folder / "pipe", terminal.Name());
    std::string const begun = terminal.ReadSome();
    kill(child, SIGINT);
    EXPECT_THAT(pipe.ReadAll(), EndsWith("interrupted\n"));
    EXPECT_THAT(begun + terminal.ReadAll(), EndsWith("\r\033[K"));
    EXPECT_EQ(Wait(child), 130);
    EXPECT_THAT(LogText(folder / "zel.log"), HasSubstr("zel list: interrupted\nzel list: "));
}

} // namespace
