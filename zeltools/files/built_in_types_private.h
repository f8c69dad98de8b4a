// SPDX-License-Identifier: MIT
// The file types that every process knows from the start.

#pragma once

#include <span>

namespace detail {

/// One row; loader and saver follow from the properties.
struct BuiltInType {
    char const* description;
    char const* extensions;
    unsigned int classId;
    unsigned int properties;
};

/// In the order in which they are registered, which is the order of the parsers of a shared extension.
std::span<BuiltInType const> BuiltInTypes();

} // namespace detail
