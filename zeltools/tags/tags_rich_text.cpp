// SPDX-License-Identifier: MIT
// Templates in a control of rich text. The control is searched and changed in place, through its own search and its
// own selection, so that what stands around a tag keeps its format and a value takes that of the tag's "<".
#include "zeltools/foundation/log_file.h"
#include "zeltools/tags/tag_scan_info_private.h"
#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"
#include "zeltools/ui/custom_rich_edit_ctrl.h"

#include <algorithm>
#include <climits>

namespace {

constexpr char16_t const* Opener = u"<tagifexist>";
constexpr char16_t const* Closer = u"</tagifexist>";
constexpr char16_t const* OtherCloser = u"<tagendifexist>";

bool Find(CCustomRichEditCtrl const& control, int from, char16_t const* text, CharacterRange& found) {
    return control.FindText(FindTextDown, {from, -1}, text, found) >= 0;
}

void Replace(CCustomRichEditCtrl& control, int first, int last, char16_t const* text) {
    control.SetSel(first, last);
    control.ReplaceSel(text, false);
}

/// Whether a line has no character. Its length would tell as well, but takes reading a long line to its end.
bool IsBlankLine(CCustomRichEditCtrl const& control, int line) {
    int const first = control.LineIndex(line);
    CXTString<char16_t> const next = control.GetTextRange(first, first + 1);
    return next.IsEmpty() || next[0] == u'\r';
}

/// Takes a blank line out: with its own break, or where it is the last one with the break before it.
void DeleteLineIfBlank(CCustomRichEditCtrl& control, int line) {
    if (!IsBlankLine(control, line)) {
        return;
    }
    int const first = control.LineIndex(line);
    if (line == control.GetLineCount() - 1) {
        Replace(control, first - 1, -1, u""); // -1 for an empty text selects nothing
    } else {
        Replace(control, first, control.LineIndex(line + 1), u"");
    }
}

void DeleteBlankLinesAtEnd(CCustomRichEditCtrl& control) {
    for (int lines = control.GetLineCount(); IsBlankLine(control, lines - 1);) {
        DeleteLineIfBlank(control, lines - 1);
        int const left = control.GetLineCount();
        if (left == lines) {
            break;
        }
        lines = left;
    }
}

/// Takes a block out whose tags gave an empty text.
/// @param closer  The closing marker.
/// @return where the scan goes on.
int DeleteBlock(CCustomRichEditCtrl& control, _TagIfInfo const& block, CharacterRange const& closer) {
    Replace(control, block.start, closer.last, u"");
    DeleteLineIfBlank(control, control.LineFromChar(block.start));
    return block.start;
}

/// Takes the two markers of a block out, the closing one being selected, and the lines that they stood alone in.
/// @return where the scan goes on: at the number of the caret's line taken as a position, which is near the top, so
///         that what has been done is passed over once more.
int DeleteMarkers(CCustomRichEditCtrl& control, _TagIfInfo const& block, CharacterRange const& closer) {
    control.ReplaceSel(u"", false);
    DeleteLineIfBlank(control, control.LineFromChar(closer.first));
    Replace(control, block.start, block.end, u"");
    int const caretLine = control.LineFromChar(-1);
    DeleteLineIfBlank(control, caretLine);
    return caretLine;
}

/// Watches the tags that a control is expanded by, so that a tag that is refused again and again and a value that holds
/// its own tag come to an end. A tag that stands nearer to the end of the text than every one before it belongs to the
/// template, which has an end; the others were met in values, or once more.
class ExpansionGuard {
public:
    ExpansionGuard(TagTextLimits const& textLimits, CCustomRichEditCtrl const& control)
        : limits(textLimits), longest(SumOf(control.GetTextLength(), textLimits.length)) {}

