// SPDX-License-Identifier: MIT
#include "zeltools/process/application_state_private.h"

std::atomic<bool> ApplicationCloseStarted{false};
std::atomic<unsigned long long> ApplicationMainThreadId{0};
