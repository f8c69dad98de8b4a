// SPDX-License-Identifier: MIT
// Any bytes as a name and a pattern, held against a matcher that fills the whole table of prefixes.
#include "zeltools/files/paths/wildcards.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

bool TableMatch(std::u16string_view name, std::u16string_view pattern) {
    // reached[i]: the pattern read so far matches the first i units of the name.
    std::vector<bool> reached(name.size() + 1);
    reached[0] = true;
    for (char16_t const wanted : pattern) {
        std::vector<bool> next(name.size() + 1);
        for (std::size_t index = 0; index <= name.size(); ++index) {
            if (wanted == u'*') {
                next[index] = reached[index] || (index > 0 && next[index - 1]);
            } else if (index > 0) {
                next[index] = reached[index - 1] && (wanted == u'?' || wanted == name[index - 1]);
            }
        }
        reached = std::move(next);
    }
    return reached.back();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    // A zero separates the name from the pattern; both stay short enough for the table.
    std::u16string const text(data, data + std::min<std::size_t>(size, 400));
    std::u16string const name = text.c_str();
    std::u16string const pattern = name.size() < text.size() ? text.c_str() + name.size() + 1 : u"*";
    if (fileMatchWilcards(name.c_str(), pattern.c_str(), true) != TableMatch(name, pattern)) {
        std::abort();
    }
    fileMatchWilcards(name.c_str(), pattern.c_str(), false);
    return 0;
}
