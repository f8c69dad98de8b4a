// SPDX-License-Identifier: MIT
// zel rename on real files: who may get which name, in what order, and what is left when it is stopped.

#include "tests/support/wait_until.h"
#include "zel_fixture.h"

#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

class ZelRename : public Zel {
protected:
    ZelRename() { pluginFolder = ZEL_TEST_PLUGINS; }

    /// Files whose content is their name, each a day older than the one before: `--sort date` takes the last one first.
    void MakeFiles(std::vector<std::string> const& names) const {
        long long seconds = 1'000'000'000;
        for (std::string const& name : names) {
            timespec const times[2] = {{seconds, 0}, {seconds, 0}};
            utimensat(AT_FDCWD, Make(name, name).c_str(), times, 0);
            seconds -= 86'400;
        }
    }

    Outcome Rename(std::string const& text, std::vector<std::string> const& more = {}) const {
        return Run({"rename", "--template", text, Tree()}, more);
    }
};

TEST_F(ZelRename, PreviewTellsAndApplyDoes) {
    MakeFiles({"a.txt", "b.txt", "sub/c.txt"});
    Files const before = Content();
    Outcome const preview = Rename("<file(shortname)> <counter>");
    EXPECT_EQ(preview.status, 0) << preview.errors;
    EXPECT_THAT(preview.output, HasSubstr("/a.txt -> a 1.txt\n"));
    EXPECT_THAT(preview.output, HasSubstr("\n2 to rename; --apply does it\n"));
    EXPECT_EQ(Content(), before);
    Outcome const applied = Rename("<file(shortname)> <counter>", {"-r", "--apply", "--start", "9", "--json"});
    EXPECT_EQ(applied.status, 0);
    EXPECT_EQ(Json::parse(applied.output).at("files").at(2).at("state"), "renamed");
    EXPECT_EQ(Content(), (Files{{"a 09.txt", "a.txt"}, {"b 10.txt", "b.txt"}, {"sub/c 11.txt", "sub/c.txt"}}));
    EXPECT_THAT(Rename("<file(shortname)>").output, HasSubstr("0 to rename, 2 as they are\n"));
}

TEST_F(ZelRename, ExtensionsStayUnlessTheTemplateSays) {
    struct {
        char const* file;
        char const* text;
        char const* option;
        char const* renamed;
    } const rows[] = {
        {"a.TXT", "x", "--apply", "x.TXT"},
        {"a.TXT", "<kind>.txt", "--apply", "other.txt"}, // ends in it, whatever its case
        {"a.txt", "<kind>.jpeg", "--apply", "other.jpeg"},
        {"a.txt", "v1.0 <kind>", "--apply", "v1.0 other.txt"}, // a dot in front of a tag is none of an extension
        {"a.txt", "<file(shortname)><tagifexist>.x<width></tagifexist> b", "--apply", "a b.txt"},
        {"a.txt", "<kind><tagifexist><width>.x</tagifexist>", "--apply", "other.txt"}, // one that went says nothing
        {"a.txt", "<kind>", "--whole-name", "other"},
        {"a.txt", " <width> <kind> <width>", "--apply", "other.txt"},
        {"a.txt", " <width>", "--whole-name", " "},
        {"a.b.gz", "<file(shortname)>_<file(ext)>", "--apply", "a.b_.gz"},
        {".hidden", "<kind>x", "--apply", "otherx.hidden"},
        {"none", "<kind>", "--apply", "other"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.text);
        fs::remove_all(Tree());
        Make(row.file, "1");
        Outcome const outcome = Rename(row.text, {"--apply", row.option});
        EXPECT_EQ(Content(), (Files{{row.renamed, "1"}})) << outcome.errors;
    }
}

