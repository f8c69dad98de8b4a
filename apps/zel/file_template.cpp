// SPDX-License-Identifier: MIT
#include "file_template.h"

#include "guarded_text.h"
#include "template_parts.h"

#include <algorithm>

namespace zel {

namespace {

/// The toolkit takes the very first word of a text for a tag's name when no bracket stands before it; with this one in
/// front it is no name.
constexpr char16_t Front = 1;

constexpr std::u16string_view MetadataTag = u"<meta:";

bool IsMetadata(CXTString<char16_t> const& tag) {
    return tag.Find(MetadataTag.data()) == 0;
}

} // namespace

FileTemplate::FileTemplate(std::string const& text) : endsLine(text.ends_with('\n')) {
    CApplicationTags& tags = CApplicationTags::Get();
    std::u16string guarded(1, Front);
    auto const append = [&](CXTString<char16_t> const& piece) {
        guarded.append(piece.GetConstBuffer(), static_cast<std::size_t>(piece.GetLength()));
    };
    for (TemplatePart const& part : SplitTemplate(text)) {
        if (!part.isTag) {
            append(GuardText(part.text));
            ending = part.text;
            continue;
        }
        CXTString<char16_t> const tag = u"<" + GuardText(part.text.substr(1, part.text.size() - 2)) + u">";
        append(tag);
        CXTString<char16_t> name = tag;
        CXTString<char16_t> parameters;
        tags.ExtractParam(name, parameters);
        if (IsMetadata(name)) {
            constexpr int before = static_cast<int>(MetadataTag.size());
            CXTString<char16_t> const wanted = name.Mid(before, name.GetLength() - before - 1);
            if (!wanted.IsEmpty()) {
                tags.AddMetadataTag(wanted);
            }
        }
        CTagInfo info;
        if (tags.GetTagInfo(name, info)) {
            if (ApplicationTag const* const row = CApplicationTags::FindRow(info)) {
                needs = std::max(needs, row->needs);
                ending.clear();
            }
        }
    }
    prepared = CXTString<char16_t>(guarded.data(), static_cast<int>(guarded.size()));
    faults = FindTemplateFaults(text, tags);
}

std::string FileTemplate::Expand(FileFacts const& facts, ExpansionPlace const& place) const {
    FileTagContext context;
    context.facts = &facts;
    context.index = place.index;
    context.counterDigits = place.counterDigits;
    context.style = place.style;
    CXTString<char16_t> text = prepared;
    CApplicationTags::Get().ProcessText(context, text);
    for (char16_t const* const marker : {u"<tagifexist>", u"</tagifexist>", u"<tagendifexist>"}) {
        text.Remove(marker, true);
    }
    return UnguardText(text.Mid(1));
}

} // namespace zel
