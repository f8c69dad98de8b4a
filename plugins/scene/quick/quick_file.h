// SPDX-License-Identifier: MIT
// A file on the disk, for a quick header reader.

#pragma once

#include "plugins/scene/quick/quick_source.h"
#include <zeltools/foundation/xstring.h>
#include <zeltools/persistence/xfile.h>

#include <filesystem>
#include <functional>

class QuickFile final : public QuickSource {
public:
    /// @param nativeName  Absolute.
    /// @param poll        Called before each transfer; what it throws ends the reading.
    QuickFile(std::filesystem::path nativeName, std::function<void()> poll);

    /// False for what is no file, since a pipe would never end, and for one that cannot be opened.
    bool IsOpen() const { return isOpen; }

    unsigned long long GetSize() const override { return file.GetLength(); }
    std::size_t Read(char* data, std::size_t size) override;
    Beside OpenBeside(std::string const& name, std::unique_ptr<QuickSource>& opened) override;
    std::string GetStem() const override { return path.stem().native(); }

private:
    std::filesystem::path path;
    std::function<void()> whileReading;
    CXFile file;
    bool isOpen = false;
};
