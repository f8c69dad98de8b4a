// SPDX-License-Identifier: MIT
// What a call throws, as a word that a test can compare.

#pragma once

#include "zeltools/foundation/xarchive_exception.h"
#include "zeltools/foundation/xfile_exception.h"

#include <string>

namespace support {

/// "cause 13" of a file, "archive 3" of an archive, "memory", "argument", "other", or "nothing".
template <class Call>
std::string Thrown(Call const& call) {
    std::string what = "nothing";
    try {
        call();
    } catch (CXException* exception) {
        if (auto const* const file = dynamic_cast<CXFileException*>(exception))
            what = "cause " + std::to_string(file->cause);
        else if (auto const* const archive = dynamic_cast<CXArchiveException*>(exception))
            what = "archive " + std::to_string(archive->cause);
        else if (dynamic_cast<CXMemoryException*>(exception))
            what = "memory";
        else
            what = dynamic_cast<CXInvalidArgException*>(exception) ? "argument" : "other";
        exception->Delete();
    }
    return what;
}

} // namespace support
