// SPDX-License-Identifier: MIT
// Which files answer a search expression, by what is known of them in words.

#pragma once

#include "file_facts.h"
#include "search_options.h"

#include <memory>
#include <string>
#include <vector>

namespace zel {

/// The texts of a file that are searched.
struct SearchedTexts {
    CXStringMatch::Texts texts;
    std::vector<std::string> sources; ///< Of each text, what a person calls it: "name", "path", "type", "Exif:Artist".
};

/// A file's own name, its path as it was asked for, its type's description, and the metadata that are texts, where they
/// were kept.
SearchedTexts TextsOf(FileFacts const& facts);

class FileSearch {
public:
    /// @return null for an expression that is refused, which is told on standard error.
    static std::unique_ptr<FileSearch> Prepare(SearchOptions const& options);

    bool Answers(FileFacts const& facts) { return match.Match(TextsOf(facts).texts); }

    /// Whether a file that is not open yet answers already, whatever its metadata say. Without a `!` in the expression
    /// more words can only add answers.
    bool IsSettled(FileFacts const& facts) { return !mayForbid && Answers(facts); }

private:
    CXStringMatch match;
    bool mayForbid = false; ///< Whether the expression has a `!`.
};

} // namespace zel
