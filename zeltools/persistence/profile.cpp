// SPDX-License-Identifier: MIT
#include "zeltools/persistence/profile.h"

#include "zeltools/foundation/win_app.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/registry.h"
#include "zeltools/platform/registry_values.h"

#include <cassert>
#include <cstring>
#include <memory>
#include <string>

namespace {

bool ReadFromRegistry(CWinApp const& application, char16_t const* section, char16_t const* entry, std::string& bytes) {
    HKEY const key = application.GetSectionKey(section, false);
    unsigned int type = 0;
    bool const isRead = key && platform::ReadRegistryValue(key, entry, type, bytes) == platform::ErrorSuccess;
    CWinApp::CloseSectionKey(key);
    return isRead;
}

bool ReadFromFile(CWinApp const& application, char16_t const* section, char16_t const* entry, std::string& bytes) {
    // By the host's own operation, as it is written: a host may keep its texts elsewhere.
    CXTString<char16_t> const text = application.GetProfileString(section, entry);
    if (text.IsEmpty()) {
        return false;
    }
    char16_t const* const letters = text;
    bytes.resize(static_cast<std::size_t>(text.GetLength()) / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        // What is no letter of the sixteen gives some byte; it cannot lead out of one.
        unsigned int const low = letters[2 * i] - unsigned{u'A'};
        unsigned int const high = letters[2 * i + 1] - unsigned{u'A'};
        bytes[i] = static_cast<char>(low + (high << 4));
    }
    return true;
}

bool Read(char16_t const* section, char16_t const* entry, std::string& bytes) {
    CWinApp const& application = detail::CurrentWinApp();
    if (!section || !entry) {
        return false;
    }
    return application.GetProfileFile().IsEmpty() ? ReadFromRegistry(application, section, entry, bytes)
                                                  : ReadFromFile(application, section, entry, bytes);
}

/// Reads a value that has exactly the size of its type.
template <class T>
int ReadNumber(char16_t const* section, char16_t const* entry, T& value, T defaultValue) {
    std::string bytes;
    if (!Read(section, entry, bytes) || bytes.size() != sizeof(T)) {
        value = defaultValue;
        return 0;
    }
    std::memcpy(&value, bytes.data(), sizeof(T));
    return 1;
}

} // namespace

int GetProfileBinary(char16_t const* section, char16_t const* entry, void** data, unsigned int* size) {
    assert(data && size);
    if (!data || !size) {
        return 0;
    }
    *data = nullptr;
    *size = 0;
    std::string bytes;
    if (!Read(section, entry, bytes)) {
        return 0;
    }
    auto block = std::make_unique<unsigned char[]>(bytes.size());
    if (!bytes.empty()) {
        std::memcpy(block.get(), bytes.data(), bytes.size());
    }
    *size = static_cast<unsigned int>(bytes.size());
    *data = block.release();
    return 1;
}

bool WriteProfileBinary(char16_t const* section, char16_t const* entry, void const* data, unsigned int size) {
    if (!section || !entry || (!data && size != 0) || size > platform::MaxValueBytes) {
        return false;
    }
    CWinApp& application = detail::CurrentWinApp();
    if (application.GetProfileFile().IsEmpty()) {
        HKEY const key = application.GetSectionKey(section, true);
        bool const isWritten =
            key && platform::RegSetValueExW(key, entry, RegBinary, data, size) == platform::ErrorSuccess;
        CWinApp::CloseSectionKey(key);
        return isWritten;
    }
    auto const* const bytes = static_cast<unsigned char const*>(data);
    std::u16string letters(std::size_t{size} * 2, u'\0');
    for (std::size_t i = 0; i < size; ++i) {
        letters[2 * i] = static_cast<char16_t>(u'A' + (bytes[i] & 0xF));
        letters[2 * i + 1] = static_cast<char16_t>(u'A' + (bytes[i] >> 4));
    }
    return application.WriteProfileString(section, entry, letters.c_str());
}

int GetProfileFloat(char16_t const* section, char16_t const* entry, float& value, float defaultValue) {
    return ReadNumber(section, entry, value, defaultValue);
}

bool WriteProfileFloat(char16_t const* section, char16_t const* entry, float value) {
    return WriteProfileBinary(section, entry, &value, sizeof(value));
}

int GetProfileLongUInt(char16_t const* section, char16_t const* entry, unsigned long long& value,
                       unsigned long long defaultValue) {
    return ReadNumber(section, entry, value, defaultValue);
}

bool WriteProfileLongUInt(char16_t const* section, char16_t const* entry, unsigned long long value) {
    return WriteProfileBinary(section, entry, &value, sizeof(value));
}

bool DeleteProfileKey(char16_t const* section, char16_t const* entry) {
    if (!section || !entry || !*entry) { // an empty name would delete the section
        return false;
    }
    HKEY const key = detail::CurrentWinApp().GetSectionKey(section, false);
    bool const isDeleted = key && platform::RegDeleteKeyW(key, entry) == platform::ErrorSuccess;
    CWinApp::CloseSectionKey(key);
    return isDeleted;
}
