// SPDX-License-Identifier: MIT
// What a tag's value is made of: the nineteen types of a CTagValue, and the flags that a registered tag has beside its
// type in one 32-bit word.
//
//     bit 31 ... 24   23 ... 12     11 ... 0
//         flags       refinement    base
//
//     unsigned int const word = TAGDATA_FILESIZE | TAGFLAG_READONLY;    // 0x01008002
//     word & TAGDATA_MASK                                               // TAGDATA_FILESIZE
//     word & TAGDATA_BASE_MASK                                          // TAGDATA_UINT: stored as a number

#pragma once

/// The type of a value. The base says where the value is kept, the refinement what it means there; two types of one
/// base are converted into each other by changing the type alone.
enum _TAGDATA_INFO : unsigned int {
    TAGDATA_NONE = 0,              ///< No value.
    TAGDATA_TEXT = 0x1,            ///< UTF-16 text.
    TAGDATA_UINT = 0x2,            ///< Unsigned number.
    TAGDATA_FLOAT = 0x4,           ///< 32-bit float.
    TAGDATA_DATE = 0x8,            ///< A CXTime.
    TAGDATA_CUSTOM = 0x10,         ///< A whole CCustomData.
    TAGDATA_STRINGS = 0x100,       ///< Array of texts.
    TAGDATA_UINTS = 0x200,         ///< Array of unsigned numbers of 32 bits.
    TAGDATA_FLOATS = 0x400,        ///< Array of floats.
    TAGDATA_FILENAME = 0x1001,     ///< Text: a file's full path.
    TAGDATA_INT = 0x2002,          ///< Signed number.
    TAGDATA_BOOL = 0x4002,         ///< Number; zero is false.
    TAGDATA_FILESIZE = 0x8002,     ///< Number of 64 bits: bytes.
    TAGDATA_COLOR = 0x10002,       ///< Number: red in bits 0 to 7, green in 8 to 15, blue in 16 to 23.
    TAGDATA_DURATION = 0x20004,    ///< Float: seconds.
    TAGDATA_LENGTH = 0x40004,      ///< Float: millimetres.
    TAGDATA_RESOLUTION = 0x80004,  ///< Float: dots per inch.
    TAGDATA_CUSTOMINFO = 0x100010, ///< A run of bytes, kept in the custom store under one id.
    TAGDATA_INTS = 0x200200,       ///< Array of signed numbers, kept in that of the unsigned ones.
};

/// The bits of a word that are the type.
inline constexpr unsigned int TAGDATA_MASK = 0xFFFFFF;

/// The bits of a type that are its base.
inline constexpr unsigned int TAGDATA_BASE_MASK = 0xFFF;

// What a registered tag, or a parameter's result, is besides its type. A value never has these bits.

/// Not comparable; left out of a menu of writable tags.
inline constexpr unsigned int TAGFLAG_READONLY = 0x01000000;
/// No submenu of parameters.
inline constexpr unsigned int TAGFLAG_NOSUBMENU = 0x02000000;
/// No submenu of parameters in a menu of writable tags.
inline constexpr unsigned int TAGFLAG_NOSUBMENU_WRITABLE = 0x04000000;
/// Never in a menu.
inline constexpr unsigned int TAGFLAG_HIDDEN = 0x10000000;
