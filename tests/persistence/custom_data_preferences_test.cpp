// SPDX-License-Identifier: MIT
// Stores in preferences files, on a real disk that fails in real ways.

#include "tests/persistence/file_kinds.h"
#include "tests/support/format_page.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/foundation/log_file.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/xfile.h"

#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using support::OpenDescriptors;
using Wide = CXTString<char16_t>;

constexpr unsigned int ValueId = FourCC("VALU");

std::string Word(unsigned int number) {
    return {reinterpret_cast<char const*>(&number), sizeof(number)};
}

CCustomData StoreOf(unsigned int value) {
    CCustomData store;
    store.SetUInt(ValueId, value);
    return store;
}

/// A record whose store has one UINT.
std::string RecordOf(unsigned int key1, unsigned int key2, unsigned int value) {
    return Word(key1) + Word(key2) + Word(0x43555335) + Word(36) + Word(1) + Word(1) + Word(4) + Word(0) + Word(0) +
           Word(ValueId) + Word(4) + Word(CustomDataUInt) + Word(value);
}

/// Runs an action as a user whom permissions hold back; nobody else can become one.
template <class Action>
void Unprivileged(Action const& action) {
    bool const isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
    action();
    ASSERT_TRUE(!isRoot || seteuid(0) == 0);
}

/// The answer of an action while the process may have no more of a resource.
template <class Action>
bool Limited(__rlimit_resource resource, rlim_t value, Action const& action) {
    rlimit before{};
    getrlimit(resource, &before);
    rlimit const limit{value, before.rlim_max};
    setrlimit(resource, &limit);
    bool const answer = action();
    setrlimit(resource, &before);
    return answer;
}

class Preferences : public testing::Test {
protected:
    Wide Path() const { return folder.Path("a.prefs").c_str(); }
    bool Save(unsigned int key1, unsigned int key2, unsigned int value) const {
        return StoreOf(value).SaveToPrefs(Path(), key1, key2);
    }
    /// The value of a record; 0 for none.
    unsigned int Load(unsigned int key1, unsigned int key2) const {
        CCustomData store = StoreOf(77);
        unsigned int value = 0;
        bool const isFound = store.LoadFromPrefs(Path(), key1, key2, false);
        EXPECT_EQ(store.HasData(), store.GetUInt(ValueId, value, 0));
        EXPECT_TRUE(isFound || !store.HasData()); // what was there is gone
        return value;
    }
    /// The names in the folder, each followed by a blank.
    std::string Names(std::string const& below = {}) const {
        std::string names;
        for (fs::directory_entry const& entry : fs::directory_iterator(folder.Native() + below))
            names += entry.path().filename().string() + " ";
        return names;
    }

    TemporaryFolder folder;
};

TEST_F(Preferences, FileIsTheOneOnTheFormatsPage) {
    CCustomData options;
    options.SetUInt(FourCC("PREF"), 0x30000);
    ASSERT_TRUE(options.SaveToPrefs(Path(), FourCC("IOSE"), FourCC("GBPR")));
    ASSERT_TRUE(CCustomData().SaveToPrefs(Path(), 1, 2));
    std::string const page = support::HexExample("prefs");
    EXPECT_EQ(support::HexText(folder.Read("a.prefs")), support::HexText(page));

    folder.Write("a.prefs", page);
    CCustomData read;
    EXPECT_TRUE(read.LoadFromPrefs(Path(), FourCC("IOSE"), FourCC("GBPR"), false));
    EXPECT_TRUE(read.IsEqual(options));
    EXPECT_TRUE(read.LoadFromPrefs(Path(), 1, 2, false));
    EXPECT_FALSE(read.HasData());
    EXPECT_FALSE(read.LoadFromPrefs(Path(), 2, 1, false));
}

