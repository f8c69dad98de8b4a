// SPDX-License-Identifier: MIT
// The host application as an object: where its settings lie, and settings as texts and numbers.
//
//     CWinApp application;
//     application.SetProfileName(u"Catalogue");
//     application.WriteProfileInt(u"Window", u"Columns", 3);     // HKEY_CURRENT_USER\Software\Quenby\Catalogue\Window
//
//     application.SetProfileFile(u"\\home\\ana\\catalogue.ini");
//     application.WriteProfileInt(u"Window", u"Columns", 3);     // [Window] Columns=3
//
// persistence/profile.h adds bytes and wider numbers; IsFirstLaunch keeps the version of the last run here.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/platform/registry_types.h"

#include <cstddef>

class CWinApp;

namespace detail {

/// The application of the process, or one with nothing set while there is none.
CWinApp& CurrentWinApp();

} // namespace detail

/// A host's application. A host derives its own, or uses this one as it is.
///
/// Settings lie in the registry, unless the host names a profile file. Both ignore the case of names.
///
/// Threads: the names are set by one thread before others ask; the settings may be read and written by any.
/// Errors:  none throws; a setting that cannot be read is the default, one that cannot be written is false.
class ZEL_API CWinApp {
public:
    /// The first object that lives is the application of the process.
    CWinApp();
    virtual ~CWinApp();
    CWinApp(CWinApp const&) = delete;
    CWinApp& operator=(CWinApp const&) = delete;

    /// The application of the process; null while there is none.
    static CWinApp* GetApp();

    // ---- Where settings lie ----

    /// Names the key below `Software` in the registry; "Quenby" unless it is set.
    void SetRegistryKey(CXTString<char16_t> const& name);
    /// Names the key below that, one for each product; the product's internal name unless it is set.
    void SetProfileName(CXTString<char16_t> const& name);
    /// Names a file that takes the place of the registry; empty goes back to the registry.
    void SetProfileFile(CXTString<char16_t> const& path);

    /// The name of the registry key; empty for a host with a profile file, which has none.
    CXTString<char16_t> GetRegistryKeyName() const;
    CXTString<char16_t> GetProfileName() const;
    CXTString<char16_t> GetProfileFile() const;

    /// Opens the key of a section, for reading and writing.
    /// @param create  Makes the key where it is missing.
    /// @return null without a registry key, or when it cannot be opened; to be closed by CloseSectionKey.
    HKEY GetSectionKey(char16_t const* section, bool create) const;
    static void CloseSectionKey(HKEY key);

    // ---- Settings ----

    /// Reads a text; the default, or the empty string for null, when it is missing or of another type.
    virtual CXTString<char16_t> GetProfileString(char16_t const* section, char16_t const* entry,
                                                 char16_t const* defaultValue = nullptr) const;

    /// Reads a number; a profile file has it in decimal, and what is no number there counts as 0.
    virtual int GetProfileInt(char16_t const* section, char16_t const* entry, int defaultValue) const;

    /// Writes a text.
    /// @param entry  Null deletes the section with everything in it.
    /// @param value  Null deletes the entry.
    virtual bool WriteProfileString(char16_t const* section, char16_t const* entry, char16_t const* value);

    /// Writes a number.
    virtual bool WriteProfileInt(char16_t const* section, char16_t const* entry, int value);

private:
    friend CWinApp& detail::CurrentWinApp();

    /// One that is nobody's application.
    explicit CWinApp(std::nullptr_t) {}

    CXTString<char16_t> registryKey{u"Quenby"};
    CXTString<char16_t> profileName; // empty: the product's
    CXTString<char16_t> profileFile; // empty: the registry
};
