// SPDX-License-Identifier: MIT
// What is wrong with a template: tags and parameters that nobody knows, and what is opened and not closed. None of it
// stops an expansion, in which such a tag stays as it is written.

#pragma once

#include "application_tags.h"

#include <string>
#include <string_view>
#include <vector>

namespace zel {

struct TemplateFault {
    std::size_t line;    ///< From 1.
    std::size_t column;  ///< From 1, in characters.
    char const* kind;    ///< "unknown tag", "unknown parameter", "idle parameter", "brackets", "unclosed tag",
                         ///< "unclosed block", "stray closer".
    std::string text;    ///< As the template has it.
    std::string nearest; ///< What may be meant; empty for nothing near.
    std::string message; ///< For a person.
};

/// The faults of a template in the order in which they stand there.
std::vector<TemplateFault> FindTemplateFaults(std::string_view text, CApplicationTags const& tags);

/// The names of the parameters in a chain, outermost first; false where they do not stand inside each other.
/// "(lastwritedate(d+h))" gives "lastwritedate" and "d+h".
bool SplitParameters(std::string_view chain, std::vector<std::string>& names);

/// The parameters that work on values of a type.
std::vector<_TagParametersList const*> ParametersOf(unsigned int type);

/// "source:line:column: message", as ShownName has it.
/// @param source  What the template is called: its file, or "template".
std::string ShownFault(TemplateFault const& fault, std::string const& source, bool terminal);

/// Prints faults to standard error, the same one once.
void PrintFaults(std::vector<TemplateFault> const& faults, std::string const& source);

} // namespace zel
