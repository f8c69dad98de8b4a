// SPDX-License-Identifier: MIT
#include "template_faults.h"

#include "nearest_word.h"
#include "output.h"
#include "template_parts.h"
#include "terminal.h"
#include "utf8_text.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>
#include <unistd.h>

namespace zel {

namespace {

constexpr std::string_view Opener = "<tagifexist>";
constexpr std::string_view Closer = "</tagifexist>";
constexpr std::string_view OtherCloser = "<tagendifexist>";

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

_TagParametersList const* FindParameter(std::string_view name) {
    for (_TagParametersList const* row = GetTagParametersList(); row->name; ++row) {
        if (Utf8(row->name) == name) {
            return row;
        }
    }
    return nullptr;
}

std::vector<std::string> Names(std::vector<_TagParametersList const*> const& rows) {
    std::vector<std::string> names;
    for (_TagParametersList const* row : rows) {
        names.push_back(Utf8(row->name));
    }
    return names;
}

class Finder {
public:
    Finder(std::string_view wholeText, CApplicationTags const& applicationTags)
        : text(wholeText), tags(applicationTags) {}

    std::vector<TemplateFault> Find() {
        for (TemplatePart const& part : SplitTemplate(text)) {
            if (part.isTag) {
                CheckTag(part.text);
            } else {
                CheckLiteral(part.text);
            }
        }
        for (std::string_view const opener : openers) {
            Add(opener, "unclosed block", opener, "", fmt::format("{} is not closed by {}", opener, Closer));
        }
        std::stable_sort(faults.begin(), faults.end(), [](TemplateFault const& a, TemplateFault const& b) {
            return std::pair(a.line, a.column) < std::pair(b.line, b.column);
        });
        return std::move(faults);
    }

private:
    void CheckTag(std::string_view tag) {
        std::string const lower = Lower(tag);
        if (lower == Opener) {
            openers.push_back(tag);
        } else if (lower == Closer || lower == OtherCloser) {
            if (openers.empty()) {
                Add(tag, "stray closer", tag, "", fmt::format("{} closes nothing", tag));
            } else {
                openers.pop_back();
            }
        } else {
            CXTString<char16_t> name = FromUtf8(std::string(tag));
            CXTString<char16_t> parameters;
            tags.ExtractParam(name, parameters);
            CTagInfo info;
            if (!tags.GetTagInfo(name, info)) {
                AddUnknownTag(tag, Utf8(name));
            } else {
                CheckParameters(tag, Utf8(parameters), info.GetTagDataType());
            }
        }
    }

    void CheckParameters(std::string_view tag, std::string const& chain, unsigned int type) {
        std::vector<std::string> names;
        if (!SplitParameters(chain, names)) {
            Add(tag.substr(tag.find('(')), "brackets", tag, "",
                fmt::format("{}: parameters stand inside each other, as in <file(lastwritedate(d))>", tag));
            return;
        }
        std::string_view rest = tag;
        for (std::string const& name : names) {
            rest.remove_prefix(rest.find('(') + 1);
            rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
            _TagParametersList const* const row = FindParameter(name);
            if (!row) {
                std::string const nearest = NearestWord(name, Names(ParametersOf(type)));
                Add(rest, "unknown parameter", name, nearest,
                    fmt::format("{}: no parameter '{}'{}", tag, name,
                                nearest.empty() ? std::string() : fmt::format("; '{}' is the nearest", nearest)));
                return; // the chain ends here
            }
            if (row->inputType != type) {
                Add(rest, "idle parameter", name, "",
                    fmt::format("{}: '{}' works on a {}, and here is a {}", tag, name, TypeWord(row->inputType),
                                TypeWord(type)));
            }
            type = row->outputTypeAndFlags & TAGDATA_MASK;
        }
    }

    void AddUnknownTag(std::string_view tag, std::string name) {
        name = name.substr(1, name.size() - 2);
        std::string nearest;
        if (_TagParametersList const* const row = FindParameter(name)) {
            nearest = fmt::format("{}({})", row->inputType == TAGDATA_DATE ? "written" : "file", name);
        } else {
            nearest = NearestWord(name, TagNames());
        }
        nearest = nearest.empty() ? nearest : "<" + nearest + ">";
        Add(tag, "unknown tag", tag, nearest,
            fmt::format("no tag {}{}", tag,
                        nearest.empty() ? std::string() : fmt::format("; {} is the nearest", nearest)));
    }

