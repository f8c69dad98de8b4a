// SPDX-License-Identifier: MIT
// Templates in a control of rich text, put together from tags, markers, line breaks and loose brackets; the first byte
// says how often the host refuses a tag. The expansion ends, within its limits, and where its plain steps end, with
// what they end with.

#include "tests/support/literal_rich_text.h"
#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"
#include "zeltools/ui/memory_rich_edit_ctrl.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

struct Tag {
    char16_t const* name;
    char16_t const* value;
} const tagsAndValues[] = {
    {u"<x>", u"b"},
    {u"<e>", u""},
    {u"<outer>", u"[<x><e>]"},
    {u"<self>", u"<self>"},
    {u"<twins>", u"<x>.<twins>"},
    {u"<half>", u"<na\r"},
    {u"<block>", u"<tagifexist><x></tagifexist>"},
    {u"<brk>", u"\r"},
};

// What else a text is made of.
char16_t const* const loosePieces[] = {
    u"<x(ext(d))>",   u"<nosuch>",        u"<", u">", u"\r", u"\r\r",         u"text", u"<tagifexist>",
    u"</tagifexist>", u"<tagendifexist>", u" ", u"(", u")",  u"<TAGIFEXIST>", u"<x",   u"x>"};

char16_t const* PieceOf(std::uint8_t byte) {
    std::size_t const number = byte % (std::size(tagsAndValues) + std::size(loosePieces));
    return number < std::size(tagsAndValues) ? tagsAndValues[number].name
                                             : loosePieces[number - std::size(tagsAndValues)];
}

class FuzzTags final : public CTags {
public:
    explicit FuzzTags(unsigned int refusals) : refuse(refusals) {
        InitTags();
        unsigned int id = 0;
        for (Tag const& tag : tagsAndValues) {
            InsertTag(tag.name, TAGDATA_TEXT, 1, id++, "a tag", CTagInfo::NoClassName, nullptr, nullptr);
        }
        TagTextLimits limits;
        limits.chain = 120;
        limits.nested = 150;
        limits.length = 10'000; // more than 100 rounds can add
        SetTextLimits(limits);
    }

    bool EvaluateTag(CTagContext const&, CTagInfo const& info, CTagValue& value) override {
        ++evaluations;
        value.SetText(tagsAndValues[info.GetTagID()].value); // it is never asked for the markers
        return refuse == 0 || evaluations % refuse == 0;
    }

    unsigned int const refuse;
    unsigned int evaluations = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0 || size > 400) {
        return 0;
    }
    std::u16string text;
    for (std::size_t i = 1; i < size; ++i) {
        text += PieceOf(data[i]);
    }
    FuzzTags tags(data[0] % 4);
    FuzzTags plainTags(data[0] % 4);
    MemoryRichEditCtrl control;
    control.SetWindowText(text.c_str());
    tags.UpdateRTFTags(CTags::CTagContext(), control);
    if (support::ExpandRichTextLiterally(plainTags, CTags::CTagContext(), text, 100) &&
        (control.GetTextRange(0, -1) != text.c_str() || tags.evaluations != plainTags.evaluations)) {
        std::abort();
    }
    return 0;
}
