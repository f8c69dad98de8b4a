// SPDX-License-Identifier: MIT
// Reading a stream by lines and characters.
//
// A line is searched in the stream's own buffer and handed on from there; only one that lies in two blocks is copied
// together. Nothing is kept between two calls, so that any use of the stream in between is safe.

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/persistence/plain_text_private.h"
#include "zeltools/persistence/xstdio_file.h"
#include "zeltools/platform/code_pages.h"
#include "zeltools/platform/streams.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

static_assert(std::endian::native == std::endian::little); // 16-bit text is read and written as it lies in memory

namespace {

constexpr unsigned int FirstLineBuffer = 256;

/// The place of the newline's first byte, or npos. In 16-bit text units begin at even places.
std::size_t FindNewline(std::string_view bytes, bool isWide) {
    std::size_t place = bytes.find('\n');
    while (isWide && place != std::string_view::npos &&
           (place % 2 != 0 || place + 1 == bytes.size() || bytes[place + 1] != 0)) {
        place = bytes.find('\n', place + 1);
    }
    return place;
}

} // namespace

bool CXStdioFile::GrowLineBuffer(std::size_t needed) {
    unsigned int capacity = std::max(lineBufferCapacity, FirstLineBuffer);
    while (capacity < needed) {
        if (capacity > UINT_MAX / 2) {
            errno = ENOMEM;
            return false;
        }
        capacity *= 2;
    }
    if (capacity > lineBufferCapacity) {
        auto* const grown = static_cast<char*>(std::realloc(lineBuffer, capacity));
        if (!grown) {
            errno = ENOMEM;
            return false;
        }
        lineBuffer = grown;
        lineBufferCapacity = capacity;
    }
    return true;
}

void CXStdioFile::TrimLineBuffer() {
    constexpr unsigned int LargestKept = 1U << 20;
    if (lineBufferCapacity > LargestKept) {
        std::free(std::exchange(lineBuffer, nullptr));
        lineBufferCapacity = 0;
    }
}

bool CXStdioFile::ReadLine(Line& line, bool isWide) {
    line = {};
    std::size_t const unit = isWide ? sizeof(char16_t) : 1;
    std::size_t collected = 0;
    std::string_view bytes;
    if (!IsOpen()) {
        ThrowErrno(CXFileException::genericException);
        return false;
    }
    while (!(bytes = platform::PeekStream(stream)).empty()) {
        // The second half of a unit that began in the block before belongs to it.
        std::size_t const rest = collected % unit;
        std::size_t newline = std::string_view::npos;
        if (rest != 0 && lineBuffer[collected - 1] == '\n' && bytes[0] == 0) {
            platform::SkipStream(stream, 1);
            line = {lineBuffer, collected - 1};
            return true;
        }
        newline = FindNewline(bytes.substr(rest), isWide);
        bool const isWhole = newline != std::string_view::npos;
        std::size_t const size = isWhole ? rest + newline : bytes.size();
        if (isWhole && collected == 0) {
            line = {bytes.data(), size};
            platform::SkipStream(stream, size + unit);
            return true;
        }
        if (!GrowLineBuffer(collected + size)) {
            ThrowErrno(CXFileException::genericException);
            return false;
        }
        std::memcpy(lineBuffer + collected, bytes.data(), size);
        collected += size;
        platform::SkipStream(stream, size + (isWhole ? unit : 0));
        if (isWhole) {
            line = {lineBuffer, collected};
            return true;
        }
    }
    line = {lineBuffer, collected};
    if (std::ferror(stream)) {
        ThrowErrno(CXFileException::genericException);
        return false;
    }
    return collected > 0;
}

bool CXStdioFile::ReadStringA(CXTString<char>& text) {
    Line line;
    bool const isRead = ReadLine(line, false);
    text.SetLength(0); // so that it grows to what it needs, and no further
    text.Assign(line.bytes, line.bytes ? strnlen(line.bytes, line.size) : 0);
    TrimLineBuffer();
    return isRead;
}