    static std::vector<std::string> TagNames() {
        std::vector<std::string> names = {"tagifexist", "/tagifexist", "tagendifexist"};
        for (ApplicationTag const& row : CApplicationTags::GetRows()) {
            names.emplace_back(row.name);
        }
        return names;
    }

    /// A bracket in literal text, where it looks as though a tag was meant.
    void CheckLiteral(std::string_view literal) {
        for (std::size_t i = 0; (i = literal.find('<', i)) != std::string_view::npos; ++i) {
            std::string_view const rest = literal.substr(i, literal.find_first_of("<>", i + 1) - i);
            if (rest.size() > 1 && (std::isalpha(static_cast<unsigned char>(rest[1])) != 0 || rest[1] == '/')) {
                std::string_view const line = rest.substr(0, rest.find('\n'));
                std::string_view const shown = line.substr(0, line.find_last_not_of(" \t\r") + 1);
                Add(rest, "unclosed tag", shown, "", fmt::format("{} is not closed by >", shown));
            }
        }
    }

    /// @param place  A part of the template.
    void Add(std::string_view place, char const* kind, std::string_view shown, std::string const& nearest,
             std::string message) {
        std::string_view const before = text.substr(0, static_cast<std::size_t>(place.data() - text.data()));
        std::size_t const lineStart = before.rfind('\n') + 1; // 0 without one
        auto const isCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
        faults.push_back({static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1,
                          static_cast<std::size_t>(std::count_if(
                              before.begin() + static_cast<std::ptrdiff_t>(lineStart), before.end(), isCharacter)) +
                              1,
                          kind, std::string(shown), nearest, std::move(message)});
    }

    std::string_view text;
    CApplicationTags const& tags;
    std::vector<std::string_view> openers;
    std::vector<TemplateFault> faults;
};

} // namespace

std::vector<TemplateFault> FindTemplateFaults(std::string_view text, CApplicationTags const& tags) {
    return Finder(text, tags).Find();
}

bool SplitParameters(std::string_view chain, std::vector<std::string>& names) {
    names.clear();
    std::size_t const closing = chain.size() - std::min(chain.size(), chain.find_last_not_of(')') + 1);
    std::string_view rest = chain.substr(0, chain.size() - closing);
    while (!rest.empty() && rest.front() == '(') {
        rest.remove_prefix(1);
        std::size_t const length = std::min(rest.find('('), rest.size());
        names.emplace_back(rest.substr(0, length));
        rest.remove_prefix(length);
        if (names.back().find(')') != std::string::npos) {
            return false;
        }
    }
    return rest.empty() && names.size() == closing;
}

std::vector<_TagParametersList const*> ParametersOf(unsigned int type) {
    std::vector<_TagParametersList const*> rows;
    for (_TagParametersList const* row = GetTagParametersList(); row->name; ++row) {
        if (row->inputType == type) {
            rows.push_back(row);
        }
    }
    return rows;
}

std::string ShownFault(TemplateFault const& fault, std::string const& source, bool terminal) {
    return ShownName(fmt::format("{}:{}:{}: {}", source, fault.line, fault.column, fault.message), terminal);
}

void PrintFaults(std::vector<TemplateFault> const& faults, std::string const& source) {
    constexpr std::size_t maxLines = 20; // a page of something else has hundreds
    std::set<std::string> printed;
    bool const terminal = isatty(STDERR_FILENO) != 0;
    for (TemplateFault const& fault : faults) {
        if (printed.contains(fault.message)) {
            continue;
        }
        if (printed.size() == maxLines) {
            Print(stderr, "zel: {}: and more\n", ShownName(source, terminal));
            return;
        }
        printed.insert(fault.message);
        Print(stderr, "zel: {}\n", ShownFault(fault, source, terminal));
    }
}

} // namespace zel
