// SPDX-License-Identifier: MIT
#include "zeltools/platform/language.h"

#include <cstdlib>
#include <string_view>

namespace platform {

namespace {

thread_local unsigned short threadLanguage = 0; // 0: the environment's

// The language of a locale's name such as "fr_CA.UTF-8", "fr" or "en@quot"; 0 for one that has no texts here.
unsigned short LanguageOfLocale(std::string_view locale) {
    std::string_view const name = locale.substr(0, locale.find_first_of("_.@"));
    return name == "fr" ? LanguageFrench : name == "en" ? LanguageEnglish : 0;
}

} // namespace

unsigned short LanguageOfEnvironment(char const* language, char const* const (&locales)[3]) {
    std::string_view locale;
    for (char const* const value : locales) {
        if (locale.empty() && value)
            locale = value;
    }
    if (locale == "C" || locale == "POSIX")
        return LanguageEnglish;
    std::string_view list = language ? language : "";
    while (!list.empty()) {
        std::string_view const entry = list.substr(0, list.find(':'));
        if (unsigned short const found = LanguageOfLocale(entry))
            return found;
        list.remove_prefix(entry.size() < list.size() ? entry.size() + 1 : entry.size());
    }
    return LanguageOfLocale(locale) == LanguageFrench ? LanguageFrench : LanguageEnglish;
}

unsigned short GetThreadUILanguage() {
    // Read once: getenv is not safe beside a host that changes its environment.
    static unsigned short const environmentLanguage = LanguageOfEnvironment(
        std::getenv("LANGUAGE"), {std::getenv("LC_ALL"), std::getenv("LC_MESSAGES"), std::getenv("LANG")});
    return threadLanguage ? threadLanguage : environmentLanguage;
}

void SetThreadUILanguage(unsigned short language) {
    threadLanguage = language;
}

} // namespace platform
