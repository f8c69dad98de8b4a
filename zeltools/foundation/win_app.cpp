// SPDX-License-Identifier: MIT
#include "zeltools/foundation/win_app.h"

#include "zeltools/foundation/application_product_name.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/profile_file.h"
#include "zeltools/platform/registry.h"
#include "zeltools/platform/registry_values.h"

#include <algorithm>
#include <atomic>
#include <string>

namespace {

using WideString = CXTString<char16_t>;

std::atomic<CWinApp*> theApplication;

/// Whether a name can stand for one key: an empty one would mean the key above.
bool IsKeyName(char16_t const* name) {
    return name && *name;
}

WideString SectionPath(CWinApp const& application) {
    return WideString(u"Software\\") + application.GetRegistryKeyName() + u"\\" + application.GetProfileName();
}

/// Reads the sign and the digits at the head of a text, as a profile's number is read; it stops where an int is full.
int NumberAtHead(std::u16string const& text) {
    std::size_t index = 0;
    bool const isNegative = !text.empty() && text[0] == u'-';
    index += isNegative || (!text.empty() && text[0] == u'+') ? 1 : 0;
    long long number = 0;
    for (; index < text.size() && text[index] >= u'0' && text[index] <= u'9'; ++index) {
        number = std::min(number * 10 + (text[index] - u'0'), 0x80000000LL);
    }
    return static_cast<int>(isNegative ? -number : std::min(number, 0x7FFFFFFFLL));
}

} // namespace

CWinApp::CWinApp() {
    CWinApp* none = nullptr;
    theApplication.compare_exchange_strong(none, this);
}

CWinApp::~CWinApp() {
    CWinApp* self = this;
    theApplication.compare_exchange_strong(self, nullptr);
}

CWinApp* CWinApp::GetApp() {
    return theApplication.load();
}

void CWinApp::SetRegistryKey(CXTString<char16_t> const& name) {
    registryKey = name;
}

void CWinApp::SetProfileName(CXTString<char16_t> const& name) {
    profileName = name;
}

void CWinApp::SetProfileFile(CXTString<char16_t> const& path) {
    profileFile = path;
}

CXTString<char16_t> CWinApp::GetRegistryKeyName() const {
    return profileFile.IsEmpty() ? registryKey : WideString();
}

CXTString<char16_t> CWinApp::GetProfileName() const {
    return profileName.IsEmpty() ? GetInternalProductName(false) : profileName;
}

CXTString<char16_t> CWinApp::GetProfileFile() const {
    return profileFile;
}

HKEY CWinApp::GetSectionKey(char16_t const* section, bool create) const {
    if (GetRegistryKeyName().IsEmpty() || !IsKeyName(section)) {
        return nullptr;
    }
    WideString const path = SectionPath(*this) + u"\\" + section;
    HKEY key = nullptr;
    unsigned int const access = KeyAllAccess;
    if (create) {
        platform::RegCreateKeyExW(HKEY_CURRENT_USER, path, access, &key, nullptr);
    } else {
        platform::RegOpenKeyExW(HKEY_CURRENT_USER, path, access, &key);
    }
    return key;
}

void CWinApp::CloseSectionKey(HKEY key) {
    if (key) {
        platform::RegCloseKey(key);
    }
}

CXTString<char16_t> CWinApp::GetProfileString(char16_t const* section, char16_t const* entry,
                                              char16_t const* defaultValue) const {
    if (!section || !entry) {
        return WideString(defaultValue);
    }
    if (!profileFile.IsEmpty()) {
        std::u16string value;
        return platform::GetPrivateProfileStringW(section, entry, value, profileFile) ? WideString(value.c_str())
                                                                                      : WideString(defaultValue);
    }
    HKEY const key = GetSectionKey(section, false);
    unsigned int type = 0;
    std::string bytes;
    WideString result(defaultValue);
    if (key && platform::ReadRegistryValue(key, entry, type, bytes) == platform::ErrorSuccess &&
        (type == RegString || type == RegExpandString)) {
        result = platform::TextOfValue(bytes, false).c_str();
    }
    CloseSectionKey(key);
    return result;
}

int CWinApp::GetProfileInt(char16_t const* section, char16_t const* entry, int defaultValue) const {
    if (!section || !entry) {
        return defaultValue;
    }
    if (!profileFile.IsEmpty()) {
        std::u16string value;
        return platform::GetPrivateProfileStringW(section, entry, value, profileFile) ? NumberAtHead(value)
                                                                                      : defaultValue;
    }
    HKEY const key = GetSectionKey(section, false);
    int number = 0;
    unsigned int type = 0;
    unsigned int size = sizeof(number);
    bool const isThere = key &&
                         platform::RegQueryValueExW(key, entry, &type, &number, &size) == platform::ErrorSuccess &&
                         type == RegInt && size == sizeof(number);
    CloseSectionKey(key);
    return isThere ? number : defaultValue;
}

bool CWinApp::WriteProfileString(char16_t const* section, char16_t const* entry, char16_t const* value) {
    if (!IsKeyName(section)) {
        return false;
    }
    if (!profileFile.IsEmpty()) {
        return platform::WritePrivateProfileStringW(section, entry, value, profileFile);
    }
    if (!entry) {
        if (GetRegistryKeyName().IsEmpty()) {
            return false;
        }
        WideString const path = SectionPath(*this) + u"\\" + section;
        int const status = platform::SHDeleteKeyW(HKEY_CURRENT_USER, path);
        return status == platform::ErrorSuccess || status == platform::ErrorFileNotFound;
    }
    HKEY const key = GetSectionKey(section, value != nullptr);
    if (!key) {
        return !value;
    }
    int status = 0;
    if (value) {
        status = platform::WriteRegistryText(key, entry, RegString, value);
    } else {
        status = platform::RegDeleteValueW(key, entry);
        status = status == platform::ErrorFileNotFound ? static_cast<int>(platform::ErrorSuccess) : status;
    }
    CloseSectionKey(key);
    return status == platform::ErrorSuccess;
}

bool CWinApp::WriteProfileInt(char16_t const* section, char16_t const* entry, int value) {
    if (!IsKeyName(section) || !entry) {
        return false;
    }
    if (!profileFile.IsEmpty()) {
        WideString text;
        text.Format(u"%d", value);
        return platform::WritePrivateProfileStringW(section, entry, text, profileFile);
    }
    HKEY const key = GetSectionKey(section, true);
    bool const isWritten =
        key && platform::RegSetValueExW(key, entry, RegInt, &value, sizeof(value)) == platform::ErrorSuccess;
    CloseSectionKey(key);
    return isWritten;
}

namespace detail {

CWinApp& CurrentWinApp() {
    static CWinApp& unset = *new CWinApp(nullptr);
    CWinApp* const application = CWinApp::GetApp();
    return application ? *application : unset;
}

} // namespace detail
