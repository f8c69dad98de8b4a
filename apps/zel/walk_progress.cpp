// SPDX-License-Identifier: MIT
#include "walk_progress.h"

#include "terminal.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/string_conversion.h>

#include <algorithm>
#include <filesystem>

namespace zel {

namespace {

/// So fine that a bar moves evenly, and so coarse that a float still counts it exactly.
constexpr int barUnits = 10000;

/// A listener is told after so many entries of a folder.
constexpr int entriesPerReport = 32;

struct Content {
    int entries = 0;
    int folders = 0;
};

/// Counts without asking for any entry's facts. A folder that cannot be read has none.
Content CountContent(std::string const& nativeFolder) {
    Content content;
    std::error_code error;
    std::filesystem::directory_iterator walk(nativeFolder, error);
    for (; !error && walk != std::filesystem::directory_iterator(); walk.increment(error)) {
        ++content.entries;
        std::error_code unknown;
        content.folders += walk->symlink_status(unknown).type() == std::filesystem::file_type::directory;
    }
    return content;
}

bool IsBelow(CXTString<char16_t> const& path, CXTString<char16_t> const& folder) {
    return path.GetLength() > folder.GetLength() && path.Left(folder.GetLength()) == folder;
}

} // namespace

WalkProgress::WalkProgress(bool isEnabled, std::size_t pathCount)
    : enabled(isEnabled), dialog(0, ProgressDlgExternalThread) {
    if (enabled) {
        dialog.SetRange(0, barUnits, true);
        dialog.Create(nullptr, u"", u"");
        dialog.SetPos(0, true);
        dialog.PushSubRange(static_cast<int>(std::min<std::size_t>(pathCount, barUnits)), true);
    }
}

void WalkProgress::Advance(CXTString<char16_t> const& folder) {
    if (open.empty() || !(open.back().path == folder)) {
        Enter(folder);
    }
    Folder& present = open.back();
    if (++present.taken % entriesPerReport == 0) {
        dialog.SetSubRangePos(std::min(present.taken, present.entries), true);
    }
}

void WalkProgress::Enter(CXTString<char16_t> const& folder) {
    while (!open.empty() && !IsBelow(folder, open.back().path)) {
        dialog.PullToSubRange(open.back().level, true);
        open.pop_back();
    }
    if (!open.empty()) {
        Folder& parent = open.back();
        if (std::exchange(parent.inOwnEntries, false)) {
            dialog.PullSubRange(true);
        }
        dialog.SetSubRangePos(1 + parent.foldersEntered++, true);
    }
    std::string const native = static_cast<char const*>(fileGetNativeName(folder));
    Content const content = CountContent(native);
    Folder entered;
    entered.path = folder;
    entered.entries = content.entries;
    dialog.SetStatus(static_cast<char16_t const*>(XCA2W(ShownName(native, true).c_str(), xEncodingUtf8)));
    entered.level = dialog.PushSubRange(1 + content.folders, true);
    dialog.PushSubRange(content.entries, true);
    open.push_back(entered);
    dialog.SetSubRangePos(0, true);
}

void WalkProgress::EndPath() {
    if (enabled) {
        open.clear();
        dialog.PullToSubRange(1, true);
        dialog.SetSubRangePos(++pathsDone, true);
    }
}

} // namespace zel
