// SPDX-License-Identifier: MIT
// Which known word a mistyped one may mean.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zel {

/// The word with the fewest single characters to add, to drop, to replace or to swap with the next; the first of
/// several. Empty where more than about a third of the longer word would change.
std::string NearestWord(std::string_view word, std::vector<std::string> const& known);

} // namespace zel
