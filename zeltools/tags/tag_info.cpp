// SPDX-License-Identifier: MIT
#include "zeltools/tags/tag_info.h"

#include "zeltools/foundation/xload_string.h"

void CTagInfo::Init() {
    name.Empty();
    parameters.Empty();
}

void CTagInfo::Clear() {
    Init();
    id = tagClass = typeAndFlags = friendlyId = 0;
    classNameId = NoClassName;
    friendlyText = nullptr;
    callbackData = nullptr;
    callback = nullptr;
}

CXTString<char16_t> CTagInfo::GetTagFriendlyName() const {
    return friendlyId != 0 ? xLoadString(friendlyId) : CXTString<char16_t>(friendlyText);
}

CXTString<char16_t> CTagInfo::GetClassNameW() const {
    return classNameId != NoClassName ? xLoadString(classNameId) : CXTString<char16_t>();
}
