// SPDX-License-Identifier: MIT
#include "file_search.h"

#include "media_facts.h"
#include "output.h"
#include "utf8_text.h"

#include <fmt/format.h>

namespace zel {

SearchedTexts TextsOf(FileFacts const& facts) {
    SearchedTexts searched;
    auto const add = [&searched](char const* source, std::string const& text) {
        searched.texts.Add(FromUtf8(text));
        searched.sources.emplace_back(source);
    };
    std::string::size_type const end = facts.nativePath.find_last_not_of('/');
    std::string::size_type const slash = facts.nativePath.rfind('/', end);
    add("name", facts.nativePath.substr(slash + 1, end - slash)); // npos + 1 is 0
    add("path", facts.nativePath);
    add("type", facts.description);
    if (facts.media) {
        CXTString<char16_t> name;
        CXTString<char16_t> value;
        for (unsigned int index = 0; facts.media->metadata.GetAt(index, name, value); ++index) {
            if (facts.media->metadata.IsTextAt(index)) {
                searched.texts.Add(value);
                searched.sources.push_back(Utf8(name));
            }
        }
    }
    return searched;
}

std::unique_ptr<FileSearch> FileSearch::Prepare(SearchOptions const& options) {
    auto search = std::make_unique<FileSearch>();
    CXTString<char16_t> const expression = FromUtf8(*options.expression);
    if (!search->match.PrepareMatch(expression, options.mode, options.caseSensitive)) {
        Print(stderr, "zel: the expression has {} characters, {} are allowed\n", expression.GetLength(),
              CXStringMatch::MaxExpressionLength);
        return nullptr;
    }
    search->mayForbid = expression.Find(u'!') >= 0;
    return search;
}

} // namespace zel
