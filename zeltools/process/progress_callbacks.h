// SPDX-License-Identifier: MIT
// The stack of progress listeners, through which a long operation tells how far it is without knowing who shows it.
//
//     bool Show(unsigned int flags, ProcessProgressInfo const& progress, void* user) {
//         ...
//         return (flags & ProcessProgressCancelQuestion) && theButtonWasClicked;
//     }
//     processProgressPushCallback(&Show, this);
//     ... the operation: processProgressCallCallback(ProcessProgressFirstPosition, progress) ...
//     bool const stopped = processProgressPopCallback();
//
// Only the listener on top is called: who pushes one hides the earlier ones until it is popped.
//
// Threads: no lock. The stack belongs to the thread that runs the operation; a push on one thread and a call on another
// must not overlap.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// What is told in a call of a listener.
enum ProcessProgressFlags : unsigned int {
    ProcessProgressFirstPosition = 2,   ///< The position of the first bar changed.
    ProcessProgressSecondPosition = 4,  ///< The position of the second bar changed.
    ProcessProgressCancelQuestion = 64, ///< Shall the operation stop? The result is the answer, and is remembered.
};

/// One bar, as a listener sees it.
struct ProcessProgressBar {
    int lowest = 0;
    int highest = 100;
    int position = 0;
    CXTString<char16_t> status; ///< What the bar's work is at.
};

/// How far an operation is.
struct ProcessProgressInfo {
    ProcessProgressBar first;
    ProcessProgressBar second;
    bool indeterminate = false; ///< Nobody knows how long it takes: the positions say nothing.
    CXTString<char16_t> title;
    CXTString<char16_t> processName; ///< The thread or program that does the work.
    CXTString<char16_t> errorMessage;
};

/// A listener.
/// @param flags  ProcessProgressFlags.
/// @return the answer to a cancel question; otherwise handed to who called, and not remembered.
/// It may push and pop listeners while it is called.
using ProcessProgressCallback = bool (*)(unsigned int flags, ProcessProgressInfo const& progress, void* user);

/// Puts a listener on top of the stack; null is ignored.
ZEL_API void processProgressPushCallback(ProcessProgressCallback callback, void* user);

/// Takes the top listener away.
/// @return its last answer to a cancel question, false before the first; false when there is none.
ZEL_API bool processProgressPopCallback();

/// The top listener, or null.
/// @param user  Receives its user pointer, null when there is none.
ZEL_API ProcessProgressCallback processProgressGetCallback(void*& user);

/// Calls the top listener.
/// @return its result; false when there is none.
/// Errors:  what the listener throws.
ZEL_API bool processProgressCallCallback(unsigned int flags, ProcessProgressInfo const& progress);

/// The top listener's last answer to a cancel question; false before the first and when there is none.
ZEL_API bool processProgressUserCancel();
