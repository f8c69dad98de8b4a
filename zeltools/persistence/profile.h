// SPDX-License-Identifier: MIT
// Settings of the application as bytes and wide numbers, beside the texts and numbers of CWinApp.
//
//     WriteProfileFloat(u"View", u"Zoom", 1.5F);
//     float zoom = 0;
//     GetProfileFloat(u"View", u"Zoom", zoom, 1.0F);     // 1; zoom == 1.5
//
// They lie where CWinApp::GetApp() says, and without an application below `Software\Quenby` and the product's name in
// the registry. There they are binary values. In a profile file bytes are letters, two for each, from 'A' for 0 to 'P'
// for 15, the low half first: "BAAA" is 0x01 0x00. That is an encoding and protects nothing.
//
// Threads: any.  Errors: none throws save for want of memory.

#pragma once

#include "zeltools/foundation/api.h"

/// Reads bytes.
///
/// @param data  Receives a new block, to be freed with `delete[] static_cast<unsigned char*>(*data)`; null on failure.
/// @param size  Receives its size in bytes; 0 on failure.
/// @return 1; 0 when the entry is missing, cannot be read, or is an empty text in a profile file.
ZEL_API int GetProfileBinary(char16_t const* section, char16_t const* entry, void** data, unsigned int* size);

/// Writes bytes.
ZEL_API bool WriteProfileBinary(char16_t const* section, char16_t const* entry, void const* data, unsigned int size);

/// Reads a number that WriteProfileFloat wrote.
/// @return 1; 0 with the default in `value` when the entry is missing or has not exactly four bytes.
ZEL_API int GetProfileFloat(char16_t const* section, char16_t const* entry, float& value, float defaultValue);

/// Writes the four bytes of a number.
ZEL_API bool WriteProfileFloat(char16_t const* section, char16_t const* entry, float value);

/// Reads a number that WriteProfileLongUInt wrote.
/// @return 1; 0 with the default in `value` when the entry is missing or has not exactly eight bytes.
ZEL_API int GetProfileLongUInt(char16_t const* section, char16_t const* entry, unsigned long long& value,
                               unsigned long long defaultValue);

/// Writes the eight bytes of a number.
ZEL_API bool WriteProfileLongUInt(char16_t const* section, char16_t const* entry, unsigned long long value);

/// Deletes the key that is named `entry` below the section's key. Values are not touched: CWinApp::WriteProfileString
/// with a null value deletes those. Always false for an application with a profile file, and for a key with keys below.
ZEL_API bool DeleteProfileKey(char16_t const* section, char16_t const* entry);
