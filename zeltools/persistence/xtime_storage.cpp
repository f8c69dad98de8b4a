// SPDX-License-Identifier: MIT
// The form of a CXTime in an archive: its 64 bits, with no tag and no version.

#include "zeltools/foundation/xtime.h"
#include "zeltools/persistence/xarchive.h"

void CXTime::Serialize(CXArchive& archive) {
    if (archive.IsStoring())
        archive << seconds;
    else
        archive >> seconds;
}
