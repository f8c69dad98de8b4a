// SPDX-License-Identifier: MIT
#include "zeltools/foundation/exit_callbacks.h"

#include "zeltools/foundation/exit_callbacks_private.h"
#include "zeltools/process/application_lock_private.h"

#include <gtest/gtest.h>
#include <string>

namespace {

/// The letters of the callbacks, in the order of their calls.
std::string calls;

template <char Letter>
void Log() {
    calls += Letter;
}

class ExitCallbacks : public testing::Test {
protected:
    ExitCallbacks() { detail::DeleteExitCallbackTable(); }
    ~ExitCallbacks() override { detail::DeleteExitCallbackTable(); }

    static std::string CallsOf(void (*run)()) {
        calls.clear();
        run();
        return calls;
    }
    static std::string Close() { return CallsOf(&detail::RunExitCallbacks); }
    static std::string BeforeClose() { return CallsOf(&detail::RunBeforeCloseCallbacks); }
};

TEST_F(ExitCallbacks, LowestUnsignedPriorityFirstAndEachOnce) {
    EXPECT_EQ(Close(), ""); // no table yet
    AddApplicationExitCallback(&Log<'d'>, ExitCallbackBeforeClose);
    AddApplicationExitCallback(&Log<'c'>, 0xFFFFFFFD);
    AddApplicationExitCallback(&Log<'b'>, 0x7FFFFFFF);
    AddApplicationExitCallback(&Log<'a'>, 0);
    AddApplicationExitCallback(&Log<'x'>, ExitCallbackNeverRun);
    AddApplicationExitCallback(nullptr, 1);
    AddApplicationExitCallback(&Log<'a'>, 0xFFFFFFF0); // keeps its first priority
    EXPECT_EQ(Close(), "abcd");
    EXPECT_EQ(Close(), "");
    AddApplicationExitCallback(&Log<'x'>, 0); // still there, so still never run
    EXPECT_EQ(Close(), "");
    RemoveApplicationExitCallback(&Log<'x'>);
    RemoveApplicationExitCallback(&Log<'x'>);
    AddApplicationExitCallback(&Log<'x'>, 0);
    EXPECT_EQ(Close(), "x");
}

/// Twelve at once, and one for before the close: more than a new table holds, so it is rebuilt under the pass.
void AddMany() {
    AddApplicationExitCallback(&Log<'0'>, ExitCallbackBeforeClose);
    for (auto* callback : {&Log<'1'>, &Log<'2'>, &Log<'3'>, &Log<'4'>, &Log<'5'>, &Log<'6'>, &Log<'7'>, &Log<'8'>,
                           &Log<'9'>, &Log<'a'>, &Log<'b'>, &Log<'c'>})
        AddApplicationExitCallback(callback, 5);
    Log<'m'>();
}

void RemoveEverything() {
    RemoveApplicationExitCallback(&RemoveEverything);
    RemoveApplicationExitCallback(&Log<'a'>);
    detail::DeleteExitCallbackTable();
    Log<'r'>();
}

void Ping();
void Pong() {
    AddApplicationExitCallback(&Ping, ExitCallbackBeforeClose);
    Log<'o'>();
}
void Ping() {
    AddApplicationExitCallback(&Pong, ExitCallbackBeforeClose);
    Log<'i'>();
}

TEST_F(ExitCallbacks, ACallbackMayChangeTheTable) {
    AddApplicationExitCallback(&AddMany, ExitCallbackBeforeClose);
    EXPECT_EQ(BeforeClose(), "m0");
    EXPECT_EQ(Close().size(), 12u);

    AddApplicationExitCallback(&RemoveEverything, ExitCallbackBeforeClose);
    EXPECT_EQ(BeforeClose(), "r");

    AddApplicationExitCallback(&Ping, ExitCallbackBeforeClose); // two that register one another still end
    EXPECT_EQ(BeforeClose(), "io");
    RemoveApplicationExitCallback(&Ping);

    AddApplicationExitCallback(&AddMany, 0); // registered during the close: kept for the next one
    EXPECT_EQ(Close().find_first_of("0123456789"), std::string::npos);
    EXPECT_EQ(Close().size(), 13u);
}

bool lockWasHeld;

void ProbeLock() {
    lockWasHeld = ApplicationLock().IsLocked();
}

TEST_F(ExitCallbacks, OnlyTheCloseHoldsTheLockDuringACall) {
    AddApplicationExitCallback(&ProbeLock, ExitCallbackBeforeClose);
    detail::RunBeforeCloseCallbacks();
    EXPECT_FALSE(lockWasHeld);
    AddApplicationExitCallback(&ProbeLock, 0);
    detail::RunExitCallbacks();
    EXPECT_TRUE(lockWasHeld);
}

} // namespace
