// SPDX-License-Identifier: MIT
// What a host's own file class shows of itself, so that a CXFile can be laid over its open file.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// A file that a host opened by its own means.
class ZEL_API CFile {
public:
    CFile() = default;
    CFile(CFile const&) = default;
    CFile& operator=(CFile const&) = default;
    virtual ~CFile();

    /// The path by which the file was opened.
    virtual CXTString<char16_t> GetFilePath() const = 0;

    /// The open file's handle, as CXFile::GetHandle gives it; null when closed.
    virtual void* GetFileHandle() const = 0;
};
