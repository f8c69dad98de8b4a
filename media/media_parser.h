// SPDX-License-Identifier: MIT
// What parsers of images and of scenes have in common: they stop when the operation's time is over, and tell their
// manager why they failed.
//
//     if (pixels > limits.maxPixels)
//         return FailBeyondLimit(MediaLimit::Pixels, pixels, limits.maxPixels);

#pragma once

#include "media/media_api.h"
#include "media/media_limits.h"
#include <zeltools/files/file_parser.h>
#include <zeltools/files/io_result.h>
#include <zeltools/foundation/xstring.h>

class CMediaIo;

class ZEL_MEDIA_API CMediaParser : public CFileParser {
public:
    explicit CMediaParser(CMediaIo* manager);
    ~CMediaParser() override;

    /// Whether the operation is cancelled or its time is over.
    bool ShouldCancelParser() const override;

protected:
    CMediaIo* GetMediaIo() const;

    // Telling the manager of a failure. Each answers false, for the parser to pass on; without a manager that is all.

    bool Fail(IO_FILE_RESULT why) const;
    bool Fail(CXTString<char16_t> const& text) const;
    /// In the thread's language: "a.png: 5000000000 pixels, where 4294967296 are allowed."
    bool FailBeyondLimit(MediaLimit limit, unsigned long long found, unsigned long long allowed) const;
};
