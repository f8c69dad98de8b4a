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
    bool const down = (flags & FindTextDown) != 0;
    int const length = text->GetLength();
    int const from = within.first < 0 ? (down ? 0 : length) : std::min(within.first, length);
    int const to = within.last < 0 ? (down ? length : 0) : std::min(within.last, length);
    int const count = static_cast<int>(std::min<std::size_t>(sought != nullptr ? xStrLen(sought) : 0, INT_MAX));
    int const room = down ? to - from : from - to;
    if (count == 0 || count > room) {
        return -1;
    }
    for (int step = 0; step <= room - count; ++step) {
        int const place = down ? from + step : from - count - step;
        if (MatchesAt(*text, place, sought, count, flags)) {
            found = {place, place + count};
            return place;
        }
    }
    return -1;
}

int MemoryRichEditCtrl::GetLineCount() const {
    return text->GetBreakCount() + 1;
}

int MemoryRichEditCtrl::LineFromChar(int position) const {
    // Counted from the nearer end, since the work on a text mostly stays near one.
    int const place = PlaceOf(position);
    int const length = text->GetLength();
    int breaks = 0;
    if (place < length - place) {
        for (int i = 0; i < place; ++i) {
            breaks += text->At(i) == u'\r';
        }
        return breaks;
    }
    for (int i = place; i < length; ++i) {
        breaks += text->At(i) == u'\r';
    }
    return text->GetBreakCount() - breaks;
}

int MemoryRichEditCtrl::LineIndex(int line) const {
    if (line == -1) {
        return LineStart(PlaceOf(-1));
    }
    int const breaks = text->GetBreakCount();
    if (line < 0 || line > breaks) {
        return -1;
    }
    if (line == 0) {
        return 0;
    }
    int place = 0;
    if (line <= breaks / 2) {
        for (int passed = 0; passed < line; ++place) {
            passed += text->At(place) == u'\r';
        }
        return place;
    }
    place = text->GetLength();
    for (int passed = breaks; passed >= line; --place) {
        passed -= text->At(place - 1) == u'\r';
    }
    return place + 1;
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
