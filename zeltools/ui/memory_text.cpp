// SPDX-License-Identifier: MIT
#include "zeltools/ui/memory_text_private.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <utility>

namespace detail {

// Breaks are counted from the nearest place where their number is known: the work on a text mostly stays near its ends
// or the last change.

int MemoryText::LineOf(int place) const {
    LineMark mark;
    for (LineMark const known : {cells.GetGapMark(), cells.GetEndMark()}) {
        if (std::abs(known.place - place) < std::abs(mark.place - place)) {
            mark = known;
        }
    }
    for (; mark.place < place; ++mark.place) {
        mark.breaks += At(mark.place) == u'\r';
    }
    for (; mark.place > place; --mark.place) {
        mark.breaks -= At(mark.place - 1) == u'\r';
    }
    return mark.breaks;
}

int MemoryText::FirstOfLine(int line) const {
    if (line == 0) {
        return 0;
    }
    // The break in front of the line lies between these two, which walk towards each other.
    LineMark const gap = cells.GetGapMark();
    LineMark low = gap.breaks < line ? gap : LineMark();
    LineMark high = gap.breaks < line ? cells.GetEndMark() : gap;
    for (;;) {
        low.breaks += At(low.place++) == u'\r';
        if (low.breaks == line) {
            return low.place;
        }
        high.breaks -= At(--high.place) == u'\r';
        if (high.breaks < line) {
            return high.place + 1;
        }
    }
}

CXTString<char16_t> MemoryText::GetRange(int first, int last) const {
    int const length = GetLength();
    int const end = last < 0 ? length : std::min(last, length);
    int const start = std::clamp(first, 0, end);
    CXTString<char16_t> range;
    char16_t* const units = range.GetBufferSetLength(end - start);
    for (int i = start; i < end; ++i) {
        units[i - start] = At(i);
    }
    return range;
}

void MemoryText::SetText(char16_t const* text) {
    Exchange(0, GetLength(), CellsOf(text, 0));
    changes.clear();
    formats.resize(1); // the text has no other
    Select(0, 0);
}

void MemoryText::Select(int first, int last) {
    int const length = GetLength();
    nextFormat.reset();
    if (first < 0) {
        selection.first = selection.last = std::min(selection.last, length);
        return;
    }
    int const start = std::min(first, length);
    int const end = last < 0 ? length : std::min(last, length);
    selection = {std::min(start, end), std::max(start, end)};
}

void MemoryText::ReplaceSelection(char16_t const* text, bool canUndo) {
    std::vector<TextCell> const newCells = CellsOf(text, CurrentFormat());
    auto const [first, last] = selection;
    if (newCells.empty() && first == last) {
        return;
    }
    int const inserted = static_cast<int>(newCells.size());
    Change change{first, inserted, Exchange(first, last - first, newCells), selection};
    Select(first + inserted, first + inserted);
    if (canUndo) {
        Remember(std::move(change));
    } else {
        changes.clear(); // their positions are no longer those of the text
    }
}

void MemoryText::SetFormat(CharacterFormat const& format) {
    auto found = std::find(formats.begin(), formats.end(), format);
    if (found == formats.end()) {
        if (formats.size() == MaxFormats) {
            return;
        }
        found = formats.insert(formats.end(), format);
    }
    auto const number = static_cast<unsigned short>(found - formats.begin());
    auto const [first, last] = selection;
    if (first == last) {
        nextFormat = number;
        return;
    }
    std::vector<TextCell> newCells;
    for (int i = first; i < last; ++i) {
        newCells.push_back({At(i), number});
    }
    Remember({first, last - first, Exchange(first, last - first, newCells), selection});
}

bool MemoryText::Undo() {
    if (changes.empty()) {
        return false;
    }
    Change const& change = changes.back();
    Exchange(change.first, change.inserted, change.removed); // may throw: the older changes would miss this one
    Select(change.selection.first, change.selection.last);
    changes.pop_back();
    return true;
}

std::vector<TextCell> MemoryText::CellsOf(char16_t const* text, unsigned short format) const {
    std::vector<TextCell> newCells;
    auto const room = static_cast<std::size_t>(INT_MAX - GetLength()); // positions are 32 bits; the rest is cut off
    for (; text != nullptr && *text != 0 && newCells.size() < room; ++text) {
        bool const isBreak = oneCharacterBreaks && (*text == u'\r' || *text == u'\n');
        newCells.push_back({isBreak ? u'\r' : *text, format});
        if (isBreak && text[0] == u'\r' && text[1] == u'\n') {
            ++text;
        }
    }
    return newCells;
}

std::vector<TextCell> MemoryText::Exchange(int first, int count, std::vector<TextCell> const& newCells) {
    std::vector<TextCell> removed = cells.Replace(first, count, newCells);
    searchedRun.Exchange(first, count, newCells);
    return removed;
}

void MemoryText::Remember(Change change) {
    if (changes.size() == MaxChanges) {
        changes.pop_front();
    }
    changes.push_back(std::move(change));
}

unsigned short MemoryText::CurrentFormat() const {
    auto const [first, last] = selection;
    if (first < last) {
        return cells.At(first).format;
    }
    if (nextFormat) {
        return *nextFormat;
    }
    return GetLength() > 0 ? cells.At(std::max(first - 1, 0)).format : static_cast<unsigned short>(0);
}

} // namespace detail
