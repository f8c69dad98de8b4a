// SPDX-License-Identifier: MIT
// The search language in its plainest form: text that is cut and cut again, a matcher within a matcher for each group,
// a list of word strings, and a star that tries every place. Slow, and short enough to be seen to be right; what
// CXStringMatch does is held against it.

#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace support {

class PlainStringMatch {
public:
    using Text = std::u16string;
    enum Operator {
        Or = 1,
        And = 2,
        Not = 3
    };
    struct Operation {
        Text expression;
        Operator wordOperator;
        bool isExpression;
    };

    void Prepare(Text expression, int mode, bool isCaseSensitive) {
        caseSensitive = isCaseSensitive;
        hasQuotes = expression.find(u'"') != Text::npos;
        Init(caseSensitive ? expression : Lower(expression), mode);
    }

    bool Match(std::vector<Text> const& texts) const {
        std::vector<Text> words;
        for (Text const& text : texts) {
            if (text.empty()) {
                continue;
            }
            if (hasQuotes) {
                words.push_back(text);
            }
            for (Text word : Cut(text, u" ")) {
                word = caseSensitive ? word : Lower(word);
                words.push_back(word);
                if (word.find_first_of(u"-_") != Text::npos) {
                    for (Text const& piece : Cut(word, u"-_")) {
                        words.push_back(piece);
                    }
                }
            }
        }
        // With quotes, each group has the words twice over; neither order nor number of them tells.
        std::sort(words.begin(), words.end());
        words.erase(std::unique(words.begin(), words.end()), words.end());
        bool result = true;
        for (Operation const& operation : operations) {
            bool operand = false;
            if (operation.isExpression) {
                PlainStringMatch inner;
                inner.hasQuotes = operation.expression.find(u'"') != Text::npos;
                inner.Init(Lower(operation.expression), 1);
                operand = inner.Match(words);
            } else {
                for (Text const& word : words) {
                    operand = operand || MatchWord(operation.expression, word);
                }
            }
            result = operation.wordOperator == Or    ? result || operand
                     : operation.wordOperator == And ? result && operand
                                                     : result && !operand;
        }
        return result;
    }

    static bool MatchWord(Text const& pattern, Text const& word) {
        std::size_t p = 0;
        std::size_t w = 0;
        for (; w < word.size() && (p == pattern.size() || pattern[p] != u'*'); ++p, ++w) {
            if (p == pattern.size() || (pattern[p] != u'?' && Upper(pattern[p]) != Upper(word[w]))) {
                return false;
            }
        }
        for (std::size_t backPattern = 0, backWord = 0; w < word.size();) {
            if (p < pattern.size() && pattern[p] == u'*') {
                if (++p == pattern.size()) {
                    return true;
                }
                backPattern = p;
                backWord = w + 1;
            } else if (p < pattern.size() && (pattern[p] == word[w] || pattern[p] == u'?')) {
                ++p;
                ++w;
            } else {
                p = backPattern;
                w = backWord++;
            }
        }
        while (p < pattern.size() && pattern[p] == u'*') {
            ++p;
        }
        return p == pattern.size();
    }

    std::vector<Operation> operations;

private:
    static bool IsSpecial(char16_t c) { return Text(u"()\"&^!").find(c) != Text::npos; }
    static bool IsEscaped(Text const& text, std::size_t at) { return at >= 1 && text[at - 1] == u'\\'; }
    static bool IsMark(Text const& text, std::size_t at) { return IsSpecial(text[at]) && !IsEscaped(text, at); }
    static char16_t Upper(char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c; }
    static Text Lower(Text text) {
        for (char16_t& c : text) {
            c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
        }
        return text;
    }
    static Text Trim(Text const& text) {
        Text const spaces = u" \t\n\v\f\r\x85\xA0";
        std::size_t const first = text.find_first_not_of(spaces);
        return first == Text::npos ? Text() : text.substr(first, text.find_last_not_of(spaces) + 1 - first);
    }
    static std::vector<Text> Cut(Text const& text, Text const& separators) {
        std::vector<Text> pieces(1);
        for (char16_t const c : text) {
            if (separators.find(c) != Text::npos) {
                pieces.emplace_back();
            } else {
                pieces.back() += c;
            }
        }
        std::erase(pieces, Text());
        return pieces;
    }

    void Init(Text text, int mode) {
        operations.clear();
        text = Trim(text);
        if (mode == 2 || mode == 3) {
            for (std::size_t at = 0; at + 1 < text.size(); ++at) {
                if (IsMark(text, at) && text[at] != u'"') {
                    text[at] = u' ';
                }
            }
        }
        bool inQuotes = false;
        bool wordSeen = true;
        bool blankSeen = false;
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == u'"' && !IsEscaped(text, at)) {
                inQuotes = !inQuotes;
                if (!inQuotes) {
                    continue;
                }
            } else if (inQuotes) {
                if (IsMark(text, at)) {
                    text.insert(at++, 1, u'\\');
                }
                continue;
            } else if (text[at] == u' ') {
                blankSeen = true;
                continue;
            } else if (text[at] == u'(') {
                at = std::min(text.find_first_not_of(u' ', at + 1), text.size()) - 1;
                continue;
            } else if (text[at] == u')') {
                continue;
            } else if (IsMark(text, at)) {
                wordSeen = false;
                continue;
            }
            if (wordSeen && blankSeen) {
                text.insert(at, mode == 2 ? u" ^ " : u" & ");
                at += 3;
            }
            wordSeen = true;
            blankSeen = false;
        }
        Extract(text);
    }

    void Extract(Text text) {
        Operator current = And;
        auto const add = [&](Text const& operand) {
            if (Add(operand, current)) {
                current = And;
            }
        };
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (!IsMark(text, i)) {
                continue;
            }
            add(text.substr(0, i));
            std::size_t cut = i + 1;
            if (text[i] == u'(' || text[i] == u'"') {
                std::size_t end = i + 1;
                for (int depth = 1; end < text.size(); ++end) {
                    if (!IsMark(text, end)) {
                        continue;
                    }
                    if (text[i] == u'(') {
                        depth += text[end] == u'(' ? 1 : text[end] == u')' ? -1 : 0;
                    } else if (text[end] == u'"') {
                        depth = 0;
                    }
                    if (depth == 0) {
                        break;
                    }
                }
                add(text.substr(i + 1, end - i - 1));
                cut = end + 1;
            } else if (text[i] != u')') {
                current = text[i] == u'&' ? And : text[i] == u'^' ? Or : Not;
            }
            text = cut < text.size() ? text.substr(cut) : Text();
            i = static_cast<std::size_t>(-1);
        }
        add(text);
    }

    bool Add(Text const& text, Operator wordOperator) {
        Text copy = Trim(text);
        if (copy.empty()) {
            return false;
        }
        for (std::size_t at = 0; at < copy.size(); ++at) {
            if (IsMark(copy, at)) {
                operations.push_back({copy, wordOperator, true});
                return true;
            }
        }
        for (std::size_t at = 0; at + 1 < copy.size(); ++at) {
            if (copy[at] == u'\\' && IsSpecial(copy[at + 1])) {
                copy.erase(at, 1);
            }
        }
        if (copy.back() != u'?' && copy.back() != u'*') {
            copy += u'*';
        }
        if (copy.front() != u'?' && copy.front() != u'*') {
            copy.insert(0, 1, u'*');
        }
        operations.push_back({copy, wordOperator, false});
        return true;
    }

    bool caseSensitive = false;
    bool hasQuotes = false;
};

} // namespace support
