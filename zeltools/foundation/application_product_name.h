// SPDX-License-Identifier: MIT
// What the product is called on the disk. All of its folders are named after it, so a host names itself before it asks
// for the first one:
//
//     SetInternalProductName(u"Catalogue", 3, true);
//     GetInternalProductName(true);                  // Catalogue 3
//     GetUserApplicationDataPath(false, nullptr);    // "...\Quenby\Catalogue 3\"
//
// Threads: any; guarded by the application lock.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Names the product.
///
/// @param version     The number behind the name in versioned folders; 0 for none.
/// @param resetPaths  Forgets the folders that were named after the former name and version. Those without a version
///                    stay, so a host that changes its name does so before it asks for any.
ZEL_API void SetInternalProductName(CXTString<char16_t> const& name, int version, bool resetPaths);

/// The product's name. Without one it is the application's file name without extension, and the call that finds this
/// out gives it without a version.
///
/// @param withVersion  Adds a blank and the version number, unless that is 0.
ZEL_API CXTString<char16_t> GetInternalProductName(bool withVersion);

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// The version number behind the product's name.
int ProductVersion();

/// Forgets the name; the number stays.
void ForgetProductName();

} // namespace detail
