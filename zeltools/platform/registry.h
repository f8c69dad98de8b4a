// SPDX-License-Identifier: MIT
// The registry: keys as a tree under six roots, each with typed values. All processes of one user share it.
//
//     HKEY key = nullptr;
//     if (RegCreateKeyExW(HKEY_CURRENT_USER, u"Software\\Catalogue", KeyWrite, &key, nullptr) == ErrorSuccess) {
//         RegSetValueExW(key, u"Columns", RegInt, &columns, 4);     // on the disk when it returns
//         RegCloseKey(key);
//     }
//
// It is one file, `zeltools/registry.db` in the user's configuration folder (XDG_CONFIG_HOME, else ~/.config), or the
// one that ZELTOOLS_REGISTRY names. The first write makes it; reading never does. Names ignore case, beyond ASCII too,
// and keep their spelling; the backslash alone separates them. The roots are six trees: none is a view of another.
//
// Each call is one transaction: it happened whole or not at all, also when the process is killed or the power fails,
// and what one process wrote the next reads. A call that finds another process writing waits up to 30 seconds.
//
// All answer a status, and leave the last error alone:
//
//   0 ErrorSuccess           2 no such key or value        5 the handle or the disk does not allow it
//   6 no open handle         87 a wrong argument           112 the disk is full
//   161 path begins with \   170 another process writes    234 the buffer is too small
//   259 nothing more         1015 the file is damaged and could not be set aside
//   1016 the disk failed     1017 a file of another kind   1018 the key was deleted under its handle
//
// What an output holds after a failure: untouched, save a size at 234, which is the one needed.
//
// Threads: any.

#pragma once

#include "zeltools/platform/registry_types.h"

#include <cstddef>
#include <string>

namespace platform {

/// Units of a key's name, without its terminator.
inline constexpr std::size_t MaxKeyName = 255;
/// Units of a value's name, without its terminator.
inline constexpr std::size_t MaxValueName = 16383;
/// Keys below each other.
inline constexpr std::size_t MaxKeyDepth = 512;
/// Bytes of a value: far beyond any setting, and little enough that one value cannot fill a disk.
inline constexpr std::size_t MaxValueBytes = 64 << 20;

/// Opens a key. `subKey` may be null or empty for the key itself; of a root that is the root.
/// @param access  RegistryAccess bits, which calls on the handle are held to.
int RegOpenKeyExW(HKEY key, char16_t const* subKey, unsigned int access, HKEY* result);

inline constexpr unsigned int CreatedNewKey = 1;
inline constexpr unsigned int OpenedExistingKey = 2;

/// Opens a key, and makes it and the keys above it where they are missing.
/// @param disposition  Receives CreatedNewKey or OpenedExistingKey; may be null.
int RegCreateKeyExW(HKEY key, char16_t const* subKey, unsigned int access, HKEY* result, unsigned int* disposition);

/// Closes a handle. Closing a root is success and does nothing.
int RegCloseKey(HKEY key);

/// Reads a value; a null or empty name is the key's default value. Needs KeyQueryValue.
/// @param type  Receives the RegistryType; may be null.
/// @param data  Receives the bytes; null to ask for the size alone.
/// @param size  Bytes that `data` has room for; receives those of the value. Null only without `data`.
int RegQueryValueExW(HKEY key, char16_t const* name, unsigned int* type, void* data, unsigned int* size);

/// Writes a value. Needs KeySetValue.
int RegSetValueExW(HKEY key, char16_t const* name, unsigned int type, void const* data, unsigned int size);

/// Deletes a value. Needs KeySetValue.
int RegDeleteValueW(HKEY key, char16_t const* name);

/// Deletes a key with its values. A key with keys below is refused with 5, as is a root.
int RegDeleteKeyW(HKEY key, char16_t const* subKey);

/// Deletes a key with all that is below it.
int SHDeleteKeyW(HKEY key, char16_t const* subKey);

/// Gives the name of the key at an index, in the order of the names without case. Needs KeyEnumerateSubKeys.
/// @param length  Units that `name` has room for, terminator included; receives those of the name without it.
int RegEnumKeyExW(HKEY key, unsigned int index, char16_t* name, unsigned int* length);

/// Gives the name of the value at an index, oldest first, and on request its content. Needs KeyQueryValue.
/// @param length  As in RegEnumKeyExW. `type`, `data`, `size`: as in RegQueryValueExW.
int RegEnumValueW(HKEY key, unsigned int index, char16_t* name, unsigned int* length, unsigned int* type, void* data,
                  unsigned int* size);

/// What a key holds.
struct RegistryKeyInfo {
    unsigned int subKeys = 0;
    unsigned int longestSubKeyName = 0; ///< Units, without terminator.
    unsigned int values = 0;
    unsigned int longestValueName = 0; ///< Units, without terminator.
    unsigned int largestValue = 0;     ///< Bytes.
};

/// Counts what a key holds. Needs KeyQueryValue.
int RegQueryInfoKeyW(HKEY key, RegistryKeyInfo& info);

/// Says who is told that a damaged store was set aside, under which native name; it is called without a lock held.
/// What happened before is told at once. Null: nobody, and it is kept for the next.
void SetRegistryDamageReporter(void (*reporter)(std::string const& newName));

/// A number that is another one whenever the store may have changed since, by whatever process, and asks the disk for
/// no more than the file's times. 0 when there is no store; ~0 when it cannot be told, so that a cache must ask again.
unsigned long long GetRegistryVersion();

} // namespace platform