    /// Counts the selected tag.
    /// @return the limit that is exceeded, in words, or null.
    char const* Count(CCustomRichEditCtrl const& control) {
        int first = 0;
        int last = 0;
        control.GetSel(first, last);
        int const length = control.GetTextLength();
        int const behind = length - last;
        bool const further = behind < latestBehind;
        latestBehind = behind;
        inARow = further ? 0 : inARow + 1;
        if (behind < leastBehind) {
            leastBehind = behind;
            return nullptr;
        }
        if (++again > limits.nested) {
            return "tags in values";
        }
        if (inARow > limits.chain) {
            return "a tag that is refused, or a value that comes out of itself";
        }
        return length > longest ? "the length" : nullptr;
    }

private:
    static int SumOf(int a, int b) {
        return static_cast<int>(std::clamp(static_cast<long long>(a) + b, 0LL, static_cast<long long>(INT_MAX)));
    }

    TagTextLimits const limits;
    int const longest;
    int latestBehind = INT_MAX; // characters behind the latest tag
    int leastBehind = INT_MAX;  // behind the one that was nearest to the end
    unsigned int inARow = 0;    // tags that were no nearer to the end than the one before
    unsigned int again = 0;     // tags that were not of the template
};

} // namespace

int CTags::RTFScan(CCustomRichEditCtrl& control, CTagInfo& tag) {
    _TagScanInfo* const scan = FindScan();
    if (!scan) {
        return 0;
    }
    CXTString<char16_t>& name = scan->name;
    CXTString<char16_t>& parameters = scan->parameters;
    CharacterRange opening;
    CharacterRange closing;
    for (tag.Clear(); Find(control, scan->position, u"<", opening); tag.Clear()) {
        scan->position = opening.first;
        if (!Find(control, scan->position, u">", closing)) {
            break;
        }
        CharacterRange const marker{opening.first, closing.last};
        control.SetSel(marker.first, marker.last);
        name = control.GetTextRange(marker.first, marker.last);
        CTagInfo const* const found = FindTag(name, parameters);
        if (found) {
            tag = *found;
            tag.parameters = parameters;
        }
        if (found && name == Opener) {
            scan->emptySeen = 0;
            scan->Push({marker.first, marker.last});
            scan->position = marker.last;
            // Each block that closes sends the scan back to the top, where it enters the blocks around it once more:
            // a nest of blocks takes the square of its depth.
            if (static_cast<unsigned int>(scan->GetDepth()) > textLimits.nested) {
                WriteToLogFile(u"Rich text was not expanded to its end, since its blocks nest too deep.\n");
                tag.Clear();
                return 0;
            }
        } else if ((found && name == Closer) || name == OtherCloser) {
            if (scan->IsEmpty()) {
                scan->position = marker.last + 1;
            } else {
                _TagIfInfo block;
                scan->Pop(block);
                scan->position =
                    scan->emptySeen ? DeleteBlock(control, block, marker) : DeleteMarkers(control, block, marker);
            }
            scan->emptySeen = 0;
        } else if (found) {
            return 1;
        } else {
            scan->position = marker.last;
        }
    }
    DeleteBlankLinesAtEnd(control);
    return 0;
}

int CTags::SetRTFTag(CCustomRichEditCtrl& control, CXTString<char16_t>& text) {
    _TagScanInfo* const scan = FindScan();
    if (!scan) {
        return 0;
    }
    if (text.IsEmpty()) {
        scan->emptySeen = 1;
    }
    control.ReplaceSel(text, false);
    return 1;
}

void CTags::UpdateRTFTags(CTagContext const& context, CCustomRichEditCtrl& control) {
    if (!control.IsWindow() || context.kind != CTagContext::KindOfText) {
        return;
    }
    StartRTFScan();
    ExpansionGuard guard(textLimits, control);
    CTagInfo tag;
    while (RTFScan(control, tag)) {
        if (char const* const exceeded = guard.Count(control)) {
            WriteToLogFile(u"Rich text was not expanded to its end, since it went beyond a limit: %hs.\n", exceeded);
            return;
        }
        CTagValue value;
        if (EvaluateTag(context, tag, value)) {
            SetRTFTag(control, value.GetText());
        }
    }
}
