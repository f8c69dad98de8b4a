// SPDX-License-Identifier: MIT
// The registry on real files: processes that are killed, full and read-only disks, damage.

#include "zeltools/platform/registry.h"

#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/registry_values.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace platform;

namespace {

constexpr HKEY NoKey = nullptr;

class Registry : public testing::Test {
protected:
    static HKEY Create(char16_t const* path, unsigned int access = KeyAllAccess) {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, access, &key, nullptr), 0);
        return key;
    }
    static int Set(HKEY key, char16_t const* name, std::string const& bytes, unsigned int type = RegBinary) {
        return RegSetValueExW(key, name, type, bytes.data(), static_cast<unsigned int>(bytes.size()));
    }
    static std::string Get(HKEY key, char16_t const* name) {
        unsigned int type = 0;
        std::string bytes;
        int const status = ReadRegistryValue(key, name, type, bytes);
        return status == 0 ? std::to_string(type) + ":" + bytes : "status " + std::to_string(status);
    }

    /// What SQLite's own check says of the file.
    std::string Integrity() const {
        sqlite3* database = nullptr;
        std::string answer;
        sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
        auto const take = [](void* text, int, char** columns, char**) {
            *static_cast<std::string*>(text) += columns[0];
            return 0;
        };
        sqlite3_exec(database, "PRAGMA integrity_check", take, &answer, nullptr);
        sqlite3_close(database);
        return answer;
    }

    TemporaryFolder folder;
    std::string const file = folder.Native() + "settings/registry.db";
    ScopedVariable const variable{"ZELTOOLS_REGISTRY", file};
};

TEST_F(Registry, ReadingMakesNoFile) {
    HKEY key = nullptr;
    RegistryKeyInfo info;
    std::array<char16_t, 8> name{};
    unsigned int length = 8;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"Software", KeyRead, &key), ErrorFileNotFound);
    EXPECT_EQ(RegQueryValueExW(HKEY_USERS, u"a", nullptr, nullptr, nullptr), ErrorFileNotFound);
    EXPECT_EQ(RegQueryInfoKeyW(HKEY_CURRENT_USER, info), ErrorSuccess);
    EXPECT_EQ(RegEnumKeyExW(HKEY_LOCAL_MACHINE, 0, name.data(), &length), ErrorNoMoreItems);
    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"Software"), ErrorFileNotFound);
    EXPECT_EQ(SHDeleteKeyW(HKEY_CURRENT_USER, u"Software"), ErrorFileNotFound);
    EXPECT_EQ(RegDeleteValueW(HKEY_CURRENT_USER, u"a"), ErrorFileNotFound);
    EXPECT_EQ(GetRegistryVersion(), 0U);
    EXPECT_FALSE(folder.Exists("settings"));
}

TEST_F(Registry, NamesIgnoreCaseAndKeepTheirSpelling) {
    HKEY const key = Create(u"Software\\Éclair\\\u0416\\Sub\\");
    EXPECT_EQ(Set(key, u"Größe", "one"), ErrorSuccess);
    EXPECT_EQ(Set(key, u"GRÖßE", "two", RegNone), ErrorSuccess);
    HKEY same = nullptr;
    unsigned int disposition = 0;
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"SOFTWARE\\éCLAIR\\\u0436\\sub", KeyRead, &same, &disposition), 0);
    EXPECT_EQ(disposition, OpenedExistingKey);
    EXPECT_EQ(Get(same, u"grÖße"), "0:two");
    std::array<char16_t, 8> name{};
    unsigned int length = 6;
    EXPECT_EQ(RegEnumKeyExW(Create(u"Software"), 0, name.data(), &length), ErrorMoreData);
    length = 7;
    EXPECT_EQ(RegEnumKeyExW(Create(u"Software"), 0, name.data(), &length), ErrorSuccess);
    EXPECT_EQ(std::u16string(name.data()), u"Éclair");
    EXPECT_EQ(length, 6U);
    length = 8;
    EXPECT_EQ(RegEnumValueW(same, 0, name.data(), &length, nullptr, nullptr, nullptr), ErrorSuccess);
    EXPECT_EQ(std::u16string(name.data()), u"Größe");
    EXPECT_EQ(RegEnumValueW(same, 1, name.data(), &length, nullptr, nullptr, nullptr), ErrorNoMoreItems);
}

