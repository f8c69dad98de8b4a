// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xload_string.h"

#include "zeltools/platform/language.h"
#include "zeltools/resources/string_table_private.h"

CXTString<char16_t> xLoadString(unsigned int id) {
    std::u16string_view const text = platform::FindString(id, platform::GetThreadUILanguage());
    return CXTString<char16_t>(text.data(), static_cast<int>(text.size()));
}
