// SPDX-License-Identifier: MIT
// What the tests of the file classes share.

#pragma once

#include "tests/support/thrown.h"
#include "zeltools/foundation/xstring.h"

#include <filesystem>
#include <string>

namespace support {

/// The next line of a text file, or "<none>" at its end.
template <class File>
std::u16string NextLine(File& file) {
    CXTString<char16_t> line;
    return file.ReadString(line) ? static_cast<char16_t const*>(line) : u"<none>";
}

/// Descriptors that the process has open.
inline std::ptrdiff_t OpenDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace support
