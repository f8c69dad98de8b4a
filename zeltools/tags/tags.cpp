// SPDX-License-Identifier: MIT
#include "zeltools/tags/tags.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/foundation/xload_string.h"
#include "zeltools/process/xsingle_lock.h"
#include "zeltools/tags/tag_parameters_private.h"
#include "zeltools/tags/tag_value.h"

#include <atomic>
#include <cassert>

namespace {

constexpr unsigned int MapSize = 23;
constexpr unsigned int ConditionalClass = FourCC("TAGC");
constexpr unsigned int ConditionalClassName = 5332;
constexpr unsigned int ConditionalName = 5333;

std::atomic<CTags*> applicationTags{nullptr};

/// Guards the filling of CTags::parametersMap. It is recursive, since it is the one lock of the toolkit; nothing is
/// called under it.
CXCriticalSection parametersSection;

/// What stands in for an application's registry that was never set.
class NoTags final : public CTags {
    bool EvaluateTag(CTagContext const&, CTagInfo const&, CTagValue&) override { return false; }
};

/// Lowers ASCII letters: a template means the same in every locale.
void Lower(CXTString<char16_t>& text) {
    char16_t* const first = text.GetBuffer();
    int const length = text.GetLength();
    for (int i = 0; i < length; ++i)
        first[i] = detail::LowerAscii(first[i]);
}

} // namespace

CHashMap<CXTString<char16_t>, CXTString<char16_t> const&, _TagParametersList const*> CTags::parametersMap(MapSize);

CTags::CTags() : tagsByName(MapSize), tagsById(MapSize), scansByThread(MapSize) {}

CTags::CTags(CTags const& other)
    : tagsByName(other.tagsByName), tagsById(other.tagsById), scansByThread(MapSize), textLimits(other.textLimits) {}

CTags& CTags::operator=(CTags const& other) {
    if (this != &other) {
        state = NewState();
        tagsByName = other.tagsByName;
        tagsById = other.tagsById;
        textLimits = other.textLimits;
        DeleteScans();
    }
    return *this;
}

unsigned long long CTags::NewState() {
    static std::atomic<unsigned long long> latest{0};
    return ++latest;
}

CTags::~CTags() {
    CTags* self = this;
    applicationTags.compare_exchange_strong(self, nullptr);
    DeleteScans();
}

CTags& CTags::GetApplicationTags() {
    if (CTags* const tags = applicationTags.load())
        return *tags;
    assert(false && "no registry was set");
    static NoTags none;
    return none;
}

void CTags::SetApplicationTags(CTags* tags) {
    if (tags)
        applicationTags.store(tags);
}

// ---- The tags ------------------------------------------------------------------------------------------------------

void CTags::InitTags() {
    if (IsInit())
        return;
    InsertTag(u"<tagifexist>", TAGFLAG_READONLY, ConditionalClass, FourCC("IFNE"), ConditionalName,
              ConditionalClassName, nullptr, nullptr);
    InsertTag(u"</tagifexist>", TAGFLAG_READONLY, ConditionalClass, FourCC("EINE"), ConditionalName,
              ConditionalClassName, nullptr, nullptr);

    // Two registries may be made at once, and the map is everybody's.
    CXSingleLock const hold(&parametersSection, true);
    if (parametersMap.IsEmpty())
        for (_TagParametersList const* row = GetTagParametersList(); row->name; ++row)
            parametersMap.Insert(row->name, row);
}

void CTags::InsertTag(CXTString<char16_t> const& name, unsigned int typeAndFlags, unsigned int tagClass,
                      unsigned int id, unsigned int friendlyId, unsigned int classNameId, TagCallback callback,
                      void* data) {
    CTagInfo info(tagClass, id);
    info.friendlyId = friendlyId;
    Insert(info, name, typeAndFlags, classNameId, callback, data);
}

void CTags::InsertTag(CXTString<char16_t> const& name, unsigned int typeAndFlags, unsigned int tagClass,
                      unsigned int id, char const* friendlyText, unsigned int classNameId, TagCallback callback,
                      void* data) {
    CTagInfo info(tagClass, id);
    info.friendlyText = friendlyText;
    Insert(info, name, typeAndFlags, classNameId, callback, data);
}

void CTags::Insert(CTagInfo& info, CXTString<char16_t> const& name, unsigned int typeAndFlags, unsigned int classNameId,
                   TagCallback callback, void* data) {
    info.name = name;
    Lower(info.name);
    info.typeAndFlags = typeAndFlags;
    info.classNameId = classNameId;
    info.callback = callback;
    info.callbackData = data;
    state = NewState();
    tagsByName.Insert(info.name, info);
    tagsById.Insert(CTagID{info.tagClass, info.id}, info);
}

void CTags::RemoveTag(CXTString<char16_t> const& name) {
    CTagInfo const* const info = tagsByName.Find(name);
    if (!info)
        return;
    state = NewState();
    tagsById.Remove(CTagID{info->tagClass, info->id});
    tagsByName.Remove(name);
}

