// SPDX-License-Identifier: MIT
// zel with search expressions: which files answer, what is opened for it, and what is explained.

#include "zel_fixture.h"

#include <set>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;

class ZelFind : public Zel {
protected:
    ZelFind() {
        pluginFolder = ZEL_TEST_PLUGINS;
        Make("oak/red table.tim", "image 8 8 Ana Grey");
        Make("oak/old-leg_drawer.txt");
        Make("pine/chair.tim", "image 8 8 Bo Wood");
        Make("pine/4711.bmp");
    }

    Outcome Find(std::vector<std::string> arguments) const {
        arguments.push_back(Tree());
        return Run({"find"}, arguments);
    }

    /// The paths that were printed, seen from the tree.
    std::set<std::string> Paths(Outcome const& outcome) const {
        std::set<std::string> paths;
        std::istringstream lines(outcome.output);
        for (std::string line; std::getline(lines, line);) {
            paths.insert(line.substr(Tree().size() + 1));
        }
        return paths;
    }
};

TEST_F(ZelFind, PrintsWhatAnswersByNamePathTypeOrMetadata) {
    struct {
        std::vector<std::string> arguments;
        std::set<std::string> paths;
    } const rows[] = {
        {{"drawer"}, {"oak/old-leg_drawer.txt"}},
        {{"oak !drawer"}, {"oak/", "oak/red table.tim"}},
        {{"?eg"}, {"oak/old-leg_drawer.txt"}}, // a piece of the name
        {{"\"red table\""}, {"oak/red table.tim"}},
        {{"bmp files"}, {"pine/4711.bmp"}},
        {{"grey ^ wood"}, {"oak/red table.tim", "pine/chair.tim"}},
        {{"tim !(wood chair)"}, {"oak/red table.tim"}}, // one of them in the name, the other in the metadata
        {{"4711"}, {"pine/4711.bmp"}},                  // a number beside the picture is no text
        {{"--case", "GREY ^ Bo"}, {"pine/chair.tim"}},
        {{"--match", "any", "grey & wood"}, {"oak/red table.tim", "pine/chair.tim"}},
        {{"--match", "all", "grey ^ wood"}, {}},
        {{"--no-open", "grey ^ chair"}, {"pine/chair.tim"}},
        {{"--no-recursive", "oak"}, {"oak/"}},
    };
    for (auto const& row : rows) {
        Outcome const outcome = Find(row.arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(Paths(outcome), row.paths) << row.arguments.back();
    }
}

TEST_F(ZelFind, OpensAFileOnlyWhileThatCanChangeTheAnswer) {
    Make("broken.tim", "nothing");
    EXPECT_EQ(Paths(Find({"broken"})), std::set<std::string>{"broken.tim"});
    EXPECT_EQ(Find({"broken"}).errors, ""); // its name has answered
    for (std::string const expression : {"broken !grey", "grey"}) {
        ExpectFailure(1, {"find", expression, Tree()}, "broken.tim"); // what its metadata say is unknown
    }
}

TEST_F(ZelFind, ExplainsTheExpressionAndTheAnswers) {
    Outcome const outcome = Find({"--explain", "tim Table ^ (\"Ana Grey\" !oak)"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output.substr(0, outcome.output.find("\n\n") + 2), "  and      *tim*\n"
                                                                         "  and      *table*\n"
                                                                         "  or       group\n"
                                                                         "    and      *ana grey*\n"
                                                                         "    and not  *oak*\n\n");
    EXPECT_THAT(outcome.output,
                HasSubstr("oak/red table.tim\n"
                          "  *tim*                         red table.tim in name\n" // one word, since there are quotes
                          "  *table*                       red table.tim in name\n"
                          "  group                         does not answer\n"
                          "    *ana grey*                    -\n"
                          "    *oak*                         "));
    EXPECT_THAT(outcome.output, Not(HasSubstr("chair")));
    EXPECT_THAT(Find({"--explain", "ana"}).output, HasSubstr("  *ana*                         ana in Artist\n"));
    EXPECT_THAT(Find({"--explain", ""}).output, HasSubstr("  everything\n"));
    EXPECT_THAT(Find({"--explain", "a (&)"}).output, HasSubstr("  and      group\n    everything\n"));

    // Deeper than any stack is, and than a page is wide.
    std::string const deep = std::string(50'000, '(') + "a ^ b";
    Outcome const nested = Find({"--explain", deep});
    EXPECT_EQ(nested.status, 0);
    EXPECT_LT(nested.output.size(), 100'000U);
}

TEST_F(ZelFind, ListKeepsTheRowsThatAnswer) {
    Outcome const outcome = Run({"list", "-r", "--where", "tim !wood", Tree()});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("red table.tim"));
    EXPECT_THAT(outcome.output, HasSubstr("total            1"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("chair.tim")));
}

} // namespace
