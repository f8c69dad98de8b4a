// SPDX-License-Identifier: MIT
#include "zeltools/foundation/log_file.h"

#include "zeltools/files/paths/path_numbering.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/application_data.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/foundation/text_format.h"
#include "zeltools/foundation/xexception.h"
#include "zeltools/foundation/xtime.h"
#include "zeltools/persistence/stdio_file_ex.h"
#include "zeltools/platform/clock.h"
#include "zeltools/platform/code_pages.h"
#include "zeltools/platform/threads.h"
#include "zeltools/process/thread_registry.h"
#include "zeltools/process/xsingle_lock.h"

#include <algorithm>
#include <cstdarg>
#include <memory>
#include <mutex>

namespace detail {

constinit std::atomic<unsigned long long> logState{LogLevelThreshold};

} // namespace detail

namespace {

using detail::LogHasCallback;
using detail::LogHasFile;
using detail::logState;
using ThreadId = unsigned long long;
using WideString = CXTString<char16_t>;

constexpr unsigned long long levelWord = 0xFFFFFFFF; // the part of logState that SetLogLevel gives and takes

/// What lives from SetLogFile to CloseLogFile.
struct OpenLog {
    CStdioFileEx file{true};
    unsigned long long startTick = platform::GetTickCount64();
    CHashMap<ThreadId, ThreadId, unsigned int> tabs; // of the threads that have any
    bool hasText = false;                            // so that its mark is there
};

std::atomic<unsigned int> indentLimit{0xFFFFFFFF};

/// Guarded by LogLockSection.
OpenLog* openLog = nullptr;

/// Taken by the log that is open and by one that is being opened or closed. So only one is, while the work on the
/// disk, which asks other parts of the toolkit, needs no lock.
std::atomic<bool> claimed{false};

/// Guards the pair below, and nothing is taken inside it.
constinit std::mutex callbackMutex;
logCallbackInfo listener;

/// The log's lock. Never destroyed: a worker that the process outruns at its exit may still be inside.
CXCriticalSection& LogLockSection() {
    static CXCriticalSection& lock = *new CXCriticalSection;
    return lock;
}

/// A message as wide text. Most fit its own room.
class MessageText {
public:
    MessageText(char16_t const* format, std::va_list arguments) {
        std::va_list again;
        va_copy(again, arguments);
        int const count = xFormatV(room, Room, format, arguments);
        if (count < 0) {
            room[0] = 0;
        } else if (count >= Room) {
            large.FormatV(format, again);
            text = large;
        }
        va_end(again);
    }
    MessageText(char const* format, std::va_list arguments) {
        char narrow[Room];
        std::va_list again;
        va_copy(again, arguments);
        int const count = xFormatV(narrow, Room, format, arguments);
        if (count < Room) { // no code page has a character of more units than bytes
            int const units =
                platform::MultiByteToWideChar(platform::CodePageAcp, 0, narrow, std::max(count, 0), room, Room - 1);
            room[std::max(units, 0)] = 0;
        } else {
            CXTString<char> whole;
            whole.FormatV(format, again);
            large = static_cast<char const*>(whole);
            text = large;
        }
        va_end(again);
    }
    MessageText(MessageText const&) = delete;
    MessageText& operator=(MessageText const&) = delete;

