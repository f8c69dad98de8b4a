// SPDX-License-Identifier: MIT
// The wildcards of a file search, as the original system reads them.
//
//     FindPattern(u"*.png").Matches(u"A.PNG")     true
//     FindPattern(u"*.*").Matches(u"README")      true: the usual way to say "everything"
//     FindPattern(u"*.").Matches(u"README")       true, and a name with an extension does not match
//     FindPattern(u"a?.txt").Matches(u"a.txt")    true: in front of a dot, and at the end, ? may stand for nothing
//     FindPattern(u"a.*").Matches(u"a")           true: a dot in front of a wildcard may stand for the end
//
// The five wildcards that these rules come down to are those of the file system's name expressions: any text, any
// character, text up to the last dot, character that may be missing, dot that may be missing.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// One compiled pattern. Matching takes at most (length of the name) x (length of the pattern) steps, whatever they
/// are. Case is ignored, beyond ASCII too.
///
/// Threads: const calls from any thread.
class FindPattern {
public:
    explicit FindPattern(std::u16string_view pattern);

    bool Matches(std::u16string_view name) const;

    /// Whether a text has wildcards at all.
    static bool HasWildcards(std::u16string_view text);

private:
    std::u16string tokens; ///< Upper-case characters; wildcards as units that no toolkit name holds.
    bool everything;       ///< Matches any name: spares the walk.
};

} // namespace platform
