// SPDX-License-Identifier: MIT
// How an expression becomes a list of operations.
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/tags/prepared_search_private.h"
#include "zeltools/tags/search_language_private.h"
#include "zeltools/tags/xstring_match.h"

#include <algorithm>

namespace {

using detail::FindSearchMark;
using detail::IsEscaped;

/// Where the group that a mark opens has its end; the length of the text for a group without one.
std::size_t FindCloser(std::u16string_view text, std::size_t opener) {
    int depth = 1;
    for (std::size_t place = opener; (place = FindSearchMark(text, place + 1)) != text.npos;) {
        if (text[opener] == u'"') {
            if (text[place] == u'"') {
                return place;
            }
        } else if (text[place] == u'(') {
            ++depth;
        } else if (text[place] == u')' && --depth == 0) {
            return place;
        }
    }
    return text.size();
}

} // namespace

bool CXStringMatch::InitExpression(CXTString<char16_t> const& text, Mode newMode) {
    operations.RemoveAll();
    prepared->Clear();
    if (text.GetLength() > MaxExpressionLength || text.GetLength() < 0) { // below 0: beyond what an int holds
        return Refuse(text.GetLength());
    }
    CXTString<char16_t> inOrder = text;
    inOrder.Trim();
    if (newMode == ModeAnyWord || newMode == ModeAllWords) {
        RemoveSpecialChar(inOrder, u'"');
    }
    inOrder =
        detail::Text(detail::WithImpliedOperators(detail::View(inOrder), newMode == ModeAnyWord ? u" ^ " : u" & "));
    return ExtractWords(inOrder);
}

bool CXStringMatch::ExtractWords(CXTString<char16_t>& text) {
    std::u16string_view rest = detail::View(text);
    _Operator pending = OperatorAnd;
    auto const add = [this, &pending](std::u16string_view operand) {
        if (AddExpression(detail::Text(operand), pending)) {
            pending = OperatorAnd;
        }
    };
    for (std::size_t place = FindSearchMark(rest, 0); place != rest.npos; place = FindSearchMark(rest, 0)) {
        add(rest.substr(0, place));
        std::size_t cut = place + 1;
        switch (rest[place]) {
        case u'&': pending = OperatorAnd; break;
        case u'^': pending = OperatorOr; break;
        case u'!': pending = OperatorNot; break;
        case u')': break; // ends nothing
        default: {
            std::size_t const closer = FindCloser(rest, place);
            add(rest.substr(cut, closer - cut));
            cut = std::min(closer + 1, rest.size());
        }
        }
        rest.remove_prefix(cut);
    }
    add(rest);
    text = detail::Text(rest);
    return true;
}

bool CXStringMatch::AddExpression(CXTString<char16_t> const& text, _Operator wordOperator) {
    std::u16string_view const trimmed = detail::TrimmedView(detail::View(text));
    if (trimmed.empty()) {
        return false;
    }
    WordOperation operation;
    operation.wordOperator = wordOperator;
    operation.isExpression = FindSearchMark(trimmed, 0) != trimmed.npos;
    if (operation.isExpression) {
        operation.expression = detail::Text(trimmed);
        prepared->AddExpression(trimmed);
    } else {
        std::u16string const pattern = detail::PatternOfWord(trimmed);
        operation.expression = detail::Text(pattern);
        prepared->AddPattern(pattern);
    }
    operations.Add(operation, CXArray<WordOperation>::GrowByDoubling); // an expression may have thousands
    return true;
}

bool CXStringMatch::IsChar(CXTString<char16_t> const& text, char character, int index) {
    return index >= 0 && index < text.GetLength() && text[index] == static_cast<unsigned char>(character);
}

void CXStringMatch::RemoveSpecialChar(CXTString<char16_t>& text, char16_t kept) {
    for (int index = 0; index < text.GetLength() - 1; ++index) {
        char16_t const unit = text[index];
        if (unit != kept && detail::IsSearchSpecial(unit) &&
            !IsEscaped(detail::View(text), static_cast<std::size_t>(index))) {
            text.SetAt(index, u' ');
        }
    }
}

bool CXStringMatch::ShouldRecurse(CXTString<char16_t> const& text) {
    std::u16string_view const view = detail::View(text);
    return FindSearchMark(view, 0) != view.npos;
}