TEST_F(Registry, OddNamesAndHugeValues) {
    std::u16string const control = u"\u0001 '; DROP TABLE key; -- /%s\n";
    std::u16string const surrogate = {u'a', 0xD800, u'b', 0xDC00, 0xFFFF};
    HKEY const root = Create(u"Odd");
    for (std::u16string const& name : {control, surrogate, std::u16string(MaxKeyName, u'x')}) {
        HKEY const key = Create((u"Odd\\" + name).c_str());
        EXPECT_EQ(Set(key, name.c_str(), "v"), ErrorSuccess);
        EXPECT_EQ(Get(Create((u"Odd\\" + name).c_str()), name.c_str()), "3:v");
        EXPECT_EQ(Get(root, name.c_str()), "status 2");
    }
    RegistryKeyInfo info;
    EXPECT_EQ(RegQueryInfoKeyW(root, info), ErrorSuccess);
    EXPECT_EQ(info.subKeys, 3U);
    EXPECT_EQ(info.longestSubKeyName, MaxKeyName);

    HKEY key = NoKey;
    std::u16string deep;
    for (std::size_t i = 0; i <= MaxKeyDepth; ++i) {
        deep += u"d\\";
    }
    std::pair<std::u16string, unsigned int> const rows[] = {
        {std::u16string(MaxKeyName + 1, u'x'), ErrorInvalidParameter},
        {u"\\Odd", ErrorBadPathname},
        {deep, ErrorInvalidParameter},
        {deep.substr(2), ErrorSuccess},
    };
    for (auto const& [path, status] : rows) {
        EXPECT_EQ(RegCreateKeyExW(HKEY_USERS, path.c_str(), KeyAllAccess, &key, nullptr), status);
    }
    EXPECT_EQ(RegCreateKeyExW(key, u"more", KeyAllAccess, &key, nullptr), ErrorInvalidParameter);

    std::string const large(MaxValueBytes / 8, '\x80');
    EXPECT_EQ(Set(root, u"large", large), ErrorSuccess);
    EXPECT_EQ(Get(root, u"large"), "3:" + large);
    EXPECT_EQ(RegSetValueExW(root, u"larger", RegBinary, large.data(), MaxValueBytes + 1), ErrorInvalidParameter);
    EXPECT_EQ(Set(root, std::u16string(MaxValueName, u'n').c_str(), ""), ErrorSuccess);
    EXPECT_EQ(Set(root, std::u16string(MaxValueName + 1, u'n').c_str(), ""), ErrorInvalidParameter);
}

TEST_F(Registry, HandlesAreHeldToTheirAccess) {
    HKEY const all = Create(u"Software\\Keys");
    EXPECT_EQ(Set(all, nullptr, "default"), ErrorSuccess);
    HKEY const reader = Create(u"Software\\Keys", KeyRead);
    HKEY const writer = Create(u"Software\\Keys", KeyWrite);
    EXPECT_EQ(Set(reader, u"a", "b"), ErrorAccessDenied);
    EXPECT_EQ(RegDeleteValueW(reader, u""), ErrorAccessDenied);
    EXPECT_EQ(Get(reader, u""), "3:default");
    EXPECT_EQ(Get(writer, u""), "status 5");
    EXPECT_EQ(Set(writer, u"a", "b"), ErrorSuccess);
    std::array<char16_t, 8> name{};
    unsigned int length = 8;
    EXPECT_EQ(RegEnumKeyExW(writer, 0, name.data(), &length), ErrorAccessDenied);

    EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, u"Software"), ErrorAccessDenied); // has a key below
    EXPECT_EQ(SHDeleteKeyW(HKEY_CURRENT_USER, u""), ErrorAccessDenied);          // a root
    EXPECT_EQ(SHDeleteKeyW(HKEY_CURRENT_USER, u"software"), ErrorSuccess);
    EXPECT_EQ(Get(all, u"a"), "status 1018");
    EXPECT_EQ(Set(all, u"a", ""), ErrorKeyDeleted);
    EXPECT_EQ(Get(Create(u"Software\\Keys"), u"a"), "status 2"); // a new key, not the old one
    EXPECT_EQ(RegCloseKey(all), ErrorSuccess);
    EXPECT_EQ(RegCloseKey(all), ErrorInvalidHandle);
    EXPECT_EQ(Get(all, u"a"), "status 6");
    EXPECT_EQ(Get(NoKey, u"a"), "status 6");
    EXPECT_EQ(Get(RootKey(0x80000004), u"a"), "status 6");
    EXPECT_EQ(RegCloseKey(HKEY_USERS), ErrorSuccess);
}

std::u16string NameOf(int writer, int number) {
    std::string const name = "w" + std::to_string(writer) + '_' + std::to_string(number);
    return {name.begin(), name.end()};
}

/// A process that writes numbers and tells each that is on the disk through a pipe.
[[noreturn]] void WriteForEver(int writer, int pipe) {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, u"Software\\Kill", KeyAllAccess, &key, nullptr);
    for (int number = 0;; ++number) {
        if (RegSetValueExW(key, NameOf(writer, number).c_str(), RegInt, &number, 4) != ErrorSuccess) {
            _exit(1);
        }
        int const report[2] = {writer, number};
        if (write(pipe, report, sizeof(report)) != sizeof(report)) {
            _exit(2);
        }
    }
}

