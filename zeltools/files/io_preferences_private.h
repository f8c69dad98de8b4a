// SPDX-License-Identifier: MIT
// The preferences file of loads and saves: "Catalogue.prefs" has "Catalogueio.prefs" beside it.

#pragma once

#include "zeltools/foundation/xstring.h"

namespace detail {

/// The path of the file, which need not exist; its folder is made. Threads: any; takes the application lock.
CXTString<char16_t> GetIoPreferencesPath();

} // namespace detail
