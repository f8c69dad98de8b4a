// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_numbering.h"

#include "zeltools/files/paths/path_numbering_private.h"
#include "zeltools/files/paths/path_parts.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/characters.h"

#include <algorithm>

using detail::PathParts;
using detail::Text;
using detail::View;

namespace {

// However long an extension is, so much of the name stays readable.
constexpr int ShortestCutName = 8;

} // namespace

namespace detail {

CXTString<char16_t> NumberedName(CXTString<char16_t> const& path, bool parenthesis, int maxName, bool mustNotExist) {
    PathParts const parts(path, FileNameTypeFile);
    int number = -1;
    CXTString<char16_t> const base = fileRemoveNameDigitEnding(Text(parts.GetName()), number);
    // The number wraps around rather than overflow: a name from outside may hold any.
    unsigned int next = number == -1 ? 0 : static_cast<unsigned int>(number);
    CXTString<char16_t> candidate;
    do {
        ++next;
        CXTString<char16_t> suffix;
        if (parenthesis) {
            bool const needsBlank = base.GetLength() >= 2 && !View(base).ends_with(u' ');
            suffix.Format(needsBlank ? u" (%d)" : u"(%d)", static_cast<int>(next));
        } else {
            suffix.Format(u"%d", static_cast<int>(next));
        }
        std::u16string_view kept = View(base);
        if (maxName >= 1) {
            kept = kept.substr(0, static_cast<std::size_t>(std::max(maxName - suffix.GetLength(), 0)));
        }
        candidate = Join(parts.GetPath(), kept, View(suffix), parts.GetExtension());
    } while (mustNotExist && fileExists(candidate, nullptr));
    return candidate;
}

} // namespace detail

CXTString<char16_t> fileCutName(CXTString<char16_t> const& path, int maxName) {
    if (maxName <= 0) {
        return path;
    }
    PathParts const parts(path);
    int const kept = std::max(maxName - static_cast<int>(parts.GetExtension().size()), ShortestCutName);
    return parts.WithName(parts.GetName().substr(0, static_cast<std::size_t>(kept)));
}

CXTString<char16_t> fileRemoveNameDigitEnding(CXTString<char16_t> const& path, int& number) {
    number = -1;
    PathParts const parts(path);
    std::u16string_view name = parts.GetName();
    if (!name.empty()) {
        bool hasDigit = false;
        bool hasParenthesis = false;
        int index = path.GetLength() - 1;
        for (; index >= 1; --index) {
            char16_t const c = path[index];
            if (!hasDigit && c == u')') {
                hasParenthesis = true;
            } else if (hasDigit && hasParenthesis && c == u'(') {
                continue;
            } else if (!xIsDigit(c)) {
                break;
            } else if (!hasDigit) {
                hasDigit = true;
                CXTString<char16_t> pattern;
                CXTString<char16_t> digits;
                number = detail::GetDigitInfo(name, pattern, digits, false, true);
            }
        }
        if (number != -1) {
            name = name.substr(0, static_cast<std::size_t>(std::max(index, 0)) + 1);
        }
    }
    return parts.WithName(name);
}

CXTString<char16_t> fileNextNumberedName(CXTString<char16_t> const& path, bool parenthesis, int maxName) {
    return detail::NumberedName(path, parenthesis, maxName, false);
}

CXTString<char16_t> fileCreateUniqueName(CXTString<char16_t> const& path, bool parenthesis, int maxName,
                                         bool forceNumber) {
    CXTString<char16_t> const cut = fileCutName(path, maxName);
    return !forceNumber && !fileExists(cut, nullptr) ? cut : detail::NumberedName(cut, parenthesis, maxName, true);
}