TEST_F(Preferences, SaveMovesItsRecordToTheEndAndKeepsTheOthers) {
    // The pair 7 8 stands twice, as no save writes it, and bytes follow the last record.
    std::string const others = RecordOf(1, 1, 11) + RecordOf(1, 2, 12);
    folder.Write("a.prefs", Word(4) + RecordOf(7, 8, 71) + others + RecordOf(7, 8, 72) + "more");
    EXPECT_EQ(Load(7, 8), 71u);
    ASSERT_TRUE(Save(7, 8, 73));
    EXPECT_EQ(folder.Read("a.prefs"), Word(3) + others + RecordOf(7, 8, 73));
    chmod((folder.Native() + "a.prefs").c_str(), 0600);
    ASSERT_TRUE(Save(1, 1, 14));
    EXPECT_EQ(fs::status(folder.Native() + "a.prefs").permissions(), fs::perms(0600)) << "others may read it now";
    EXPECT_EQ(folder.Read("a.prefs"), Word(3) + RecordOf(1, 2, 12) + RecordOf(7, 8, 73) + RecordOf(1, 1, 14));
    EXPECT_EQ(Names(), "a.prefs ");

    EXPECT_FALSE(StoreOf(1).SaveToPrefs(u"bare.prefs", 1, 1)); // no folder, so not the current one either
    EXPECT_FALSE(fs::exists("bare.prefs"));
    EXPECT_FALSE(StoreOf(1).SaveToPrefs(folder.Path("none/a.prefs").c_str(), 1, 1));
}

TEST_F(Preferences, MissingFileIsTakenFromThePreviousVersion) {
    SetInternalProductName(u"Catalogue", 41977, true); // no random folder name holds this number
    folder.Write("Catalogue 41975/a.prefs", Word(1) + RecordOf(1, 2, 5));
    folder.Write("Catalogue 41977/keep");
    Wide const path = folder.Path("Catalogue 41977/a.prefs").c_str();
    CCustomData store;
    EXPECT_FALSE(store.LoadFromPrefs(path, 1, 2, false));
    EXPECT_TRUE(store.LoadFromPrefs(path, 1, 2, true));
    EXPECT_TRUE(folder.Exists("Catalogue 41977/a.prefs"));
    detail::ForgetProductName();
}

TEST_F(Preferences, DamagedFileIsLeftByALoadAndSetAsideByASave) {
    std::string const whole = Word(2) + RecordOf(1, 1, 11) + RecordOf(1, 2, 12);
    std::string wrongMagic = whole;
    wrongMagic[12] = '!';
    std::string hugeStore = whole;
    std::memcpy(hugeStore.data() + 16, "\xFF\xFF\xFF\xFF", 4);
    std::vector<std::string> damaged = {"", wrongMagic, hugeStore, Word(3) + whole.substr(4),
                                        Word(0xFFFFFFFF) + whole.substr(4)};
    for (std::size_t length = 0; length < whole.size(); ++length)
        damaged.push_back(whole.substr(0, length));
    static std::u16string logged;
    SetLogCallback([](unsigned int, Wide text, bool, void*) { logged += text.GetConstBuffer(); }, nullptr);
    auto const isTold = [&](char const* name) { return logged.find(folder.Path(name)) != std::u16string::npos; };
    for (std::string const& bytes : damaged) {
        SCOPED_TRACE(support::HexText(bytes));
        folder.Write("a.prefs", bytes);
        logged.clear();
        EXPECT_EQ(Load(9, 9), 0u);
        EXPECT_TRUE(isTold("a.prefs"));
        EXPECT_EQ(folder.Read("a.prefs"), bytes);

        EXPECT_FALSE(Save(9, 9, 1));
        EXPECT_EQ(Names(), "a.prefs.lost ");
        EXPECT_EQ(folder.Read("a.prefs.lost"), bytes);
        EXPECT_TRUE(isTold("a.prefs.lost"));
        fs::remove(folder.Native() + "a.prefs.lost");
    }
    SetLogCallback(nullptr, nullptr);
}

TEST_F(Preferences, FileIsAsItWasWhenTheNewOneCannotBePutInPlace) {
    ASSERT_TRUE(Save(1, 1, 11));
    std::string const before = folder.Read("a.prefs");
    auto const expectNothingDone = [&](char const* what) {
        EXPECT_FALSE(Save(1, 1, 12)) << what;
        EXPECT_EQ(folder.Read("a.prefs"), before) << what;
    };

    fs::create_directories(folder.Native() + "a.prefs.tmp/taken");
    expectNothingDone("the temporary name is a folder's");
    fs::remove_all(folder.Native() + "a.prefs.tmp");
    {
        CXFile const other(Path(), XFILE_OPEN_READ | XFILE_SHARE_EXCLUSIVE);
        expectNothingDone("the file is in use");
    }
    // Anybody may write here, and only the owner of a name may replace it.
    chmod(folder.Native().c_str(), 01777);
    chmod((folder.Native() + "a.prefs").c_str(), 0666);
    if (geteuid() == 0)
        Unprivileged([&] { expectNothingDone("the rename is refused"); });
    chmod(folder.Native().c_str(), 0555);
    Unprivileged([&] { expectNothingDone("the folder is read-only"); });
    chmod(folder.Native().c_str(), 0755);
    EXPECT_EQ(Names(), "a.prefs ");
    EXPECT_TRUE(Save(1, 1, 12));
}

