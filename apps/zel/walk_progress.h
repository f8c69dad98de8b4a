// SPDX-License-Identifier: MIT
// Where a walk stands, as nested ranges of a progress bar: a path that was asked for is a step, and a folder's range
// has a step for its own entries and one for each folder below.

#pragma once

#include <zeltools/foundation/xstring.h>
#include <zeltools/process/progress_dlg.h>

#include <string>
#include <vector>

namespace zel {

/// Reports to the listener on top of the toolkit's callback stack. Nothing costs anything when it is not `enabled`.
class WalkProgress {
public:
    WalkProgress(bool enabled, std::size_t pathCount);

    /// An entry of `folder`, which ends in a backslash, was taken from a walk of CFolderWalk's order.
    void TakeEntry(CXTString<char16_t> const& folder) {
        if (enabled) {
            Advance(folder);
        }
    }

    /// A path that was asked for is done, with all folders below it.
    void EndPath();

private:
    /// A folder whose range is open. Its own entries have a range of their own within, until the first folder below
    /// is entered.
    struct Folder {
        CXTString<char16_t> path;
        int level = 0;
        int entries = 0; ///< As many as there were when it was entered.
        int taken = 0;
        int foldersEntered = 0;
        bool inOwnEntries = true;
    };

    void Advance(CXTString<char16_t> const& folder);
    void Enter(CXTString<char16_t> const& folder);

    bool enabled;
    int pathsDone = 0;
    CProgressDlg dialog;
    std::vector<Folder> open;
};

} // namespace zel
