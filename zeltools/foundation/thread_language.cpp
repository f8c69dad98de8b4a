// SPDX-License-Identifier: MIT
#include "zeltools/foundation/thread_language.h"

#include "zeltools/platform/language.h"

void SetThreadLanguage(unsigned short language) {
    platform::SetThreadUILanguage(language);
}

unsigned short GetThreadLanguage() {
    return platform::GetThreadUILanguage();
}
