// SPDX-License-Identifier: MIT
// The text of a control that has no window: characters with their formats, a selection, and what can be undone.

#pragma once

#include "zeltools/ui/custom_rich_edit_ctrl.h"
#include "zeltools/ui/gap_buffer_private.h"
#include "zeltools/ui/searched_run_private.h"

#include <deque>
#include <optional>
#include <vector>

namespace detail {

/// The text. Positions of any value may be passed in: they are brought into it.
class MemoryText {
public:
    /// @param breaksAreOne  Whether CR LF and LF come in as a single CR.
    explicit MemoryText(bool breaksAreOne) : oneCharacterBreaks(breaksAreOne) {}

    int GetLength() const { return cells.GetLength(); }
    char16_t At(int index) const { return cells.At(index).unit; }
    bool HasOneCharacterBreaks() const { return oneCharacterBreaks; }
    int GetBreakCount() const { return cells.GetEndMark().breaks; } ///< the number of CR
    int LineOf(int place) const;                                    ///< of a place in the text or at its end
    int FirstOfLine(int line) const;                                ///< of a line that is there
    SearchedRun& GetSearchedRun() { return searchedRun; }
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
    SearchedRun searchedRun;
    CharacterRange selection{0, 0};           // always inside the text and in order
    std::vector<CharacterFormat> formats{{}}; // the first is that of a new text
    std::optional<unsigned short> nextFormat; // of what is inserted at the caret, until that moves
    std::deque<Change> changes;
};

} // namespace detail
