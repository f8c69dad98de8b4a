// SPDX-License-Identifier: MIT
#include "output_folder.h"

#include "absolute_name.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <vector>

namespace zel {

namespace fs = std::filesystem;

OutputFolder::OutputFolder(fs::path const& wanted) {
    std::error_code none;
    target = fs::canonical(wanted, none);
    if (none) {
        target = AbsoluteName(wanted);
    }
    std::string pattern = target.parent_path() / ".zel-XXXXXX";
    if (mkdtemp(pattern.data())) {
        folder = pattern;
    } else {
        error = std::strerror(errno);
    }
}

OutputFolder::~OutputFolder() {
    std::error_code ignored;
    if (!folder.empty()) {
        fs::remove_all(folder, ignored);
    }
}

bool OutputFolder::MoveOut(bool overwrite) {
    std::vector<fs::path> names;
    std::error_code failed;
    for (fs::directory_iterator walk(folder, failed); !failed && walk != fs::directory_iterator();
         walk.increment(failed)) {
        if (walk->path() != Inside()) {
            names.push_back(walk->path().filename());
        }
    }
    names.push_back(target.filename());
    std::error_code unknown;
    if (failed || !fs::is_regular_file(Inside(), unknown)) {
        error = failed ? failed.message() : "the parser wrote no such file";
        return false;
    }
    for (fs::path const& name : names) {
        if (!overwrite && fs::exists(fs::symlink_status(target.parent_path() / name, unknown))) {
            error = name.string() + " exists; --overwrite replaces it";
            return false;
        }
    }
    for (fs::path const& name : names) {
        fs::rename(folder / name, target.parent_path() / name, failed);
        if (failed) {
            error = name.string() + ": " + failed.message();
            return false;
        }
    }
    return true;
}

} // namespace zel
