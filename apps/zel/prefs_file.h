// SPDX-License-Identifier: MIT
// A preferences file with all its records, as a tool needs it that did not write it.

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class CCustomData;

namespace zel {

/// One record: a store under a pair of keys.
struct PrefsRecord {
    unsigned int key1 = 0;
    unsigned int key2 = 0;
    unsigned int magic = 0; ///< Which generation of the format its store was written in.
    std::string_view bytes; ///< The whole record, in the bytes of its file.
    std::unique_ptr<CCustomData> store;

    /// "current", "4", "legacy wide" or "legacy narrow".
    char const* Generation() const;
};

struct PrefsFile {
    std::string bytes;
    std::vector<PrefsRecord> records; ///< Those before a fault, where there is one.

    /// The first record of a pair, which is the one that counts; null for none.
    PrefsRecord* Find(unsigned int key1, unsigned int key2);
};

/// Reads a file.
/// @return what is wrong, with the file's name in it; empty when nothing is.
std::string ReadPrefsFile(std::string const& nativeName, PrefsFile& file);

/// Writes a file without one record, in place whole.
/// @return what went wrong, with the file's name in it; empty when nothing did.
std::string WritePrefsFileWithout(std::string const& nativeName, PrefsFile const& file, PrefsRecord const& record);

} // namespace zel
