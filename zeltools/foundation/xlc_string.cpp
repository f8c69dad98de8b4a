// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xlc_string.h"

static_assert(sizeof(CExLCString) == sizeof(CXTString<char16_t>), "a lower-case string adds no field");

CExLCString::CExLCString(CXTString<char16_t> const& text) : CXTString<char16_t>(text) {
    MakeLower();
}

CExLCString& CExLCString::operator=(CXTString<char16_t> const& text) {
    CXTString<char16_t>::operator=(text);
    MakeLower();
    return *this;
}

int CExLCString::Find(CXTString<char16_t> const& text, int start) const {
    CXTString<char16_t> lowered(text);
    return CXTString<char16_t>::Find(lowered.MakeLower(), start);
}
