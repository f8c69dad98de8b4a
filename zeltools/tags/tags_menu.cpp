// SPDX-License-Identifier: MIT
#include "zeltools/tags/tags.h"

CXTString<char16_t> CTags::DoPopupMenu(CPoint const&, unsigned int, CHashTable<unsigned int>*,
                                       CHashTable<unsigned int>*, CHashTable<unsigned int>*, int* cancelled) {
    if (cancelled)
        *cancelled = IsInit();
    return CXTString<char16_t>();
}
