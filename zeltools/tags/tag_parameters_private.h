// SPDX-License-Identifier: MIT
// A parameter chain, "(createdate(d+h))", taken apart: each stage is a name and, in brackets behind it, the rest of the
// chain.
//
//     stage   inner               name
//     0       createdate(d+h)     createdate
//     1       d+h                 d+h

#pragma once

#include "zeltools/foundation/xstring.h"

namespace detail {

/// Walks a chain from stage 0 on, in time linear in its length: the opening brackets are met from the left, and for
/// each of them the closing one from the right.
///
///     for (ParameterStages stages(parameters); stages.Next();)
///         stages.GetName(name);
///
/// The chain must outlive the walk and stay as it is.
class ParameterStages {
public:
    explicit ParameterStages(CXTString<char16_t> const& chain) : parameters(chain), right(chain.GetLength() - 1) {}

    /// Goes on to the next stage, at first to stage 0; false at the end, and then for ever.
    bool Next();

    /// What stands between the brackets of the stage.
    void GetInner(CXTString<char16_t>& inner) const;

    /// The same up to its first opening bracket.
    void GetName(CXTString<char16_t>& name) const;

private:
    CXTString<char16_t> const& parameters;
    int from = 0; ///< behind the opening bracket of the stage
    int right;    ///< the last character of the stage
};

/// Whether a parameter has this name.
bool IsTagParameter(CXTString<char16_t> const& name);

/// Gives one stage of a chain; who wants them all takes ParameterStages.
/// @return whether `name` is the name of a parameter. Where it is not, both texts are set all the same; where there is
///         no such stage, they are untouched.
bool ExtractParameterStage(CXTString<char16_t> const& parameters, int stage, CXTString<char16_t>& inner,
                           CXTString<char16_t>& name);

} // namespace detail
