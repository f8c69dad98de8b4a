// SPDX-License-Identifier: MIT
#include "zeltools/platform/invalid_parameter.h"

#include <atomic>

namespace platform {

namespace {

std::atomic<InvalidParameterHandler> current;

} // namespace

InvalidParameterHandler SetInvalidParameterHandler(InvalidParameterHandler handler) {
    return current.exchange(handler);
}

void ReportInvalidParameter() {
    if (InvalidParameterHandler const handler = current.load()) {
        handler();
    }
}

} // namespace platform
