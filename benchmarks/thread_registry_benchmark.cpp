// SPDX-License-Identifier: MIT
// What a poll for cancellation costs beside the least that it could cost, one relaxed load; and what the lock costs
// beside the standard library's recursive mutex.

#include "zeltools/process/thread_registry.h"

#include "zeltools/process/xcritical_section.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <mutex>

namespace {

std::atomic<bool> plainWord{false};

/// Polls a thousand times, as an inner loop does.
template <class Poll>
void PollInLoop(benchmark::State& state, Poll poll) {
    for (auto _ : state) {
        int stops = 0;
        for (int turn = 0; turn < 1000; ++turn) {
            stops += poll();
            benchmark::ClobberMemory();
        }
        benchmark::DoNotOptimize(stops);
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

void RelaxedLoad(benchmark::State& state) {
    PollInLoop(state, [] { return plainWord.load(std::memory_order_relaxed); });
}

void ShouldCancelNobodyCancelled(benchmark::State& state) {
    PollInLoop(state, [] { return ShouldCancelThread(); });
}

/// Another thread is cancelled, and the caller stands so many links below the top of its chain.
void ShouldCancelOtherCancelled(benchmark::State& state) {
    constexpr unsigned long long firstId = 4'000'000'000; // no thread's
    auto const links = static_cast<unsigned long long>(state.range(0));
    SetCancelThread(true, firstId);
    for (unsigned long long link = 0; link < links; ++link) {
        AttachThread(firstId + link + 1, firstId + link + 2);
    }
    if (ShouldCancelThread(firstId + 1) || !ShouldCancelThread(firstId)) {
        std::abort();
    }
    PollInLoop(state, [] { return ShouldCancelThread(firstId + 1); });
    SetCancelThread(false, firstId);
    for (unsigned long long link = 0; link < links; ++link) {
        DetachThread(firstId + link + 1);
    }
}

void CriticalSection(benchmark::State& state) {
    static CXCriticalSection lock;
    for (auto _ : state) {
        lock.Lock();
        benchmark::ClobberMemory();
        lock.Unlock();
    }
}

void StandardRecursiveMutex(benchmark::State& state) {
    static std::recursive_mutex lock;
    for (auto _ : state) {
        lock.lock();
        benchmark::ClobberMemory();
        lock.unlock();
    }
}

BENCHMARK(RelaxedLoad)->Name("ShouldCancel/relaxed load");
BENCHMARK(ShouldCancelNobodyCancelled)->Name("ShouldCancel/zel");
BENCHMARK(ShouldCancelOtherCancelled)->Name("ShouldCancelWhenAnotherIs/zel")->Arg(0)->Arg(4);
BENCHMARK(CriticalSection)->Name("Lock/zel")->Threads(1)->Threads(2);
BENCHMARK(StandardRecursiveMutex)->Name("Lock/std::recursive_mutex")->Threads(1)->Threads(2);

} // namespace
