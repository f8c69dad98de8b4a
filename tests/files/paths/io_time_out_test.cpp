// SPDX-License-Identifier: MIT
// The hanging disk is a FIFO that nobody writes to: its open blocks until it is interrupted.

#include "zeltools/files/paths/io_time_out.h"

#include "zeltools/files/paths/guarded_call_private.h"
#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/clock.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/threads.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

CXTString<char16_t> const localPath(u"C:\\a");
CXTString<char16_t> const networkPath(u"\\\\server\\share\\a");

class IoTimeOuts : public testing::Test {
protected:
    IoTimeOuts() : fifo(testing::TempDir() + "zel_io_time_out_" + std::to_string(::getpid())) {
        EXPECT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    }
    ~IoTimeOuts() override { ::unlink(fifo.c_str()); }

    int HangingOpen() const {
        return platform::RetryInterrupted([&] { return ::open(fifo.c_str(), O_RDONLY | O_CLOEXEC); });
    }

    std::string const fifo;
};

std::ptrdiff_t EntryCount(char const* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

TEST(IoTimeOutRule, SaysWhichCallsAreGuarded) {
    struct Row {
        CXTString<char16_t> const* path;
        unsigned int timeOut;
        bool forced, guarded;
    } const rows[] = {
        {&networkPath, 5, false, true},     {&networkPath, 0, false, false}, {&networkPath, 0xFFFFFFFF, true, false},
        {&localPath, 5, false, false},      {&localPath, 5, true, true},     {&localPath, 0x80000005, false, true},
        {nullptr, 0x80000005, false, true},
    };
    for (Row const& row : rows) {
        void* guard = nullptr;
        EXPECT_TRUE(fileTimeOut(row.forced ? IoTimeOutInitForced : IoTimeOutInit, guard, row.path, row.timeOut));
        ASSERT_NE(guard, nullptr);
        // A guard that guards nothing goes through the same steps.
        auto const& record = *static_cast<IoTimeOutGuard*>(guard);
        EXPECT_EQ(record.section != nullptr, row.guarded) << std::hex << row.timeOut;
        EXPECT_EQ(record.timeOutMs, row.guarded ? row.timeOut & 0x7FFFFFFF : 0);
        EXPECT_NE(*record.timeOutWord, IoTimedOut);
        if (!row.guarded) {
            EXPECT_TRUE(fileTimeOut(IoTimeOutBegin, guard, nullptr, 0));
            EXPECT_TRUE(fileTimeOut(IoTimeOutEnd, guard, nullptr, 0));
        }
        EXPECT_TRUE(fileTimeOut(IoTimeOutFree, guard, nullptr, 0));
        EXPECT_EQ(guard, nullptr);
    }
}

TEST_F(IoTimeOuts, GuardEndsAHangingOpenAtItsLimit) {
    void* guard = nullptr;
    fileTimeOut(IoTimeOutInit, guard, &networkPath, 30);
    unsigned long long const start = platform::GetTickCount64();
    EXPECT_TRUE(fileTimeOut(IoTimeOutBegin, guard, nullptr, 0));
    EXPECT_TRUE(fileTimeOut(IoTimeOutBegin, guard, nullptr, 0)); // begun already
    EXPECT_EQ(HangingOpen(), -1);
    EXPECT_EQ(errno, EINTR);
    EXPECT_TRUE(fileTimeOut(IoTimeOutEnd, guard, nullptr, 0));
    EXPECT_GE(platform::GetTickCount64() - start, 30U);
    EXPECT_EQ(*static_cast<IoTimeOutGuard*>(guard)->timeOutWord, IoTimedOut);
    EXPECT_TRUE(fileTimeOut(IoTimeOutEnd, guard, nullptr, 0)); // ended already
    EXPECT_FALSE(fileTimeOut(static_cast<IoTimeOut>(5), guard, nullptr, 0));
    EXPECT_TRUE(fileTimeOut(IoTimeOutBegin, guard, nullptr, 0));
    EXPECT_TRUE(fileTimeOut(IoTimeOutFree, guard, nullptr, 0)); // without an End
    EXPECT_EQ(guard, nullptr);
    for (IoTimeOut const operation : {IoTimeOutBegin, IoTimeOutEnd, IoTimeOutFree})
        EXPECT_FALSE(fileTimeOut(operation, guard, &networkPath, 30));
}

TEST_F(IoTimeOuts, FastCallLeavesWordAndErrorAlone) {
    unsigned int word = 60'000;
    detail::GuardedCall call(networkPath, &word);
    int const result = call.Run([] {
        platform::SetLastError(platform::ErrorBusy);
        return 42;
    });
    EXPECT_EQ(result, 42);
    EXPECT_EQ(word, 60'000U);
    EXPECT_EQ(platform::GetLastError(), platform::ErrorBusy);
    EXPECT_FALSE(platform::IsCallCancelled());
    EXPECT_THROW(call.Run([] { throw 1; }), int); // the guard ends all the same
    EXPECT_EQ(call.Run([] { return 1; }), 1);
}

TEST_F(IoTimeOuts, EachCallOfAGuardHasItsLimit) {
    unsigned int word = 0x80000000 | 3;
    detail::GuardedCall call(localPath, &word);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(call.Run([&] { return HangingOpen(); }), -1);
        EXPECT_EQ(word, 0xFFFFFFFFU);
    }
}

TEST_F(IoTimeOuts, TenThousandRoundsLeakNeitherThreadNorDescriptor) {
    auto const round = [&] {
        unsigned int word = 1;
        detail::GuardedCall call(networkPath, &word);
        EXPECT_EQ(call.Run([&] { return HangingOpen(); }), -1);
        EXPECT_EQ(word, IoTimedOut);
    };
    round();
    std::ptrdiff_t const threadsBefore = EntryCount("/proc/self/task");
    std::ptrdiff_t const descriptorsBefore = EntryCount("/proc/self/fd");
    constexpr int workers = 40; // the rounds wait, they do not compute
    std::vector<std::jthread> threads;
    for (int number = 0; number < workers; ++number) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 10'000 / workers; ++turn)
                round();
        });
    }
    threads.clear(); // waits for each
    EXPECT_EQ(EntryCount("/proc/self/fd"), descriptorsBefore);
    while (EntryCount("/proc/self/task") > threadsBefore) { // a watcher lives a little longer than its call
        platform::Sleep(1);
    }
}

} // namespace
