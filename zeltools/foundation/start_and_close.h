// SPDX-License-Identifier: MIT
// What a host calls first and last.
//
//     InitQuenbyApplication("", nullptr, AppInitFileTypes | AppInitSignals, nullptr);
//     ...
//     BeforeCloseQuenbyApplication();                       // worker threads end while the host still stands
//     CloseQuenbyApplication(AppCloseFileTypes | AppCloseSignals | AppCloseFreeTables);
//
// A host that wants its own product name calls SetInternalProductName before it asks for a location on disk.
// InitZelTools and CloseZelTools nest by a count, so that a plug-in or a second library may call them too.
//
// Threads: the main thread.

#pragma once

#include "zeltools/foundation/api.h"

/// What a start does beside recording the main thread and the worker count.
enum AppInitFlags : unsigned int {
    AppInitFileTypes = 0x1, ///< Create the file type registry with the built-in types.
    AppInitSignals = 0x2,   ///< Turn SIGSEGV, SIGFPE and SIGILL into exceptions: a `char const*` that names them.
    AppInitInvalidParameter = 0x4, ///< Ignore misuse that the C library would end the process for.
};

/// What a close does beside running the exit callbacks.
enum AppCloseFlags : unsigned int {
    AppCloseFileTypes = 0x1,   ///< Delete the file type registry.
    AppCloseSignals = 0x2,     ///< Put back the signal handlers that the start replaced.
    AppCloseFreeTables = 0x10, ///< Free the process-wide tables and names as well.
};

/// InitZelTools's own flag: make sure that the library's messages are on the host's resource chain.
enum ZelToolsInitFlags : unsigned int {
    ZelToolsChainResources = 0x100,
};

/// Starts the toolkit: main thread, worker count, log, application path, then what the flags ask for, and last the
/// plug-ins' folder beside the application. A second call does nothing, whatever its arguments.
///
/// @param name             Not looked at.
/// @param applicationPath  Given to SetApplicationPath, or null for the running program's own path.
/// @param flags            AppInitFlags.
/// @param logFile          Given to SetLogFile, which empties it and writes every level; null for no log.
ZEL_API void InitQuenbyApplication(char const* name, char16_t const* applicationPath, unsigned int flags,
                                   char16_t const* logFile);

/// Starts the toolkit with all of AppInitFlags, unless it has been started; and counts the call.
/// @param flags  ZelToolsInitFlags.
ZEL_API void InitZelTools(unsigned int flags);

/// Takes one InitZelTools back; the last one closes everything. A call too many closes nothing.
/// @param unused  Not looked at.
ZEL_API void CloseZelTools(unsigned int unused);

/// Asks every custom thread to end and waits for them without a time limit, the first time it is called; then runs
/// the exit callbacks of the priority ExitCallbackBeforeClose.
ZEL_API void BeforeCloseQuenbyApplication();

/// Ends the toolkit: handlers, file types, log, exit callbacks (lowest priority first), tables. Nothing when not
/// started. The cached locations on disk survive, so that a second start sees the old ones. The log ends before the
/// exit callbacks run: what these trace reaches only a log callback.
///
/// The application lock is held while the exit callbacks run: one must not wait for a thread that needs it.
/// @param flags  AppCloseFlags.
ZEL_API void CloseQuenbyApplication(unsigned int flags);

/// The handle of the module that holds the library's messages.
ZEL_API void* ZelToolsResourceHandle();
