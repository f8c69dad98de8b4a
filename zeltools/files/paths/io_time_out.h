// SPDX-License-Identifier: MIT
// Time limits for calls that ask a disk which may not answer. The path functions guard themselves in this way when
// they are given a time-out word; a host guards its own blocking calls with fileTimeOut:
//
//     void* guard = nullptr;
//     fileTimeOut(IoTimeOutInit, guard, &path, 500);            // milliseconds; guards nothing on a local path
//     fileTimeOut(IoTimeOutBegin, guard, &path, 500);
//     ... open the file: the open fails when it takes longer ...
//     fileTimeOut(IoTimeOutEnd, guard, &path, 500);
//     bool ranOut = *static_cast<IoTimeOutGuard*>(guard)->timeOutWord == IoTimedOut;
//     fileTimeOut(IoTimeOutFree, guard, &path, 500);
//
// A guard costs a thread for each call, so it is built for network paths only, unless it is asked for.
//
// | time-out word           | guarded                                                      |
// |-------------------------|--------------------------------------------------------------|
// | no word, 0, 0xFFFFFFFF  | never                                                        |
// | 1 to 0x7FFFFFFF         | a path that begins with two backslashes, for so many ms      |
// | with the top bit set    | any path, for as many ms as the other bits say               |

#pragma once

#include "zeltools/foundation/api.h"

#include <atomic>

template <class T>
class CXTString;
class CXCriticalSection;

/// What fileTimeOut is to do.
enum IoTimeOut : unsigned int {
    IoTimeOutInit = 0,       ///< makes a guard, which guards what the rule above says
    IoTimeOutInitForced = 1, ///< makes a guard that guards a local path too
    IoTimeOutBegin = 2,      ///< the blocking call follows
    IoTimeOutEnd = 3,        ///< the blocking call has returned
    IoTimeOutFree = 4,       ///< ends the guard
};

/// What a time-out word holds after its time has run out. Before a call it means that there is no limit.
inline constexpr unsigned int IoTimedOut = 0xFFFFFFFF;

/// The bit of a time-out word that asks for a guard whatever the path is.
inline constexpr unsigned int IoTimeOutAnyPath = 0x80000000;

/// What stands behind the handle of fileTimeOut. It belongs to the thread that made it, which is the one guarded.
struct IoTimeOutGuard {
    unsigned int timeOutMs;        ///< the limit, without the top bit
    CXCriticalSection* section;    ///< held by the guarded thread from Begin to End; owned; null guards nothing
    unsigned int* timeOutWord;     ///< becomes IoTimedOut when the limit is reached; to be read after End
    std::atomic<int> runningCount; ///< watchers that still use this record
    void* thread;                  ///< handle of the guarded thread; owned
};

/// Takes one step in the life of a guard. Begin and End may be repeated, in pairs, before Free.
///
/// @param operation  The step.
/// @param guard      In: the guard, for all steps but the two that make one. Out: the new guard, where the rule above
///                   asks for none one whose other steps do nothing; null after Free.
/// @param path       The path of the call to be guarded; only the two steps that make a guard look at it. Null is
///                   no network path.
/// @param timeOut    The limit as a time-out word; only the two steps that make a guard look at it.
/// @return true; false for an unknown operation, and for the last three on a null guard.
/// Threads: any; all steps of one guard on the same thread.
ZEL_API bool fileTimeOut(IoTimeOut operation, void*& guard, CXTString<char16_t> const* path, unsigned int timeOut);
