// SPDX-License-Identifier: MIT
// Values of the registry with memory that fits, and what their bytes say.
//
// Threads: any.

#pragma once

#include "zeltools/platform/registry_types.h"

#include <string>

namespace platform {

/// Reads a value whole, also when another process makes it longer meanwhile. The status is RegQueryValueExW's.
int ReadRegistryValue(HKEY key, char16_t const* name, unsigned int& type, std::string& bytes);

/// The text in a value's bytes, whether it is terminated or not.
/// @param whole  Keeps zeros inside, as a RegMultiString has them; those at its end go. False: up to the first zero.
std::u16string TextOfValue(std::string const& bytes, bool whole);

/// Writes a text with its terminator, as RegString or RegExpandString.
int WriteRegistryText(HKEY key, char16_t const* name, unsigned int type, std::u16string const& text);

} // namespace platform
