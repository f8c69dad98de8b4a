// SPDX-License-Identifier: MIT
// The one trace log of the process: a text file, a callback of the host, or nowhere, by one level word.
//
//     SetLogFile(u"load.log", LogFileModeReplace, 5);      // levels 0 to 5, into the user's data folder
//     WriteToLogFile(u"Loading %s\n", path);               // level 0, indented
//     LogFileAddTab(true);
//     WriteToLogFile(3 | LogMessageIndented, u"%d textures\n", count);
//     WriteToLogFile(6, u"not written\n");                 // above the threshold: one test, nothing is formatted
//     LogFileAddTab(false);
//     CloseLogFile();
//
// A message brings its own line end. Lines carry no time; the header of the file and its last line do. The file is
// UTF-16 (docs/formats/log.md) and is flushed after every line, so that it ends with the last line before a crash.
// Formats are those of foundation/text_format.h, of which a wide one takes wide text for %s and a narrow one narrow.
//
// While logging is active a callback takes the place of the file; it sees every message, also those that are filtered.
//
// Errors:  SetLogFile and CloseLogFile tell by their result. A line that cannot be written throws what the file throws
//          (CXFileException, CXInvalidArgException, CXMemoryException), with the log's lock released.
// Threads: any, for all of this file. Lines do not mix.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

#include <atomic>
#include <concepts>

/// Bits of the level word.
enum LogLevelFlags : unsigned int {
    LogLevelThreshold = 0xFF, ///< Mask: messages of a greater level are filtered. Also the greatest indentation at
                              ///< which logging counts as active; 255 means no limit.
    LogLevelOff = 0x200,      ///< Nothing is active and no message reaches the file.
    LogLevelNoFile = 0x400,   ///< No message reaches the file, while logging counts as active.
    LogLevelIndent = 0xF0000, ///< Mask: SetLogLevel takes the deepest indentation that is written from here.
};

/// Bits of the message word.
enum LogMessageFlags : unsigned int {
    LogMessageLevel = 0xFF,     ///< Mask: the level; 0 is the most important.
    LogMessageIndented = 0x100, ///< The line takes the thread's indentation.
};

/// What SetLogFile does about a file that is there.
enum LogFileMode : int {
    LogFileModeReplace = 0, ///< Empties it.
    LogFileModeAppend = 1,  ///< Goes on at its end.
    LogFileModeNew = 2,     ///< Keeps it and takes a free name with a number in brackets.
};

/// A host's listener.
/// @param word      The message word.
/// @param text      The message, without indentation; empty for a null format.
/// @param filtered  Whether the level word keeps the message from the file.
/// @param user      What SetLogCallback was given.
/// It is called on the thread that writes, from several at once, without the log's lock.
using LogCallback = void (*)(unsigned int word, CXTString<char16_t> text, bool filtered, void* user);

/// A listener and its user pointer.
struct logCallbackInfo {
    LogCallback callback = nullptr;
    void* user = nullptr;
};

/// Opens the log and writes its header.
///
/// @param path   Without a directory part, a file in GetUserApplicationDataPath(false, nullptr).
/// @param level  The new level word, as it stands; the deepest indentation that is written stays as it is.
/// @return false when a log is open already, which then stays as it is with its level, when the file cannot be opened
///         or its header cannot be written, and for any other mode.
ZEL_API bool SetLogFile(CXTString<char16_t> const& path, LogFileMode mode, unsigned int level);

/// Writes "Log time : N ms" and closes the log, whatever of it could be written; forgets every indentation.
/// @return whether a log was open.
ZEL_API bool CloseLogFile();

/// Sets the level word, and the deepest indentation that is written to its bits 16 to 19. With these clear no
/// indented line of a thread that has an indentation is written. Takes no lock: a line that is being written may go
/// by the old word.
/// @return the level word before; 0xFF at first.
ZEL_API unsigned int SetLogLevel(unsigned int level);

/// Whether somebody listens: a callback is set, or logging is active for the calling thread. To be asked before costly
/// tracing.
ZEL_API bool IsLogFileEnabled();

/// Takes (true) or releases (false) the log's lock, so that the lines in between stay together. Calls pair up on one
/// thread.
ZEL_API void LogLock(bool lock);

/// Deepens (true) or takes back (false) the indentation of the calling thread by one tab. While the main thread has
/// one, the lines of all threads take that.
/// @return the new indentation; 0 when no log is open.
ZEL_API unsigned int LogFileAddTab(bool add);

/// Sets the listener, or none for null, whether a log is open or not. A call of the one before that has begun on
/// another thread may still go on.
/// @return the one before.
ZEL_API logCallbackInfo SetLogCallback(LogCallback callback, void* user);

namespace detail {

/// What decides about a message, in one word: the level word, and above it two bits.
inline constexpr unsigned long long LogHasCallback = 1ULL << 32;
inline constexpr unsigned long long LogHasFile = 1ULL << 33;
extern ZEL_API std::atomic<unsigned long long> logState;

ZEL_API void WriteLogMessage(unsigned int word, char16_t const* format, ...);
ZEL_API void WriteLogMessage(unsigned int word, char const* format, ...);

/// Whether anybody takes a message of this word. In the caller's code, so that a filtered one formats nothing and
/// does not even pass its arguments on.
inline bool TakesLogMessage(unsigned int word) {
    unsigned long long const state = logState.load(std::memory_order_relaxed);
    constexpr unsigned long long notToFile = LogLevelOff | LogLevelNoFile;
    return (state & LogHasCallback) != 0 || ((state & (LogHasFile | notToFile)) == LogHasFile &&
                                             (word & LogMessageLevel) <= (state & LogLevelThreshold));
}

/// What may stand as a message word: the constants are of enumeration or integer types.
template <class T>
concept LogWord = std::convertible_to<T, unsigned int> &&(std::integral<T> || std::is_enum_v<T>);

} // namespace detail

/// Writes a message. The arguments are those of a C variadic call: numbers and pointers.
/// @param word    LogMessageFlags: the level, and whether the line is indented.
/// @param format  Null writes nothing, and gives a callback the empty text.
template <detail::LogWord Word, class... Arguments>
void WriteToLogFile(Word word, char16_t const* format, Arguments const&... arguments) {
    if (detail::TakesLogMessage(static_cast<unsigned int>(word))) {
        detail::WriteLogMessage(static_cast<unsigned int>(word), format, arguments...);
    }
}

/// The same with a narrow format, whose text is converted on the system's narrow code page.
template <detail::LogWord Word, class... Arguments>
void WriteToLogFile(Word word, char const* format, Arguments const&... arguments) {
    if (detail::TakesLogMessage(static_cast<unsigned int>(word))) {
        detail::WriteLogMessage(static_cast<unsigned int>(word), format, arguments...);
    }
}

/// Writes a message of level 0, indented.
template <class... Arguments>
void WriteToLogFile(char16_t const* format, Arguments const&... arguments) {
    WriteToLogFile(LogMessageIndented, format, arguments...);
}

/// The same with a narrow format.
template <class... Arguments>
void WriteToLogFile(char const* format, Arguments const&... arguments) {
    WriteToLogFile(LogMessageIndented, format, arguments...);
}
