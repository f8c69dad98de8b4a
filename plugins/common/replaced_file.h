// SPDX-License-Identifier: MIT
// A file that is written beside the one that it replaces, so that a reader, a crash or a full disk meets the old
// content or the new and nothing between.
//
//     ReplacedFile file("/home/ana/a.png");
//     if (file.Create() && WritePng(file.GetTemporaryName()) && file.Commit())
//         ...
//
// Without Commit the written file is gone and the old one stays. Threads: one at a time.

#pragma once

#include <string>

class ReplacedFile {
public:
    /// @param nativeName  The file to be replaced, or made. A symbolic link stays, and what it leads to is replaced.
    explicit ReplacedFile(std::string const& nativeName);
    ~ReplacedFile();
    ReplacedFile(ReplacedFile const&) = delete;
    ReplacedFile& operator=(ReplacedFile const&) = delete;

    /// Makes an empty file of a new name, with the same extension, in the same folder. False with errno set.
    [[nodiscard]] bool Create();
    /// Its name, native; empty before Create.
    std::string const& GetTemporaryName() const { return temporaryName; }
    /// Flushes it to the disk and gives it the name and the permissions of the old one. False with errno set, and the
    /// old file is as it was.
    [[nodiscard]] bool Commit();

private:
    std::string targetName;
    std::string temporaryName; ///< Empty when there is no file to remove.
};
