// SPDX-License-Identifier: MIT
// What parsers of images and of scenes have in common: they stop when the operation's time is over.

#pragma once

#include "media/media_api.h"
#include <zeltools/files/file_parser.h>

class CMediaIo;

class ZEL_MEDIA_API CMediaParser : public CFileParser {
public:
    explicit CMediaParser(CMediaIo* manager);
    ~CMediaParser() override;

    /// Whether the operation is cancelled or its time is over.
    bool ShouldCancelParser() const override;

protected:
    CMediaIo* GetMediaIo() const;
};
