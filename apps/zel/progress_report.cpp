// SPDX-License-Identifier: MIT
#include "progress_report.h"

#include "interruption.h"
#include "json_text.h"
#include "output.h"
#include "terminal.h"
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/process/progress_text.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zel {

namespace {

ProgressStyle Resolved(ProgressStyle style) {
    if (style != ProgressStyle::Automatic && style != ProgressStyle::Bar) {
        return style;
    }
    char const* const terminal = std::getenv("TERM");
    bool const canErase = isatty(STDERR_FILENO) && !(terminal && std::string_view(terminal) == "dumb");
    return canErase ? ProgressStyle::Bar : ProgressStyle::None;
}

/// COLUMNS where it is set, else what the terminal says, else 80.
int TerminalColumns() {
    if (char const* const columns = std::getenv("COLUMNS")) {
        if (int const count = std::atoi(columns); count > 0) {
            return count;
        }
    }
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::string Utf8(CXTString<char16_t> const& text) {
    return static_cast<char const*>(XCW2A(text, xEncodingUtf8));
}

std::string TimeLeft(double secondsGone, double done) {
    long long const left = progressSecondsLeft(secondsGone, done);
    return left < 0 ? std::string() : Utf8(progressTimeText(left)) + " left";
}

/// The end of a name that fits into so many columns.
std::string Tail(std::string name, int columns) {
    if (DisplayWidth(name) <= columns) {
        return name;
    }
    while (!name.empty() && DisplayWidth(name) + 3 > columns) {
        do {
            name.erase(0, 1);
        } while (!name.empty() && (static_cast<unsigned char>(name[0]) & 0xC0) == 0x80);
    }
    return name.empty() ? name : "..." + name;
}

} // namespace

ProgressReport::ProgressReport(ProgressStyle wanted, Interruption const& interruptionOfUser)
    : style(Resolved(wanted)), interruption(interruptionOfUser) {
    processProgressPushCallback(&Listen, this);
}

ProgressReport::~ProgressReport() {
    processProgressPopCallback();
    Clear();
}

bool ProgressReport::Listen(unsigned int flags, ProcessProgressInfo const& progress, void* user) {
    auto* const report = static_cast<ProgressReport*>(user);
    if (flags & ProcessProgressFirstPosition) {
        report->Show(progress.first);
    }
    return (flags & ProcessProgressCancelQuestion) && report->interruption.IsRequested();
}

double ProgressReport::SecondsGone() const {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string ProgressReport::FilesText() const {
    return total > files ? fmt::format("{} of {} files", files, total) : fmt::format("{} files", files);
}

void ProgressReport::Show(ProcessProgressBar const& bar) {
    double const length = static_cast<double>(bar.highest) - bar.lowest;
    shown = std::max(shown, length > 0 ? (static_cast<double>(bar.position) - bar.lowest) / length : 0);
    if (style == ProgressStyle::Bar) {
        using namespace std::chrono_literals;
        if (Clock::now() - lastDrawn >= 100ms) {
            DrawBar(shown, Utf8(bar.status));
        }
        return;
    }
    int const parts = style == ProgressStyle::Lines ? 10 : 100;
    int const part = static_cast<int>(shown * parts);
    if (part <= lastPart || part == parts) { // the last part is Finish's
        return;
    }
    lastPart = part;
    style == ProgressStyle::Lines ? PrintLine(shown) : PrintJson(shown, Utf8(bar.status));
}

void ProgressReport::DrawBar(double done, std::string const& place) {
    int const columns = TerminalColumns() - 1; // a full line would wrap
    double const gone = SecondsGone();
    std::string line = fmt::format("{:>3} %", static_cast<int>(done * 100));
    int const barColumns = std::min(columns / 3, 24) - 3;
    if (barColumns >= 4) {
        auto const filled = static_cast<std::size_t>(done * barColumns);
        line += fmt::format(" [{}{}]", std::string(filled, '#'),
                            std::string(static_cast<std::size_t>(barColumns) - filled, '.'));
    }
    auto const append = [&](std::string const& text) {
        if (!text.empty() && static_cast<int>(line.size() + text.size()) + 2 <= columns) {
            line += "  " + text;
        }
    };
    append(FilesText());
    append(gone > 0 ? fmt::format("{:.0f}/s", static_cast<double>(files) / gone) : std::string());
    append(TimeLeft(gone, done));
    std::string const tail = Tail(place, columns - static_cast<int>(line.size()) - 2);
    if (!tail.empty()) {
        line += "  " + tail;
    }
    if (static_cast<int>(DisplayWidth(line)) <= columns) {
        Print(stderr, "\r{}\033[K", line);
        std::fflush(stderr);
        drawn = true;
    }
    lastDrawn = Clock::now();
}

void ProgressReport::PrintLine(double done) const {
    double const gone = SecondsGone();
    std::string const left = TimeLeft(gone, done);
    Print(stderr, "zel: {:>3} %, {}{}{}\n", static_cast<int>(done * 100), FilesText(), left.empty() ? "" : ", ", left);
}

void ProgressReport::PrintJson(double done, std::string const& place) const {
    double const gone = SecondsGone();
    nlohmann::ordered_json object;
    object["percent"] = static_cast<int>(done * 100);
    object["files"] = files;
    object["ofFiles"] = total > files ? nlohmann::ordered_json(total) : nlohmann::ordered_json(files);
    object["filesPerSecond"] = gone > 0 ? std::round(static_cast<double>(files) / gone) : 0;
    long long const left = progressSecondsLeft(gone, done);
    object["secondsLeft"] = left < 0 ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(left);
    SetName(object, "folder", place);
    Print(stderr, "{}\n", object.dump());
}

void ProgressReport::Clear() {
    if (drawn) {
        Print(stderr, "\r\033[K");
        std::fflush(stderr);
        drawn = false;
    }
}

void ProgressReport::Finish() {
    Clear();
    if (style == ProgressStyle::Lines) {
        PrintLine(1);
    } else if (style == ProgressStyle::Json) {
        PrintJson(1, "");
    }
}

} // namespace zel
