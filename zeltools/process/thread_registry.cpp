// SPDX-License-Identifier: MIT
#include "zeltools/process/thread_registry.h"

#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/platform/threads.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/application_state_private.h"
#include "zeltools/process/thread_registry_private.h"
#include "zeltools/process/xsingle_lock.h"

namespace detail {

std::atomic<bool> anyThreadCancelled{false};
std::atomic<bool> anyThreadSilent{false};

} // namespace detail

namespace {

using ThreadId = unsigned long long;
using ParentMap = CHashMap<ThreadId, ThreadId, ThreadId>;

/// Child to parent; made by the first AttachThread. Guarded by ApplicationLock.
ParentMap* parents = nullptr;

/// The threads that carry one flag, and the word that says whether there are any.
struct FlaggedThreads {
    CHashTable<ThreadId>* ids; // made by the first flag that is set; guarded by ApplicationLock
    std::atomic<bool>& any;    // written under ApplicationLock, read without it
};

constinit FlaggedThreads cancelled{nullptr, detail::anyThreadCancelled};
constinit FlaggedThreads silent{nullptr, detail::anyThreadSilent};

ThreadId OrCaller(ThreadId thread) {
    return thread ? thread : platform::GetCurrentThreadId();
}

void SetFlag(FlaggedThreads& flagged, bool on, ThreadId thread) {
    CXSingleLock const hold(&ApplicationLock(), true);
    if (on) {
        if (!flagged.ids) {
            flagged.ids = new CHashTable<ThreadId>;
        }
        flagged.ids->Insert(OrCaller(thread));
    } else if (flagged.ids) {
        flagged.ids->Remove(OrCaller(thread));
    }
    flagged.any.store(flagged.ids && flagged.ids->GetCount() != 0, std::memory_order_release);
}

bool IsFlagSet(FlaggedThreads const& flagged, ThreadId thread) {
    CXSingleLock const hold(&ApplicationLock(), true);
    if (!flagged.ids) {
        return false;
    }
    thread = OrCaller(thread);
    // No chain is longer than the map has links, so a longer walk is going in a circle.
    for (unsigned int links = parents ? parents->GetCount() : 0;; --links) {
        if (flagged.ids->IsFound(thread)) {
            return true;
        }
        if (links == 0 || !parents->Find(thread, thread)) {
            return false;
        }
    }
}

void DeleteFlags(FlaggedThreads& flagged) {
    delete flagged.ids;
    flagged.ids = nullptr;
    flagged.any.store(false, std::memory_order_release);
}

} // namespace

void AttachThread(unsigned long long child, unsigned long long parent) {
    child = OrCaller(child);
    parent = OrCaller(parent);
    if (child == parent) {
        return;
    }
    CXSingleLock const hold(&ApplicationLock(), true);
    if (!parents) {
        parents = new ParentMap;
    }
    parents->Insert(child, parent);
}

void DetachThread(unsigned long long child) {
    CXSingleLock const hold(&ApplicationLock(), true);
    if (parents) {
        parents->Remove(OrCaller(child));
    }
}

int GetChildThreads(unsigned long long parent, CXArray<unsigned long long>& children) {
    CXSingleLock const hold(&ApplicationLock(), true);
    children.RemoveAll(true);
    if (!parents) {
        return 0;
    }
    parent = OrCaller(parent);
    for (unsigned int position = parents->GetFirst(); position != 0xFFFFFFFF;) {
        ThreadId child = 0;
        ThreadId itsParent = 0;
        parents->GetNext(position, child, itsParent);
        if (itsParent == parent) {
            children.Add(child);
        }
    }
    return children.GetSize();
}

void SetCancelThread(bool cancel, unsigned long long thread) {
    SetFlag(cancelled, cancel, thread);
}

void SetSilentThread(bool isSilent, unsigned long long thread) {
    SetFlag(silent, isSilent, thread);
}

unsigned long long GetApplicationMainThreadID() {
    return ApplicationMainThreadId.load();
}

namespace detail {

bool IsThreadOrAncestorCancelled(unsigned long long thread) {
    return IsFlagSet(cancelled, thread);
}

bool IsThreadOrAncestorSilent(unsigned long long thread) {
    return IsFlagSet(silent, thread);
}

void DeleteThreadTables() {
    CXSingleLock const hold(&ApplicationLock(), true);
    delete parents;
    parents = nullptr;
    DeleteFlags(cancelled);
    DeleteFlags(silent);
}

} // namespace detail
