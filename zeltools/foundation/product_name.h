// SPDX-License-Identifier: MIT
// The short name of the host's product. Every location on disk that belongs to a product is named after it, so a host
// says its name before it asks for a location.
//
//     SetInternalProductName(u"Modeler", 3, true);
//     GetInternalProductName(true)     // u"Modeler 3"

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// @param versionNumber  The number in versioned locations; 0 for none.
/// @param resetPaths     Forgets the versioned data locations and the preferences locations that were computed under
///                       the old name. The two data locations without version stay as they were.
/// Threads: any.
ZEL_API void SetInternalProductName(CXTString<char16_t> const& name, int versionNumber, bool resetPaths);

/// The product's name; the application's file name without extension until a name was set.
/// @param withVersion  Puts a blank and the version number behind it, unless the number is 0. The first call without
///                     a name set derives it and returns it bare.
/// Threads: any.
ZEL_API CXTString<char16_t> GetInternalProductName(bool withVersion);
