// SPDX-License-Identifier: MIT
// What the tests of the file classes share.

#pragma once

#include "zeltools/foundation/xfile_exception.h"

#include <filesystem>
#include <string>

namespace support {

/// The next line of a text file, or "<none>" at its end.
template <class File>
std::u16string NextLine(File& file) {
    CXTString<char16_t> line;
    return file.ReadString(line) ? static_cast<char16_t const*>(line) : u"<none>";
}

/// What a call throws: "cause 13", "memory", "argument" or "nothing".
template <class Call>
std::string Thrown(Call call) {
    try {
        call();
    } catch (CXFileException* e) {
        std::string const cause = "cause " + std::to_string(e->cause);
        e->Delete();
        return cause;
    } catch (CXMemoryException* e) {
        e->Delete();
        return "memory";
    } catch (CXInvalidArgException* e) {
        e->Delete();
        return "argument";
    }
    return "nothing";
}

/// Descriptors that the process has open.
inline std::ptrdiff_t OpenDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace support