    operator char16_t const*() const { return text; }

private:
    static constexpr int Room = 512;
    char16_t room[Room];
    WideString large;
    char16_t const* text = room;
};

logCallbackInfo Listener() {
    std::lock_guard const hold(callbackMutex);
    return listener;
}

unsigned int TabsOf(ThreadId thread) {
    unsigned int const* const tabs = openLog->tabs.Find(thread);
    return tabs ? *tabs : 0;
}

bool IsLogActive() {
    unsigned long long const state = logState.load();
    if (!(state & (LogHasFile | LogLevelNoFile)) || state & LogLevelOff) {
        return false;
    }
    unsigned long long const deepest = state & LogLevelThreshold;
    if (deepest == LogLevelThreshold) {
        return true;
    }
    CXSingleLock const hold(&LogLockSection(), true);
    return !openLog || TabsOf(platform::GetCurrentThreadId()) <= deepest;
}

/// What the level word says of a message.
bool IsFiltered(unsigned long long state, unsigned int word) {
    return state & LogLevelOff || (word & LogMessageLevel) > (state & LogLevelThreshold);
}

/// Whether the level word lets a message to the file.
bool GoesToFile(unsigned long long state, unsigned int word) {
    return state & LogHasFile && !(state & LogLevelNoFile) && !IsFiltered(state, word);
}

/// Finds the tabs of a line; false where they are more than may be written.
bool FindIndentation(unsigned int& tabs) {
    unsigned int const limit = indentLimit.load();
    tabs = TabsOf(platform::GetCurrentThreadId());
    if (tabs > limit) {
        return false;
    }
    if (unsigned int const mainTabs = TabsOf(GetApplicationMainThreadID())) {
        tabs = mainTabs;
    }
    return tabs <= limit;
}

/// The first text goes the file's own way, which writes the mark where it is missing. To find that out it asks the
/// system for the position, and so the others go as the units that they are.
void WriteText(char16_t const* text) {
    if (openLog->hasText) {
        openLog->file.Write(text, xStrLen(text) * sizeof *text);
    } else {
        openLog->file.WriteString(text);
        openLog->hasText = true;
    }
}

void WriteLine(unsigned int word, char16_t const* text) {
    CXSingleLock const hold(&LogLockSection(), true);
    if (!openLog) {
        return;
    }
    unsigned int tabs = 0;
    if (word & LogMessageIndented && openLog->tabs.GetCount() != 0 && !FindIndentation(tabs)) {
        return;
    }
    if (tabs != 0) {
        WriteText(WideString(u'\t', static_cast<int>(tabs)));
    }
    WriteText(text);
    openLog->file.Flush();
}

template <class Character>
WideString Formatted(Character const* format, std::va_list arguments) {
    return format ? WideString(static_cast<char16_t const*>(MessageText(format, arguments))) : WideString();
}

template <class Character>
void WriteMessage(unsigned int word, Character const* format, std::va_list arguments) {
    unsigned long long const state = logState.load();
    if (state & LogHasCallback) {
        if (logCallbackInfo const to = Listener(); to.callback) {
            std::va_list again;
            va_copy(again, arguments);
            to.callback(word, Formatted(format, again), IsFiltered(state, word), to.user);
            va_end(again);
            if (IsLogActive()) {
                return;
            }
        }
    }
    if (format && GoesToFile(state, word)) {
        WriteLine(word, MessageText(format, arguments));
    }
}

/// Writes a line of the log's own. One that cannot be written is lost and gives false.
bool WriteOwnLine(char16_t const* text) {
    try {
        if (GoesToFile(logState.load(), LogMessageIndented)) {
            WriteLine(LogMessageIndented, text);
        }
        return true;
    } catch (CXException* failure) {
        CXException::Delete(failure);
        return false;
    }
}

bool OpenFile(CStdioFileEx& file, WideString const& path, LogFileMode mode) {
    constexpr unsigned int replace =
        XFILE_TYPE_TEXT | XFILE_TYPE_WIDE | XFILE_OPEN_CREATE | XFILE_OPEN_WRITE | XFILE_SHARE_DENY_WRITE;
    switch (mode) {
    case LogFileModeReplace: return file.Open(path, replace, nullptr);
    case LogFileModeAppend:
        if (!file.Open(path, replace | XFILE_OPEN_NO_TRUNCATE, nullptr)) {
            return false;
        }
        file.SeekToEnd();
        return true;
    case LogFileModeNew:
        return file.Open(fileExists(path) ? fileCreateUniqueName(path, true, 0, false) : path, replace, nullptr);
    }
    return false;
}

/// A null pointer where the file cannot be opened.
std::unique_ptr<OpenLog> MakeLog(WideString const& path, LogFileMode mode) {
    try {
        auto log = std::make_unique<OpenLog>();
        if (OpenFile(log->file, path, mode)) {
            return log;
        }
    } catch (CXException* failure) {
        CXException::Delete(failure);
    }
    return nullptr;
}

void CloseFile(std::unique_ptr<OpenLog> log) {
    try {
        log->file.Close();
    } catch (CXException* failure) {
        CXException::Delete(failure);
    }
    log.reset();
    claimed.store(false);
}

std::unique_ptr<OpenLog> TakeLog() {
    std::unique_ptr<OpenLog> log(openLog);
    openLog = nullptr;
    logState.fetch_and(~LogHasFile);
    return log;
}

void SetLevelWord(unsigned int level, unsigned int& before) {
    unsigned long long state = logState.load();
    while (!logState.compare_exchange_weak(state, (state & ~levelWord) | level)) {
    }
    before = static_cast<unsigned int>(state);
}

WideString HeaderText() {
    constexpr char16_t format[] = u"\n\n*************************\nLogging information for %s (%s)\nRelease Mode\n"
                                  u"*************************\n";
    WideString header;
    header.Format(format, static_cast<char16_t const*>(GetApplicationName(true)),
                  static_cast<char16_t const*>(CXTime::GetTickCount().Format(u"%c")));
    return header;
}

void TellCallback(WideString const& text) {
    if (logCallbackInfo const to = Listener(); to.callback) {
        to.callback(LogMessageIndented, text, IsFiltered(logState.load(), LogMessageIndented), to.user);
    }
}

} // namespace

