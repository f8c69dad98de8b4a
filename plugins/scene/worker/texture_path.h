// SPDX-License-Identifier: MIT
// The path of a texture as a scene file gives it, in the toolkit's form.
//
//     ToTexturePath("../tex/Wood grain.png", false)          // u"..\\tex\\Wood grain.png"
//     ToTexturePath("C:/tex/wood.png", false)                // u"C:\\tex\\wood.png"
//     ToTexturePath("file:///home/ana/Wood%20grain.png", true)   // u"\\home\\ana\\Wood grain.png"

#pragma once

#include <zeltools/foundation/xstring.h>

#include <string_view>

/// @param isAddress  The format's paths are parts of addresses, in which %20 stands for a blank.
CXTString<char16_t> ToTexturePath(std::string_view path, bool isAddress);
/// The other way, with slashes.
std::string FromTexturePath(CXTString<char16_t> const& path, bool isAddress);
/// Whether paths in files of a format are parts of addresses.
bool HasAddresses(std::string_view format);
