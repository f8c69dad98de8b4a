// SPDX-License-Identifier: MIT
// CCustomMemFile: a memory file that grows by a factor, so that many small writes cost little each.

#pragma once

#include "zeltools/persistence/xmem_file.h"

/// A memory file whose capacity grows by 1.6 at a time, or by fixed steps if it is told to. It throws on errors.
///
/// Threads: one object belongs to one thread at a time.
class ZEL_API CCustomMemFile : public CXMemFile {
    ZEL_DECLARE_RUNTIME_CLASS(CCustomMemFile)

public:
    /// Flag: grow by a factor; without it by the grow step.
    static constexpr unsigned int GrowByFactor = 1;

    /// An empty file that grows by the factor, by 1024 bytes at least.
    CCustomMemFile();

    /// @param flags      GrowByFactor or 0.
    /// @param growBytes  The least growth, or the only one; 0 stands for 2048.
    CCustomMemFile(unsigned int flags, unsigned int growBytes);

    /// A file over a buffer, as CXMemFile::Attach makes it.
    CCustomMemFile(unsigned char const* buffer, unsigned long long size, bool autoDelete, unsigned int flags);

protected:
    bool GrowBuffer(unsigned long long needed) override;

private:
    unsigned int flags;
};