bool SetLogFile(CXTString<char16_t> const& path, LogFileMode mode, unsigned int level) {
    if (claimed.exchange(true)) {
        return false;
    }
    unsigned int before = 0;
    SetLevelWord(level, before);
    // The names come before the lock: close callbacks log while they hold the application lock, which guards them.
    WideString const complete =
        fileStripName(path).IsEmpty() ? GetUserApplicationDataPath(false, nullptr) + path : path;
    WideString const header = HeaderText();
    std::unique_ptr<OpenLog> log = MakeLog(complete, mode);
    if (!log) {
        claimed.store(false);
        return false;
    }
    bool written = true;
    {
        CXSingleLock const hold(&LogLockSection(), true);
        openLog = log.release();
        unsigned long long const state = logState.fetch_or(LogHasFile);
        if (!(state & LogHasCallback)) {
            written = WriteOwnLine(header); // under the lock, so that no other line comes first
        }
        if (!written) {
            log = TakeLog();
        }
    }
    if (!written) {
        CloseFile(std::move(log));
        return false;
    }
    TellCallback(header); // not under the lock: the host may need one of its own
    return true;
}

bool CloseLogFile() {
    WideString last;
    std::unique_ptr<OpenLog> log;
    {
        CXSingleLock const hold(&LogLockSection(), true);
        if (!openLog) {
            return false;
        }
        last.Format(u"Log time : %I64u ms\n", platform::GetTickCount64() - openLog->startTick);
        bool const hasCallback = logState.load() & LogHasCallback;
        if (hasCallback != IsLogActive()) { // active without a callback; or with one, and not active for this thread
            WriteOwnLine(last);
        }
        log = TakeLog();
    }
    CloseFile(std::move(log));
    TellCallback(last);
    return true;
}

unsigned int SetLogLevel(unsigned int level) {
    unsigned int before = 0;
    SetLevelWord(level, before);
    indentLimit.store((level & LogLevelIndent) >> 16);
    return before;
}

bool IsLogFileEnabled() {
    return logState.load() & LogHasCallback || IsLogActive();
}

void LogLock(bool lock) {
    lock ? LogLockSection().Lock() : LogLockSection().Unlock();
}

unsigned int LogFileAddTab(bool add) {
    if (!(logState.load() & LogHasFile)) {
        return 0;
    }
    CXSingleLock const hold(&LogLockSection(), true);
    if (!openLog) {
        return 0;
    }
    ThreadId const thread = platform::GetCurrentThreadId();
    unsigned int tabs = TabsOf(thread);
    if (!add && tabs <= 1) {
        openLog->tabs.Remove(thread, true);
        return 0;
    }
    openLog->tabs.Insert(thread, add ? ++tabs : --tabs);
    return tabs;
}

logCallbackInfo SetLogCallback(LogCallback callback, void* user) {
    std::lock_guard const hold(callbackMutex);
    logCallbackInfo const before = std::exchange(listener, {callback, user});
    callback ? logState.fetch_or(LogHasCallback) : logState.fetch_and(~LogHasCallback);
    return before;
}

namespace detail {

void WriteLogMessage(unsigned int word, char16_t const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    WriteMessage(word, format, arguments);
    va_end(arguments);
}

void WriteLogMessage(unsigned int word, char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    WriteMessage(word, format, arguments);
    va_end(arguments);
}

} // namespace detail
