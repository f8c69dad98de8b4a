// SPDX-License-Identifier: MIT
#include "absolute_name.h"

#include <algorithm>
#include <filesystem>

namespace zel {

namespace fs = std::filesystem;

std::string AbsoluteName(std::string const& nativePath) {
    std::error_code error;
    fs::path path = fs::absolute(nativePath, error);
    if (error) {
        return nativePath;
    }
    if (std::find(path.begin(), path.end(), "..") != path.end()) {
        bool const isFolder = path.filename() == "..";
        fs::path const real = fs::canonical(isFolder ? path : path.parent_path(), error);
        path = error ? path : isFolder ? real : real / path.filename();
    }
    return path.lexically_normal();
}

} // namespace zel
