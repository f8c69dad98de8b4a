// SPDX-License-Identifier: MIT
// Any text as a template, expanded beside the plain steps wherever these come to an end, in a string and in a control
// of rich text, and scanned; any text as a tag with a chain of parameters, taken apart stage by stage in both ways.
#include "tests/support/literal_expansion.h"
#include "zeltools/tags/tag_parameters_private.h"
#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"
#include "zeltools/ui/memory_rich_edit_ctrl.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using Text = CXTString<char16_t>;

/// One byte of the input is one character, or one of these where it is below 0x20: random bytes alone would hardly ever
/// spell a tag.
constexpr char16_t const* words[0x20] = {u"\0",
                                         u"<tagifexist>",
                                         u"</tagifexist>",
                                         u"<tagendifexist>",
                                         u"<x>",
                                         u"<empty>",
                                         u"<refused>",
                                         u"<half>",
                                         u"<closer>",
                                         u"\n",
                                         u"<opener>",
                                         u"<nested>",
                                         u"<self>",
                                         u"<odd>",
                                         u"<file",
                                         u"(createdate",
                                         u"(d+h)",
                                         u"(ext)",
                                         u")>",
                                         u"\u00E9",
                                         u"<X (",
                                         u"x>",
                                         u"<zero>",
                                         u"me>",
                                         u"tagifexist",
                                         u"<<",
                                         u">>",
                                         u"nested",
                                         u"<alone",
                                         u"\xD800",
                                         u"((((",
                                         u"))))"};

class FuzzTags : public CTags {
public:
    FuzzTags() {
        InitTags();
        for (unsigned int i = 0; i < std::size(values); ++i)
            InsertTag(values[i][0], TAGDATA_TEXT, 1, i, "", CTagInfo::NoClassName, nullptr, nullptr);
        SetTextLimits({40, 200, 1 << 22}); // none is met in the first 40 rounds
    }
    bool EvaluateTag(CTagContext const&, CTagInfo const& info, CTagValue& value) override {
        if (info.GetTagClass() != 1 || !values[info.GetTagID()][1])
            return false;
        value.SetText(Text(values[info.GetTagID()][1]) + info.GetParameters());
        if (info.GetTagID() == Zero)
            value.GetText().SetAt(1, u'\0');
        return true;
    }

private:
    static constexpr unsigned int Zero = 0;
    static constexpr char16_t const* values[][2] = {
        {u"<zero>", u"0<x>"},
        {u"<x>", u"value"},
        {u"<empty>", u""},
        {u"<refused>", nullptr},
        {u"<half>", u"<x"},
        {u"<closer>", u"z</tagifexist>"},
        {u"<opener>", u"<tagifexist>"},
        {u"<nested>", u"[<x>\r<odd>]"},
        {u"<self>", u"<self>"},
        {u"<odd>", u">x<"},
        {u"<file>", u"f"},
        {u"<alone>", u"<"},
    };
};

void Require(bool holds) {
    if (!holds)
        std::abort();
}

std::u16string_view View(Text const& text) {
    return {text, static_cast<std::size_t>(text.GetLength())};
}

void Expand(FuzzTags& tags, Text const& source) {
    Text expanded(source), stepwise(source);
    tags.ProcessText(CTags::CTagContext(), expanded);
    // So few rounds that no limit is met in them.
    if (support::ExpandLiterally(tags, CTags::CTagContext(), stepwise, 40))
        Require(View(expanded) == View(stepwise));
}

void ExpandInControl(FuzzTags& tags, Text const& source) {
    MemoryRichEditCtrl control;
    control.SetWindowText(source);
    std::u16string stepwise(View(control.GetTextRange(0, -1)));
    tags.UpdateRTFTags(CTags::CTagContext(), control);
    if (support::ExpandRichTextLiterally(tags, CTags::CTagContext(), stepwise, 40))
        Require(View(control.GetTextRange(0, -1)) == stepwise);
}

/// What a scan gives is the template again, once each tag stands where it was found.
void Scan(FuzzTags& tags, Text const& source) {
    Text text;
    CTagInfo info;
    int end = 0;
    tags.StartScan(source);
    while (tags.Scan(text, info)) {
        Require(tags.IsTagValid(info.GetTagName()) != 0);
        end += text.GetLength();
        Require(source.GetAt(end) == u'<');
        Require(View(source).substr(0, static_cast<std::size_t>(end)).ends_with(View(text)));
        end = source.Find(u'>', end) + 1;
        text.Empty();
    }
    Require(end + text.GetLength() == source.GetLength());
}

void TakeApart(FuzzTags& tags, Text const& source) {
    Text tag(source), parameters;
    tags.ExtractParam(tag, parameters);
    Require(tag.GetLength() + parameters.GetLength() <= source.GetLength() + 1);
    Require(tag.Find(u'(') == -1 && (parameters.IsEmpty() || parameters[0] == u'('));
    detail::ParameterStages stages(parameters);
    Text inner, name, walkedInner, walkedName;
    for (int stage = 0; stage < 100; ++stage) {
        bool const isThere = stages.Next();
        inner = name = u"untouched";
        bool const known = detail::ExtractParameterStage(parameters, stage, inner, name);
        if (!isThere) {
            Require(!known && name == u"untouched");
            break;
        }
        stages.GetInner(walkedInner);
        stages.GetName(walkedName);
        Require(View(inner) == View(walkedInner) && View(name) == View(walkedName));
        Require(known == CTags::parametersMap.IsFound(name));
    }
    tags.GetTagDataType(source);
    tags.CanCompareTag(source);
    CTagInfo info;
    tags.GetTagInfo(source, info);
    CTagValue value;
    value.SetText(u"\\tmp\\no such folder\\a.b");
    value.HandleParametersAndConvertToType(TAGDATA_TEXT, parameters);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static FuzzTags tags;
    std::u16string characters;
    for (std::size_t i = 0; i < size; ++i)
        if (data[i] >= 0x20)
            characters += data[i];
        else if (data[i] == 0)
            characters += u'\0';
        else
            characters += words[data[i]];
    Text const source(characters.data(), static_cast<int>(characters.size()));
    Expand(tags, source);
    ExpandInControl(tags, source);
    Scan(tags, source);
    TakeApart(tags, source);
    return 0;
}
