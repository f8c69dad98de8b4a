// SPDX-License-Identifier: MIT
#include "zeltools/foundation/fault_handlers_private.h"
#include "zeltools/platform/invalid_parameter.h"
#include "zeltools/platform/signals.h"

#include <csignal>

namespace detail {

namespace {

constexpr int signals[] = {SIGSEGV, SIGFPE, SIGILL};

platform::InvalidParameterHandler keptHandler;

} // namespace

void InstallSignalHandlers() {
    for (int const signal : signals) {
        platform::InstallFaultHandler(signal);
    }
}

void RestoreSignalHandlers() {
    for (int const signal : signals) {
        platform::RestoreFaultHandler(signal);
    }
}

void InstallInvalidParameterHandler() {
    keptHandler = platform::SetInvalidParameterHandler([] {});
}

} // namespace detail
