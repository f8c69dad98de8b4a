// SPDX-License-Identifier: MIT
// How far a list is, told on standard error: as a bar on a terminal, or as lines for a person or a program.

#pragma once

#include <zeltools/process/progress_callbacks.h>

#include <chrono>
#include <string>

namespace zel {

class Interruption;

enum class ProgressStyle {
    Automatic, ///< A bar where standard error is a terminal, else nothing.
    Bar,       ///< A bar; nothing where standard error is no terminal.
    Lines,     ///< A line at every tenth part.
    Json,      ///< An object on a line of its own at every hundredth part.
    None
};

/// The listener of a list's progress, on the toolkit's callback stack for as long as it lives.
///
/// A bar is drawn at most ten times a second and erased at the end. An interruption answers the cancel question.
class ProgressReport {
public:
    ProgressReport(ProgressStyle style, Interruption const& interruptionOfUser);
    ~ProgressReport();
    ProgressReport(ProgressReport const&) = delete;
    ProgressReport& operator=(ProgressReport const&) = delete;

    /// Whether anything is shown, and so whether it is worth computing.
    bool IsShown() const { return style != ProgressStyle::None; }

    /// Adds to the files that there will be.
    void AddToTotal(unsigned long long count) { total += count; }

    /// Counts a file that is done.
    void CountFile() { ++files; }

    /// Takes the bar away, so that other text can be written. It comes back by itself.
    void Clear();

    /// The end: the bar is erased, the other styles tell that all is done.
    void Finish();

private:
    using Clock = std::chrono::steady_clock;

    static bool Listen(unsigned int flags, ProcessProgressInfo const& progress, void* user);
    void Show(ProcessProgressBar const& bar);
    void DrawBar(double done, std::string const& place);
    void PrintLine(double done) const;
    void PrintJson(double done, std::string const& place) const;
    double SecondsGone() const;
    /// "12 of 40 files", or "12 files" where nobody counted them, or where there are more by now.
    std::string FilesText() const;

    ProgressStyle style;
    Interruption const& interruption;
    Clock::time_point start = Clock::now();
    Clock::time_point lastDrawn{};
    unsigned long long files = 0;
    unsigned long long total = 0;
    double shown = 0; ///< The share that was told last; what is told never runs backwards.
    int lastPart = -1;
    bool drawn = false;
};

} // namespace zel
