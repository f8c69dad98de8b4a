// SPDX-License-Identifier: MIT
#include "zeltools/tags/tag_parameters.h"

#include "zeltools/tags/tag_parameters_private.h"
#include "zeltools/tags/tags.h"

namespace {

constexpr unsigned int Text = TAGDATA_TEXT;
constexpr unsigned int FileName = TAGDATA_FILENAME;
constexpr unsigned int FileSize = TAGDATA_FILESIZE;
constexpr unsigned int Date = TAGDATA_DATE;

constexpr unsigned int PartOfName = FileName | TAGFLAG_NOSUBMENU;
constexpr unsigned int DateOfFile = Date | TAGFLAG_NOSUBMENU_WRITABLE;
constexpr unsigned int FormOfDate = Text | TAGFLAG_NOSUBMENU;

constexpr _TagParametersList parametersList[] = {
    {u"fullpath", FileName, PartOfName, 5346, 5347},
    {u"ext", FileName, PartOfName, 5344, 5345},
    {u"kind", FileName, Text | TAGFLAG_NOSUBMENU | TAGFLAG_READONLY, 5348, 5349},
    {u"path", FileName, PartOfName, 5353, 5354},
    {u"size", FileName, FileSize | TAGFLAG_NOSUBMENU, 5359, 0},
    {u"shortname", FileName, PartOfName, 5357, 5358},
    {u"name", FileName, PartOfName, 5351, 5352},
    {u"topdir", FileName, PartOfName, 5360, 5361},
    {u"root", FileName, PartOfName, 5355, 5356},
    {u"createdate", FileName, DateOfFile, 5343, 0},
    {u"lastwritedate", FileName, DateOfFile, 5350, 0},
    {u"d", Date, FormOfDate, 5337, 0},
    {u"h", Date, FormOfDate, 5338, 0},
    {u"d+h", Date, FormOfDate, 5336, 0},
    {u"d+t", Date, FormOfDate, 5339, 0},
    {u"d+h+t", Date, FormOfDate, 5340, 0},
    {nullptr, 0, 0, 0, 0},
};

} // namespace

_TagParametersList const* GetTagParametersList() {
    return parametersList;
}

namespace detail {

bool ParameterStages::Next() {
    int const length = parameters.GetLength();
    if (from >= length)
        return false;
    int const opening = parameters.Find(u'(', from);
    if (opening < 0)
        return false;
    char16_t const* const text = parameters;
    while (right > opening && text[right] != u')')
        --right;
    if (right <= opening)
        return false;
    from = opening + 1;
    --right;
    return true;
}

void ParameterStages::GetInner(CXTString<char16_t>& inner) const {
    inner.Copy(static_cast<char16_t const*>(parameters) + from, right - from + 1);
}

void ParameterStages::GetName(CXTString<char16_t>& name) const {
    // The next parenthesis cannot be looked for in the whole rest: a long chain would be read to its end at each stage.
    char16_t const* const first = static_cast<char16_t const*>(parameters) + from;
    char16_t const* const end = first + (right - from + 1);
    char16_t const* last = first;
    while (last < end && *last != u'(')
        ++last;
    name.Copy(first, static_cast<int>(last - first));
}

bool IsTagParameter(CXTString<char16_t> const& name) {
    return CTags::parametersMap.IsFound(name);
}

bool ExtractParameterStage(CXTString<char16_t> const& parameters, int stage, CXTString<char16_t>& inner,
                           CXTString<char16_t>& name) {
    ParameterStages stages(parameters);
    for (int count = 0; count <= stage; ++count)
        if (!stages.Next())
            return false;
    stages.GetInner(inner);
    stages.GetName(name);
    return IsTagParameter(name);
}

} // namespace detail
