// SPDX-License-Identifier: MIT
#include "template_parts.h"

namespace zel {

std::vector<TemplatePart> SplitTemplate(std::string_view text) {
    std::vector<TemplatePart> parts;
    std::size_t begun = 0; // where the literal text begins
    std::size_t start = 0;
    while ((start = text.find('<', start)) != std::string_view::npos) {
        std::size_t const end = text.find_first_of("<>", start + 1);
        if (end == std::string_view::npos) {
            break;
        }
        if (text[end] == '<' || end == start + 1) {
            start = end;
            continue;
        }
        if (start != begun) {
            parts.push_back({false, text.substr(begun, start - begun)});
        }
        parts.push_back({true, text.substr(start, end + 1 - start)});
        begun = start = end + 1;
    }
    if (begun != text.size()) {
        parts.push_back({false, text.substr(begun)});
    }
    return parts;
}

} // namespace zel
