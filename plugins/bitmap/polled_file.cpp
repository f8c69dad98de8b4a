// SPDX-License-Identifier: MIT
#include "plugins/bitmap/polled_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// So much between two polls: a slow disk reads it in 10 ms.
constexpr std::size_t BytesBetweenPolls = 1 << 20;

PolledSource& SourceOf(void* cookie) {
    return *static_cast<PolledSource*>(cookie);
}

ssize_t ReadStream(void* cookie, char* target, std::size_t size) {
    PolledSource& source = SourceOf(cookie);
    std::size_t const got = source.ReadAt(target, size, source.streamPosition);
    source.streamPosition += static_cast<long long>(got);
    return static_cast<ssize_t>(got);
}

/// Never tells of a failure: some formats end the process then. The file remembers it, and whoever writes asks it.
ssize_t WriteStream(void* cookie, char const* data, std::size_t size) {
    PolledSource& source = SourceOf(cookie);
    source.WriteAt(data, size, source.streamPosition);
    source.streamPosition += static_cast<long long>(size);
    return static_cast<ssize_t>(size);
}

int SeekStream(void* cookie, off64_t* offset, int whence) {
    PolledSource& source = SourceOf(cookie);
    struct stat facts {};
    if (whence == SEEK_END && fstat(source.descriptor, &facts) != 0) {
        return -1;
    }
    off64_t const base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? source.streamPosition : facts.st_size;
    if (*offset < -base) {
        return -1;
    }
    source.streamPosition = base + *offset;
    *offset = source.streamPosition;
    return 0;
}

} // namespace

PolledSource::PolledSource(int file, char const* mode, Poll poll)
    : descriptor(file), shouldStop(std::move(poll)),
      stream(
          fopencookie(this, mode, {.read = ReadStream, .write = WriteStream, .seek = SeekStream, .close = nullptr})) {}

PolledSource::~PolledSource() {
    if (stream) {
        std::fclose(stream);
    }
    close(descriptor);
}

std::size_t PolledSource::ReadAt(void* target, std::size_t size, long long offset) {
    auto* const bytes = static_cast<std::byte*>(target);
    std::size_t done = 0;
    while (done < size && !stopped && offset >= 0) {
        stopped = shouldStop();
        std::size_t const wanted = stopped ? 0 : std::min(size - done, BytesBetweenPolls);
        ssize_t const got = pread(descriptor, bytes + done, wanted, offset + static_cast<long long>(done));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0 && firstError == 0) {
            firstError = errno;
        }
        if (got <= 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::size_t PolledSource::WriteAt(void const* data, std::size_t size, long long offset) {
    auto const* const bytes = static_cast<std::byte const*>(data);
    std::size_t done = 0;
    while (done < size && !stopped && firstError == 0) {
        stopped = shouldStop();
        std::size_t const wanted = stopped ? 0 : std::min(size - done, BytesBetweenPolls);
        ssize_t const put = pwrite(descriptor, bytes + done, wanted, offset + static_cast<long long>(done));
        if (put < 0 && errno != EINTR) {
            firstError = errno;
        }
        done += put > 0 ? static_cast<std::size_t>(put) : 0;
    }
    return done;
}

std::unique_ptr<PolledFile> PolledFile::Open(std::string const& nativeName, Mode mode, Poll poll) {
    // Without waiting: opening a pipe would wait for its other end.
    int const flags = (mode == Read ? O_RDONLY : O_RDWR) | O_CLOEXEC | O_NONBLOCK;
    int const file = open(nativeName.c_str(), flags);
    if (file < 0) {
        return nullptr;
    }
    struct stat facts {};
    if (fstat(file, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        ::close(file);
        errno = EINVAL;
        return nullptr;
    }
    std::unique_ptr<PolledFile> result(new PolledFile(file, mode, std::move(poll)));
    if (!result->stream) {
        errno = ENOMEM;
        return nullptr;
    }
    return result;
}

PolledFile::PolledFile(int file, Mode mode, Poll poll)
    : PolledSource(file, mode == Read ? "r" : "w+", std::move(poll)), IOFile(stream, mode) {}

bool PolledFile::Finish() {
    return std::fflush(stream) == 0 && firstError == 0 && !stopped;
}

bool PolledFile::seek(int64_t offset) {
    if (offset < 0) {
        return false;
    }
    m_pos = offset;
    return mode() == Read || fseeko(stream, offset, SEEK_SET) == 0;
}

size_t PolledFile::read(void* target, size_t size) {
    if (mode() != Read) { // some formats look at what they wrote
        std::fflush(stream);
        size_t const got = ReadAt(target, size, m_pos);
        seek(m_pos + static_cast<int64_t>(got));
        return got;
    }
    if (m_pos >= windowStart &&
        static_cast<int64_t>(size) <= windowEnd - m_pos) { // nearly always: a number or a letter
        std::memcpy(target, window.data() + (m_pos - windowStart), size);
        m_pos += static_cast<int64_t>(size);
        return size;
    }
    auto* const bytes = static_cast<std::byte*>(target);
    size_t done = 0;
    while (done < size) {
        if (m_pos >= windowStart && m_pos < windowEnd) {
            size_t const part = std::min(size - done, static_cast<size_t>(windowEnd - m_pos));
            std::memcpy(bytes + done, window.data() + (m_pos - windowStart), part);
            done += part;
            m_pos += static_cast<int64_t>(part);
        } else if (size - done >= window.size()) {
            size_t const got = ReadAt(bytes + done, size - done, m_pos);
            m_pos += static_cast<int64_t>(got);
            return done + got;
        } else {
            windowStart = m_pos;
            windowEnd = m_pos + static_cast<int64_t>(ReadAt(window.data(), window.size(), m_pos));
            if (windowEnd == windowStart) {
                break;
            }
        }
    }
    return done;
}

size_t PolledFile::write(void const* data, size_t size) {
    size_t const put = size == 0 ? 0 : std::fwrite(data, 1, size, stream); // some formats write nothing from nowhere
    m_pos += static_cast<int64_t>(put);
    return put;
}

size_t PolledFile::pread(void* target, size_t size, int64_t offset) {
    if (mode() != Read) {
        std::fflush(stream);
    }
    return ReadAt(target, size, offset);
}

size_t PolledFile::pwrite(void const* data, size_t size, int64_t offset) {
    std::fflush(stream);
    WriteAt(data, size, offset);
    return size; // as WriteStream does
}

size_t PolledFile::size() const {
    if (mode() != Read) {
        std::fflush(stream);
    }
    struct stat facts {};
    return fstat(descriptor, &facts) == 0 ? static_cast<size_t>(facts.st_size) : 0;
}
