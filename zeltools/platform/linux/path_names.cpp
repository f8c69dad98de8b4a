// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/path_names.h"

#include "zeltools/platform/native_path.h"

#include <algorithm>

namespace platform {

bool SplitNames(std::u16string_view path, std::size_t fixed, std::vector<std::string>& names) {
    while (!path.empty()) {
        std::size_t const end = std::min(path.find_first_of(u"\\/"), path.size());
        std::u16string_view const name = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (name == u"..") {
            if (names.size() > fixed) {
                names.pop_back();
            }
        } else if (!name.empty() && name != u".") {
            std::string native;
            if (!ToNativeName(name, native)) {
                return false;
            }
            names.push_back(std::move(native));
        }
    }
    return true;
}

void SplitNativeNames(std::string_view path, std::vector<std::string>& names) {
    while (!path.empty()) {
        std::size_t const end = std::min(path.find('/'), path.size());
        if (end > 0) {
            names.emplace_back(path.substr(0, end));
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
}

} // namespace platform
