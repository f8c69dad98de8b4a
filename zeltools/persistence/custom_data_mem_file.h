// SPDX-License-Identifier: MIT
// CCustomDataMemFile: the memory file that custom data is written to and read from.

#pragma once

#include "zeltools/persistence/xmem_file.h"

/// A memory file in a class of its own, by which a store's own buffer is told from other files.
class ZEL_API CCustomDataMemFile : public CXMemFile {
    ZEL_DECLARE_RUNTIME_CLASS(CCustomDataMemFile)

public:
    using CXMemFile::CXMemFile;
};
