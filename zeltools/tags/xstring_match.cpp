// SPDX-License-Identifier: MIT
#include "zeltools/tags/xstring_match.h"

#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/log_file.h"
#include "zeltools/tags/prepared_search_private.h"
#include "zeltools/tags/search_language_private.h"

#include <utility>

CHashTable<char16_t, CHashMethods<char16_t>> CXStringMatch::hashChar;

CXStringMatch::CXStringMatch() : prepared(std::make_unique<detail::PreparedSearch>()) {
    [[maybe_unused]] static bool const isFilled = [] { // once, whichever thread makes the first object
        for (char16_t const special : detail::SearchSpecialCharacters) {
            hashChar.Insert(special);
        }
        return true;
    }();
}

CXStringMatch::CXStringMatch(CXStringMatch const& other)
    : operations(other.operations), mode(other.mode), isCaseSensitive(other.isCaseSensitive),
      hasQuotes(other.hasQuotes), prepared(std::make_unique<detail::PreparedSearch>(*other.prepared)) {}

CXStringMatch::CXStringMatch(CXStringMatch&& other) : CXStringMatch() {
    *this = std::move(other);
}

CXStringMatch& CXStringMatch::operator=(CXStringMatch const& other) {
    return *this = CXStringMatch(other);
}

CXStringMatch& CXStringMatch::operator=(CXStringMatch&& other) {
    if (this != &other) {
        auto nothing = std::make_unique<detail::PreparedSearch>();
        operations = std::move(other.operations);
        other.operations.RemoveAll();
        mode = std::exchange(other.mode, ModeExpression);
        isCaseSensitive = std::exchange(other.isCaseSensitive, false);
        hasQuotes = std::exchange(other.hasQuotes, false);
        prepared = std::exchange(other.prepared, std::move(nothing));
    }
    return *this;
}

CXStringMatch::~CXStringMatch() = default;

bool CXStringMatch::PrepareMatch(CXTString<char16_t> const& expression, Mode newMode, bool caseSensitive) {
    mode = newMode;
    isCaseSensitive = caseSensitive;
    std::u16string_view const text = detail::View(expression);
    bool const hasQuote = text.find(u'"') != text.npos; // of the expression as it was, which may be refused
    bool isReady = false;
    if (caseSensitive) {
        isReady = InitExpression(expression, newMode);
    } else {
        CXTString<char16_t> lowered = expression;
        detail::LowerAsciiUnits(lowered.GetBuffer(), text);
        isReady = InitExpression(lowered, newMode);
    }
    if (isReady) {
        hasQuotes = hasQuote;
    }
    return isReady;
}

bool CXStringMatch::Match(CXTString<char16_t> const& text) {
    prepared->ForgetTexts();
    if (!text.IsEmpty()) {
        prepared->AddText(detail::View(text));
    }
    prepared->GiveTexts(isCaseSensitive, hasQuotes);
    return Evaluate();
}

bool CXStringMatch::Match(Texts const& texts) {
    prepared->ForgetTexts();
    for (CXTString<char16_t> const& text : texts) {
        if (!text.IsEmpty()) {
            prepared->AddText(detail::View(text));
        }
    }
    prepared->GiveTexts(isCaseSensitive, hasQuotes);
    return Evaluate();
}

bool CXStringMatch::Match(CXTString<char16_t> const& expression, CXTString<char16_t> const& text, Mode newMode,
                          bool caseSensitive) {
    return PrepareMatch(expression, newMode, caseSensitive) && Match(text);
}

bool CXStringMatch::Match(CXTString<char16_t> const& expression, Texts const& texts, Mode newMode, bool caseSensitive) {
    return PrepareMatch(expression, newMode, caseSensitive) && Match(texts);
}

void CXStringMatch::ExtractTextWords(Texts const& texts, Texts& words) const {
    for (CXTString<char16_t> const& text : texts) {
        if (hasQuotes && !text.IsEmpty()) {
            words.Add(text);
        }
        int position = 0;
        while (position >= 0) {
            CXTString<char16_t> word = text.Tokenize(u" ", position);
            if (word.IsEmpty()) {
                continue;
            }
            if (!isCaseSensitive) {
                detail::LowerAsciiUnits(word.GetBuffer(), detail::View(word));
            }
            words.Add(word);
            if (word.FindOneOf(u"-_") >= 0) {
                for (int piecePosition = 0; piecePosition >= 0;) {
                    CXTString<char16_t> const piece = word.Tokenize(u"-_", piecePosition);
                    if (!piece.IsEmpty()) {
                        words.Add(piece);
                    }
                }
            }
        }
    }
}

bool CXStringMatch::MatchWord(CXTString<char16_t> const& pattern, Texts const& words) {
    detail::WildcardPattern const prepare(detail::View(pattern));
    for (CXTString<char16_t> const& word : words) {
        if (prepare.Fits(detail::View(word))) {
            return true;
        }
    }
    return false;
}

bool CXStringMatch::InternalMatch(Texts const& words, Mode) {
    prepared->ForgetTexts();
    for (CXTString<char16_t> const& word : words) {
        prepared->AddText(detail::View(word));
    }
    prepared->GiveWords();
    return Evaluate();
}

bool CXStringMatch::Evaluate() {
    bool result = !prepared->isRefused;
    for (int index = 0; index < operations.GetSize(); ++index) {
        WordOperation& operation = operations[index];
        operation.result = prepared->Matches(static_cast<std::size_t>(index));
        result = detail::SearchProgram::Combine(result, operation.wordOperator, operation.result);
    }
    return result;
}

bool CXStringMatch::Refuse(int length) {
    WriteToLogFile(u"Search: the expression has %d characters, %d are allowed\n", length, MaxExpressionLength);
    prepared->isRefused = true;
    return false;
}
