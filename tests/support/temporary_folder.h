// SPDX-License-Identifier: MIT
// A folder of its own for a test, gone with everything in it when the test ends.
//
//     TemporaryFolder folder;
//     folder.Write("a.txt", "hello");                 // native name
//     fileGetSize((folder.Path() + u"a.txt").c_str()) // toolkit's path, with a trailing backslash
//
// Names are random, so that tests run side by side.

#pragma once

#include <string>
#include <string_view>

class TemporaryFolder {
public:
    /// @param parent  Native; empty for TMPDIR or /tmp.
    explicit TemporaryFolder(std::string const& parent = {});
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    /// The toolkit's form, ending in a backslash.
    std::u16string const& Path() const { return path; }

    /// The toolkit's form of a native name in the folder.
    std::u16string Path(std::string_view nativeName) const;

    /// The native form, ending in a slash.
    std::string const& Native() const { return native; }

    /// Writes a file; missing folders of `nativeName` are made.
    void Write(std::string const& nativeName, std::string_view content = {}) const;

    /// Reads a file; "<missing>" when there is none.
    std::string Read(std::string const& nativeName) const;

    bool Exists(std::string const& nativeName) const;

private:
    std::string native;
    std::u16string path;
};
