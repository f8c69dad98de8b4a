// SPDX-License-Identifier: MIT
#include "zeltools/files/plugin_report.h"

#include "zeltools/files/plugin_loader.h"
#include "zeltools/foundation/exit_callbacks.h"
#include "zeltools/foundation/log_file_private.h"
#include "zeltools/foundation/xload_string.h"

namespace {

/// The message of outcome 0; the others follow.
constexpr unsigned int FirstOutcomeText = 5600;

CXArray<PluginReport>* reports;

void DeleteReports() {
    delete reports;
    reports = nullptr;
}

CXArray<PluginReport>& Reports() {
    if (!reports) {
        reports = new CXArray<PluginReport>;
        AddApplicationExitCallback(&DeleteReports, 0);
    }
    return *reports;
}

/// The report of the same path and entry, or null. Names that differ in case are two files.
PluginReport* FindKnown(PluginReport const& report) {
    for (PluginReport& known : Reports()) {
        if (known.path == report.path && known.entryName == report.entryName) {
            return &known;
        }
    }
    return nullptr;
}

} // namespace

CXArray<PluginReport> const& GetPluginReports() {
    static CXArray<PluginReport> const none;
    return reports ? *reports : none;
}

CXTString<char16_t> GetPluginOutcomeText(PluginReport const& report) {
    CXTString<char16_t> text = xLoadString(FirstOutcomeText + static_cast<unsigned int>(report.outcome));
    if (report.outcome == PluginIsOfOtherRelease) {
        CXTString<char16_t> filled;
        filled.Format(text, report.release >> 16, report.release & 0xFFFF, PluginRelease >> 16, PluginRelease & 0xFFFF);
        text = filled;
    }
    if (!report.details.IsEmpty()) {
        text += u" ";
        text += report.details;
    }
    return text;
}

void detail::TellPluginOutcome(PluginReport const& report) {
    PluginReport* const known = FindKnown(report);
    bool const isNews = !known || known->outcome != report.outcome;
    if (!known) {
        Reports().Add(report);
    } else if (isNews || !report.classes.IsEmpty()) { // another lock takes no classes away
        *known = report;
    }
    if (isNews && IsLogFileEnabled()) {
        CXTString<char16_t> const text = GetPluginOutcomeText(report);
        TraceToLog(u"Plug-in %s: %s\n", static_cast<char16_t const*>(report.path), static_cast<char16_t const*>(text));
    }
}
