// SPDX-License-Identifier: MIT
#include "list_report.h"
#include "media_facts.h"
#include "terminal.h"

#include <chrono>
#include <cstdio>
#include <fmt/format.h>
#include <iterator>
#include <unistd.h>

namespace zel {

namespace {

constexpr std::size_t flushBytes = 64 * 1024;
/// Wide enough for most names; a longer one pushes the description on its own line to the right, nothing else.
constexpr int nameColumns = 32;
/// The same for the descriptions, where the content of a file follows.
constexpr int descriptionColumns = 32;
/// A person waits no longer than this for a row that is there.
constexpr std::chrono::milliseconds flushPause{100};

Colour ColourOfKind(std::string_view kind) {
    switch (kind.front()) {
    case 'f': return Colour::Blue;    // folder
    case 'b': return Colour::Magenta; // bitmap
    case '3': return Colour::Green;   // 3d
    case 'v': return Colour::Yellow;  // video
    case 'a': return Colour::Cyan;    // audio, archive
    default: return Colour::Plain;
    }
}

/// Local dates for rows that mostly share a day: breaking a time down costs more than all the rest of a row.
class DateText {
public:
    std::string_view Of(CXTime const& time) {
        long long const minute = time.GetTime() / 60;
        if (minute != lastMinute || text.empty()) {
            lastMinute = minute;
            text = fmt::format("{:04}-{:02}-{:02} {:02}:{:02}", time.GetYear(), time.GetMonth() + 1, time.GetDay(),
                               time.GetHour(), time.GetMinute());
        }
        return text;
    }

private:
    long long lastMinute = 0;
    std::string text;
};

class TextReport : public ListReport {
public:
    TextReport() : colour(WantsColour(stdout)), terminal(isatty(STDOUT_FILENO)) {}

    void AddRow(FileFacts const& facts) override {
        if (!headed) {
            headed = true;
            fmt::format_to(Out(), "{}\n",
                           Coloured(fmt::format("{:<4}  {:<7}  {:<4}  {:<4}  {:>7}  {:>13}  {:<16}  {:<{}}  {:<{}}  {}",
                                                "TYPE", "KIND", "LOAD", "SAVE", "PARSERS", "BYTES", "WRITTEN", "NAME",
                                                nameColumns, "DESCRIPTION", descriptionColumns, "CONTENT"),
                                    Colour::Dim, colour));
        }
        fmt::format_to(Out(), "{:<4}  ", facts.classCode.empty() ? "-" : facts.classCode);
        AppendColoured(fmt::format("{:<7}", facts.kind), ColourOfKind(facts.kind));
        fmt::format_to(Out(), "  {:<4}  {:<4}  {:>7}  ", YesOrDash(facts.loadable), YesOrDash(facts.savable),
                       facts.parsers);
        if (facts.isFolder) {
            fmt::format_to(Out(), "{:>13}", "-");
        } else {
            fmt::format_to(Out(), "{:>13}", facts.sizeBytes);
        }
        fmt::format_to(Out(), "  {}  ", dates.Of(facts.lastWrite));
        std::string const name = ShownName(facts.name, terminal);
        if (facts.description.empty()) {
            AppendColoured(name, facts.isFolder ? Colour::Blue : Colour::Plain);
        } else {
            AppendColoured(PadRight(name, nameColumns), facts.isFolder ? Colour::Blue : Colour::Plain);
            fmt::format_to(Out(), "  {}",
                           facts.media ? PadRight(facts.description, descriptionColumns) : facts.description);
        }
        if (facts.media) {
            buffer.append(std::string_view("  "));
            AppendColoured(ShownName(facts.media->Text(), terminal),
                           facts.media->answer.answered ? Colour::Plain : Colour::Red);
        }
        buffer.push_back('\n');
        if (buffer.size() >= flushBytes) {
            WriteOut();
        }
    }

    void Pause() override {
        if (Clock::now() - lastFlush >= flushPause) {
            WriteOut();
        }
    }

    void AddFailure(std::string const&, std::string const&) override {
        WriteOut(); // so that the words on standard error stand where the row would be
    }

    bool Finish(ListTotals const& totals) override {
        if (headed) {
            buffer.push_back('\n');
        }
        ListTotals::Kind sum;
        for (auto const& [kind, total] : totals.kinds) {
            fmt::format_to(Out(), "{:<7}  {:>9}  {:>17} bytes\n", kind, total.files, total.sizeBytes);
            sum.files += total.files;
            sum.sizeBytes += total.sizeBytes;
        }
        fmt::format_to(Out(), "{}\n",
                       Coloured(fmt::format("{:<7}  {:>9}  {:>17} bytes", "total", sum.files, sum.sizeBytes),
                                Colour::Bold, colour));
        if (totals.failures) {
            fmt::format_to(Out(), "{}\n",
                           Coloured(fmt::format("{:<7}  {:>9}", "failed", totals.failures), Colour::Red, colour));
        }
        if (totals.interrupted) {
            fmt::format_to(Out(), "{}\n", Coloured("interrupted", Colour::Red, colour));
        }
        WriteOut();
        return !HasFailed();
    }

private:
    std::back_insert_iterator<fmt::memory_buffer> Out() { return std::back_inserter(buffer); }

    void AppendColoured(std::string_view text, Colour wanted) {
        if (!colour || wanted == Colour::Plain) {
            buffer.append(text);
        } else {
            buffer.append(std::string_view(Coloured(text, wanted, true)));
        }
    }

    void WriteOut() {
        Write({buffer.data(), buffer.size()});
        Flush();
        buffer.clear();
        lastFlush = Clock::now();
    }

    using Clock = std::chrono::steady_clock;

    bool colour;
    bool terminal;
    bool headed = false;
    fmt::memory_buffer buffer;
    Clock::time_point lastFlush{};
    DateText dates;
};

} // namespace

std::unique_ptr<ListReport> MakeTextReport() {
    return std::make_unique<TextReport>();
}

} // namespace zel
