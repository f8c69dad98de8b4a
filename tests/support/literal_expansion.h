// SPDX-License-Identifier: MIT
// The expansion of a template step by step, in one string that is cut and pasted, as a text and as a control of rich
// text whose lines end in CR: slow and plain, to hold the real ones against.

#pragma once

#include "zeltools/foundation/characters.h"
#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"

#include <algorithm>
#include <string>
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

/// The text of a control, as far as its lines matter.
struct LiteralRichText {
    std::u16string text;

    std::size_t LineOf(std::size_t place) const {
        return static_cast<std::size_t>(
            std::count(text.begin(), text.begin() + static_cast<int>(Inside(place)), u'\r'));
    }
    std::size_t Inside(std::size_t place) const { return std::min(place, text.size()); }
    void Cut(std::size_t a, std::size_t b) {
        std::size_t const first = Inside(std::min(a, b));
        text.erase(first, Inside(std::max(a, b)) - first);
    }
    /// @return whether the line went.
    bool CutLineIfBlank(std::size_t line) {
        std::size_t first = 0;
        for (; line > 0; --line) {
            first = text.find(u'\r', first) + 1;
        }
        bool const isLast = first == text.size() && first > 0; // goes with the break in front of it
        bool const isBlank = isLast || text[first] == u'\r';
        text.erase(first - isLast, isBlank);
        return isBlank;
    }
};

/// Does what tags.UpdateRTFTags does, in at most so many rounds.
/// @return whether it came to an end.
inline bool ExpandRichTextLiterally(CTags& tags, CTags::CTagContext const& context, std::u16string& result,
                                    int rounds) {
    struct Block {
        std::size_t start, end;
    };
    LiteralRichText control{result};
    std::vector<Block> blocks;
    std::size_t position = 0;
    bool emptySeen = false;
    for (; rounds > 0; --rounds) {
        std::size_t const start = control.text.find(u'<', position);
        std::size_t const closing = control.text.find(u'>', start);
        if (start == std::u16string::npos || closing == std::u16string::npos) {
            while (control.CutLineIfBlank(control.LineOf(control.text.size()))) {
            }
            result = control.text;
            return true;
        }
        std::size_t const end = closing + 1;
        position = start;
        CXTString<char16_t> name(control.text.substr(start, end - start).c_str());
        CXTString<char16_t> parameters;
        CTagInfo info;
        bool const known = tags.GetTagInfo(name, info) != 0;
        tags.ExtractParam(name, parameters);
        if (known && name == u"<tagifexist>") {
            emptySeen = false;
            blocks.push_back({start, end});
            position = end;
        } else if ((known && name == u"</tagifexist>") || name == u"<tagendifexist>") {
            position = end + 1;
            if (!blocks.empty()) {
                Block const block = blocks.back();
                blocks.pop_back();
                if (emptySeen) {
                    control.Cut(block.start, end);
                    control.CutLineIfBlank(control.LineOf(block.start));
                    position = block.start;
                } else {
                    control.Cut(start, end);
                    control.CutLineIfBlank(control.LineOf(start));
                    control.Cut(block.start, block.end);
                    position = control.LineOf(block.start);
                    control.CutLineIfBlank(position);
                }
            }
            emptySeen = false;
        } else if (!known) {
            position = end;
        } else if (CTagValue value; tags.EvaluateTag(context, info, value)) {
            emptySeen = emptySeen || value.GetText().IsEmpty();
            control.text.replace(start, end - start, static_cast<char16_t const*>(value.GetText()));
        }
    }
    return false;
}

} // namespace support
