// SPDX-License-Identifier: MIT
// The examples on the pages of docs, so that what a page shows is what the library reads and writes.

#pragma once

#include <string>
#include <vector>

namespace support {

/// The bytes of one of a page's blocks fenced as ```hex, in which a bar ends each line's bytes:
///
///     FF FE FF 03 | the marker, three units
///
/// @param page   "archive" for docs/formats/archive.md.
/// @param index  Which of the page's blocks.
/// Throws for a missing page or block and for what is no pair of hexadecimal digits.
std::string HexExample(std::string const& page, int index = 0);

/// Bytes as the pages write them, "FF FE 03", for comparisons whose failure a person can read.
std::string HexText(std::string const& bytes);

/// A block between ``` and ```.
struct FencedBlock {
    std::vector<std::string> words; ///< Behind the first fence, the language first.
    std::vector<std::string> lines;
};

/// The blocks of docs/PAGE.md whose first word is `language`, in their order. Throws std::runtime_error for none.
std::vector<FencedBlock> FencedBlocks(std::string const& page, std::string const& language);

} // namespace support
