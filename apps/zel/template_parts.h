// SPDX-License-Identifier: MIT
// Cuts a template into tags and the literal text between them. A tag is "<", something without brackets, and ">"; every
// other bracket is literal text.
//
//     SplitTemplate("a < b <width>")    // "a < b ", <width>

#pragma once

#include <string_view>
#include <vector>

namespace zel {

struct TemplatePart {
    bool isTag;
    std::string_view text; ///< Of the template; a tag with its brackets.
};

std::vector<TemplatePart> SplitTemplate(std::string_view text);

} // namespace zel
