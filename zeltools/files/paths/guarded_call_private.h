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

#include <optional>

namespace detail {

/// Prepares a guard of the calling thread in the caller's storage.
void BuildGuard(IoTimeOutGuard& guard, unsigned int timeOut, unsigned int* timeOutWord);

/// Starts the watch; nothing when it runs already. Where no thread can be started for it, the call that follows goes
/// unguarded.
void BeginGuard(IoTimeOutGuard& guard);

/// Ends the watch that the last BeginGuard started; nothing when none runs. GetLastError stays as it is.
/// @return true when the limit was reached.
bool EndGuard(IoTimeOutGuard& guard);

/// Gives back what BuildGuard took, and ends the watch before if it still runs.
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

    /// Makes the call and gives back what it gives, void too. Each call has the whole limit, even after an earlier one
    /// has reached it.
    template <class Call>
    auto Run(Call call) {
        Scope const scope(guard);
        return call();
    }

private:
    /// Ends the guard after the call, even where the call throws; without a guard it does nothing.
    class Scope {
    public:
        explicit Scope(std::optional<IoTimeOutGuard>& callGuard) : guard(callGuard) {
            if (guard) {
                BeginGuard(*guard);
            }
        }
        ~Scope() {
            if (guard) {
                EndGuard(*guard);
            }
        }
        Scope(Scope const&) = delete;
        Scope& operator=(Scope const&) = delete;

    private:
        std::optional<IoTimeOutGuard>& guard;
    };

    std::optional<IoTimeOutGuard> guard;
};

} // namespace detail
