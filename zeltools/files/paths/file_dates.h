// SPDX-License-Identifier: MIT
// The dates of a file or folder, in whole seconds.
//
// Errors:  none throws; why a call failed stays in the thread's last error, and the date is untouched then.
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/foundation/xtime.h"

/// Reads when the file came into being. On a disk that does not keep that, it is the time of the last change of the
/// file's status, which is never before it.
ZEL_API bool fileGetCreationDate(CXTString<char16_t> const& path, CXTime& date);

/// This system offers no way to change the date of creation: always false, and the file is untouched.
ZEL_API bool fileSetCreationDate(CXTString<char16_t> const& path, CXTime const& date);

/// Reads when the file was last written; for a folder, when an entry last came or went.
ZEL_API bool fileGetLastWriteDate(CXTString<char16_t> const& path, CXTime& date);

/// Changes when the file was last written. False as well for a date outside the years 1601 to 30827, and for one that
/// the file system cannot hold the file is given the nearest that it can.
ZEL_API bool fileSetLastWriteDate(CXTString<char16_t> const& path, CXTime const& date);
