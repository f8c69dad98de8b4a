// SPDX-License-Identifier: MIT
#include "media/media_parser.h"

#include "media/media_io.h"

namespace {

/// The text of MediaLimit::Pixels in the string table; the others follow.
constexpr unsigned int FirstLimitText = 5620;

} // namespace

CMediaParser::CMediaParser(CMediaIo* owner) : CFileParser(owner) {}

CMediaParser::~CMediaParser() = default;

CMediaIo* CMediaParser::GetMediaIo() const {
    return static_cast<CMediaIo*>(GetIoMgr());
}

bool CMediaParser::ShouldCancelParser() const {
    return CFileParser::ShouldCancelParser() || (GetMediaIo() && GetMediaIo()->IsOutOfTime());
}

bool CMediaParser::Fail(IO_FILE_RESULT why) const {
    if (CMediaIo* const io = GetMediaIo()) {
        io->SetIoError(why, nullptr, IoLogInfo::Error); // the manager adds it to the log of the options
    }
    return false;
}

bool CMediaParser::Fail(CXTString<char16_t> const& text) const {
    if (CMediaIo* const io = GetMediaIo()) {
        io->SetIoError(text, nullptr, IoLogInfo::Error);
    }
    return false;
}

bool CMediaParser::FailBeyondLimit(MediaLimit limit, unsigned long long found, unsigned long long allowed) const {
    CXTString<char16_t> const name = GetIoMgr() ? GetIoMgr()->GetName() : CXTString<char16_t>();
    CXTString<char16_t> text;
    text.Format(FirstLimitText + static_cast<unsigned int>(limit), static_cast<char16_t const*>(name), found, allowed);
    return Fail(text);
}
