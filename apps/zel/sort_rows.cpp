// SPDX-License-Identifier: MIT
#include "sort_rows.h"

#include <algorithm>
#include <string_view>

namespace zel {

std::map<std::string, SortBy> const& SortWords() {
    static std::map<std::string, SortBy> const words = {{"walk", SortBy::Walk},
                                                        {"name", SortBy::Name},
                                                        {"size", SortBy::Size},
                                                        {"date", SortBy::Date},
                                                        {"kind", SortBy::Kind}};
    return words;
}

void SortRows(std::vector<FileFacts>& rows, SortBy key) {
    auto const by = [&](auto keyOf) {
        std::stable_sort(rows.begin(), rows.end(),
                         [keyOf](FileFacts const& a, FileFacts const& b) { return keyOf(a) < keyOf(b); });
    };
    switch (key) {
    case SortBy::Walk: break;
    case SortBy::Name: by([](FileFacts const& f) { return std::string_view(f.name); }); break;
    case SortBy::Size: by([](FileFacts const& f) { return f.sizeBytes; }); break;
    case SortBy::Date: by([](FileFacts const& f) { return f.lastWrite.GetTime(); }); break;
    case SortBy::Kind: by([](FileFacts const& f) { return std::string_view(f.kind); }); break;
    }
}

} // namespace zel
