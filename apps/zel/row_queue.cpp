// SPDX-License-Identifier: MIT
#include "row_queue.h"

#include <fmt/format.h>
#include <utility>

namespace zel {

namespace {

/// Enough for all workers to have something to do while the first file of the row is a slow one.
constexpr std::size_t EntriesPerThread = 64;

} // namespace

RowQueue::RowQueue(ListOptions const& options, RowSink& rowSink)
    : sink(rowSink), limits(options.limits), keepMetadata(options.keepMetadata),
      maxEntries(EntriesPerThread * options.threads),
      pool(options.threads, std::chrono::milliseconds(options.limits.timeMs)) {}

void RowQueue::AddRow(FileFacts&& facts, CXTString<char16_t> const& path, std::string const& nativeName,
                      CXTString<char16_t> const& folder) {
    if (!facts.openable && entries.empty()) {
        sink.TakeRow(std::move(facts), folder);
        return;
    }
    Entry entry;
    if (facts.openable) {
        entry.work = std::make_shared<OpenWork>(path, limits, keepMetadata);
        entry.nativeName = nativeName;
        pool.Add(entry.work);
    }
    entry.facts = std::move(facts);
    entry.folder = folder;
    Add(std::move(entry));
}

void RowQueue::AddFailure(std::string const& nativeName, CXFileException::FileExceptionType cause,
                          CXTString<char16_t> const& folder) {
    Entry entry;
    entry.nativeName = nativeName;
    entry.cause = cause;
    entry.folder = folder;
    Add(std::move(entry));
}

void RowQueue::AddEndOfPath() {
    Entry entry;
    entry.isEndOfPath = true;
    Add(std::move(entry));
}

void RowQueue::Add(Entry&& entry) {
    entries.push_back(std::move(entry));
    LetOut(maxEntries);
}

void RowQueue::Finish() {
    LetOut(0);
}

void RowQueue::LetOut(std::size_t mayStay) {
    while (!entries.empty()) {
        Entry& first = entries.front();
        WorkResult result = WorkResult::Done;
        if (first.work) {
            result = pool.Look(*first.work);
            if (result != WorkResult::Done) {
                if (entries.size() <= mayStay) {
                    return;
                }
                sink.TakePause();
                result = pool.Wait(*first.work);
            }
        }
        TakeOut(first, result);
        entries.pop_front();
    }
}

void RowQueue::TakeOut(Entry& entry, WorkResult result) {
    if (entry.isEndOfPath) {
        sink.TakeEndOfPath();
        return;
    }
    if (entry.cause != CXFileException::none) {
        sink.TakeFailure(entry.nativeName, entry.cause, entry.folder);
        return;
    }
    if (!entry.work) {
        sink.TakeRow(std::move(entry.facts), entry.folder);
        return;
    }
    auto media = std::make_shared<MediaFacts>();
    switch (result) {
    case WorkResult::Done: *media = std::move(entry.work->facts); break;
    case WorkResult::Late:
        media->answer.failures = {
            {"", fmt::format("it takes longer than the {} seconds that are allowed", limits.timeMs / 1000.0)}};
        break;
    case WorkResult::Blocked:
        media->answer.failures = {{"", "its parser has to run alone, and another one does not end"}};
        break;
    case WorkResult::Cancelled: media->answer.cancelled = true; break;
    }
    if (media->answer.cancelled) {
        return; // not done: neither a row nor a failure
    }
    bool const answered = media->answer.answered;
    std::string const reason = media->answer.Reasons();
    entry.facts.media = std::move(media);
    sink.TakeRow(std::move(entry.facts), entry.folder);
    if (!answered) {
        sink.TakeOpenFailure(entry.nativeName, reason);
    }
}

} // namespace zel
