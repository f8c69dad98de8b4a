// SPDX-License-Identifier: MIT
// Between the walk, which finds files, and the report, which tells of them: files are opened on workers meanwhile, and
// come out in the order in which they went in. So many at once and no more, so that a walk of any length takes the
// same memory.

#pragma once

#include "commands.h"
#include "file_facts.h"
#include "media_facts.h"
#include "worker_pool.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace zel {

/// What comes out. A row's facts, a failure's reason, and so on, are complete.
class RowSink {
public:
    virtual ~RowSink() = default;
    /// @param folder  Where the file was found, ending in a backslash; empty for one that was asked for itself.
    virtual void TakeRow(FileFacts&& facts, CXTString<char16_t> const& folder) = 0;
    /// A file that could not be opened, after its row.
    virtual void TakeOpenFailure(std::string const& nativeName, std::string const& reason) = 0;
    /// A file or folder that could not be found or read at all.
    virtual void TakeFailure(std::string const& nativeName, CXFileException::FileExceptionType cause,
                             CXTString<char16_t> const& folder) = 0;
    /// All that belongs to one of the paths that were asked for has come out.
    virtual void TakeEndOfPath() = 0;
    /// The next one may take its time: a good moment to show what has come out.
    virtual void TakePause() = 0;
};

class RowQueue {
public:
    RowQueue(ListOptions const& options, RowSink& rowSink);

    /// @param path        The file's own, to open it by.
    /// @param nativeName  What a message calls it.
    void AddRow(FileFacts&& facts, CXTString<char16_t> const& path, std::string const& nativeName,
                CXTString<char16_t> const& folder);
    void AddFailure(std::string const& nativeName, CXFileException::FileExceptionType cause,
                    CXTString<char16_t> const& folder);
    void AddEndOfPath();

    /// Lets everything out. After an interruption, what is done.
    void Finish();

    WorkerPool& Pool() { return pool; }

private:
    struct Entry {
        FileFacts facts;
        std::string nativeName; ///< Of a file that is opened, and of a failure.
        CXTString<char16_t> folder;
        std::shared_ptr<OpenWork> work;
        CXFileException::FileExceptionType cause = CXFileException::none; ///< Of a failure.
        bool isEndOfPath = false;
    };

    void Add(Entry&& entry);
    /// Lets out what is ready, and waits for the first ones while there are too many.
    void LetOut(std::size_t mayStay);
    void TakeOut(Entry& entry, WorkResult result);

    RowSink& sink;
    MediaLimits limits;
    bool keepMetadata;
    std::size_t maxEntries;
    std::deque<Entry> entries;
    WorkerPool pool;
};

} // namespace zel
