// SPDX-License-Identifier: MIT
// What the parameters of a template make of a file name or a date.
#include "zeltools/files/file_info.h"
#include "zeltools/files/paths/file_dates.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/shell_type.h"
#include "zeltools/foundation/date_text.h"
#include "zeltools/tags/tag_parameters_private.h"
#include "zeltools/tags/tag_value.h"

#include <string_view>

namespace {

using Text = CXTString<char16_t>;

std::u16string_view View(Text const& text) {
    return {text, static_cast<std::size_t>(text.GetLength())};
}

/// A parameter that makes another text of a file name.
struct TextParameter {
    std::u16string_view name;
    Text (*apply)(Text const& fileName);
    _TAGDATA_INFO result;
};

constexpr TextParameter textParameters[] = {
    {u"ext", [](Text const& fileName) { return fileGetExtension(fileName); }, TAGDATA_FILENAME},
    {u"name", [](Text const& fileName) { return fileStripPath(fileName, false); }, TAGDATA_FILENAME},
    {u"path", [](Text const& fileName) { return fileStripName(fileName); }, TAGDATA_FILENAME},
    {u"shortname", [](Text const& fileName) { return CFileInfo(fileName).GetNameWithoutExt(); }, TAGDATA_FILENAME},
    {u"topdir", [](Text const& fileName) { return CFileInfo(fileName).GetTopDirectory(); }, TAGDATA_FILENAME},
    {u"root", [](Text const& fileName) { return CFileInfo(fileName).GetRoot(); }, TAGDATA_FILENAME},
    {u"kind", [](Text const& fileName) { return ShellGetType(fileName); }, TAGDATA_TEXT},
};

} // namespace

_TAGDATA_INFO CTagValue::HandleParameters(CXTString<char16_t> const& name) {
    if (name.IsEmpty() || !detail::IsTagParameter(name))
        return type;
    std::u16string_view const parameter = View(name);
    if (type == TAGDATA_DATE) {
        auto const has = [parameter](char16_t letter) { return parameter.find(letter) != parameter.npos; };
        CXTime const time = GetDate();
        SetText(GetFileDateString(time, has(u'd'), has(u'h'), has(u't')));
        return TAGDATA_TEXT;
    }
    if (type != TAGDATA_FILENAME)
        return type;
    for (TextParameter const& row : textParameters) {
        if (row.name == parameter) {
            GetText() = row.apply(GetText());
            return row.result;
        }
    }
    if (parameter == u"size") {
        if (!fileExists(GetText()))
            return TAGDATA_NONE;
        number = fileGetSize(GetText());
        return TAGDATA_FILESIZE;
    }
    bool const isCreation = parameter == u"createdate";
    if (isCreation || parameter == u"lastwritedate") {
        InitType(TAGDATA_DATE);
        bool const isRead = (isCreation ? fileGetCreationDate : fileGetLastWriteDate)(GetText(), GetDate());
        return isRead ? TAGDATA_DATE : TAGDATA_NONE;
    }
    return TAGDATA_FILENAME;
}

void CTagValue::ApplyParameters(CXTString<char16_t> const& parameters) {
    if (&parameters == text) {
        Text const copy(parameters); // the chain must stay while the text changes
        return ApplyParameters(copy);
    }
    Text name;
    for (detail::ParameterStages stages(parameters); stages.Next();) {
        stages.GetName(name);
        if (!detail::IsTagParameter(name))
            return;
        type = static_cast<_TAGDATA_INFO>(HandleParameters(name) & TAGDATA_MASK);
    }
}
