// SPDX-License-Identifier: MIT
#pragma once

namespace detail {

/// Tells the hook, if one is set, that a file was opened or closed.
void CallFileHook(void* handleOrStream);

} // namespace detail
