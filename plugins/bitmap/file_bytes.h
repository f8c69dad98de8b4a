// SPDX-License-Identifier: MIT
// Numbers and marks of a file, for what is looked at before OpenImageIO is.

#pragma once

#include "plugins/bitmap/polled_file.h"

#include <array>
#include <cstdint>
#include <string_view>

/// Numbers of a file at any place; what lies behind its end is 0. The file's position is moved.
class FileBytes {
public:
    explicit FileBytes(PolledFile& source) : file(source), fileSize(source.size()) {}

    std::uint64_t GetSize() const { return fileSize; }
    std::uint32_t Big(std::uint64_t at, int count) const {
        std::array<unsigned char, 4> bytes{};
        Get(at, bytes.data(), static_cast<std::size_t>(count));
        std::uint32_t value = 0;
        for (int i = 0; i < count; ++i) {
            value = value << 8 | bytes[static_cast<std::size_t>(i)];
        }
        return value;
    }
    std::uint32_t Little(std::uint64_t at, int count) const {
        std::uint32_t const value = Big(at, count);
        return __builtin_bswap32(value) >> (8 * (4 - count));
    }
    bool IsAt(std::uint64_t at, std::string_view text) const {
        std::array<char, 8> bytes{};
        Get(at, bytes.data(), text.size());
        return std::string_view(bytes.data(), text.size()) == text;
    }
    std::size_t Get(std::uint64_t at, void* target, std::size_t size) const {
        return at < fileSize && file.seek(static_cast<int64_t>(at)) ? file.read(target, size) : 0;
    }

private:
    PolledFile& file;
    std::uint64_t fileSize;
};
