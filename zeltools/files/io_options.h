// SPDX-License-Identifier: MIT
// What travels with a load or save: the parser's options, the log of the operation, and the flags that steer the log.
//
//     CIoOptions options(false);
//     options.GetParserOptions().SetInt(FourCC("QUAL"), 90);
//     io->SetIoError(IoBadFormat, &options, IoLogInfo::Error);       // adds "Bad file format" to the log
//     io->ReportIoError(&options, 0);

#pragma once

#include "zeltools/files/io_log_info.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/process/xcritical_section.h"

class CWnd;

/// Flags of an operation. The bits above 0xFFFF that have no name here are the log's display options, a host's own.
enum IoOptionsFlags : unsigned int {
    IoOptionsKeepDisplay = 0x4, ///< Start from the display options that were used last, and remember these.
    IoOptionsNoLog = 0x8,
    IoOptionsShowLog = 0x10000, ///< Keep a log, IoOptionsNoLog or not, and show it at the end.
};

/// The options and the log of one operation.
///
/// The display options that the next operation starts from are one word for the whole process. The first object of the
/// process reads it from the preferences, and it goes back there when the library closes and when the process ends,
/// unless saving preferences is switched off.
///
/// Threads: the log may be written by several at once, as by the workers of a batch; everything else one at a time.
class ZEL_API CIoOptions {
public:
    /// @param hostFlag  Becomes the whole flag word, 0 or 1; this bit is the host's.
    explicit CIoOptions(bool hostFlag);
    /// With IoOptionsKeepDisplay, and a display option set, the display options become those to start from.
    virtual ~CIoOptions();
    CIoOptions(CIoOptions const&) = delete;
    CIoOptions& operator=(CIoOptions const&) = delete;

    CCustomData& GetParserOptions() { return parserOptions; }
    CCustomData const& GetParserOptions() const { return parserOptions; }

    /// Sets or clears flags; setting IoOptionsKeepDisplay adds the remembered display options to the flags.
    void SetFlag(IoOptionsFlags bits, bool set);
    /// Whether any of the bits is set.
    bool IsFlagSet(IoOptionsFlags bits) const { return (flags & bits) != 0; }
    /// Whether AddLogInfo keeps what it is given.
    bool IsLogEnabled() const { return (flags & IoOptionsNoLog) == 0 || (flags & IoOptionsShowLog) != 0; }

    /// Adds a line to the log; nothing happens while the log is off.
    /// Errors: CXInvalidArgException for a negative level.
    /// Threads: any.
    void AddLogInfo(IoLogInfo::loglevel level, CXTString<char16_t> const& text);
    /// The same with the text of a result code (io_result.h); success is that of a load.
    ///
    /// @param code  The code's bits: -1 is 0xFFFFFFFF.
    void AddLogInfo(IoLogInfo::loglevel level, unsigned int code, char16_t const* fileName);

    /// Shows the log to the user, one line a record; nothing is shown when it is empty.
    ///
    /// @param displayFlags  For a desktop's log window.
    /// @param parent        The window that the log belongs to; may be null.
    void DisplayLog(unsigned int displayFlags, CWnd* parent);

private:
    unsigned int flags;
    CXArray<IoLogInfo, IoLogInfo const&> log; ///< Guarded by logLock.
    CXCriticalSection logLock;
    CCustomData parserOptions;
    unsigned long long startTick; ///< Milliseconds since the system started.
};
