// SPDX-License-Identifier: MIT
// The text of a control that has no window: characters with their formats, a selection, and what can be undone.

#pragma once

#include "zeltools/ui/custom_rich_edit_ctrl.h"

#include <deque>
#include <optional>
#include <vector>

namespace detail {

/// A character, and the number of its format in the text's list.
struct TextCell {
    char16_t unit = 0;
    unsigned short format = 0;
};

/// Cells with a gap where the last change was, so that a change near it moves only what lies between.
class GapBuffer {
public:
    int GetLength() const { return static_cast<int>(before.size() + after.size()); }
    TextCell const& At(int index) const;

    /// Exchanges `count` cells from `first` on for others; both must lie inside.
    /// @return the cells that were there.
    std::vector<TextCell> Replace(int first, int count, std::vector<TextCell> const& cells);

private:
    void MoveGap(int position);

    std::vector<TextCell> before; // the cells in front of the gap
    std::vector<TextCell> after;  // those behind it, the last one first
};

/// The text. Positions of any value may be passed in: they are brought into it.
class MemoryText {
public:
    /// @param breaksAreOne  Whether CR LF and LF come in as a single CR.
    explicit MemoryText(bool breaksAreOne) : oneCharacterBreaks(breaksAreOne) {}

    int GetLength() const { return cells.GetLength(); }
    char16_t At(int index) const { return cells.At(index).unit; }
    bool HasOneCharacterBreaks() const { return oneCharacterBreaks; }
    int GetBreakCount() const { return breakCount; } ///< the number of CR
    CXTString<char16_t> GetRange(int first, int last) const;
    void SetText(char16_t const* text);

    CharacterRange GetSelection() const { return selection; }
    void Select(int first, int last);
    void ReplaceSelection(char16_t const* text, bool canUndo);

    CharacterFormat const& GetFormat() const { return formats[CurrentFormat()]; }
    void SetFormat(CharacterFormat const& format);

    bool CanUndo() const { return !changes.empty(); }
    bool Undo();

private:
    struct Change {
        int first;                     // where the change was
        int inserted;                  // how many cells came
        std::vector<TextCell> removed; // what went
        CharacterRange selection;      // the selection before
    };

    /// A control keeps so many changes by default; the oldest go first.
    static constexpr std::size_t MaxChanges = 100;

    /// Formats are counted in 16 bits. A format beyond them is not taken.
    static constexpr std::size_t MaxFormats = 65536;

    std::vector<TextCell> CellsOf(char16_t const* text, unsigned short format) const;
    std::vector<TextCell> Exchange(int first, int count, std::vector<TextCell> const& newCells);
    void Remember(Change change);
    unsigned short CurrentFormat() const;

    bool oneCharacterBreaks;
    GapBuffer cells;
    int breakCount = 0;
    CharacterRange selection{0, 0};           // always inside the text and in order
    std::vector<CharacterFormat> formats{{}}; // the first is that of a new text
    std::optional<unsigned short> nextFormat; // of what is inserted at the caret, until that moves
    std::deque<Change> changes;
};

} // namespace detail