TEST_F(ZelRename, RefusesWhatIsNoName) {
    struct {
        std::string text;
        std::vector<std::string> options;
        char const* reason;
    } const rows[] = {
        {"<width>", {"--whole-name"}, "the new name is empty"},
        {".", {}, "'.' is no name"},
        {"..", {"--folders"}, "'..' is no name"},
        {"a/../b", {"--folders", "--whole-name"}, "'..' is no name"},
        {"/tmp/x", {"--folders"}, "the new name is empty"},
        {"a/b", {}, "holds a slash"},
        {"taken/b", {"--folders"}, "taken is no folder"},
        {"a\\nb", {}, "control character"},
        {std::string(252, 'n'), {}, "256 bytes, and 255 are allowed"},
        {"taken.<index>", {"--whole-name"}, "there is a file of that name"},
        {"link.<index>", {"--whole-name"}, "there is a file of that name"},
    };
    fs::path const file = Make("a.txt", "a");
    Make("taken", "t");
    Make("taken.1", "t1");
    fs::create_symlink("nowhere", folder / "tree/link.1");
    for (auto const& row : rows) {
        SCOPED_TRACE(row.text);
        Outcome const outcome = Run({"rename", "--apply", "--template", row.text, file}, row.options);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.errors, testing::AllOf(HasSubstr("a.txt: not renamed"), HasSubstr(row.reason)));
        EXPECT_EQ(ReadWhole(file), "a");
    }
    EXPECT_EQ(ReadWhole(folder / "tree/taken.1"), "t1");
    EXPECT_EQ(Run({"rename", "--template", std::string(251, 'n'), file}).status, 0);
    EXPECT_EQ(Run({"rename", "--template", "a/b<file(ext)>", "--folders", "--apply", file}).status, 0);
    EXPECT_EQ(Content().at("a/b.txt"), "a");
}

TEST_F(ZelRename, RefusesATemplateWithAFaultAndFilesThatCannotBeRead) {
    Make("a.tim", "nonsense");
    Make("b.tim", "image 64 48");
    ExpectFailure(1, {"rename", "--apply", "--template", "<widht>", Tree()}, "<width> is the nearest");
    ExpectFailure(1, {"rename", "--apply", "--template", "<width>", Tree()},
                  "a.tim: not renamed: it cannot be read: TIM1: ");
    EXPECT_EQ(Content(), (Files{{"a.tim", "nonsense"}, {"64.tim", "image 64 48"}}));
    EXPECT_EQ(Run({"rename", "--template", "x", Tree() + "/none"}).status, 1);
}

TEST_F(ZelRename, OneNameForTwoIsForNeither) {
    MakeFiles({"a.txt", "b.txt", "c.bmp"});
    fs::create_directory_symlink(Tree(), folder / "again");
    ExpectFailure(1, {"rename", "--apply", "--template", "<kind>", Tree()}, "/b.txt would get the same name");
    EXPECT_EQ(Content(), (Files{{"a.txt", "a.txt"}, {"b.txt", "b.txt"}, {"bitmap.bmp", "c.bmp"}}));
    // Two ways to one folder are one file each.
    Outcome const twice = Rename("<counter>", {"--apply", folder / "again", Tree() + "/../tree"});
    EXPECT_THAT(twice.output, HasSubstr("3 renamed"));
}

TEST_F(ZelRename, SwapsAndChainsComeOutRight) {
    // Sorted by date the last one is the first: a name moves to the next number, or into a ring.
    struct {
        std::vector<std::string> files; // newest first
        char const* start;
        Files expected;
        char const* other = nullptr; // a file that is there and gets no name
    } const rows[] = {
        {{"2", "1"}, "1", {{"1", "1"}, {"2", "2"}}},                                   // as they are
        {{"1", "2"}, "1", {{"1", "2"}, {"2", "1"}}},                                   // a swap
        {{"1", "3", "2"}, "1", {{"1", "2"}, {"2", "3"}, {"3", "1"}}},                  // a ring of three
        {{"3", "2", "1"}, "2", {{"2", "1"}, {"3", "2"}, {"4", "3"}}},                  // a chain
        {{"4", "3", "2"}, "1", {{"1", "2"}, {"2", "3"}, {"3", "4"}}},                  // one downwards
        {{"3", "4", "1", "2"}, "1", {{"1", "2"}, {"2", "1"}, {"3", "4"}, {"4", "3"}}}, // two swaps
        {{"3", "2", "1"}, "2", {{"1", "1"}, {"2", "2"}, {"3", "3"}, {"4", "x"}}, "4"}, // a blocked chain
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.files) + " from " + row.start);
        fs::remove_all(Tree());
        MakeFiles(row.files);
        std::vector<std::string> files;
        for (std::string const& file : row.files) {
            files.push_back(Tree() + "/" + file);
        }
        if (row.other) {
            Make(row.other, "x");
        }
        Outcome const outcome =
            Run({"rename", "--apply", "--sort", "date", "--start", row.start, "--template", "<index>"}, files);
        EXPECT_EQ(outcome.status, row.other ? 1 : 0) << outcome.errors;
        EXPECT_EQ(Content(), row.expected);
        EXPECT_THAT(outcome.errors, HasSubstr(row.other ? "/2 has that name and keeps it" : ""));
    }
}

