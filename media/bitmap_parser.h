// SPDX-License-Identifier: MIT
// What a plug-in of kind FileKindBitmap gives: a parser that reads and writes images.

#pragma once

#include "media/image_document.h"
#include "media/media_api.h"
#include "media/media_limits.h"
#include "media/media_parser.h"

class CIoOptions;

/// A parser of one image format, bound to the file of its manager. A failure is told to the manager by SetIoError, with
/// a text where the format's library has one, and leaves the document empty. ShouldCancelParser is polled at least
/// every 100 milliseconds, through the stream that is read; a cancelled operation ends with IoCanceled.
class ZEL_MEDIA_API CBitmapParser : public CMediaParser {
public:
    using CMediaParser::CMediaParser;
    ~CBitmapParser() override;

    /// Reads everything but the pixels, and decodes none.
    virtual bool ReadHeader(CImageDocument& image, MediaLimits const& limits, CIoOptions* options) = 0;
    /// Reads everything.
    virtual bool Read(CImageDocument& image, MediaLimits const& limits, CIoOptions* options) = 0;
    /// Writes a file, which is in place whole or not at all. The options' parser options are those of the format.
    virtual bool Write(CImageDocument const& image, CIoOptions* options) = 0;
};
