// SPDX-License-Identifier: MIT
#include "media/named_options.h"

#include <zeltools/persistence/custom_data.h>

namespace {

using Text = CXTString<char16_t>;

} // namespace

std::vector<NamedOption> GetNamedOptions(CCustomData const& parserOptions) {
    std::vector<NamedOption> options;
    CXArray<Text> texts;
    parserOptions.GetStringArray(NamedOptionsId, texts);
    for (Text const& text : texts) {
        int const separator = text.Find(u'=');
        if (separator > 0) {
            options.push_back({text.Left(separator), text.Mid(separator + 1, -1)});
        }
    }
    return options;
}

CXTString<char16_t> GetNamedOption(CCustomData const& parserOptions, Text const& name) {
    for (NamedOption const& option : GetNamedOptions(parserOptions)) {
        if (option.name.CompareNoCase(name) == 0) {
            return option.value;
        }
    }
    return {};
}

void SetNamedOption(CCustomData& parserOptions, Text const& name, Text const& value) {
    CXArray<Text> texts;
    bool entered = value.IsEmpty();
    for (NamedOption const& option : GetNamedOptions(parserOptions)) {
        if (option.name.CompareNoCase(name) != 0) {
            texts.Add(option.name + u"=" + option.value);
        } else if (!entered) {
            texts.Add(name + u"=" + value);
            entered = true;
        }
    }
    if (!entered) {
        texts.Add(name + u"=" + value);
    }
    parserOptions.SetStringArray(NamedOptionsId, texts);
}
