// SPDX-License-Identifier: MIT
// The base of every parser: the object that reads or writes one file format. A plug-in makes one for a manager
// (file_io.h) that asks for it; the interfaces for a kind of data, with the calls that read and write, derive from it.

#pragma once

#include "zeltools/foundation/api.h"

class CFileIo;
class CFileParser;
class CWnd;

/// How a type shows the dialog of its options.
enum IoShowDialog : int {
    IoDialogNone = 0,
    IoDialogOptional = 1,
    IoDialogAlways = 2,
};

/// Bits of a manager's flag word; the others are free for the hosts.
enum FILE_PARSER_FLAGS : unsigned int {
    IoFlagLoading = 0x1,      ///< Loading; clear for saving.
    IoFlagSilent = 0x2,       ///< No message boxes, no dialogs.
    IoFlagNoParameters = 0x8, ///< The parsers' parameters are neither kept in the preferences nor taken from there.
    IoFlagCancel = 0x40,      ///< Somebody asks the parser to stop; may be set from any thread.
};

/// The argument of IoPluginCreateParser.
struct IoPluginParserInfo {
    CFileIo* io = nullptr;
    unsigned int classId = 0;
    CFileParser* parser = nullptr; ///< Receives the new parser, which the manager owns.
};

/// A parser. It does not outlive its manager. Threads: one at a time.
class ZEL_API CFileParser {
public:
    /// @param manager  The manager that will own it; null for a parser that is used alone.
    explicit CFileParser(CFileIo* manager);
    virtual ~CFileParser() = default;
    CFileParser(CFileParser const&) = delete;
    CFileParser& operator=(CFileParser const&) = delete;

    /// Whether it must not run while another parser runs on another thread.
    virtual bool IsSingleThreaded() const { return false; }

    /// Whether to stop: the manager is cancelled or the thread is. To be polled at least every 100 milliseconds. False
    /// without a manager.
    virtual bool ShouldCancelParser() const;

    /// Called by the host before and after a series of files, so that a parser can keep state across them.
    virtual void BeginBatch() {}
    virtual void EndBatch() {}

    CFileIo* GetIoMgr() const { return manager; }

    /// IoDialogAlways when the type's dialog must be shown for the manager's direction, otherwise IoDialogNone.
    IoShowDialog MustShowDialog() const;
    bool IsSilentMode() const;
    /// Whether all of the bits are set in the manager's flags.
    bool IsFlagSet(FILE_PARSER_FLAGS bits) const;

private:
    CFileIo* manager;
    CWnd* parentWindow; ///< The manager's, when the parser was made.
};
