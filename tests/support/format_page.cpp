// SPDX-License-Identifier: MIT
#include "tests/support/format_page.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace support {

std::string HexExample(std::string const& page, int index) {
    std::string bytes;
    std::vector<FencedBlock> const blocks = FencedBlocks("formats/" + page, "hex");
    for (std::string const& line : blocks.at(static_cast<std::size_t>(index)).lines) {
        std::istringstream words(line.substr(0, line.find('|')));
        for (std::string word; words >> word;) {
            std::size_t read = 0;
            int const byte = std::stoi(word, &read, 16);
            if (word.size() != 2 || read != 2)
                throw std::runtime_error(page + ".md: no byte: " + word);
            bytes += static_cast<char>(byte);
        }
    }
    return bytes;
}

std::string HexText(std::string const& bytes) {
    std::string text;
    for (char const byte : bytes) {
        constexpr char const* digits = "0123456789ABCDEF";
        auto const value = static_cast<unsigned char>(byte);
        text += text.empty() ? "" : " ";
        text += digits[value >> 4];
        text += digits[value & 15];
    }
    return text;
}

std::vector<FencedBlock> FencedBlocks(std::string const& page, std::string const& language) {
    std::ifstream file(ZELTOOLS_TEST_DATA "/../../docs/" + page + ".md");
    std::vector<FencedBlock> blocks;
    bool isInside = false;
    for (std::string line; std::getline(file, line);) {
        bool const isFence = line.starts_with("```");
        if (isInside && !isFence)
            blocks.back().lines.push_back(line);
        if (!isFence)
            continue;
        isInside = !isInside;
        if (isInside) {
            std::istringstream words(line.substr(3));
            blocks.emplace_back();
            for (std::string word; words >> word;)
                blocks.back().words.push_back(word);
        }
    }
    std::erase_if(blocks, [&](FencedBlock const& block) { return block.words.empty() || block.words[0] != language; });
    if (blocks.empty())
        throw std::runtime_error(page + ".md: no block of " + language);
    return blocks;
}

} // namespace support
