// SPDX-License-Identifier: MIT
#include "search_explanation.h"

#include "terminal.h"
#include "utf8_text.h"

#include <fmt/format.h>

namespace zel {

namespace {

/// Deeper groups are told as they stand, so that no expression leads deep into the stack.
constexpr int MaxDepth = 16;

constexpr int PatternColumns = 28;

/// A word or a group that is longer than a line is of no use in one.
constexpr std::size_t MaxShownBytes = 200;

char const* OperatorName(CXStringMatch::_Operator wordOperator) {
    switch (wordOperator) {
    case CXStringMatch::OperatorOr: return "or";
    case CXStringMatch::OperatorNot: return "and not";
    default: return "and";
    }
}

std::string Indent(int depth) {
    return std::string(2 + 2 * static_cast<std::size_t>(depth), ' ');
}

} // namespace

SearchExplanation::SearchExplanation(SearchOptions const& options, bool toTerminal)
    : top(MakeLevel(FromUtf8(*options.expression), options.mode, options.caseSensitive, 0)), terminal(toTerminal) {}

std::unique_ptr<SearchExplanation::Level> SearchExplanation::MakeLevel(CXTString<char16_t> const& expression,
                                                                       CXStringMatch::Mode mode, bool caseSensitive,
                                                                       int depth) {
    auto level = std::make_unique<Level>();
    level->matcher.PrepareMatch(expression, mode, caseSensitive);
    for (CXStringMatch::WordOperation const& operation : level->matcher.GetOperations()) {
        bool const isTold = operation.isExpression && depth + 1 < MaxDepth;
        level->groups.push_back(
            isTold ? MakeLevel(operation.expression, CXStringMatch::ModeExpression, false, depth + 1) : nullptr);
    }
    return level;
}

std::string SearchExplanation::Understood() const {
    std::string text;
    TellOperands(*top, 0, text);
    return text;
}

void SearchExplanation::TellOperands(Level const& level, int depth, std::string& text) const {
    if (level.matcher.GetOperations().IsEmpty()) {
        text += Indent(depth) + "everything\n";
    }
    for (int index = 0; index < level.matcher.GetOperations().GetSize(); ++index) {
        CXStringMatch::WordOperation const& operation = level.matcher.GetOperations()[index];
        Level const* const group = level.groups[static_cast<std::size_t>(index)].get();
        std::string const operand = operation.isExpression ? group ? "group" : "(" + Shown(operation.expression) + ")"
                                                           : Shown(operation.expression);
        text += fmt::format("{}{:<7}  {}\n", Indent(depth), OperatorName(operation.wordOperator), operand);
        if (group) {
            TellOperands(*group, depth + 1, text);
        }
    }
}

std::string SearchExplanation::Answers(SearchedTexts const& searched) {
    Words words;
    for (CXTString<char16_t> const& searchedText : searched.texts) {
        words.emplace_back().Add(searchedText);
    }
    std::string text;
    top->matcher.Match(searched.texts);
    TellAnswers(*top, words, searched.sources, 0, text);
    return text;
}

void SearchExplanation::TellAnswers(Level& level, Words const& words, std::vector<std::string> const& sources,
                                    int depth, std::string& text) const {
    Words own(words.size());
    for (std::size_t source = 0; source < words.size(); ++source) {
        level.matcher.ExtractTextWords(words[source], own[source]);
    }
    for (int index = 0; index < level.matcher.GetOperations().GetSize(); ++index) {
        CXStringMatch::WordOperation const& operation = level.matcher.GetOperations()[index];
        if (!operation.isExpression) {
            text += fmt::format("{}{}  {}\n", Indent(depth), PadRight(Shown(operation.expression), PatternColumns),
                                AnswerOf(level, operation.expression, own, sources));
            continue;
        }
        Level* const group = level.groups[static_cast<std::size_t>(index)].get();
        text += fmt::format("{}{}  {}\n", Indent(depth),
                            PadRight(group ? "group" : "(" + Shown(operation.expression) + ")", PatternColumns),
                            operation.result ? "answers" : "does not answer");
        if (group) {
            CXStringMatch::Texts all;
            for (CXStringMatch::Texts const& some : own) {
                all.AddArray(some);
            }
            group->matcher.Match(all); // for the results of its own groups
            TellAnswers(*group, own, sources, depth + 1, text);
        }
    }
}

std::string SearchExplanation::AnswerOf(Level& level, CXTString<char16_t> const& pattern, Words const& words,
                                        std::vector<std::string> const& sources) const {
    for (std::size_t source = 0; source < words.size(); ++source) {
        for (CXTString<char16_t> const& word : words[source]) {
            CXStringMatch::Texts single;
            single.Add(word);
            if (level.matcher.MatchWord(pattern, single)) {
                return fmt::format("{} in {}", Shown(word), ShownName(sources[source], terminal));
            }
        }
    }
    return "-";
}

std::string SearchExplanation::Shown(CXTString<char16_t> const& text) const {
    std::string shown = ShownName(Utf8(text), terminal);
    if (shown.size() > MaxShownBytes) {
        std::size_t end = MaxShownBytes;
        while (end > 0 && (shown[end] & 0xC0) == 0x80) {
            --end; // not inside a character
        }
        shown = shown.substr(0, end) + "...";
    }
    return shown;
}

} // namespace zel
