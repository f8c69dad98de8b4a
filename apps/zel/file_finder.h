// SPDX-License-Identifier: MIT
// Finds the files that a person names, by themselves or by their folders, and puts a row of each into a queue.

#pragma once

#include "commands.h"
#include "row_queue.h"

#include <functional>
#include <string>

namespace zel {

class FileFinder {
public:
    /// @param options   Whether folders are entered and files are opened.
    /// @param mustStop  Asked between two rows.
    FileFinder(ListOptions const& listOptions, RowQueue& rowQueue, std::function<bool()> mustStopNow);

    /// Which files are opened, among those that can be; all when this is not set.
    std::function<bool(FileFacts const&)> mustOpen;

    /// Adds a file, or the entries of a folder in the order of the walk, and the end of this path.
    void Find(std::string const& nativePath);

private:
    void FindFile(CXTString<char16_t> const& path, std::string const& nativePath);
    void FindInFolder(CXTString<char16_t> const& folder, std::string const& nativeFolder);
    void AddRow(CXTString<char16_t> const& path, bool isFolder, FileFacts&& facts, std::string const& nativeName,
                CXTString<char16_t> const& folder);

    ListOptions const& options;
    RowQueue& queue;
    std::function<bool()> mustStop;
};

} // namespace zel
