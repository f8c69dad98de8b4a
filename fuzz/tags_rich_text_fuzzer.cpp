// SPDX-License-Identifier: MIT
// Templates in a control of rich text, put together from tags, markers, line breaks and loose brackets; the first byte
// says how often the host refuses a tag. The expansion ends, within its limits, and where its plain steps end, with
// what they end with. The control then still knows its lines.

#include "tests/support/literal_rich_text.h"
#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"
#include "zeltools/ui/memory_rich_edit_ctrl.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

char16_t const* const pieces[] = {
    u"<x>",
    u"<e>",
    u"<outer>",
    u"<self>",
    u"<twins>",
    u"<half>",
    u"<block>",
    u"<brk>",
    u"<x(ext(d))>",
    u"<nosuch>",
    u"<",
    u">",
    u"\r",
    u"\r\r",
    u"text",
    u"<tagifexist>",
    u"</tagifexist>",
    u"<tagendifexist>",
    u" ",
    u"(",
    u")",
    u"<TAGIFEXIST>",
    u"<x",
    u"x>",
};

class FuzzTags final : public CTags {
public:
    FuzzTags() {
        InitTags();
        unsigned int id = 0;
        for (char16_t const* name :
             {u"<x>", u"<e>", u"<outer>", u"<self>", u"<twins>", u"<half>", u"<block>", u"<brk>"}) {
            InsertTag(name, TAGDATA_TEXT, 1, ++id, "a tag", CTagInfo::NoClassName, nullptr, nullptr);
        }
        TagTextLimits limits;
        limits.chain = 120;
        limits.nested = 150;
        limits.length = 10'000; // more than 100 rounds can add
        SetTextLimits(limits);
    }

    bool EvaluateTag(CTagContext const&, CTagInfo const& info, CTagValue& value) override {
        static char16_t const* const values[] = {
            u"b", u"", u"[<x><e>]", u"<self>", u"<x>.<twins>", u"<na\r", u"<tagifexist><x></tagifexist>", u"\r",
        };
        ++evaluations;
        if (refuse != 0 && evaluations % refuse != 0) {
            return false;
        }
        unsigned int const id = info.GetTagID();
        value.SetText(id <= std::size(values) ? values[id - 1] : u"?");
        return true;
    }

    unsigned int refuse = 0;
    unsigned int evaluations = 0;
};

/// Checks the lines against the breaks of the text.
void CheckLines(CCustomRichEditCtrl const& control) {
    CXTString<char16_t> const text = control.GetTextRange(0, -1);
    Require(text.GetLength() == control.GetTextLength());
    int line = 0;
    int start = 0;
    for (int i = 0; i < text.GetLength(); ++i) {
        Require(control.LineFromChar(i) == line);
        if (text[i] == u'\r') {
            Require(control.LineIndex(line) == start && control.LineLength(i) == i - start);
            ++line;
            start = i + 1;
        }
    }
    Require(control.GetLineCount() == line + 1 && control.LineIndex(line) == start);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0 || size > 400) { // the lines are checked in square time
        return 0;
    }
    std::u16string text;
    for (std::size_t i = 1; i < size; ++i) {
        text += pieces[data[i] % std::size(pieces)];
    }
    FuzzTags tags;
    FuzzTags plainTags;
    tags.refuse = plainTags.refuse = data[0] % 4;
    MemoryRichEditCtrl control;
    control.SetWindowText(text.c_str());
    tags.UpdateRTFTags(CTags::CTagContext(), control);
    CheckLines(control);
    if (support::ExpandRichTextLiterally(plainTags, CTags::CTagContext(), text, 100)) {
        Require(control.GetTextRange(0, -1) == text.c_str());
        Require(tags.evaluations == plainTags.evaluations);
    }
    return 0;
}
