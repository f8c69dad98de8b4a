// SPDX-License-Identifier: MIT
#include "zeltools/process/worker_count.h"

#include "zeltools/foundation/xarray.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/worker_count_private.h"
#include "zeltools/process/xsingle_lock.h"

#include <algorithm>
#include <atomic>
#include <omp.h>

namespace {

using ChangeCallback = void (*)();

/// Each of the workers gets this many chunks, so that one that is slow leaves little for the others to wait for.
constexpr unsigned long long chunksPerWorker = 24;

std::atomic<unsigned int> workerCount{1};

/// Made by the first registration. Guarded by ApplicationLock.
CXArray<ChangeCallback>* callbacks = nullptr;

unsigned int HighestCount() {
    return static_cast<unsigned int>(std::max(omp_get_max_threads() - 1, 1));
}

/// The function registered at this place, or null behind the last.
ChangeCallback CallbackAt(int index) {
    CXSingleLock const hold(&ApplicationLock(), true);
    return callbacks && index < callbacks->GetSize() ? (*callbacks)[index] : nullptr;
}

} // namespace

unsigned int OMPSetMaxThreadCount(unsigned int count) {
    workerCount.store(std::clamp(count, 1U, HighestCount()));
    int index = 0;
    while (ChangeCallback const callback = CallbackAt(index)) {
        callback();
        ++index;
    }
    return workerCount.load();
}

unsigned int OMPGetMaxThreadCount(bool configured) {
    return configured ? workerCount.load() : HighestCount();
}

unsigned int OMPGetScheduleChunkSize(unsigned int iterations) {
    return static_cast<unsigned int>(std::max(iterations / (workerCount.load() * chunksPerWorker), 1ULL));
}

void OMPAddChangeCallback(void (*callback)()) {
    if (!callback) {
        return;
    }
    CXSingleLock const hold(&ApplicationLock(), true);
    if (!callbacks) {
        callbacks = new CXArray<ChangeCallback>;
    }
    callbacks->Add(callback);
}

namespace detail {

void SetWorkerCountFromProcessors() {
    OMPSetMaxThreadCount(static_cast<unsigned int>(omp_get_num_procs()));
}

void DeleteWorkerCountCallbacks() {
    CXSingleLock const hold(&ApplicationLock(), true);
    delete callbacks;
    callbacks = nullptr;
}

} // namespace detail
