// SPDX-License-Identifier: MIT
// The words of a line of .obj or .mtl: each is taken off the front of what is left.
//
//     std::string_view line = "v 1 2.5 -3e2";
//     TakeWord(line);              // "v"
//     SceneVector point;
//     TakeNumbers(line, 3, &point.x) && line.empty();

#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>

inline bool IsBlank(char letter) {
    return letter == ' ' || letter == '\t';
}

inline void SkipBlanks(std::string_view& line) {
    while (!line.empty() && IsBlank(line.front())) {
        line.remove_prefix(1);
    }
}

/// The next word, with the blanks behind it taken too.
inline std::string_view TakeWord(std::string_view& line) {
    auto const size = static_cast<std::size_t>(std::find_if(line.begin(), line.end(), IsBlank) - line.begin());
    std::string_view const word = line.substr(0, size);
    line.remove_prefix(size);
    SkipBlanks(line);
    return word;
}

/// A decimal number within the range of its type, with a blank or nothing behind it. ".5" is none: assimp does not
/// count it among the numbers of a line.
inline bool TakeNumber(std::string_view& line, float& number) {
    if (line.starts_with('.')) {
        return false;
    }
    bool const hasPlus = line.starts_with('+');
    char const* const start = line.data() + (hasPlus ? 1 : 0);
    char const* const end = line.data() + line.size();
    auto const [behind, error] = std::from_chars(start, end, number);
    if (error != std::errc() || !std::isfinite(number) || (hasPlus && *start == '-') ||
        (behind != end && !IsBlank(*behind))) {
        return false;
    }
    line.remove_prefix(static_cast<std::size_t>(behind - line.data()));
    SkipBlanks(line);
    return true;
}

inline bool TakeNumbers(std::string_view& line, std::size_t count, float* numbers) {
    for (std::size_t i = 0; i < count; ++i) {
        if (!TakeNumber(line, numbers[i])) {
            return false;
        }
    }
    return true;
}

/// Whether a name is one that every program takes for the same: one word, of a length that assimp keeps.
inline bool IsQuickName(std::string_view name) {
    constexpr std::size_t longest = 255;
    return !name.empty() && name.size() <= longest && std::none_of(name.begin(), name.end(), IsBlank);
}
