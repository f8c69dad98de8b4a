// SPDX-License-Identifier: MIT
// The expansion of a template step by step, in one string that is cut and pasted: slow and plain, to hold the real one
// against.

#pragma once

#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"

#include <vector>

namespace support {

/// Does what tags.ProcessText does, in at most so many rounds.
/// @return whether it came to an end.
inline bool ExpandLiterally(CTags& tags, CTags::CTagContext const& context, CXTString<char16_t>& text, int rounds) {
    using Text = CXTString<char16_t>;
    struct Block {
        int start;
        bool keep;
    };
    std::vector<Block> blocks;
    CTagValue value;
    int position = 0;
    auto const cut = [&](int start) {
        if (start >= 0 && start < text.GetLength() && position - start > 0)
            text.Delete(start, position - start);
    };
    for (; rounds > 0; --rounds) {
        int start = position;
        Text tag = text.Tokenize(u"<>", position);
        if (tag.IsEmpty())
            return true;
        if (text[start] != u'<') {
            if (start >= 1 && text[start - 1] != u'<')
                continue;
            --start;
        }
        tag.Insert(0, u'<');
        tag += u'>';
        Text parameters;
        // Lowers the marker, too: none of the two has a bracket.
        tags.ExtractParam(tag, parameters);
        bool const plain = parameters.IsEmpty();
        if (plain && tag == u"<tagifexist>") {
            blocks.push_back({start, false});
            continue;
        }
        if (plain && !blocks.empty() && (tag == u"</tagifexist>" || tag == u"<tagendifexist>")) {
            Block const block = blocks.back();
            if (block.keep)
                for (Block& each : blocks)
                    each.keep = true;
            else
                cut(block.start);
            blocks.pop_back();
            if (!block.keep)
                position = block.start;
            continue;
        }
        CTagInfo info;
        if (!parameters.IsEmpty())
            tag = tag.Left(tag.GetLength() - 1) + parameters + u'>';
        if (!tags.GetTagInfo(tag, info) || !tags.EvaluateTag(context, info, value))
            continue;
        if (!blocks.empty() && !value.GetText().IsEmpty())
            blocks.back().keep = true;
        cut(start);
        text.Insert(start, value.GetText());
        position = start;
        if (position == -1)
            return true;
    }
    return false;
}

} // namespace support
