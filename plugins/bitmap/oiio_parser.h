// SPDX-License-Identifier: MIT
// A parser of one of OpenImageIO's formats. Reading and writing stand in image_reader.h and image_writer.h; what they
// tell the manager goes through here.

#pragma once

#include "media/bitmap_parser.h"
#include "media/media_io.h"

#include <chrono>
#include <string>

/// Threads: one at a time.
class OiioParser final : public CBitmapParser {
public:
    /// @param format  In the library's words: "png".
    OiioParser(CMediaIo* manager, char const* format);

    bool ReadHeader(CImageDocument& image, MediaLimits const& limits, CIoOptions* options) override;
    bool Read(CImageDocument& image, MediaLimits const& limits, CIoOptions* options) override;
    bool Write(CImageDocument const& image, CIoOptions* options) override;

    std::string const& GetFormat() const { return format; }
    std::string GetNativeName() const;
    /// Without its folder, for messages.
    CXTString<char16_t> GetShortName() const { return GetMediaIo()->GetCurrentShortFileName(); }

    // Telling the manager of a failure. Each answers false.

    using CMediaParser::Fail;
    using CMediaParser::FailBeyondLimit;
    /// A row of the string table, filled with the file's name.
    bool FailWithName(unsigned int textId) const;
    /// The library's words, in which the file need not be named.
    bool FailInWords(std::string const& utf8) const;
    bool FailWithErrno(int error) const;
    /// Why the operation was stopped: cancelled, or out of time.
    bool FailAsStopped() const;

private:
    using Clock = std::chrono::steady_clock;

    std::string format;
    Clock::time_point start;
};