TEST_F(Preferences, RunningOutOfDescriptorsLosesNothing) {
    ASSERT_TRUE(Save(1, 1, 11));
    std::ptrdiff_t const open = OpenDescriptors();
    int const firstFree = dup(0); // no descriptor below it is free, and limits go by the number
    close(firstFree);
    int succeeded = 0;
    for (unsigned int spare = 0; spare < 8; ++spare) {
        std::string const before = folder.Read("a.prefs");
        bool const isSaved =
            Limited(RLIMIT_NOFILE, static_cast<rlim_t>(firstFree) + spare, [&] { return Save(1, 2, 100 + spare); });
        succeeded += isSaved ? 1 : 0;
        if (!isSaved) {
            EXPECT_EQ(folder.Read("a.prefs"), before) << spare;
        }
        EXPECT_EQ(Load(1, 1), 11u) << spare;
        EXPECT_EQ(Names(), "a.prefs ") << spare;
        EXPECT_EQ(OpenDescriptors(), open);
    }
    EXPECT_GT(succeeded, 0);
    EXPECT_LT(succeeded, 8);
}

TEST_F(Preferences, FullDiskSetsTheOldFileAside) {
    CCustomData large;
    std::string const bytes(200'000, 'x');
    large.SetBinary(ValueId, bytes.data(), static_cast<unsigned int>(bytes.size()));
    std::ptrdiff_t const open = OpenDescriptors();
    auto const expectSetAside = [&](std::string const& below, std::function<bool(Wide const&)> const& save) {
        Wide const path = folder.Path(below + "a.prefs").c_str();
        ASSERT_TRUE(StoreOf(11).SaveToPrefs(path, 1, 1));
        EXPECT_FALSE(save(path));
        EXPECT_EQ(Names(below), "a.prefs.lost ");
        EXPECT_EQ(folder.Read(below + "a.prefs.lost"), Word(1) + RecordOf(1, 1, 11));
        EXPECT_EQ(OpenDescriptors(), open);
    };
    expectSetAside("", [&](Wide const& path) {
        std::signal(SIGXFSZ, SIG_IGN);
        return Limited(RLIMIT_FSIZE, 100'000, [&] { return large.SaveToPrefs(path, 1, 2); });
    });
    std::string const mounted = folder.Native() + "small";
    fs::create_directory(mounted);
    if (mount("none", mounted.c_str(), "tmpfs", 0, "size=128k") == 0) {
        expectSetAside("small/", [&](Wide const& path) { return large.SaveToPrefs(path, 1, 2); });
        umount2(mounted.c_str(), MNT_DETACH);
    }
}

// A child saves one file after the other until it is killed, wherever it is at that moment.
TEST_F(Preferences, KilledSaveLeavesTheOldFileOrTheNew) {
    using Clock = std::chrono::steady_clock;
    CCustomData padding;
    padding.SetString(1, u"a second record, so that a torn file has somewhere to be torn");
    ASSERT_TRUE(Save(1, 1, 0));
    ASSERT_TRUE(padding.SaveToPrefs(Path(), 2, 2));
    unsigned int last = 0;
    auto const end = Clock::now() + std::chrono::seconds(3);
    for (unsigned int kills = 0; Clock::now() < end; ++kills) {
        pid_t const child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (unsigned int value = last + 1;; ++value)
                Save(1, 1, value);
        }
        usleep(500 + kills * 977 % 9000);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);

        unsigned int const value = Load(1, 1);
        ASSERT_GE(value, last) << "after " << kills << " kills";
        last = value;
        CCustomData read;
        ASSERT_TRUE(read.LoadFromPrefs(Path(), 2, 2, false));
        ASSERT_TRUE(read.IsEqual(padding));
        ASSERT_EQ(fs::file_size(folder.Native() + "a.prefs"), folder.Read("a.prefs").size());
    }
    EXPECT_GT(last, 0u);
    EXPECT_FALSE(folder.Exists("a.prefs.lost"));
    RecordProperty("saves", static_cast<int>(last));
}

} // namespace
