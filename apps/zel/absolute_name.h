// SPDX-License-Identifier: MIT
// The name of a file as the toolkit gets it.

#pragma once

#include <string>

namespace zel {

/// A name from the root on, without dots: parsers know nothing of the current folder, and their path functions take a
/// ".." for a matter of text, which it is not behind a link, and which in front of a relative name has no text to
/// leave.
/// @return the name as it was where the current folder is gone.
std::string AbsoluteName(std::string const& nativePath);

} // namespace zel