TEST_F(Registry, KilledWritersLoseNothingThatWasAnswered) {
    EXPECT_NE(Create(u"Software\\Kill"), NoKey); // an open connection, which the children must not touch
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    int started = 0;
    auto const start = [&] {
        pid_t const child = fork();
        if (child == 0) {
            close(pipes[0]);
            WriteForEver(started, pipes[1]);
        }
        ++started;
        return child;
    };
    std::array<pid_t, 8> children{};
    std::generate(children.begin(), children.end(), start);
    std::minstd_rand random{20261123};
    std::vector<std::array<int, 2>> answered;
    auto const take = [&] {
        return read(pipes[0], &answered.emplace_back(), sizeof(answered[0])) == sizeof(answered[0]);
    };
    for (int kills = 0; kills < 25; ++kills) {
        for (auto values = random() % 12; values > 0; --values) {
            ASSERT_TRUE(take());
        }
        pid_t& victim = children[random() % children.size()];
        kill(victim, SIGKILL);
        int status = 0;
        waitpid(victim, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "a writer failed with " << WEXITSTATUS(status);
        victim = start();
    }
    for (pid_t const child : children) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    close(pipes[1]);
    while (take()) {
    }
    answered.pop_back(); // nothing came any more
    close(pipes[0]);
    EXPECT_GT(answered.size(), 50U);
    HKEY const key = Create(u"Software\\Kill");
    for (auto const& [writer, number] : answered) {
        int found = -1;
        unsigned int size = 4;
        EXPECT_EQ(RegQueryValueExW(key, NameOf(writer, number).c_str(), nullptr, &found, &size), ErrorSuccess);
        EXPECT_EQ(found, number);
    }
    EXPECT_EQ(Integrity(), "ok");
    EXPECT_EQ(Set(key, u"last", ""), ErrorSuccess); // takes away what the last one killed left
    EXPECT_FALSE(folder.Exists("settings/registry.db.damaged-1"));
    EXPECT_FALSE(folder.Exists("settings/registry.db-journal"));
}

TEST_F(Registry, DamagedFileIsSetAside) {
    static std::vector<std::string> names;
    names.clear();
    HKEY key = Create(u"Software\\A");
    Set(key, u"v", std::string(20000, 'v'));
    std::string const sound = folder.Read("settings/registry.db");
    std::string torn = sound;
    torn.replace(4096, torn.size() - 4096, torn.size() - 4096, '\x5A');
    std::string const contents[] = {"no database at all", torn, sound.substr(0, 5000), sound.substr(0, 40)};
    unsigned int number = 0;
    for (std::string const& content : contents) {
        SCOPED_TRACE(number);
        unlink(file.c_str());
        EXPECT_EQ(Get(key, u"v"), "status 1018"); // the connection is not one to a file that is gone
        folder.Write("settings/registry.db", content);
        folder.Write("settings/registry.db-journal", "old");
        if (number == 1) {
            SetRegistryDamageReporter([](std::string const& name) { names.push_back(name); }); // told of what was
        }
        HKEY const old = key;
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"Software\\B", KeyAllAccess, &key, nullptr), ErrorSuccess);
        EXPECT_EQ(Set(key, u"v", "new"), ErrorSuccess);
        EXPECT_EQ(Get(old, u"v"), "status 1018"); // no key of another file
        EXPECT_EQ(Get(key, u"v"), "3:new");
        ++number;
        EXPECT_EQ(folder.Read("settings/registry.db.damaged-" + std::to_string(number)), content);
        EXPECT_EQ(Integrity(), "ok");
    }
    SetRegistryDamageReporter(nullptr);
    ASSERT_EQ(names.size(), 4U);
    EXPECT_EQ(names[2], file + ".damaged-3");

    // A sound database of something else is nobody's registry to move.
    unlink(file.c_str());
    sqlite3* database = nullptr;
    sqlite3_open(file.c_str(), &database);
    sqlite3_exec(database, "CREATE TABLE theirs (a)", nullptr, nullptr, nullptr);
    sqlite3_close(database);
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"C", KeyAllAccess, &key, nullptr), ErrorNotRegistryFile);
    EXPECT_FALSE(folder.Exists("settings/registry.db.damaged-5"));
    // A file without content is a store that was killed before its first key.
    folder.Write("settings/registry.db");
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, u"C", KeyRead, &key), ErrorFileNotFound);
    EXPECT_NE(Create(u"C"), NoKey);
}

/// Runs a part in a child without privileges, since root writes everywhere. Answers the child's exit status.
template <class Part>
int RunUnprivileged(Part part) {
    pid_t const child = fork();
    if (child == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) {
            _exit(100);
        }
        _exit(part());
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000;
}

