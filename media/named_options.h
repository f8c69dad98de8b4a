// SPDX-License-Identifier: MIT
// The options of a format that a person writes as name=value: "compression" and "zip". They travel in the parser's
// options (CIoOptions::GetParserOptions) as one value, a list of texts, so that they are kept in the preferences with
// whatever else a parser stores there.
//
//     SetNamedOption(options.GetParserOptions(), u"compression", u"zip");
//     GetNamedOption(options->GetParserOptions(), u"Compression")     // u"zip": names are found without regard to case
//
// What a name means is the parser's own matter. One that it does not know is not its failure: the remembered options
// of a class may come from another release.
//
// Threads: one at a time.

#pragma once

#include "media/media_api.h"
#include <zeltools/foundation/four_cc.h>
#include <zeltools/foundation/xstring.h>

#include <vector>

class CCustomData;

/// The id under which the list stands.
inline constexpr unsigned int NamedOptionsId = FourCC("NOPT");

struct NamedOption {
    CXTString<char16_t> name;
    CXTString<char16_t> value;
};

/// Enters an option; one that has the name already is replaced. An empty value takes it away.
ZEL_MEDIA_API void SetNamedOption(CCustomData& parserOptions, CXTString<char16_t> const& name,
                                  CXTString<char16_t> const& value);
/// The value of an option; empty when there is none of this name.
ZEL_MEDIA_API CXTString<char16_t> GetNamedOption(CCustomData const& parserOptions, CXTString<char16_t> const& name);
/// All of them, in the order of entering.
ZEL_MEDIA_API std::vector<NamedOption> GetNamedOptions(CCustomData const& parserOptions);
