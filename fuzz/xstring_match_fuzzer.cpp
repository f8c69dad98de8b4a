// SPDX-License-Identifier: MIT
// Any units as a search expression and the texts that it is held against, beside the language in its plainest form.
#include "tests/support/plain_string_match.h"
#include "zeltools/tags/xstring_match.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

CXTString<char16_t> Text(std::u16string const& text) {
    return CXTString<char16_t>(text.data(), static_cast<int>(text.size()));
}

void Check(bool isTrue) {
    if (!isTrue) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    // The first byte is the mode and the case; a zero ends the expression, and each text. Long ones are for the tests:
    // the plain form takes the square of them.
    int const mode = data[0] & 3;
    bool const isCaseSensitive = (data[0] & 4) != 0;
    std::vector<std::u16string> parts(1);
    for (std::size_t at = 1; at < std::min<std::size_t>(size, 400); ++at) {
        if (data[at] == 0) {
            parts.emplace_back();
        } else {
            parts.back() += static_cast<char16_t>(data[at]);
        }
    }
    std::u16string const expression = parts[0];
    parts.erase(parts.begin());

    support::PlainStringMatch plain;
    plain.Prepare(expression, mode, isCaseSensitive);
    CXStringMatch match;
    Check(match.PrepareMatch(Text(expression), static_cast<CXStringMatch::Mode>(mode), isCaseSensitive));
    auto const& operations = match.GetOperations();
    Check(operations.GetSize() == static_cast<int>(plain.operations.size()));
    for (int index = 0; index < operations.GetSize(); ++index) {
        auto const& wanted = plain.operations[static_cast<std::size_t>(index)];
        Check(operations[index].expression == Text(wanted.expression) &&
              operations[index].wordOperator == static_cast<CXStringMatch::_Operator>(wanted.wordOperator) &&
              operations[index].isExpression == wanted.isExpression);
    }
    CXStringMatch::Texts texts;
    for (std::u16string const& part : parts) {
        texts.Add(Text(part));
        Check(match.Match(Text(part)) == plain.Match({part}));
    }
    Check(match.Match(texts) == plain.Match(parts));
    return 0;
}
