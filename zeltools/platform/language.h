// SPDX-License-Identifier: MIT
// The language of the messages, per thread, as the 16-bit language id of the original platform.

#pragma once

namespace platform {

inline constexpr unsigned short LanguageEnglish = 1033; ///< 0x0409, English of the United States.
inline constexpr unsigned short LanguageFrench = 1036;  ///< 0x040C, French of France.

/// Whether a language id is French of any country: the low ten bits name the language, the rest the country.
[[nodiscard]] constexpr bool IsFrench(unsigned short language) {
    return (language & 0x3FF) == (LanguageFrench & 0x3FF);
}

/// The calling thread's language: what it was set to, or else what the user's environment asks for.
[[nodiscard]] unsigned short GetThreadUILanguage();

/// Sets the calling thread's language; 0 returns to the environment's. Other threads keep theirs.
void SetThreadUILanguage(unsigned short language);

/// The language that these values of the environment variables ask for; null or empty stands for a variable that is
/// not set.
///
/// @param language  LANGUAGE, a list by colons: its first entry in English or French decides, unless the locale is
///                  "C" or "POSIX", which ask for untranslated text.
/// @param locales   LC_ALL, LC_MESSAGES and LANG; the first that is set names the locale.
/// @return LanguageFrench or LanguageEnglish.
[[nodiscard]] unsigned short LanguageOfEnvironment(char const* language, char const* const (&locales)[3]);

} // namespace platform
