// SPDX-License-Identifier: MIT
// A template that is expanded for many files.
//
//     FileTemplate const wanted("<file(shortname)>: <width> x <height>");
//     wanted.GetNeeds();                  // TagNeeds::Content: files have to be opened
//     wanted.Expand(facts, {.index = 1})  // "wood: 640 x 480"
//
// What the toolkit leaves to its host is settled here: what is no tag is literal text wherever it stands, a value is
// never read for tags again, and the markers of a conditional block are gone in the end.
//
// Threads: one at a time.

#pragma once

#include "application_tags.h"
#include "template_faults.h"

#include <string>
#include <vector>

namespace zel {

/// Where an expansion stands among the others, and how values come into it.
struct ExpansionPlace {
    unsigned long long index = 1;
    unsigned int counterDigits = 4;
    ValueStyle style = ValueStyle::Exact;
};

class FileTemplate {
public:
    /// Registers the tags of metadata that the text asks for.
    explicit FileTemplate(std::string const& text);

    std::vector<TemplateFault> const& GetFaults() const { return faults; }
    /// The most that any of its tags needs.
    TagNeeds GetNeeds() const { return needs; }
    /// Whether each expansion brings its own end of line.
    bool EndsLine() const { return endsLine; }
    /// The literal text behind the last tag.
    std::string const& GetEnding() const { return ending; }

    std::string Expand(FileFacts const& facts, ExpansionPlace const& place) const;

private:
    std::vector<TemplateFault> faults;
    TagNeeds needs = TagNeeds::Nothing;
    bool endsLine;
    std::string ending;
    CXTString<char16_t> prepared; ///< Guarded, with a character of its own in front.
};

} // namespace zel
