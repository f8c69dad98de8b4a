// SPDX-License-Identifier: MIT
// The expansion of a template step by step, in one string that is cut and pasted: slow and plain, to hold the real one
// against.

#pragma once

#include "zeltools/foundation/characters.h"
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
        Text candidate = text.Tokenize(u"<>", position);
        if (candidate.IsEmpty())
            return true;
        if (text[start] != u'<') {
            if (start >= 1 && text[start - 1] != u'<')
                continue;
            --start;
        }
        for (int i = 0; i < candidate.GetLength(); ++i)
            candidate.SetAt(i, detail::LowerAscii(candidate[i]));
        candidate.Insert(0, u'<');
        candidate += u'>';
        if (candidate == u"<tagifexist>") {
            blocks.push_back({start, false});
            continue;
        }
        if (!blocks.empty() && (candidate == u"</tagifexist>" || candidate == u"<tagendifexist>")) {
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
        if (!tags.GetTagInfo(candidate, info) || !tags.EvaluateTag(context, info, value))
            continue;
        if (!blocks.empty() && !value.GetText().IsEmpty())
            blocks.back().keep = true;
        cut(start);
        text.Insert(start, value.GetText());
        position = start;
        if (start == -1)
            return true;
    }
    return false;
}

} // namespace support