TEST_F(ZelRename, ASwapThatFailsHalfWayIsTakenBack) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "files of two users take root to make";
    }
    MakeFiles({"1", "2"});
    chmod(Tree().c_str(), 01777); // everybody may rename what is his own
    ASSERT_EQ(chown((folder / "tree/1").c_str(), 65534, 65534), 0);
    Outcome const outcome =
        RunWithoutPrivileges({"rename", "--apply", "--sort", "date", "--template", "<index>", Tree()});
    if (outcome.status == 126 || outcome.status == 127) {
        GTEST_SKIP() << "another user cannot start the program from here";
    }
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("/2: not renamed to 1: Operation not permitted"));
    EXPECT_THAT(outcome.output, HasSubstr("0 renamed, 2 not"));
    EXPECT_EQ(Content(), (Files{{"1", "1"}, {"2", "2"}}));
}

/// Network file systems lack the renaming that replaces nothing; here the system call is taken away.
TEST_F(ZelRename, WithoutTheSystemsHelpNothingIsReplacedEither) {
    MakeFiles({"1", "2", "3"});
    fs::rename(folder / "tree/3", folder / "tree/4");
    std::string const tree = Tree();
    pid_t const child = fork();
    if (child == 0) {
        sock_filter filter[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                                BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
                                BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
                                BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
        sock_fprog const program = {static_cast<unsigned short>(std::size(filter)), filter};
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
            _exit(126);
        }
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        setenv("HOME", folder.c_str(), 1);
        setenv("ZELTOOLS_PLUGINS", pluginFolder.c_str(), 1);
        execl(ZEL_PROGRAM, ZEL_PROGRAM, "rename", "--apply", "--sort", "date", "--start", "0", "--template",
              "<tagifexist><index></tagifexist>", tree.c_str(), nullptr);
        _exit(127);
    }
    int const status = Wait(child);
    if (status == 126) {
        GTEST_SKIP() << "no filter for system calls here";
    }
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Content(), (Files{{"0", "3"}, {"1", "2"}, {"2", "1"}}));
}

TEST_F(ZelRename, AnInterruptionLeavesEachFileUnderOneOfItsNames) {
    constexpr int count = 4000;
    for (int i = 0; i < count; ++i) {
        Make("f" + std::to_string(i), std::to_string(i));
    }
    pid_t const child = Start({ZEL_PROGRAM, "rename", "--apply", "--template", "n<file(name)>", Tree()},
                              folder / "output", folder / "errors");
    WaitUntil([&] { return fs::exists(folder / "tree/nf0"); }); // the walk's first
    kill(child, SIGINT);
    kill(child, SIGINT); // an impatient person
    int const status = Wait(child);
    EXPECT_TRUE(status == 130 || status == 0) << status;
    int renamed = 0;
    for (auto const& [name, content] : Content()) {
        EXPECT_TRUE(name == "f" + content || name == "nf" + content) << name;
        renamed += name[0] == 'n' ? 1 : 0;
    }
    EXPECT_EQ(Content().size(), static_cast<std::size_t>(count));
    EXPECT_EQ(status == 0, renamed == count);
    if (status == 130) {
        EXPECT_THAT(ReadWhole(folder / "output"), HasSubstr(std::to_string(renamed) + " renamed"));
    }
}

} // namespace
