// SPDX-License-Identifier: MIT
// The orders in which rows are told of.

#pragma once

#include "commands.h"
#include "file_facts.h"

#include <map>
#include <string>
#include <vector>

namespace zel {

/// The keys as a command line has them. They are stored too, so they outlive a change of the enumeration.
std::map<std::string, SortBy> const& SortWords();

/// Sorts by a key; rows of the same key stay in the walk's order, as all do for SortBy::Walk.
void SortRows(std::vector<FileFacts>& rows, SortBy key);

} // namespace zel
