// SPDX-License-Identifier: MIT
// Conversion between narrow and wide text: two functions, and holders that live as long as a call needs its argument.
//
//     CXTString<char16_t> wide;
//     if (XFASTCA2W(wide, bytes, xEncodingUtf8)) ...
//     OpenNarrow(XCW2A(path, xEncodingUtf8));    // the converted text lives to the end of the statement
//
// An encoding is an xStringEncoding or the number of a code page (1252, 932, ...). Invalid bytes become U+FFFD, a
// character that the page lacks becomes `?`. xEncodingUtf16 is no encoding of narrow text: a conversion by it fails.
//
// Threads: any; a holder belongs to one thread at a time.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Converts a terminated narrow text to UTF-16.
///
/// @return true on success, for an empty text too; false for a null source, an unknown encoding and a text beyond 2^31
///         units, with an empty target.
ZEL_API bool XFASTCA2W(CXTCharArray<char16_t>& target, char const* source, int encoding = xEncodingDefault);

/// Converts a terminated UTF-16 text to narrow text; otherwise as XFASTCA2W.
ZEL_API bool XFASTCW2A(CXTCharArray<char>& target, char16_t const* source, int encoding = xEncodingDefault);

/// Holds a narrow text converted to UTF-16.
class ZEL_API XCA2W : public CXTCharArray<char16_t> {
public:
    explicit XCA2W(char const* source, int encoding = xEncodingDefault)
        : converted(XFASTCA2W(*this, source, encoding)) {}

    /// The converted text, or null when it could not be converted.
    operator char16_t const*() const noexcept { return converted ? buffer : nullptr; }

private:
    bool converted;
};

/// Holds a UTF-16 text converted to narrow text.
class ZEL_API XCW2A : public CXTCharArray<char> {
public:
    explicit XCW2A(char16_t const* source, int encoding = xEncodingDefault)
        : converted(XFASTCW2A(*this, source, encoding)) {}

    /// The converted text, or null when it could not be converted.
    operator char const*() const noexcept { return converted ? buffer : nullptr; }

private:
    bool converted;
};

/// Passes a narrow text on where the target is narrow too; owns nothing.
class XCA2A {
public:
    /// Keeps `source` for the encodings -1, 1 and 2, and null for any other.
    explicit XCA2A(char const* source, int encoding = xEncodingDefault) noexcept
        : pointer(encoding == xEncodingDefault || encoding == xEncodingAnsi || encoding == xEncodingUtf8 ? source
                                                                                                         : nullptr) {}

    operator char const*() const noexcept { return pointer; }

private:
    char const* pointer;
};

/// Passes a UTF-16 text on whatever the encoding; owns nothing.
class XCW2W {
public:
    explicit XCW2W(char16_t const* source, int = xEncodingDefault) noexcept : pointer(source) {}

    operator char16_t const*() const noexcept { return pointer; }

private:
    char16_t const* pointer;
};

/// Holds a UTF-16 text as a counted system string: four bytes before its first unit hold its length in bytes.
class ZEL_API XCW2BSTR {
public:
    /// Copies the text; null gives null.
    explicit XCW2BSTR(char16_t const* source);
    ~XCW2BSTR();
    XCW2BSTR(XCW2BSTR const&) = delete;
    XCW2BSTR& operator=(XCW2BSTR const&) = delete;

    operator char16_t*() const noexcept { return pointer; }

private:
    char16_t* pointer;
};

/// Holds a narrow text, converted on the system's narrow code page, as a counted system string; null gives null.
class ZEL_API XCA2BSTR : public XCW2BSTR {
public:
    explicit XCA2BSTR(char const* source) : XCW2BSTR(XCA2W(source)) {}
};
