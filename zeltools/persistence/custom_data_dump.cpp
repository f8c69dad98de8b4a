// SPDX-License-Identifier: MIT
// The text dump. Values are looked up by id, as a host reads them, so that the dump shows what a host gets.

#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/custom_data_private.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

using detail::StoreLock;

namespace {

/// A code's four bytes as a text, the highest first. Unlike FourCCText it leaves them as they are: the ids that count
/// 1, 2, 3 show as nothing.
struct CodeText {
    char text[5] = {};

    explicit CodeText(unsigned int code) {
        for (unsigned int i = 0; i < 4; ++i)
            text[i] = static_cast<char>(code >> (24 - 8 * i));
    }
};

/// Each byte as `0x%X `, by hand: a block may be long.
void AppendBytes(CXTString<char16_t>& text, unsigned char const* bytes, unsigned int count) {
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    for (unsigned int i = 0; i < count; ++i) {
        char16_t piece[6] = u"0x";
        int length = 2;
        if (bytes[i] > 0xF)
            piece[length++] = digits[bytes[i] >> 4];
        piece[length++] = digits[bytes[i] & 0xF];
        piece[length++] = u' ';
        text.Append(piece, static_cast<std::size_t>(length));
    }
}

} // namespace

CXTString<char16_t> CCustomData::DumpCustomData(bool indent, int level) {
    StoreLock const hold(&threadLock);
    CXTString<char16_t> text;
    DumpChunks(text, indent, level, 0);
    return text;
}

void CCustomData::DumpChunks(CXTString<char16_t>& text, bool indent, int level, int depth) {
    CXTString<char16_t> indentation;
    if (indent && level >= 1)
        indentation = CXTString<char16_t>(u'\t', std::min(level, MaxDumpIndent));
    for (CustomPrivateData const* chunk = GetFirstChunk(); chunk; chunk = GetNextChunk(chunk)) {
        text += indentation;
        text.AppendFormat(u"%.4hs (%.4hs) : ", CodeText(chunk->id).text, CodeText(chunk->kind).text);
        if (chunk->kind == CustomDataNested) {
            text += u"Sub data\r\n";
            DumpNested(text, chunk->id, indent, level, depth + 1);
            level = std::min(level, MaxDumpIndent) + 1;
        } else {
            DumpValue(text, *chunk);
        }
    }
}

/// Dumps a nested store where it lies, without a copy: each level of a hostile file would hold one.
void CCustomData::DumpNested(CXTString<char16_t>& text, unsigned int id, bool indent, int level, int depth) {
    CustomPrivateData const* const chunk = ReachChunk(id);
    if (!chunk || chunk->kind != CustomDataNested || chunk->size == 0 || depth > MaxDumpDepth)
        return;
    struct Borrowed : CCustomData {
        ~Borrowed() override { buffer = nullptr; }
    } nested;
    nested.buffer = const_cast<unsigned char*>(chunk->Data());
    nested.size = chunk->size;
    nested.UpdateOffsetMap(0);
    nested.DumpChunks(text, indent, level, depth);
}

void CCustomData::DumpValue(CXTString<char16_t>& text, CustomPrivateData const& chunk) {
    unsigned int const id = chunk.id;
    auto const appendInteger = [&]<class T>(bool (CCustomData::*get)(unsigned int, T&, T) const,
                                            char16_t const* format) {
        T value{};
        (this->*get)(id, value, T());
        text.AppendFormat(format, value);
    };
    switch (chunk.kind) {
    case CustomDataBinary: {
        unsigned int byteCount = 0;
        auto const* const bytes = static_cast<unsigned char const*>(GetCustomPtr(id, byteCount));
        AppendBytes(text, bytes, byteCount);
        text += u"\r\n";
        break;
    }
    case CustomDataNarrow:
    case CustomDataUtf8:
    case CustomDataWide: {
        CXTString<char16_t> value;
        GetString(id, value);
        text += value;
        text += u"\r\n";
        break;
    }
    case CustomDataBool: {
        bool value = false;
        GetBool(id, value, false);
        text.AppendFormat(u"%d\r\n", static_cast<int>(value));
        break;
    }
    case CustomDataChar: appendInteger(&CCustomData::GetChar, u"%d\r\n"); break;
    case CustomDataInt: appendInteger(&CCustomData::GetInt, u"%d\r\n"); break;
    case CustomDataLong: appendInteger(&CCustomData::GetLong, u"%d\r\n"); break;
    case CustomDataUChar: appendInteger(&CCustomData::GetUChar, u"%u\r\n"); break;
    case CustomDataUInt: appendInteger(&CCustomData::GetUInt, u"%u\r\n"); break;
    case CustomDataULong: appendInteger(&CCustomData::GetULong, u"%u\r\n"); break;
    case CustomDataFloat: appendInteger(&CCustomData::GetFloat, u"%f\r\n"); break;
    case CustomDataDouble: {
        double value = 0;
        GetDouble(id, value);
        text.AppendFormat(u"%f\r\n", static_cast<double>(static_cast<float>(value)));
        break;
    }
    // A length without a conversion letter prints nothing, and readers of dumps expect that.
    case CustomDataLongInt: text.AppendFormat(u"%ll\r\n"); break;
    case CustomDataULongInt: appendInteger(&CCustomData::GetULongInt, u"%llu\r\n"); break;
    case CustomDataNarrowList:
    case CustomDataUtf8List:
    case CustomDataWideList: {
        CXArray<CXTString<char16_t>> values(false);
        GetStringList(id, values);
        for (CXTString<char16_t> const& value : values) {
            text += value;
            text += u", ";
        }
        text += u"\r\n";
        break;
    }
    // The format takes the low half of an address.
    case CustomDataPtr:
    case CustomDataOldPtr:
        text.AppendFormat(u"0x%X\r\n", static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(GetPtr(id))));
        break;
    case CustomDataArray: {
        unsigned int byteCount = 0;
        void const* const data = GetCustomPtr(id, byteCount);
        int count = 0;
        if (byteCount >= sizeof(count))
            std::memcpy(&count, data, sizeof(count));
        text.AppendFormat(u"%d elements (%d bytes)\r\n", count, static_cast<int>(byteCount));
        break;
    }
    default: text += u"?\r\n"; break;
    }
}
