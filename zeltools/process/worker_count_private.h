// SPDX-License-Identifier: MIT
// What start and close need of the worker count.

#pragma once

namespace detail {

/// Sets the count to what the machine's processors allow.
void SetWorkerCountFromProcessors();

/// Deletes the list of change callbacks. The next registration makes it anew.
void DeleteWorkerCountCallbacks();

} // namespace detail
