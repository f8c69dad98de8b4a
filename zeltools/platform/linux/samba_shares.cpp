// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/samba_shares.h"

#include "zeltools/platform/linux/mount_table.h"
#include "zeltools/platform/native_path.h"

#include <algorithm>
#include <dirent.h>
#include <memory>

namespace platform {

namespace {

constexpr std::string_view Blanks = " \t\r";

std::string_view Trim(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    return text.substr(0, text.find_last_not_of(Blanks) + 1);
}

/// Lower case and without blanks, as keys and section names are compared.
std::string Folded(std::string_view text) {
    std::string folded;
    for (char const c : text) {
        if (Blanks.find(c) == std::string_view::npos) {
            folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    return folded;
}

/// Takes the next logical line: without comment, joined with those it goes on to.
std::string CutLogicalLine(std::string_view& text) {
    std::string line;
    bool goesOn = true;
    while (goesOn && !text.empty()) {
        std::size_t const end = std::min(text.find('\n'), text.size());
        std::string_view const piece = Trim(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        goesOn = !piece.empty() && piece.back() == '\\';
        line += goesOn ? piece.substr(0, piece.size() - 1) : piece;
    }
    return !line.empty() && (line[0] == '#' || line[0] == ';') ? std::string{} : line;
}

bool SplitAssignment(std::string_view line, std::string& key, std::string_view& value) {
    std::size_t const equals = line.find('=');
    if (equals == std::string_view::npos) {
        return false;
    }
    key = Folded(line.substr(0, equals));
    value = Trim(line.substr(equals + 1));
    return true;
}

bool IsYes(std::string_view value) {
    std::string const folded = Folded(value);
    return folded == "yes" || folded == "true" || folded == "1" || folded == "on";
}

ShareInfo MakeShare(std::string_view name, std::string_view path) {
    ShareInfo share;
    bool const isUsable =
        !name.empty() && path.size() > 1 && path[0] == '/' && path.find('%') == std::string_view::npos;
    if (isUsable) {
        AppendFromNativeName(name, share.name);
        share.path = FromNativePath(path);
        while (share.path.size() > 1 && share.path.back() == u'\\') {
            share.path.pop_back();
        }
    }
    return share;
}

} // namespace

SambaConfiguration ParseSambaConfiguration(std::string_view text) {
    SambaConfiguration configuration;
    std::string section;
    std::string path;
    bool isOffered = true;
    auto const closeSection = [&] {
        std::string const folded = Folded(section);
        bool const isSpecial = folded == "global" || folded == "homes" || folded == "printers";
        ShareInfo share = MakeShare(section, path);
        if (isOffered && !isSpecial && !share.path.empty()) {
            configuration.shares.push_back(std::move(share));
        }
        path.clear();
        isOffered = true;
    };
    while (!text.empty()) {
        std::string const line = CutLogicalLine(text);
        std::string key;
        std::string_view value;
        if (line.size() > 2 && line[0] == '[' && line.back() == ']') {
            closeSection();
            section = Trim(std::string_view{line}.substr(1, line.size() - 2));
        } else if (SplitAssignment(line, key, value)) {
            if (key == "path" || key == "directory") {
                path = value;
            } else if (((key == "printable" || key == "printok") && IsYes(value)) ||
                       (key == "available" && !IsYes(value))) {
                isOffered = false;
            } else if (key == "usersharepath" && Folded(section) == "global") {
                configuration.userShareFolder = value;
            }
        }
    }
    closeSection();
    return configuration;
}

ShareInfo ParseUserShare(std::string_view name, std::string_view text) {
    std::string path;
    std::string shareName{name}; // the file's own name is the share's in lower case
    while (!text.empty()) {
        std::string const line = CutLogicalLine(text);
        std::string key;
        std::string_view value;
        if (!SplitAssignment(line, key, value)) {
            continue;
        }
        if (key == "path") {
            path = value;
        } else if (key == "sharename" && !value.empty()) {
            shareName = value;
        }
    }
    return MakeShare(shareName, path);
}

SambaPaths& GetSambaPaths() {
    static SambaPaths paths;
    return paths;
}

std::vector<ShareInfo> NetShareEnum() {
    SambaConfiguration configuration = ParseSambaConfiguration(ReadSystemFile(GetSambaPaths().configuration));
    std::string const folder =
        configuration.userShareFolder.empty() ? GetSambaPaths().userShareFolder : configuration.userShareFolder;
    std::vector<ShareInfo> shares = std::move(configuration.shares);
    std::unique_ptr<DIR, int (*)(DIR*)> const entries{opendir(folder.c_str()), closedir};
    while (dirent const* const entry = entries ? readdir(entries.get()) : nullptr) {
        ShareInfo share = ParseUserShare(entry->d_name, ReadSystemFile(folder + '/' + entry->d_name));
        if (!share.path.empty()) {
            shares.push_back(std::move(share));
        }
    }
    return shares;
}

} // namespace platform