void CTags::RemoveTagByClass(unsigned int tagClass) {
    CXTString<char16_t> name;
    CTagInfo info;
    for (unsigned int position = GetFirstTag(); position != NameMap::NoPosition;) {
        GetNextTag(position, name, info);
        if (info.tagClass == tagClass)
            RemoveTag(name);
    }
}

void CTags::GetNextTag(unsigned int& position, CXTString<char16_t>& name, CTagInfo& info) const {
    tagsByName.GetNext(position, name, info);
}

// ---- One tag -------------------------------------------------------------------------------------------------------

void CTags::ExtractParam(CXTString<char16_t>& tag, CXTString<char16_t>& parameters) const {
    Lower(tag);
    parameters.Empty();
    int const opening = tag.Find(u'(');
    if (opening < 0)
        return;
    // The last character is the closing angle bracket, whatever it is.
    parameters.Copy(static_cast<char16_t const*>(tag) + opening, tag.GetLength() - 1 - opening);
    parameters.Remove(u' ');
    tag.SetAt(opening, u'>');
    tag.ReleaseBuffer(opening + 1);
    tag.Remove(u' ');
}

CTagInfo const* CTags::FindTag(CXTString<char16_t>& tag, CXTString<char16_t>& parameters) const {
    ExtractParam(tag, parameters);
    return tagsByName.Find(tag);
}

_TagParametersList const* CTags::LastParameter(CXTString<char16_t> const& parameters) {
    _TagParametersList const* const* row = nullptr;
    CXTString<char16_t> name;
    for (detail::ParameterStages stages(parameters); stages.Next();) {
        stages.GetName(name);
        row = parametersMap.Find(name);
        if (!row)
            break;
    }
    return row ? *row : nullptr;
}

CXTString<char16_t> CTags::GetTagName(unsigned int tagClass, unsigned int id) const {
    CTagInfo const* const info = tagsById.Find(CTagID{tagClass, id});
    return info ? info->name : CXTString<char16_t>();
}

CXTString<char16_t> CTags::GetTagFriendlyName(unsigned int tagClass, unsigned int id) const {
    CTagInfo const* const info = tagsById.Find(CTagID{tagClass, id});
    return info ? info->GetTagFriendlyName() : CXTString<char16_t>();
}

CXTString<char16_t> CTags::GetTagFriendlyName(CXTString<char16_t> const& tag) const {
    CXTString<char16_t> name(tag), parameters;
    CTagInfo const* const info = FindTag(name, parameters);
    if (!info)
        return CXTString<char16_t>();
    _TagParametersList const* const row = LastParameter(parameters);
    return row ? xLoadString(row->friendlyId) : info->GetTagFriendlyName();
}

_TAGDATA_INFO CTags::GetTagDataType(CXTString<char16_t> const& tag) const {
    CXTString<char16_t> name(tag), parameters;
    CTagInfo const* const info = FindTag(name, parameters);
    if (!info)
        return TAGDATA_NONE;
    _TagParametersList const* const row = LastParameter(parameters);
    return static_cast<_TAGDATA_INFO>((row ? row->outputTypeAndFlags : info->typeAndFlags) & TAGDATA_MASK);
}

int CTags::CanCompareTag(CXTString<char16_t> const& tag) const {
    CXTString<char16_t> name(tag), parameters;
    CTagInfo const* const info = FindTag(name, parameters);
    if (!info)
        return 0;
    _TagParametersList const* const row = LastParameter(parameters);
    return ((row ? row->outputTypeAndFlags : info->typeAndFlags) & TAGFLAG_READONLY) == 0;
}

int CTags::IsTagValid(CXTString<char16_t> const& tag) const {
    CXTString<char16_t> name(tag), parameters;
    return FindTag(name, parameters) != nullptr;
}

int CTags::GetTagInfo(CXTString<char16_t> const& tag, CTagInfo& info) const {
    CXTString<char16_t> name(tag), parameters;
    CTagInfo const* const found = FindTag(name, parameters);
    if (!found)
        return 0;
    info = *found;
    info.parameters = parameters;
    return 1;
}

unsigned int CTags::GetTagID(CXTString<char16_t> const& tag, unsigned int& tagClass) const {
    CXTString<char16_t> name(tag), parameters;
    CTagInfo const* const info = FindTag(name, parameters);
    if (!info)
        return 0;
    tagClass = info->tagClass;
    return info->id;
}

unsigned int CTags::GetTagFlags(unsigned int tagClass, unsigned int id) const {
    CTagInfo const* const info = tagsById.Find(CTagID{tagClass, id});
    return info ? info->typeAndFlags : 0;
}

int CTags::GetDataFromTag(CTagInfo const& info, CTagValue& value, _TAGDATA_INFO type) {
    if (!info.callback || info.callback(info, value, type) == 0)
        return 0;
    value.HandleParametersAndConvertToType(type, info.parameters);
    return 1;
}
