// SPDX-License-Identifier: MIT
// The guard as the path functions use it, for the time-out word that their caller gave:
//
//     detail::GuardedCall guard(path, timeOut);
//     unsigned int attributes = guard.Run([&] { return platform::GetFileAttributesW(text); });
//
// Run calls straight through where the rule in io_time_out.h asks for no guard. Where the limit is reached, the call
// inside fails with its own error and *timeOut becomes IoTimedOut. What runs inside must give up an interrupted
// system call when platform::IsCallCancelled says so.

#pragma once

#include "zeltools/files/paths/io_time_out.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/platform/blocking_calls.h"

#include <optional>

namespace detail {

/// Makes the calling thread's guard of these operations, in the storage of the caller.
void BuildGuard(IoTimeOutGuard& guard, unsigned int timeOutMs, unsigned int* timeOutWord);
void BeginGuard(IoTimeOutGuard& guard);
/// @return true when the limit was reached.
bool EndGuard(IoTimeOutGuard& guard);
void FreeGuard(IoTimeOutGuard& guard);

/// True where the rule asks for a guard on this path.
bool NeedsGuard(CXTString<char16_t> const* path, unsigned int timeOut, bool forced);

/// Guards calls about one path, for one limit each.
/// Threads: the one that made it.
class GuardedCall {
public:
    /// @param timeOut  The caller's time-out word; may be null. Must outlive this object.
    /// @param forced   Guards a local path too.
    GuardedCall(CXTString<char16_t> const& path, unsigned int* timeOut, bool forced = false);
    ~GuardedCall();
    GuardedCall(GuardedCall const&) = delete;
    GuardedCall& operator=(GuardedCall const&) = delete;

    /// Makes the call and gives back what it gives, void too. After a limit was reached, later calls go unguarded:
    /// the word then says "no limit".
    template <class Call>
    auto Run(Call call) {
        Scope scope(*this);
        return call();
    }

private:
    /// Ends the guard after the call even where the call throws.
    class Scope {
    public:
        explicit Scope(GuardedCall& call);
        ~Scope();
        Scope(Scope const&) = delete;
        Scope& operator=(Scope const&) = delete;

    private:
        IoTimeOutGuard* guard; // null where nothing is guarded
    };

    std::optional<IoTimeOutGuard> guard;
};

} // namespace detail
