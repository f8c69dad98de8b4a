// SPDX-License-Identifier: MIT
// Strings in the archive. In front of the text stands its length, in 8 bits where they suffice:
//
//     length           below 255   255 to 65531     65532 to 2^32 - 2    above
//     bytes            n           FF nn nn         FF FFFF n*4          FF FFFF FFFFFFFF n*8
//
// The 16-bit values from FFFC to FFFE are therefore never lengths. FF and one of them is a marker, which names the
// text's encoding; the length follows it as if from the start.

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/persistence/xarchive_private.h"
#include "zeltools/persistence/xfile.h"

#include <algorithm>
#include <climits>

namespace {

constexpr unsigned char LongLength = 0xFF;

constexpr unsigned short OpaqueMarker = 0xFFFC;
constexpr unsigned short Utf8Marker = 0xFFFD;
constexpr unsigned short Utf16Marker = 0xFFFE;

/// The marker of an encoding; 0 for one that has none.
unsigned short MarkerOf(xStringEncoding encoding) {
    switch (static_cast<int>(encoding)) {
    case xEncodingUtf8: return Utf8Marker;
    case xEncodingUtf16: return Utf16Marker;
    case CXArchive::OpaqueEncoding: return OpaqueMarker;
    default: return 0;
    }
}

/// The longest text that a string can count.
constexpr unsigned long long LongestText = INT_MAX - 1;

} // namespace

// ---------------------------------------------------------------------------------------------------------------
// Lengths

void CXArchive::WriteStringLength(unsigned long long length, xStringEncoding encoding) {
    if (unsigned short const marker = MarkerOf(encoding))
        *this << LongLength << marker;
    if (length < LongLength) {
        *this << static_cast<unsigned char>(length);
        return;
    }
    *this << LongLength;
    if (length < OpaqueMarker) {
        *this << static_cast<unsigned short>(length);
        return;
    }
    *this << static_cast<unsigned short>(0xFFFF);
    if (length < 0xFFFFFFFF)
        *this << static_cast<unsigned int>(length);
    else
        *this << 0xFFFFFFFFu << length;
}

unsigned long long CXArchive::ReadStringLength(xStringEncoding& encoding) {
    unsigned long long consumed = 0;
    return ReadLength(encoding, consumed);
}

/// ReadStringLength that also counts the bytes it took.
unsigned long long CXArchive::ReadLength(xStringEncoding& encoding, unsigned long long& consumed) {
    auto const read = [&](auto value) {
        *this >> value;
        consumed += sizeof value;
        return value;
    };
    encoding = xEncodingAnsi;
    for (;;) { // a further marker overrides the one in front of it
        unsigned char const byteLength = read(static_cast<unsigned char>(0));
        if (byteLength < LongLength)
            return byteLength;
        unsigned short const shortLength = read(static_cast<unsigned short>(0));
        switch (shortLength) {
        case OpaqueMarker: encoding = OpaqueEncoding; continue;
        case Utf8Marker: encoding = xEncodingUtf8; continue;
        case Utf16Marker: encoding = xEncodingUtf16; continue;
        case 0xFFFF: break;
        default: return shortLength;
        }
        unsigned int const length = read(0u);
        return length < 0xFFFFFFFF ? length : read(0ull);
    }
}

/// Takes back bytes of scalars that were just loaded. They may have left the buffer since.
void CXArchive::StepBack(unsigned long long count) {
    if (count <= Pending()) {
        cursor -= count;
        return;
    }
    Flush(false);
    if (OpenFile().Seek(-static_cast<long long>(count), CXFile::current) == CXFile::BadPosition)
        Throw(CXArchiveException::genericException);
}

// ---------------------------------------------------------------------------------------------------------------
// Texts

void CXArchive::WriteString(char const* text, xStringEncoding encoding) {
    std::size_t const length = xStrLen(text);
    WriteStringLength(length, encoding);
    Write(text, length);
}

void CXArchive::WriteString(char16_t const* text, xStringEncoding encoding) {
    std::size_t const length = xStrLen(text);
    WriteStringLength(length, encoding);
    Write(text, length * sizeof(char16_t));
}

CXArchive& CXArchive::operator<<(CXTString<char> const& text) {
    WriteString(static_cast<char const*>(text), xEncodingAnsi);
    return *this;
}

CXArchive& CXArchive::operator<<(CXTString<char16_t> const& text) {
    WriteString(static_cast<char16_t const*>(text), xEncodingUtf16);
    return *this;
}

/// Reads as many characters as the stream claims there are. Their memory is taken in one piece where the bytes are sure
/// to come, and else grows with what came.
template <class T>
void CXArchive::ReadText(CXTString<T>& text, unsigned long long length) {
    text.SetLength(0); // so that the memory grows to what is asked for and not beyond
    bool const isSure = RequireBytes(length > ~0ull / sizeof(T) ? ~0ull : length * sizeof(T));
    if (length > LongestText)
        detail::ThrowMemory();
    try {
        for (std::size_t done = 0; done < length;) {
            std::size_t const trusted = std::max<std::size_t>(detail::TrustedBytes / sizeof(T), done);
            std::size_t const piece = isSure ? length - done : std::min<std::size_t>(length - done, trusted);
            text.SetLength(done + piece);
            EnsureRead(text.GetText() + done, piece * sizeof(T));
            done += piece;
        }
    } catch (...) {
        text.SetLength(0);
        throw;
    }
    if (std::size_t const end0 = xStrLen(static_cast<T const*>(text)); end0 < length)
        text.SetLength(end0);
}

CXArchive& CXArchive::operator>>(CXTString<char>& text) {
    xStringEncoding encoding;
    unsigned long long const length = ReadStringLength(encoding);
    if (encoding == xEncodingUtf16) {
        CXTString<char16_t> units;
        ReadText(units, length);
        XFASTCW2A(text, units, xEncodingDefault);
    } else {
        ReadText(text, length);
    }
    return *this;
}

CXArchive& CXArchive::operator>>(CXTString<char16_t>& text) {
    xStringEncoding encoding;
    unsigned long long consumed = 0;
    unsigned long long const length = ReadLength(encoding, consumed);
    if (encoding == xEncodingUtf16) {
        ReadText(text, length);
    } else if (encoding == OpaqueEncoding) {
        StepBack(consumed);
    } else {
        CXTString<char> bytes;
        ReadText(bytes, length);
        XFASTCA2W(text, bytes, encoding);
    }
    return *this;
}
