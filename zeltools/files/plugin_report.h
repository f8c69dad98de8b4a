// SPDX-License-Identifier: MIT
// What became of each plug-in that was asked for, and why one was refused.
//
//     for (PluginReport const& report : GetPluginReports())
//         Print(report.path, GetPluginOutcomeText(report));
//
// Threads: the one that starts the host, before workers use parsers.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"

/// How far a plug-in came.
enum PluginOutcome : int {
    PluginIsLoaded = 0,            ///< In use, or it was until it was freed.
    PluginIsMissing = 1,           ///< There is no such file.
    PluginIsUnreadable = 2,        ///< This user may not read it.
    PluginIsNoLibrary = 3,         ///< No shared library for this machine.
    PluginIsCutShort = 4,          ///< A library that ends before its own parts do.
    PluginIsWritableByOthers = 5,  ///< Another user may change the file.
    PluginFolderIsWritable = 6,    ///< Another user may change the folder.
    PluginCannotBeLoaded = 7,      ///< The system's loader refuses it: `details` has its words.
    PluginHasNoVersion = 8,        ///< It does not export "QuenbyGetPluginVersion".
    PluginIsOfOtherRelease = 9,    ///< `release` is not the library's. Message 5157 is for a host's box about it.
    PluginHasNoEntry = 10,         ///< It does not export the entry asked for.
    PluginRefused = 11,            ///< Its entry answered false.
    PluginHasNoTypes = 12,         ///< Its entry offered no file type at all.
    PluginHasNoSuitableTypes = 13, ///< None of its file types is of the kind asked for and passes the filter.
};

/// What is known of one plug-in under one entry point.
struct PluginReport {
    CXTString<char16_t> path;
    CXTString<char> entryName;
    PluginOutcome outcome = PluginIsLoaded;
    unsigned int release = 0;                    ///< Its release word; 0 when it was not asked.
    CXTString<char16_t> details;                 ///< The loader's words; may be empty.
    CXArray<unsigned int, unsigned int> classes; ///< The classes that it registered.
};

/// Every plug-in that was asked for, in the order of the first asking; the last outcome of each.
ZEL_API CXArray<PluginReport> const& GetPluginReports();

/// One sentence in the thread's language, without the path.
ZEL_API CXTString<char16_t> GetPluginOutcomeText(PluginReport const& report);

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// Keeps a report in place of an earlier one of the same path and entry. A new outcome is a line in the log.
void TellPluginOutcome(PluginReport const& report);

} // namespace detail
