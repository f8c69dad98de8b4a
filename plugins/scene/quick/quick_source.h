// SPDX-License-Identifier: MIT
// The bytes that a quick header reader goes through, once and from the beginning.
//
//     QuickBytes bytes(source);
//     std::string_view line;
//     while (bytes.Line(line)) { ... }
//
// Threads: one at a time.

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Where bytes come from.
class QuickSource {
public:
    virtual ~QuickSource() = default;
    virtual unsigned long long GetSize() const = 0;
    /// The next bytes, fewer at the end. May throw to stop the reading.
    virtual std::size_t Read(char* data, std::size_t size) = 0;

    enum class Beside {
        Missing,
        There,
        Unknown, ///< Not to be opened from here.
    };
    /// Another file of the same folder.
    /// @param name    Without a folder.
    /// @param opened  Receives the file when it is There.
    virtual Beside OpenBeside(std::string const& name, std::unique_ptr<QuickSource>& opened) = 0;
    /// The file's own name without its extension.
    virtual std::string GetStem() const = 0;
};

class QuickBytes {
public:
    explicit QuickBytes(QuickSource& from) : source(from) {}

    /// Exactly so many bytes, which stay until the next call. Null when there are fewer, or too many for the buffer.
    char const* Take(std::size_t size);
    /// The next line without its line feed, which stays until the next call. False at the end of the file, for a last
    /// line without a line feed, and for what no text has: a line of more than 4 KiB, or with a zero in it.
    bool Line(std::string_view& line);
    /// Whether every byte was taken; tells an end of the lines from a line that is not taken.
    bool IsAtEnd();

private:
    /// Sees that so many bytes lie in the buffer, as far as there are.
    std::size_t Fill(std::size_t wanted);

    QuickSource& source;
    std::vector<char> buffer;
    std::size_t first = 0; ///< Of the bytes in the buffer that nobody has taken.
    std::size_t last = 0;  ///< Behind them.
    bool ended = false;    ///< There is nothing more to come.
};
