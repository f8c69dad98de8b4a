// SPDX-License-Identifier: MIT
// A control of rich text, as far as the toolkit reads and writes one. The headless service offers a complete one in
// memory (memory_rich_edit_ctrl.h).
//
//     control.SetWindowText(u"Oak\r\nAsh");
//     CharacterRange found;
//     control.FindText(FindTextDown, {0, -1}, u"ash", found);    // 4: a line break is one character
//     control.SetSel(found.first, found.last);
//     control.ReplaceSel(u"Elm", true);                          // in the format of the "A"
//     control.LineFromChar(-1);                                  // 1: the caret's line

#pragma once

#include "zeltools/ui/edit.h"

/// A run of characters, from `first` up to, not including, `last`; a `last` of -1 is the end of the text.
struct CharacterRange {
    int first = 0;
    int last = -1;

    bool operator==(CharacterRange const&) const = default;
};

/// How a text is searched.
enum FindTextFlags : unsigned int {
    FindTextDown = 0x1,      ///< Towards the end; otherwise towards the beginning.
    FindTextWholeWord = 0x2, ///< Only where neither neighbour is a letter, a digit or `_`.
    FindTextMatchCase = 0x4, ///< Upper and lower case differ.
};

/// How characters look.
struct CharacterFormat {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    int height = 200;         ///< in twentieths of a point
    unsigned int color = 0;   ///< 0x00BBGGRR
    CXTString<char16_t> face; ///< the name of the font; empty for the control's

    bool operator==(CharacterFormat const&) const = default;
};

/// A control of rich text.
///
/// Positions count UTF-16 units from 0, and a line break is one of them, CR, whether the text came with CR LF, LF or
/// CR; those beyond the text count as its end. Lines count from 0 and are not wrapped: a text has one more than it has
/// breaks, so there is always a last line, and it may be empty.
class ZEL_API CCustomRichEditCtrl : public CEdit {
public:
    // ---- Reading ----

    /// The number of characters.
    virtual int GetTextLength() const = 0;

    /// The characters of a range, with CR at line breaks.
    virtual CXTString<char16_t> GetTextRange(int first, int last) const = 0;

    /// Searches a text.
    ///
    /// @param flags   FindTextFlags.
    /// @param within  Where the whole match must lie. Downwards from `first` to `last`; upwards from `first` back to
    ///                `last`, where -1 is the beginning of the text.
    /// @param found   The match; untouched when there is none.
    /// @return the first position of the match; -1 when there is none and for an empty text.
    virtual int FindText(unsigned int flags, CharacterRange within, char16_t const* text,
                         CharacterRange& found) const = 0;

    // ---- Lines ----

    /// The number of lines, at least 1.
    virtual int GetLineCount() const = 0;

    /// The line of a character; a line break belongs to the line that it ends.
    /// @param position  -1: the first of the selection, or the caret.
    virtual int LineFromChar(int position) const = 0;

    /// The first character of a line.
    /// @param line  -1: the one with the caret.
    /// @return -1 for a line that is not there.
    virtual int LineIndex(int line) const = 0;

    /// The length of the line that a character stands in, without its break.
    /// @param position  -1: the first of the selection, or the caret.
    virtual int LineLength(int position) const = 0;

    // ---- Formats ----
    // A text that replaces a selection takes the format of the selection's first character; an inserted one that of
    // the character before it, or of the first one at the beginning.

    /// The format of the selection's first character, or the one that a text inserted at the caret would take.
    virtual CharacterFormat GetSelectionCharFormat() const = 0;

    /// Changes the format of the selected characters. With an empty selection it holds for what is inserted next, as
    /// long as the caret is not moved.
    virtual void SetSelectionCharFormat(CharacterFormat const& format) = 0;
};
