// SPDX-License-Identifier: MIT
// What the desktop calls a type of file.
//
// Threads: any.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The desktop's description of the type that a name stands for, in the language of the user's environment.
///
/// @param name         The name without its path; nothing is asked of the disk.
///                     Where it can be of several types, a picture or a model is meant before anything else.
/// @param isDirectory  Whether it is that of a directory, whose name tells nothing.
/// @return empty where the desktop knows no such type, or keeps no descriptions.
std::u16string DescribeFileType(std::u16string_view name, bool isDirectory);

} // namespace platform
