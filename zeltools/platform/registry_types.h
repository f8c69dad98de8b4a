// SPDX-License-Identifier: MIT
// The words of the registry: handles of keys, rights, and the types of values. CRegUtil (persistence/reg_util.h) is
// what a host works with.

#pragma once

#include <cstdint>

namespace platform {

/// What a key handle points to; nobody looks inside.
struct RegistryKey;

} // namespace platform

/// The handle of an open registry key, or of one of the roots below, which are always open.
using HKEY = platform::RegistryKey*;

namespace platform {

/// The handle of a root from its documented number, which is signed and widened to the size of a pointer.
inline HKEY RootKey(unsigned int number) {
    return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(number)));
}

} // namespace platform

inline HKEY const HKEY_CLASSES_ROOT = platform::RootKey(0x80000000);
inline HKEY const HKEY_CURRENT_USER = platform::RootKey(0x80000001);
inline HKEY const HKEY_LOCAL_MACHINE = platform::RootKey(0x80000002);
inline HKEY const HKEY_USERS = platform::RootKey(0x80000003);
inline HKEY const HKEY_CURRENT_CONFIG = platform::RootKey(0x80000005);
inline HKEY const HKEY_DYN_DATA = platform::RootKey(0x80000006);

/// What a handle may be used for; a mask.
enum RegistryAccess : unsigned int {
    KeyQueryValue = 0x0001,
    KeySetValue = 0x0002,
    KeyCreateSubKey = 0x0004,
    KeyEnumerateSubKeys = 0x0008,
    KeyNotify = 0x0010,
    KeyRead = 0x20019,      ///< Query values, enumerate keys.
    KeyWrite = 0x20006,     ///< Set values, create keys.
    KeyAllAccess = 0xF003F, ///< Everything.
};

/// What the bytes of a value mean. The store keeps any number and any bytes.
enum RegistryType : unsigned int {
    RegNone = 0,
    RegString = 1,       ///< UTF-16 with its terminator.
    RegExpandString = 2, ///< The same, with `%NAME%` for variables of the environment.
    RegBinary = 3,
    RegInt = 4, ///< Four bytes, little-endian.
    RegIntBigEndian = 5,
    RegLink = 6,
    RegMultiString = 7, ///< UTF-16 texts, each terminated, and an empty one behind the last.
    RegInt64 = 11,      ///< Eight bytes, little-endian.
};