bool CXStdioFile::ReadStringW(CXTString<char16_t>& text) {
    if (!holdsUnits) {
        CXTString<char> narrow;
        bool const isRead = ReadStringA(narrow);
        XFASTCA2W(text, narrow);
        return isRead;
    }
    if (detail::ReadPlainLine(stream, text, true)) {
        return true;
    }
    Line line;
    bool const isRead = ReadLine(line, true);
    std::size_t const count = line.size / sizeof(char16_t); // a lone byte at the file's end is no character
    text.SetLength(count);
    text.SetLength(count > 0 ? detail::CopyPlainText(line.bytes, count, text.GetText()) : 0);
    TrimLineBuffer();
    return isRead;
}

bool CXStdioFile::ReadString(CXTString<char16_t>& line) {
    return ReadStringW(line);
}

CXStdioFile::Character CXStdioFile::ReadCharacter(bool isWide, int encoding) {
    Character character;
    auto const next = [&] {
        int const byte = getc_unlocked(stream);
        if (byte != EOF) {
            character.bytes[character.byteCount++] = static_cast<char>(byte);
        }
        return byte;
    };
    int const first = next();
    if (first == EOF) {
        return character;
    }
    if (isWide) {
        if (int const second = next(); second != EOF) {
            character.units[0] = static_cast<char16_t>(first | second << 8);
            character.unitCount = 1;
        }
        return character;
    }
    unsigned int codePage = static_cast<unsigned int>(encoding);
    if (encoding == xEncodingDefault || encoding == xEncodingAnsi || encoding == 0) {
        codePage = platform::GetACP();
    } else if (encoding == xEncodingUtf8) {
        codePage = platform::CodePageUtf8;
    }
    auto const decode = [&](unsigned int flags) {
        int const count =
            platform::MultiByteToWideChar(codePage, flags, character.bytes, static_cast<int>(character.byteCount),
                                          character.units, static_cast<int>(std::size(character.units)));
        character.unitCount = static_cast<unsigned int>(std::max(count, 0));
        return count > 0;
    };
    if (first < 0x80) { // in every page that streams are written in
        character.units[0] = static_cast<char16_t>(first);
        character.unitCount = 1;
        return character;
    }
    while (!decode(platform::MultiByteErrInvalidChars) && character.byteCount < std::size(character.bytes)) {
        int const byte = next();
        bool const cannotFollow = codePage == platform::CodePageUtf8 && (byte < 0x80 || byte > 0xBF);
        if (byte == EOF || cannotFollow) {
            character.byteCount -= byte == EOF ? 0U : 1U;
            if (byte != EOF) {
                std::ungetc(byte, stream);
            }
            break;
        }
    }
    if (character.unitCount == 0 && !decode(0)) {
        character.units[0] = u'\xFFFD';
        character.unitCount = 1;
    }
    return character;
}

void CXStdioFile::Unread(char const* bytes, std::size_t count) {
    while (count > 0) {
        std::ungetc(static_cast<unsigned char>(bytes[--count]), stream);
    }
}

char16_t* CXStdioFile::ReadString(char16_t* target, unsigned int count) {
    if (!target || count == 0 || !IsOpen()) {
        return nullptr;
    }
    unsigned int filled = 0;
    while (filled + 1 < count) {
        Character const character = ReadCharacter(holdsUnits, xEncodingDefault);
        unsigned int const room = count - 1 - filled;
        if (character.unitCount > room && filled > 0) { // half a character helps nobody
            Unread(character.bytes, character.byteCount);
            break;
        }
        unsigned int const taken = std::min(character.unitCount, room);
        std::copy_n(character.units, taken, target + filled);
        filled += taken;
        if (taken == 0 || target[filled - 1] == u'\n') {
            break;
        }
    }
    if (filled == 0 && count > 1) {
        if (std::ferror(stream)) {
            ThrowErrno(CXFileException::genericException);
        }
        return nullptr;
    }
    target[filled] = 0;
    return target;
}
