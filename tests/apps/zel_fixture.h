// SPDX-License-Identifier: MIT
// Runs the real program with a home, a data folder and a tree of files of the test's own.

#pragma once

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

struct Outcome {
    int status = -1;
    std::string output;
    std::string errors;
};

inline std::string ReadWhole(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Zel : public testing::Test {
protected:
    Zel() {
        std::string name = fs::temp_directory_path() / "zel_test_XXXXXX";
        folder = mkdtemp(name.data());
        fs::create_directory(folder / "home");
    }

    ~Zel() override {
        // A folder without permission would keep its content from being removed.
        chmod((folder / "tree/locked").c_str(), 0700);
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    Outcome Run(std::vector<std::string> arguments, std::vector<std::string> const& more = {}) const {
        arguments.insert(arguments.begin(), ZEL_PROGRAM);
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProgram(std::move(arguments));
    }

    /// Runs zel, which must end with a status and say why.
    void ExpectFailure(int status, std::vector<std::string> const& arguments, std::string const& reason) const {
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(outcome.status, status) << testing::PrintToString(arguments);
        EXPECT_THAT(outcome.errors, testing::HasSubstr(reason)) << testing::PrintToString(arguments);
    }

    /// Runs zel as a user whom permissions hold back; root reads every folder.
    Outcome RunWithoutPrivileges(std::vector<std::string> arguments) const {
        if (geteuid() != 0) {
            return Run(std::move(arguments));
        }
        chmod(folder.c_str(), 0755);
        chmod((folder / "home").c_str(), 0777);
        arguments.insert(arguments.begin(),
                         {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", ZEL_PROGRAM});
        return RunProgram(std::move(arguments));
    }

    Outcome RunProgram(std::vector<std::string> arguments) const {
        fs::path const outputPath = folder / "output";
        fs::path const errorsPath = folder / "errors";
        int const status = Wait(Start(std::move(arguments), outputPath, errorsPath));
        EXPECT_NE(status, FoundByThreadSanitizer) << ReadWhole(errorsPath);
        return {status, ReadWhole(outputPath), ReadWhole(errorsPath)};
    }

    /// Starts a program whose output and errors go to files, which may be a pipe's or a terminal's.
    pid_t Start(std::vector<std::string> arguments, fs::path const& outputPath, fs::path const& errorsPath) const {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        int const flags = O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY;
        posix_spawn_file_actions_addopen(&actions, 1, outputPath.c_str(), flags, 0600);
        posix_spawn_file_actions_addopen(&actions, 2, errorsPath.c_str(), flags, 0600);
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        std::string const home = "HOME=" + (folder / "home").string();
        std::string const data = "XDG_DATA_HOME=" + (folder / "home/data").string();
        std::string const common = "ZELTOOLS_COMMON_DATA=" + (folder / "home/common").string();
        std::string const plugins = "ZELTOOLS_PLUGINS=" + pluginFolder.string();
        // A thread sanitizer ends the program at once, also one that would leave without looking back.
        std::array<char const*, 9> const environment = {
            home.c_str(),    data.c_str(), common.c_str(), "TZ=UTC",
            plugins.c_str(), "LC_ALL=C",   "PATH=/bin",    "TSAN_OPTIONS=halt_on_error=1:exitcode=66:atexit_sleep_ms=0",
            nullptr};
        pid_t child = 0;
        int const error =
            posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), const_cast<char**>(environment.data()));
        posix_spawn_file_actions_destroy(&actions);
        EXPECT_EQ(error, 0);
        return child;
    }

    static constexpr int FoundByThreadSanitizer = 66;

    /// The exit status, or 1000 plus what ended the program otherwise.
    static int Wait(pid_t child) {
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + status;
    }

    fs::path Make(fs::path const& name, std::string const& content = "x") const {
        fs::path const path = folder / "tree" / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    /// Sends an interruption and answers the milliseconds until the program has ended.
    static double Interrupt(pid_t child, int& status) {
        auto const start = std::chrono::steady_clock::now();
        kill(child, SIGINT);
        status = Wait(child);
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

    /// The rows of a JSON list by name; a name that is not UTF-8 stands under its hexadecimal bytes.
    static std::map<std::string, nlohmann::json> Rows(Outcome const& outcome) {
        std::map<std::string, nlohmann::json> rows;
        nlohmann::json const list = nlohmann::json::parse(outcome.output);
        for (nlohmann::json const& row : list.at("files")) {
            std::string const name = row.at(row.contains("nameBytes") ? "nameBytes" : "name");
            EXPECT_TRUE(rows.emplace(name, row).second) << name << " is there twice";
        }
        return rows;
    }

    /// Expects an object to have the members of another one, whatever else it has.
    static void ExpectHolds(nlohmann::json const& object, char const* members) {
        nlohmann::json both = object;
        both.update(nlohmann::json::parse(members));
        EXPECT_EQ(both, object);
    }

    /// The files below the tree, with what is in them.
    Files Content() const {
        Files files;
        for (auto const& entry : fs::recursive_directory_iterator(Tree())) {
            if (!entry.is_directory()) {
                files[entry.path().lexically_relative(Tree())] = ReadWhole(entry.path());
            }
        }
        return files;
    }

    std::string Tree() const { return folder / "tree"; }

    fs::path folder;
    fs::path pluginFolder = "/nonexistent"; ///< None, so that a test's files need not be real ones.
};
