// SPDX-License-Identifier: MIT
#include "zeltools/process/progress_callbacks.h"

#include "zeltools/foundation/xarray.h"

namespace {

struct ProcessStackInfo {
    ProcessProgressCallback callback = nullptr;
    unsigned int reserved = 0;
    void* user = nullptr;
    bool userCancelled = false;
};

using ListenerStack = CXArray<ProcessStackInfo, ProcessStackInfo&>;

/// Never destroyed, since an operation may still run when the process exits.
ListenerStack& Stack() {
    static ListenerStack& stack = *new ListenerStack;
    return stack;
}

ProcessStackInfo* Top() {
    ListenerStack& stack = Stack();
    return stack.IsEmpty() ? nullptr : &stack[stack.GetSize() - 1];
}

} // namespace

void processProgressPushCallback(ProcessProgressCallback callback, void* user) {
    if (callback) {
        ProcessStackInfo listener{callback, 0, user, false};
        Stack().Add(listener);
    }
}

bool processProgressPopCallback() {
    ProcessStackInfo const* const top = Top();
    if (!top) {
        return false;
    }
    bool const userCancelled = top->userCancelled;
    Stack().RemoveAt(Stack().GetSize() - 1);
    return userCancelled;
}

ProcessProgressCallback processProgressGetCallback(void*& user) {
    ProcessStackInfo const* const top = Top();
    user = top ? top->user : nullptr;
    return top ? top->callback : nullptr;
}

bool processProgressCallCallback(unsigned int flags, ProcessProgressInfo const& progress) {
    ListenerStack& stack = Stack();
    int const level = stack.GetSize() - 1;
    if (level < 0) {
        return false;
    }
    // A copy, since the listener may push others, which moves the entries, or pop itself.
    ProcessStackInfo const called = stack[level];
    bool const result = called.callback(flags, progress, called.user);
    if ((flags & ProcessProgressCancelQuestion) && level < stack.GetSize()) {
        ProcessStackInfo& entry = stack[level];
        if (entry.callback == called.callback && entry.user == called.user) {
            entry.userCancelled = result;
        }
    }
    return result;
}

bool processProgressUserCancel() {
    ProcessStackInfo const* const top = Top();
    return top && top->userCancelled;
}
