// SPDX-License-Identifier: MIT
#include "nearest_word.h"

#include <algorithm>

namespace zel {

namespace {

/// Restricted Damerau-Levenshtein distance, with three rows of its table.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const replaced = last[j - 1] + (a[i - 1] != b[j - 1] ? 1 : 0);
            row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + 1);
            }
        }
        before.swap(last);
        last.swap(row);
    }
    return last[b.size()];
}

/// Nobody means a word by a line of text.
constexpr std::size_t MaxLength = 64;

} // namespace

std::string NearestWord(std::string_view word, std::vector<std::string> const& known) {
    std::string nearest;
    if (word.size() > MaxLength) {
        return nearest;
    }
    std::size_t best = MaxLength;
    for (std::string const& candidate : known) {
        std::size_t const allowed = (std::max(word.size(), candidate.size()) + 1) / 3;
        std::size_t const distance = Distance(word, candidate);
        if (distance <= allowed && distance < best) {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

} // namespace zel
