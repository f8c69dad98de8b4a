// SPDX-License-Identifier: MIT
// Any UTF-16 text as a list of extensions or of search patterns, and every pattern of it against the list itself.
#include "zeltools/files/paths/extension_lists.h"
#include "zeltools/files/paths/wildcards.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), data, units.size() * 2);
    CXTString<char16_t> const list(units.data(), static_cast<int>(units.size()));
    for (bool const extensions : {false, true}) {
        CHashTable<CXTString<char16_t>> table;
        CXTString<char16_t> clean = list;
        int const count = fileGetHashFromExtensionList(clean, table, extensions);
        // 259 characters hold at most 130 tokens, and each grows by a pair of stars and a blank.
        if (count < 0 || count > 130 || clean.GetLength() > 259 + 3 * 130) {
            std::abort();
        }
        fileMatchWilcards(list, table);
        // Patterns of extensions are canonical: cleaning them again changes nothing but the length bound.
        if (extensions && clean.GetLength() < 259 && fileCleanExtensionList(clean, true, nullptr) != clean) {
            std::abort();
        }
    }
    return 0;
}
