// SPDX-License-Identifier: MIT
#include "zeltools/foundation/exit_callbacks.h"

#include "zeltools/foundation/exit_callbacks_private.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/xsingle_lock.h"

#include <algorithm>
#include <vector>

namespace {

/// Made by the first registration. ApplicationLock guards it.
CHashTable<ExitCallbackInfo>* callbackTable = nullptr;

/// The entries for which `isWanted` holds.
template <class Predicate>
std::vector<ExitCallbackInfo> Collect(Predicate isWanted) {
    std::vector<ExitCallbackInfo> entries;
    if (!callbackTable)
        return entries;
    for (unsigned int position = callbackTable->GetFirst(); position != 0xFFFFFFFF;) {
        ExitCallbackInfo entry;
        callbackTable->GetNext(position, entry);
        if (isWanted(entry))
            entries.push_back(entry);
    }
    return entries;
}

} // namespace

void AddApplicationExitCallback(void (*callback)(), unsigned int priority) {
    if (!callback)
        return;
    CXSingleLock const hold(&ApplicationLock(), true);
    if (!callbackTable)
        callbackTable = new CHashTable<ExitCallbackInfo>;
    ExitCallbackInfo const entry{callback, priority};
    if (!callbackTable->IsFound(entry))
        callbackTable->Insert(entry);
}

void RemoveApplicationExitCallback(void (*callback)()) {
    CXSingleLock const hold(&ApplicationLock(), true);
    if (callbackTable)
        callbackTable->Remove({callback, 0}, false);
}

namespace detail {

void RunBeforeCloseCallbacks() {
    // A callback may register, remove and even delete the table, so each step looks at it afresh.
    std::vector<void (*)()> called;
    auto const isWaiting = [&called](ExitCallbackInfo const& entry) {
        return entry.priority == ExitCallbackBeforeClose && std::ranges::find(called, entry.callback) == called.end();
    };
    for (;;) {
        std::vector<ExitCallbackInfo> waiting;
        {
            CXSingleLock const hold(&ApplicationLock(), true);
            waiting = Collect(isWaiting);
        }
        if (waiting.empty())
            return;
        called.push_back(waiting.front().callback);
        called.back()();
        RemoveApplicationExitCallback(called.back());
    }
}

void RunExitCallbacks() {
    CXSingleLock const hold(&ApplicationLock(), true);
    std::vector<ExitCallbackInfo> entries =
        Collect([](ExitCallbackInfo const& entry) { return entry.priority != ExitCallbackNeverRun; });
    for (ExitCallbackInfo const& entry : entries)
        callbackTable->Remove(entry, false);
    std::ranges::sort(entries, {}, &ExitCallbackInfo::priority);
    for (ExitCallbackInfo const& entry : entries)
        entry.callback();
}

void DeleteExitCallbackTable() {
    CXSingleLock const hold(&ApplicationLock(), true);
    delete callbackTable;
    callbackTable = nullptr;
}

} // namespace detail
