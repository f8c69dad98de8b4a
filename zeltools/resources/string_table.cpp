// SPDX-License-Identifier: MIT
#include "zeltools/platform/language.h"
#include "zeltools/resources/string_table_private.h"

#include <algorithm>
#include <cstddef>

namespace platform {

namespace {

struct Row {
    unsigned id;
    std::u16string_view english;
    std::u16string_view french;
};

constexpr Row rows[] = {
#define ZEL_STRING(id, english, french) {id, english, french},
#include "zeltools/resources/strings.inc"
#undef ZEL_STRING
};

static_assert(std::ranges::is_sorted(rows, std::ranges::less_equal(), &Row::id) &&
                  std::ranges::adjacent_find(rows, std::ranges::equal_to(), &Row::id) == std::end(rows),
              "rows are sorted by number, and each number stands once");
static_assert(std::ranges::none_of(rows, [](Row const& row) { return row.english.empty() || row.french.empty(); }),
              "each row has both its texts");

} // namespace

std::u16string_view FindString(unsigned id, unsigned short language) {
    Row const* const row = std::ranges::lower_bound(rows, id, std::ranges::less(), &Row::id);
    if (row == std::end(rows) || row->id != id)
        return {};
    return IsFrench(language) ? row->french : row->english;
}

int LoadStringW(unsigned id, char16_t* buffer, int size) {
    std::u16string_view const text = FindString(id, GetThreadUILanguage());
    if (text.empty() || !buffer || size < 1)
        return 0;
    std::size_t const copied = text.copy(buffer, static_cast<std::size_t>(size) - 1);
    buffer[copied] = 0;
    return static_cast<int>(copied);
}

} // namespace platform
