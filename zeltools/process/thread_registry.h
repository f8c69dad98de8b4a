// SPDX-License-Identifier: MIT
// Which thread works for which, which one was told to stop, and which one must not open message boxes.
//
//     SetCancelThread(true, worker);              // from anywhere
//     ...
//     for (Row const& row : rows) {               // on the worker, and on the helpers that were attached to it
//         if (ShouldCancelThread()) {
//             return false;
//         }
//         ...
//     }
//
// Both flags pass down to the threads that were attached below. Cancelling is cooperative: it stops nothing by itself.
// Threads are known by their id, of which 0 means the calling thread in every function here. The system gives the id
// of a thread that has ended to a later one, so whoever sets a flag clears it; CXThread does so for its own.
//
// Threads: any, for all of this file. The tables are guarded by the application lock.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"

#include <atomic>

/// Makes `parent` the parent of `child`, in place of an earlier one. Nothing happens when the two are equal: a thread
/// is not its own parent. A circle of several threads is the caller's fault; the questions below still end on one.
ZEL_API void AttachThread(unsigned long long child, unsigned long long parent);

/// Takes the link from `child` to its parent away, if there is one.
ZEL_API void DetachThread(unsigned long long child);

/// Gives the direct children of a thread, in no defined order.
/// @param children  Emptied first; its growBy stays.
/// @return how many there are.
ZEL_API int GetChildThreads(unsigned long long parent, CXArray<unsigned long long>& children);

/// Tells a thread, and all that are attached below it, to stop; or takes that back.
ZEL_API void SetCancelThread(bool cancel, unsigned long long thread = 0);

/// Asks whether the thread or any of its ancestors was told to stop. While nobody is, that is one load from memory.
bool ShouldCancelThread(unsigned long long thread = 0);

/// Forbids a thread, and all that are attached below it, to show message boxes; or takes that back. Errors are still
/// recorded.
ZEL_API void SetSilentThread(bool silent, unsigned long long thread = 0);

/// Asks whether the thread or any of its ancestors is silent. While none is, that is one load from memory.
bool IsSilentThread(unsigned long long thread = 0);

/// The id of the thread that ran the start function; 0 before the start.
ZEL_API unsigned long long GetApplicationMainThreadID();

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

extern ZEL_API std::atomic<bool> anyThreadCancelled; // false only while the set of cancelled threads is empty
extern ZEL_API std::atomic<bool> anyThreadSilent;    // the same for the silent ones

ZEL_API bool IsThreadOrAncestorCancelled(unsigned long long thread);
ZEL_API bool IsThreadOrAncestorSilent(unsigned long long thread);

} // namespace detail

inline bool ShouldCancelThread(unsigned long long thread) {
    return detail::anyThreadCancelled.load(std::memory_order_acquire) && detail::IsThreadOrAncestorCancelled(thread);
}

inline bool IsSilentThread(unsigned long long thread) {
    return detail::anyThreadSilent.load(std::memory_order_acquire) && detail::IsThreadOrAncestorSilent(thread);
}
