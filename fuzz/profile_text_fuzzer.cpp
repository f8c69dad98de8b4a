// SPDX-License-Identifier: MIT
// Any bytes as a profile file, with names and a value out of the same bytes: what is written is read back, and can be
// taken away again.
#include "zeltools/platform/profile_text.h"
#include "zeltools/platform/utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

/// Takes the text up to the next zero.
std::u16string TakeText(std::string& bytes) {
    std::string const text = bytes.c_str();
    bytes.erase(0, std::min(text.size() + 1, bytes.size()));
    std::u16string wide(platform::Utf16Room(text.size()), u'\0');
    wide.resize(platform::Utf8ToUtf16(text.data(), text.size(), wide.data()));
    return wide;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string bytes(data, data + size);
    std::u16string const section = TakeText(bytes);
    std::u16string const entry = TakeText(bytes);
    std::u16string const value = TakeText(bytes);
    std::u16string found;
    platform::FindInProfile(bytes, section, entry, found);
    if (!platform::CanBeInProfile(section.c_str(), entry.c_str(), value.c_str())) {
        return 0;
    }
    if (!platform::ChangeProfile(bytes, section.c_str(), entry.c_str(), value.c_str()) ||
        !platform::FindInProfile(bytes, section, entry, found) || found != value) {
        std::abort();
    }
    std::size_t const before = bytes.size();
    if (!platform::ChangeProfile(bytes, section.c_str(), entry.c_str(), nullptr) || bytes.size() >= before) {
        std::abort();
    }
    return 0;
}
