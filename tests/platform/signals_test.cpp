// SPDX-License-Identifier: MIT
// Each fault happens in a child process, which tells by its exit code what it caught.

#include "zeltools/platform/signals.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

namespace {

#if defined(__SANITIZE_THREAD__)
constexpr bool faultsCanBeCaught = false; // that sanitizer's own handler stands between and cannot be unwound
#elif defined(__clang__)
constexpr bool faultsCanBeCaught = false; // this compiler sees no exception at a memory access
#else
constexpr bool faultsCanBeCaught = true;
#endif

[[gnu::noinline]] void WriteToNowhere() {
    // Not the null pointer, which the sanitizer would report before the system does.
    int volatile* volatile nowhere = reinterpret_cast<int*>(std::uintptr_t{4096});
    *nowhere = 1;
}

[[gnu::noinline]] void DivideByZero() {
    int volatile zero = 0;
    int volatile result = 1;
    __asm__ volatile("idivl %1" : "+a"(*const_cast<int*>(&result)) : "m"(zero) : "edx", "cc");
}

[[gnu::noinline]] void RunNoInstruction() {
    __asm__ volatile("ud2");
}

struct FaultRow {
    char const* name;
    int number;
    void (*cause)();
};

FaultRow const faultRows[] = {
    {"SIGSEGV", 11, &WriteToNowhere},
    {"SIGFPE", 8, &DivideByZero},
    {"SIGILL", 4, &RunNoInstruction},
};

class FaultHandler : public testing::TestWithParam<FaultRow> {};

TEST_P(FaultHandler, ThrowsTheNameAgainAndAgain) {
    if (!faultsCanBeCaught) {
        GTEST_SKIP();
    }
    EXPECT_EXIT(
        {
            platform::InstallFaultHandler(GetParam().number);
            int caught = 0;
            for (int round = 0; round < 3; ++round) { // a signal that stayed blocked would kill in the second round
                try {
                    GetParam().cause();
                } catch (char const* text) {
                    caught += std::strcmp(text, GetParam().name) == 0;
                }
            }
            std::_Exit(caught);
        },
        testing::ExitedWithCode(3), "");
}

TEST_P(FaultHandler, RestorePutsBackWhatTheLastInstallReplaced) {
    int const number = GetParam().number;
    auto const hosts = [](int) {};
    auto const former = std::signal(number, SIG_DFL);
    platform::InstallFaultHandler(number);
    std::signal(number, hosts); // a host takes the signal between two starts
    platform::InstallFaultHandler(number);
    platform::InstallFaultHandler(number); // must not keep our own handler as the former one
    EXPECT_TRUE(platform::RestoreFaultHandler(number));
    EXPECT_FALSE(platform::RestoreFaultHandler(number));
    EXPECT_EQ(std::signal(number, former), static_cast<void (*)(int)>(hosts));
}

INSTANTIATE_TEST_SUITE_P(Table, FaultHandler, testing::ValuesIn(faultRows),
                         [](auto const& row) { return row.param.name; });

} // namespace
