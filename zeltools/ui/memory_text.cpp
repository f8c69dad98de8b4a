// SPDX-License-Identifier: MIT
#include "zeltools/ui/memory_text_private.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace detail {

TextCell const& GapBuffer::At(int index) const {
    std::size_t const place = static_cast<std::size_t>(index);
    return place < before.size() ? before[place] : after[after.size() - 1 - (place - before.size())];
}

std::vector<TextCell> GapBuffer::Replace(int first, int count, std::vector<TextCell> const& newCells) {
    MoveGap(first);
    auto const end = after.end() - count;
    std::vector<TextCell> removed(after.rbegin(), std::make_reverse_iterator(end));
    after.erase(end, after.end());
    before.insert(before.end(), newCells.begin(), newCells.end());
    return removed;
}

void GapBuffer::MoveGap(int position) {
    std::size_t const place = static_cast<std::size_t>(position);
    if (place < before.size()) {
        auto const start = before.begin() + position;
        after.insert(after.end(), before.rbegin(), std::make_reverse_iterator(start));
        before.erase(start, before.end());
    } else {
        auto const start = after.end() - static_cast<std::ptrdiff_t>(place - before.size());
        before.insert(before.end(), after.rbegin(), std::make_reverse_iterator(start));
        after.erase(start, after.end());
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
    Change const change = std::move(changes.back());
    changes.pop_back();
    Exchange(change.first, change.inserted, change.removed);
    Select(change.selection.first, change.selection.last);
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
    auto const breaksIn = [](std::vector<TextCell> const& some) {
        return static_cast<int>(
            std::count_if(some.begin(), some.end(), [](TextCell cell) { return cell.unit == u'\r'; }));
    };
    std::vector<TextCell> removed = cells.Replace(first, count, newCells);
    breakCount += breaksIn(newCells) - breaksIn(removed);
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
