// SPDX-License-Identifier: MIT
#include "zeltools/tags/search_language_private.h"
#include "zeltools/tags/search_program_private.h"

#include <algorithm>
#include <string>

namespace detail {

namespace {

/// A special character that is not escaped.
struct Mark {
    char16_t character;
    std::size_t place;
    std::size_t closer; ///< Of one that opens a group: the index of the mark that ends it; npos where none does.
};

std::vector<Mark> FindMarks(std::u16string_view text) {
    std::vector<Mark> marks;
    std::vector<std::size_t> open;
    for (std::size_t place = FindSearchMark(text, 0); place != text.npos; place = FindSearchMark(text, place + 1)) {
        // Between two quotes everything is escaped, so a quote that is on top was met by the one that closes it.
        bool const isQuoted = !open.empty() && marks[open.back()].character == u'"';
        bool const closes = !open.empty() && text[place] == (isQuoted ? u'"' : u')');
        if (closes) {
            marks[open.back()].closer = marks.size();
            open.pop_back();
        } else if (text[place] == u'(' || text[place] == u'"') {
            open.push_back(marks.size());
        }
        marks.push_back({text[place], place, text.npos});
    }
    return marks;
}

/// Whether no operand can change the result.
bool IsDecided(bool result, CXStringMatch::_Operator next) {
    return result == (next == CXStringMatch::OperatorOr);
}

std::u16string Lowered(std::u16string_view text) {
    std::u16string lowered(text.size(), u'\0');
    LowerAsciiUnits(lowered.data(), text);
    return lowered;
}

} // namespace

/// Walks over the marks of a text, and from group to group without a call of its own.
class SearchProgram::Compiler {
public:
    Compiler(SearchProgram& searchProgram, std::u16string_view expression)
        : program(searchProgram), text(expression), marks(FindMarks(text)) {
        for (std::size_t place = text.find(u'"'); place != text.npos; place = text.find(u'"', place + 1)) {
            quotes.push_back(place);
        }
    }

    void Run() {
        groups.push_back({0, text.size(), text.size(), marks.size(), HasQuote(0, text.size())});
        while (!groups.empty()) {
            if (next == marks.size() || marks[next].place >= groups.back().end) {
                AddWord(groups.back().end);
                EndGroup();
            } else {
                AddWord(marks[next].place);
                TakeMark(marks[next]);
            }
        }
    }

private:
    struct Group {
        std::size_t step; ///< That begins it.
        std::size_t end;
        std::size_t behind;     ///< Where the text goes on.
        std::size_t nextBehind; ///< The first mark there.
        bool seesGiven;
        Operator pending = Operator::OperatorAnd; ///< Of the operand that comes next.
    };

    bool HasQuote(std::size_t begin, std::size_t end) const {
        auto const first = std::lower_bound(quotes.begin(), quotes.end(), begin);
        return first != quotes.end() && *first < end;
    }

    /// What stands between the last cut and `end` is a word, if it is anything.
    void AddWord(std::size_t end) {
        std::u16string_view const word = TrimmedView(text.substr(cut, end - cut));
        cut = end;
        if (word.empty()) {
            return;
        }
        Group& group = groups.back();
        program.steps.push_back({StepKind::Word, group.seesGiven, group.pending, program.patterns.size()});
        program.patterns.emplace_back(PatternOfWord(word));
        group.pending = Operator::OperatorAnd;
    }

    void TakeMark(Mark const& mark) {
        cut = mark.place + 1;
        ++next;
        Group& group = groups.back();
        switch (mark.character) {
        case u'&': group.pending = Operator::OperatorAnd; return;
        case u'^': group.pending = Operator::OperatorOr; return;
        case u'!': group.pending = Operator::OperatorNot; return;
        case u')': return; // ends nothing
        default: break;
        }
        bool const isClosed = mark.closer != text.npos;
        std::size_t const end = isClosed ? marks[mark.closer].place : group.end;
        std::size_t const behind = isClosed ? end + 1 : end;
        std::size_t const nextBehind = isClosed ? mark.closer + 1 : marks.size();
        bool const hasMarks = next < marks.size() && marks[next].place < end;
        if (!hasMarks) {
            AddWord(end);
            cut = behind;
            next = nextBehind;
            return;
        }
        program.steps.push_back({StepKind::Begin, false, group.pending, 0});
        group.pending = Operator::OperatorAnd;
        groups.push_back({program.steps.size() - 1, end, behind, nextBehind, HasQuote(cut, end)});
    }

    void EndGroup() {
        Group const group = groups.back();
        groups.pop_back();
        cut = group.behind;
        next = group.nextBehind;
        if (!groups.empty()) {
            program.steps.push_back({StepKind::End, false, Operator::OperatorAnd, 0});
            program.steps[group.step].index = program.steps.size();
        }
    }

    SearchProgram& program;
    std::u16string_view text;
    std::vector<Mark> marks;
    std::vector<std::size_t> quotes; ///< The places of all quotes, escaped ones too.
    std::vector<Group> groups;
    std::size_t cut = 0;  ///< What stands in front of it is done.
    std::size_t next = 0; ///< The first mark behind it.
};

SearchProgram::SearchProgram(std::u16string_view expression) {
    std::u16string const text = WithImpliedOperators(TrimmedView(Lowered(expression)), u" & ", ImpliedIn::GroupsToo);
    Compiler(*this, text).Run();
}

bool SearchProgram::Matches(SearchedWords const& given, SearchedWords const& lowered) {
    levels.clear();
    bool result = true;
    for (std::size_t at = 0; at < steps.size();) {
        Step const& step = steps[at++];
        if (step.kind == StepKind::End) {
            result = Combine(levels.back().result, levels.back().levelOperator, result);
            levels.pop_back();
        } else if (IsDecided(result, step.stepOperator)) {
            at = step.kind == StepKind::Begin ? step.index : at;
        } else if (step.kind == StepKind::Begin) {
            levels.push_back({result, step.stepOperator});
            result = true;
        } else {
            WildcardPattern const& pattern = patterns[step.index];
            bool const fits = pattern.FitsAny(lowered) || (step.seesGiven && pattern.FitsAny(given));
            result = Combine(result, step.stepOperator, fits);
        }
    }
    return result;
}

bool SearchProgram::Combine(bool result, CXStringMatch::_Operator with, bool operand) {
    switch (with) {
    case CXStringMatch::OperatorOr: return result || operand;
    case CXStringMatch::OperatorNot: return result && !operand;
    default: return result && operand;
    }
}

} // namespace detail
