// SPDX-License-Identifier: MIT
#include "plugins/bitmap/oiio_parser.h"

#include "plugins/bitmap/image_reader.h"
#include "plugins/bitmap/image_writer.h"
#include "plugins/bitmap/utf8_text.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/xload_string.h>

#include <cerrno>

OiioParser::OiioParser(CMediaIo* owner, char const* formatName) : CBitmapParser(owner), format(formatName) {}

bool OiioParser::ReadHeader(CImageDocument& image, MediaLimits const& limits, CIoOptions*) {
    start = Clock::now();
    return ImageReader(*this, limits).ReadHeader(image);
}

bool OiioParser::Read(CImageDocument& image, MediaLimits const& limits, CIoOptions*) {
    start = Clock::now();
    return ImageReader(*this, limits).Read(image);
}

bool OiioParser::Write(CImageDocument const& image, CIoOptions* options) {
    start = Clock::now();
    return ImageWriter(*this).Write(image, options);
}

std::string OiioParser::GetNativeName() const {
    return static_cast<char const*>(fileGetNativeName(GetMediaIo()->GetCompleteName()));
}

bool OiioParser::FailWithName(unsigned int textId) const {
    CXTString<char16_t> text;
    text.Format(textId, static_cast<char16_t const*>(GetShortName()));
    return Fail(text);
}

bool OiioParser::FailInWords(std::string const& utf8) const {
    CXTString<char16_t> text = ToText(utf8);
    text.TrimRight();
    if (text.IsEmpty()) {
        return Fail(IoBadFormat);
    }
    text.Replace(u"\n", u"; "); // a report has one line for a file
    return Fail(text.Find(GetShortName()) >= 0 ? text : GetShortName() + u": " + text);
}

bool OiioParser::FailWithErrno(int error) const {
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS: return Fail(IoUnauthorized);
    case ENOSPC:
    case EDQUOT:
    case EFBIG: return Fail(IoDiskFull);
    case ENOMEM: return Fail(IoNoMemory);
    default: return Fail(IoCannotOpen);
    }
}

bool OiioParser::FailAsStopped() const {
    if (CFileParser::ShouldCancelParser() || !GetMediaIo()->IsOutOfTime()) {
        return Fail(IoCanceled);
    }
    auto const spent = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    return FailBeyondLimit(MediaLimit::Time, static_cast<unsigned long long>(spent.count()),
                           GetMediaIo()->limits.timeMs);
}
