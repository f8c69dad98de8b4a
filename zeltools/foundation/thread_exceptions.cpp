// SPDX-License-Identifier: MIT
#include "zeltools/foundation/thread_exceptions.h"

#include "zeltools/foundation/exit_callbacks.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/thread_exceptions_private.h"
#include "zeltools/foundation/xexception.h"
#include "zeltools/platform/critical_section.h"
#include "zeltools/platform/threads.h"

// Changed under `tableLock`, and read without it by a thread that asks for its own entry only.
constinit std::atomic<unsigned int> detail::threadExceptionCount = 0;

namespace {

using ExceptionTable = CHashMap<unsigned long long, unsigned long long, CXException*>;

/// Guards `exceptionTable`. Nothing is called while it is held: the close holds the application lock when it comes
/// here, so the other order would lock up.
constinit platform::CriticalSection tableLock;

/// The last exception of each thread, by the thread's id. Made by the first exception.
ExceptionTable* exceptionTable = nullptr;

void CountEntries() {
    detail::threadExceptionCount.store(exceptionTable->GetCount(), std::memory_order_relaxed);
}

/// Exceptions that still stand in the table belong to those who caught them, so they are left alone.
void DeleteExceptionTable() {
    platform::ScopedLock const hold(tableLock);
    delete exceptionTable;
    exceptionTable = nullptr;
    detail::threadExceptionCount.store(0, std::memory_order_relaxed);
}

/// Takes the calling thread's entry out and gives it; null without one.
CXException* TakeThreadException() {
    if (detail::threadExceptionCount.load(std::memory_order_relaxed) == 0)
        return nullptr;
    unsigned long long const thread = platform::GetCurrentThreadId();
    platform::ScopedLock const hold(tableLock);
    CXException** const entry = exceptionTable ? exceptionTable->Find(thread) : nullptr;
    if (!entry)
        return nullptr;
    CXException* const exception = *entry;
    exceptionTable->Remove(thread, false);
    CountEntries();
    return exception;
}

} // namespace

void XSetThreadException(CXException* exception) {
    if (!exception)
        return;
    bool isFirst = false;
    {
        platform::ScopedLock const hold(tableLock);
        isFirst = !exceptionTable;
        if (isFirst)
            exceptionTable = new ExceptionTable;
        exceptionTable->Insert(platform::GetCurrentThreadId(), exception);
        CountEntries();
    }
    if (isFirst)
        AddApplicationExitCallback(&DeleteExceptionTable, 0);
}

void XDeleteThreadException() {
    delete TakeThreadException();
}

namespace detail {

void ForgetThreadException(CXException const* exception) {
    platform::ScopedLock const hold(tableLock);
    if (!exceptionTable)
        return;
    for (unsigned int position = exceptionTable->GetFirst(); position != 0xFFFFFFFF;) {
        unsigned long long thread = 0;
        CXException* entry = nullptr;
        exceptionTable->GetNext(position, thread, entry);
        if (entry == exception)
            exceptionTable->Remove(thread, false);
    }
    CountEntries();
}

} // namespace detail
