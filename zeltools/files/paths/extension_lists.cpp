// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/extension_lists.h"

#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/characters.h"

#include <algorithm>

using detail::Join;
using detail::Text;
using detail::View;

namespace {

constexpr int LongestList = 259;

// Takes the next token off the front of `rest`; empty at the end.
std::u16string_view TakeToken(std::u16string_view& rest) {
    auto const isSpace = [](char16_t c) { return xIsSpace(c); };
    auto const begin = std::find_if_not(rest.begin(), rest.end(), isSpace);
    auto const end = std::find_if(begin, rest.end(), isSpace);
    std::u16string_view const token(begin, end);
    rest = std::u16string_view(end, rest.end());
    return token;
}

CXTString<char16_t> ExtensionPattern(std::u16string_view token) {
    if (token.starts_with(u'.')) {
        return Join(u"*", token);
    }
    return token.find(u'.') == token.npos ? Join(u"*.", token) : Text(token);
}

// The token may lie in front of `rest` in the same text; what belongs to its quotation is taken off too.
CXTString<char16_t> SearchPattern(std::u16string_view token, std::u16string_view& rest) {
    if (token.front() == u'"' && token.find(u'"', 1) == token.npos) {
        if (std::size_t const close = rest.find(u'"'); close != rest.npos) {
            token = {token.data(), token.size() + close + 1};
            rest.remove_prefix(close + 1);
        }
    }
    if (token.front() == u'"' || token.back() == u'"') {
        CXTString<char16_t> literal = Text(token);
        literal.Remove(u'"');
        return literal;
    }
    return token.find(u'?') != token.npos ? Text(token) : Join(u"*", token, u"*");
}

} // namespace

CXTString<char16_t> fileCleanExtensionList(CXTString<char16_t> const& list, bool extensions,
                                           CHashTable<CXTString<char16_t>>* table) {
    // Patterns are compared and appended up to a zero, so a list ends there too.
    CXTString<char16_t> source = static_cast<char16_t const*>(list);
    source.Replace(u',', u' ');
    source.Replace(u';', u' ');
    source.Trim();
    source.MakeLower();
    if (source.GetLength() > LongestList) {
        source.GetBufferSetLength(LongestList);
    }

    CHashTable<CXTString<char16_t>> ownTable;
    CHashTable<CXTString<char16_t>>& seen = table != nullptr ? *table : ownTable;
    CXTString<char16_t> result;
    std::u16string_view rest = View(source);
    for (std::u16string_view token = TakeToken(rest); !token.empty(); token = TakeToken(rest)) {
        CXTString<char16_t> const pattern = extensions ? ExtensionPattern(token) : SearchPattern(token, rest);
        if (!pattern.IsEmpty() && seen.Insert(pattern) == 1) {
            if (!result.IsEmpty()) {
                result += u' ';
            }
            result += pattern;
        }
    }
    return result;
}

int fileGetHashFromExtensionList(CXTString<char16_t>& list, CHashTable<CXTString<char16_t>>& table, bool extensions) {
    table.Clear();
    list = fileCleanExtensionList(list, extensions, &table);
    return static_cast<int>(table.GetCount());
}
