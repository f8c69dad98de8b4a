// SPDX-License-Identifier: MIT
#include "zeltools/foundation/first_launch.h"

#include "zeltools/foundation/application_preferences.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/foundation/win_app.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/platform/registry.h"

namespace {

using WideString = CXTString<char16_t>;

constexpr unsigned int SettingsKey = FourCC("SE64");
constexpr unsigned int FirstLaunchKey = FourCC("1STL");
constexpr char16_t const* Section = u"settings";

/// What is known of a run. The version is that of the caller's product.
struct Run {
    WideString date;
    WideString time;
    int major = -1;
    int minor = -1;
};

/// Where runs are remembered: in the preferences file, in a host's profile, or nowhere.
class Memory {
public:
    Memory(CWinApp* host, bool usePreferencesFile) : application(host), isFile(usePreferencesFile) {}

    Run Read() {
        Run last;
        if (isFile) {
            data.LoadFromPrefs(GetPreferencesFile(), SettingsKey, FirstLaunchKey, false);
            data.GetString(FourCC("DATE"), last.date);
            data.GetString(FourCC("TIME"), last.time);
            data.GetInt(FourCC("VERM"), last.major, -1);
            data.GetInt(FourCC("VERN"), last.minor, -1);
        } else if (application) {
            last.date = application->GetProfileString(Section, u"currentVersionDate");
            last.time = application->GetProfileString(Section, u"currentVersionTime");
            last.major = application->GetProfileInt(Section, u"currentVersionMajor", -1);
            last.minor = application->GetProfileInt(Section, u"currentVersionMinor", -1);
        }
        return last;
    }

    /// Remembers this run in place of the last; a null number leaves the one that is remembered.
    void Write(WideString const& date, WideString const& time, int const* major, int const* minor) {
        if (isFile) {
            data.SetString(FourCC("DATE"), date);
            data.SetString(FourCC("TIME"), time);
            if (major) {
                data.SetInt(FourCC("VERM"), *major);
            }
            if (minor) {
                data.SetInt(FourCC("VERN"), *minor);
            }
            data.SaveToPrefs(GetPreferencesFile(), SettingsKey, FirstLaunchKey);
        } else if (application) {
            application->WriteProfileString(Section, u"currentVersionDate", date);
            application->WriteProfileString(Section, u"currentVersionTime", time);
            if (major) {
                application->WriteProfileInt(Section, u"currentVersionMajor", *major);
            }
            if (minor) {
                application->WriteProfileInt(Section, u"currentVersionMinor", *minor);
            }
        }
    }

private:
    CWinApp* application;
    bool isFile;
    CCustomData data; // the record of the preferences file; values of it that are not ours stay
};

/// Deletes all settings of the host. An empty name would stand for the key above, with the settings of others.
void DeleteSettings(CWinApp const& application) {
    WideString const key = application.GetRegistryKeyName();
    WideString const profile = application.GetProfileName();
    if (!key.IsEmpty() && !profile.IsEmpty()) {
        platform::SHDeleteKeyW(HKEY_CURRENT_USER, WideString(u"Software\\") + key + u"\\" + profile);
    }
}

} // namespace

bool IsFirstLaunch(CWinApp* application, bool resetRegistry, bool usePreferencesFile, int* major, int* minor) {
    WideString const date(detail::BuildStamp()[0]);
    WideString const time(detail::BuildStamp()[1]);
    Memory memory(application, usePreferencesFile);
    Run const last = memory.Read();
    if (last.date == date && last.time == time) {
        return false;
    }
    if (resetRegistry && application) {
        DeleteSettings(*application);
    }
    memory.Write(date, time, major, major ? minor : nullptr);
    if (major) {
        *major = last.major;
        if (minor) {
            *minor = last.minor;
        }
    }
    return true;
}

namespace detail {

#define ZEL_WIDE(text) u"" text

char16_t const* const* BuildStamp() {
    static constexpr char16_t const* stamp[BuildStampParts] = {ZEL_WIDE(__DATE__), ZEL_WIDE(__TIME__)};
    return stamp;
}

} // namespace detail
