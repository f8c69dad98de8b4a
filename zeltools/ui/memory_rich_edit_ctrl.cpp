// SPDX-License-Identifier: MIT
#include "zeltools/ui/memory_rich_edit_ctrl.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/ui/memory_text_private.h"

#include <algorithm>
#include <climits>

namespace {

bool IsWordUnit(char16_t unit) {
    return unit == u'_' || xIsAlpha(unit) || xIsDigit(unit);
}

/// Whether the text has these `count` units at a place, which must leave room for them.
bool MatchesAt(detail::MemoryText const& text, int place, char16_t const* sought, int count, unsigned int flags) {
    for (int i = 0; i < count; ++i) {
        char16_t const unit = text.At(place + i);
        bool const equal =
            unit == sought[i] || ((flags & FindTextMatchCase) == 0 && xToLower(unit) == xToLower(sought[i]));
        if (!equal) {
            return false;
        }
    }
    if ((flags & FindTextWholeWord) == 0) {
        return true;
    }
    int const end = place + count;
    return (place == 0 || !IsWordUnit(text.At(place - 1))) && (end == text.GetLength() || !IsWordUnit(text.At(end)));
}

} // namespace

int MemoryRichEditCtrl::GetTextLength() const {
    return text->GetLength();
}

CXTString<char16_t> MemoryRichEditCtrl::GetTextRange(int first, int last) const {
    return text->GetRange(first, last);
}

int MemoryRichEditCtrl::FindText(unsigned int flags, CharacterRange within, char16_t const* sought,
                                 CharacterRange& found) const {
    int const count = static_cast<int>(std::min<std::size_t>(sought != nullptr ? xStrLen(sought) : 0, INT_MAX));
    if (count == 0) {
        return -1;
    }
    bool const down = (flags & FindTextDown) != 0;
    int const place = down ? FindDown(flags, within, sought, count) : FindUp(flags, within, sought, count);
    if (place >= 0) {
        found = {place, place + count};
    }
    return place;
}

int MemoryRichEditCtrl::FindDown(unsigned int flags, CharacterRange within, char16_t const* sought, int count) const {
    int const length = text->GetLength();
    int const from = std::clamp(within.first, 0, length);
    int const to = within.last < 0 ? length : std::min(within.last, length);
    // A mark, which has no other case, is not sought twice where it is known to be missing.
    bool const isMark = count == 1 && flags == FindTextDown && detail::IsAscii(*sought) && !xIsAlpha(*sought);
    int place = isMark ? text->GetSearchedRun().Skip(*sought, from) : from;
    while (place <= to - count && !MatchesAt(*text, place, sought, count, flags)) {
        ++place;
    }
    if (isMark) {
        text->GetSearchedRun().Add(*sought, from, place);
    }
    return place <= to - count ? place : -1;
}

int MemoryRichEditCtrl::FindUp(unsigned int flags, CharacterRange within, char16_t const* sought, int count) const {
    int const length = text->GetLength();
    int const from = within.first < 0 ? length : std::min(within.first, length);
    int const to = std::clamp(within.last, 0, length);
    int place = from - count;
    while (place >= to && !MatchesAt(*text, place, sought, count, flags)) {
        --place;
    }
    return place >= to ? place : -1;
}

int MemoryRichEditCtrl::GetLineCount() const {
    return text->GetBreakCount() + 1;
}

int MemoryRichEditCtrl::LineFromChar(int position) const {
    return text->LineOf(PlaceOf(position));
}

int MemoryRichEditCtrl::LineIndex(int line) const {
    if (line == -1) {
        return LineStart(PlaceOf(-1));
    }
    return line < 0 || line > text->GetBreakCount() ? -1 : text->FirstOfLine(line);
}

int MemoryRichEditCtrl::LineLength(int position) const {
    int const place = PlaceOf(position);
    int end = place;
    while (end < text->GetLength() && text->At(end) != u'\r') {
        ++end;
    }
    return end - LineStart(place);
}

CharacterFormat MemoryRichEditCtrl::GetSelectionCharFormat() const {
    return text->GetFormat();
}

void MemoryRichEditCtrl::SetSelectionCharFormat(CharacterFormat const& format) {
    text->SetFormat(format);
}

/// A position inside the text or at its end; -1 is the start of the selection.
int MemoryRichEditCtrl::PlaceOf(int position) const {
    return position < 0 ? text->GetSelection().first : std::min(position, text->GetLength());
}

int MemoryRichEditCtrl::LineStart(int position) const {
    while (position > 0 && text->At(position - 1) != u'\r') {
        --position;
    }
    return position;
}