TEST_F(Registry, FolderThatCannotBeWritten) {
    HKEY const key = Create(u"Software\\A");
    EXPECT_EQ(Set(key, u"v", "1"), ErrorSuccess);
    chmod(folder.Native().c_str(), 0755);
    chmod((folder.Native() + "settings").c_str(), 0555);
    chmod(file.c_str(), 0444);
    EXPECT_EQ(RunUnprivileged([&] {
                  bool const reads = Get(key, u"v") == "3:1";
                  return reads && Set(key, u"v", "2") == ErrorAccessDenied && Get(key, u"v") == "3:1" ? 0 : 1;
              }),
              0);
    chmod((folder.Native() + "settings").c_str(), 0755);
    EXPECT_EQ(Set(key, u"v", "3"), ErrorSuccess); // no lock was left

    chmod((folder.Native() + "settings").c_str(), 0555);
    unlink(file.c_str());
    EXPECT_EQ(RunUnprivileged([] {
                  HKEY made = nullptr;
                  return RegCreateKeyExW(HKEY_CURRENT_USER, u"A", KeyAllAccess, &made, nullptr);
              }),
              static_cast<int>(ErrorAccessDenied));
    chmod((folder.Native() + "settings").c_str(), 0755);
    ScopedVariable const below("ZELTOOLS_REGISTRY", "/dev/null/registry.db");
    HKEY made = nullptr;
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"A", KeyAllAccess, &made, nullptr), ErrorPathNotFound);
}

TEST_F(Registry, FullDiskKeepsWhatWasThere) {
    HKEY const key = Create(u"Software\\A");
    EXPECT_EQ(Set(key, u"v", std::string(3000, 'v')), ErrorSuccess);
    auto const openDescriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    std::ptrdiff_t const descriptors = openDescriptors();
    // A limit on the size of files fails a write as a full disk does, on every system.
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, SIG_IGN);
    rlimit const limit{60000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    int const status = Set(key, u"v", std::string(500000, 'w'));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_TRUE(status == ErrorDiskFull || status == ErrorRegistryIoFailed) << status;
    EXPECT_LE(openDescriptors(), descriptors);
    EXPECT_EQ(Get(key, u"v"), "3:" + std::string(3000, 'v'));
    EXPECT_EQ(Set(key, u"v", "after"), ErrorSuccess);
    EXPECT_EQ(Integrity(), "ok");
    EXPECT_FALSE(folder.Exists("settings/registry.db-journal"));

    std::string const disk = folder.Native() + "disk";
    mkdir(disk.c_str(), 0700);
    if (mount("none", disk.c_str(), "tmpfs", 0, "size=64k") != 0) {
        return; // needs a privilege that a container may lack
    }
    {
        ScopedVariable const small("ZELTOOLS_REGISTRY", disk + "/registry.db");
        HKEY const made = Create(u"A");
        EXPECT_EQ(Set(made, u"v", "old"), ErrorSuccess);
        EXPECT_EQ(Set(made, u"v", std::string(200000, 'w')), ErrorDiskFull);
        EXPECT_EQ(Get(made, u"v"), "3:old");
        EXPECT_NE(access((disk + "/registry.db-journal").c_str(), F_OK), 0);
    }
    Get(key, u"v"); // leaves the small disk
    EXPECT_EQ(umount(disk.c_str()), 0);
}

TEST_F(Registry, VersionChangesWithEveryWrite) {
    HKEY const key = Create(u"Software\\A");
    struct timespec const old[2] = {{1000, 0}, {1000, 0}};
    utimensat(AT_FDCWD, file.c_str(), old, 0);
    unsigned long long const version = GetRegistryVersion();
    EXPECT_NE(version, ~0ULL);
    EXPECT_EQ(GetRegistryVersion(), version);
    Set(key, u"v", "1");
    EXPECT_EQ(GetRegistryVersion(), ~0ULL); // written just now: another write may share the time
    utimensat(AT_FDCWD, file.c_str(), old, 0);
    EXPECT_NE(GetRegistryVersion(), version);
}

TEST_F(Registry, ThreadsShareTheConnection) {
    HKEY const key = Create(u"Software\\A");
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([key, thread] {
            char16_t const name[] = {static_cast<char16_t>(u'a' + thread), u'\0'};
            for (int i = 0; i < 10; ++i) {
                EXPECT_EQ(RegSetValueExW(key, name, RegInt, &i, 4), ErrorSuccess);
                int found = -1;
                unsigned int size = 4;
                EXPECT_EQ(RegQueryValueExW(key, name, nullptr, &found, &size), ErrorSuccess);
                EXPECT_EQ(found, i);
            }
        });
    }
}

} // namespace
