// SPDX-License-Identifier: MIT
// The kinds of the values in a CCustomData, and the chunk in which each value lies. What stands here is at once the
// form in memory, on disk and over the socket: docs/formats/custom_data.md shows it byte by byte.

#pragma once

#include "zeltools/foundation/four_cc.h"

/// What a stream of a store begins with, by generation.
enum CustomDataMagic : unsigned int {
    CustomDataMagicCurrent = 0x43555335,      ///< The one that is written.
    CustomDataMagicPrevious = 0x43555334,     ///< Of the same layout.
    CustomDataMagicLegacyWide = 0x43555355,   ///< Records without kinds, with wide strings.
    CustomDataMagicLegacyNarrow = 0x43555354, ///< The same with narrow strings.
};

/// What a chunk holds. All numbers are little-endian.
enum CustomDataKind : unsigned int {
    CustomDataBlank = FourCC("    "),      ///< Untyped, from a legacy file.
    CustomDataInt = FourCC(" INT"),        ///< Signed, 32 bits.
    CustomDataUInt = FourCC("UINT"),       ///< Unsigned, 32 bits.
    CustomDataLong = FourCC("LONG"),       ///< Signed, 32 bits.
    CustomDataULong = FourCC("ULON"),      ///< Unsigned, 32 bits.
    CustomDataLongInt = FourCC("LLON"),    ///< Signed, 64 bits.
    CustomDataULongInt = FourCC("ULLO"),   ///< Unsigned, 64 bits; sizes too.
    CustomDataChar = FourCC("CHAR"),       ///< Signed, 8 bits.
    CustomDataUChar = FourCC("UCHR"),      ///< Unsigned, 8 bits.
    CustomDataBool = FourCC("BOOL"),       ///< 32 bits, zero or not.
    CustomDataFloat = FourCC("FLOA"),      ///< IEEE 754 single.
    CustomDataDouble = FourCC("DOUB"),     ///< IEEE 754 double.
    CustomDataPtr = FourCC("PTR6"),        ///< 64-bit address, of use in the process that stored it only.
    CustomDataOldPtr = FourCC("PTR "),     ///< Older address; the dump names it and nothing reads it.
    CustomDataXTime = FourCC("TIMX"),      ///< CXTime in seconds, signed, 64 bits.
    CustomDataUTCTime = FourCC("TIME"),    ///< Nine 32-bit fields of a broken-down UTC time, as in struct tm.
    CustomDataBinary = FourCC(" BIN"),     ///< Bytes.
    CustomDataWide = FourCC("UNIC"),       ///< UTF-16 with terminator.
    CustomDataNarrow = FourCC("ANSI"),     ///< Text of the narrow code page with terminator.
    CustomDataUtf8 = FourCC("UTF8"),       ///< UTF-8 with terminator; read only.
    CustomDataWideList = FourCC("USTR"),   ///< UTF-16 texts, each with its terminator, end to end.
    CustomDataNarrowList = FourCC("ASTR"), ///< Texts of the narrow code page, likewise; read only.
    CustomDataUtf8List = FourCC("U8TR"),   ///< UTF-8 texts, likewise; read only.
    CustomDataArray = FourCC("ARRA"),      ///< 32-bit count, then so many elements of one size.
    CustomDataNested = FourCC("CDA2"),     ///< The chunks of another store.
    CustomDataNestedOld = FourCC("CDAT"),  ///< The same behind a 20-byte header; read only.
};

/// A chunk of the current generation; its data follow. Chunks stand at any address, one right after the other.
struct [[gnu::packed, gnu::may_alias]] CustomPrivateData {
    unsigned int id;
    unsigned int size; ///< bytes of data
    unsigned int kind; ///< CustomDataKind, or any other number from outside

    unsigned char* Data() {
        return reinterpret_cast<unsigned char*>(this + 1);
    }
    unsigned char const* Data() const {
        return reinterpret_cast<unsigned char const*>(this + 1);
    }
};
static_assert(sizeof(CustomPrivateData) == 12);

/// A record of a legacy stream; its data follow, and three bytes of filler after them.
struct [[gnu::packed, gnu::may_alias]] CustomPrivateDataOld {
    unsigned int id;
    unsigned int size;      ///< bytes of data
    unsigned int continues; ///< 0 in the last record

    unsigned char const* Data() const {
        return reinterpret_cast<unsigned char const*>(this + 1);
    }
};
static_assert(sizeof(CustomPrivateDataOld) == 12);
