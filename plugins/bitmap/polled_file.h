// SPDX-License-Identifier: MIT
// The file that OpenImageIO reads or writes: it asks now and then whether to go on, remembers an error that a format's
// code may overlook, and is opened by its native name, whatever bytes that is made of.
//
// Formats that want a C stream (JPEG) get one that leads here too, so this calls itself a plain file.
//
// Threads: one at a time.

#pragma once

#include <OpenImageIO/filesystem.h>
#include <array>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

/// What is behind the stream.
class PolledSource {
public:
    using Poll = std::function<bool()>;

    /// @param descriptor  An open file, which is closed here.
    PolledSource(int descriptor, char const* mode, Poll shouldStop);
    ~PolledSource();
    PolledSource(PolledSource const&) = delete;
    PolledSource& operator=(PolledSource const&) = delete;

    std::size_t ReadAt(void* target, std::size_t size, long long offset);
    std::size_t WriteAt(void const* data, std::size_t size, long long offset);

    int const descriptor;
    Poll const shouldStop;
    long long streamPosition = 0; ///< Of the C stream alone.
    int firstError = 0;           ///< The first errno of a failed read or write.
    bool stopped = false;         ///< shouldStop answered true.
    std::FILE* stream;
};

class PolledFile final : private PolledSource, public OIIO::Filesystem::IOFile {
public:
    /// @param shouldStop  Asked before each megabyte.
    /// @return null with errno set. What is no regular file is refused with EINVAL: a pipe may never answer.
    static std::unique_ptr<PolledFile> Open(std::string const& nativeName, Mode mode, Poll shouldStop);

    /// The first errno of a failed read or write; 0 when none failed.
    int GetError() const { return firstError; }
    /// Hands what is buffered to the system. False when this or any write before failed.
    bool Finish();
    bool HasStopped() const { return stopped; }

    void close() override {}
    bool seek(int64_t offset) override;
    size_t read(void* target, size_t size) override;
    size_t write(void const* data, size_t size) override;
    size_t pread(void* target, size_t size, int64_t offset) override;
    size_t pwrite(void const* data, size_t size, int64_t offset) override;
    size_t size() const override;
    void flush() const override {}

private:
    PolledFile(int descriptor, Mode mode, Poll shouldStop);

    std::array<std::byte, 32768> window; ///< Read ahead, for formats that read by the byte.
    int64_t windowStart = 0;
    int64_t windowEnd = 0;
};
