// SPDX-License-Identifier: MIT
#include "zeltools/platform/profile_text.h"

#include "zeltools/platform/character_case.h"
#include "zeltools/platform/utf8.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace platform {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view Utf16Mark = "\xFF\xFE";

std::u16string Decode(std::string_view bytes) {
    std::u16string text(Utf16Room(bytes.size()), u'\0');
    text.resize(Utf8ToUtf16(bytes.data(), bytes.size(), text.data()));
    return text;
}

std::string Encode(std::u16string_view text) {
    std::string bytes(Utf8Room(text.size()), '\0');
    bytes.resize(Utf16ToUtf8(text.data(), text.size(), bytes.data()));
    return bytes;
}

template <class View>
View Trimmed(View text) {
    constexpr auto isBlank = [](auto character) { return character == ' ' || character == '\t' || character == '\r'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsSameName(std::string_view bytes, std::u16string_view name) {
    std::u16string const text = Decode(bytes);
    std::u16string_view const wanted = Trimmed(name);
    return std::equal(text.begin(), text.end(), wanted.begin(), wanted.end(),
                      [](char16_t a, char16_t b) { return CharUpperW(a) == CharUpperW(b); });
}

/// The name in a section's line; false for any other line.
bool IsSection(std::string_view line, std::string_view& name) {
    line = Trimmed(line);
    if (line.empty() || line.front() != '[') {
        return false;
    }
    name = Trimmed(line.substr(1, std::min(line.find(']'), line.size()) - 1));
    return true;
}

bool IsEntry(std::string_view line, std::string_view& name, std::string_view& value) {
    line = Trimmed(line);
    std::size_t const equals = line.find('=');
    if (line.empty() || line.front() == ';' || equals == line.npos) {
        return false;
    }
    name = Trimmed(line.substr(0, equals));
    value = Trimmed(line.substr(equals + 1));
    return true;
}

bool IsQuoted(std::string_view value) {
    return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
}

/// A profile in memory: its lines as UTF-8, without their ends.
struct Profile {
    std::vector<std::string> lines;
    bool isUtf16 = false;
    bool hasUtf8Mark = false;
    std::string lineEnd = "\n";

    explicit Profile(std::string bytes);
    std::string Text() const;

    /// The lines of a section's content, [first, last). False when there is no such section.
    bool FindSection(std::u16string_view section, std::size_t& first, std::size_t& last) const;
    /// The line of an entry between two lines; `last` when there is none.
    std::size_t FindEntry(std::u16string_view entry, std::size_t first, std::size_t last) const;
};

Profile::Profile(std::string bytes) {
    if (bytes.starts_with(Utf16Mark)) {
        isUtf16 = true;
        std::u16string text((bytes.size() - 2) / 2, u'\0');
        if (!text.empty()) {
            std::memcpy(text.data(), bytes.data() + 2, text.size() * 2);
        }
        bytes = Encode(text);
    } else if (bytes.starts_with(Utf8Mark)) {
        hasUtf8Mark = true;
        bytes.erase(0, Utf8Mark.size());
    }
    std::string_view rest = bytes;
    while (!rest.empty()) {
        std::size_t const end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
            lineEnd = "\r\n";
        }
        lines.emplace_back(line);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

std::string Profile::Text() const {
    std::string bytes;
    for (std::string const& line : lines) {
        bytes += line;
        bytes += lineEnd;
    }
    if (!isUtf16) {
        // A first line may begin like a mark: without one before it, it would be taken for that.
        bool const needsMark = hasUtf8Mark || bytes.starts_with(Utf8Mark) || bytes.starts_with(Utf16Mark);
        return needsMark ? std::string(Utf8Mark) + bytes : bytes;
    }
    std::u16string text = u'\uFEFF' + Decode(bytes);
    return {reinterpret_cast<char const*>(text.data()), text.size() * 2};
}

bool Profile::FindSection(std::u16string_view section, std::size_t& first, std::size_t& last) const {
    std::string_view name;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (IsSection(lines[i], name) && IsSameName(name, section)) {
            first = last = i + 1;
            while (last < lines.size() && !IsSection(lines[last], name)) {
                ++last;
            }
            return true;
        }
    }
    return false;
}

std::size_t Profile::FindEntry(std::u16string_view entry, std::size_t first, std::size_t last) const {
    std::string_view name;
    std::string_view value;
    while (first < last && !(IsEntry(lines[first], name, value) && IsSameName(name, entry))) {
        ++first;
    }
    return first;
}

bool CanBeRead(char16_t const* text, std::u16string_view refused) {
    std::u16string_view const view{text};
    return view.find_first_of(refused) == view.npos && !Trimmed(view).empty();
}

/// Carries out a change. False when there is nothing to write.
bool Change(Profile& profile, char16_t const* section, char16_t const* entry, char16_t const* value) {
    std::size_t first = 0;
    std::size_t last = 0;
    bool const isThere = profile.FindSection(section, first, last);
    auto const line = [&](std::size_t index) {
        return profile.lines.begin() + static_cast<std::vector<std::string>::difference_type>(index);
    };
    if (entry == nullptr) {
        if (isThere) {
            profile.lines.erase(line(first - 1), line(last));
        }
        return isThere;
    }
    std::size_t const found = isThere ? profile.FindEntry(entry, first, last) : last;
    if (value == nullptr) {
        if (found != last) {
            profile.lines.erase(line(found));
            return true;
        }
        return false;
    }
    std::string text = Encode(value);
    if (Trimmed(std::string_view(text)) != text || IsQuoted(text)) {
        text = '"' + text + '"';
    }
    std::string const written = Encode(Trimmed(std::u16string_view(entry))) + '=' + text;
    if (found != last) {
        profile.lines[found] = written;
        return true;
    }
    if (!isThere) {
        profile.lines.push_back('[' + Encode(Trimmed(std::u16string_view(section))) + ']');
        last = first = profile.lines.size();
    }
    while (last > first && Trimmed(std::string_view(profile.lines[last - 1])).empty()) {
        --last; // empty lines stay between this section and the next
    }
    profile.lines.insert(line(last), written);
    return true;
}

} // namespace

bool FindInProfile(std::string_view bytes, std::u16string_view section, std::u16string_view entry,
                   std::u16string& value) {
    Profile const profile{std::string(bytes)};
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t const found = profile.FindSection(section, first, last) ? profile.FindEntry(entry, first, last) : last;
    if (found == last) {
        return false;
    }
    std::string_view name;
    std::string_view text;
    IsEntry(profile.lines[found], name, text);
    value = Decode(IsQuoted(text) ? text.substr(1, text.size() - 2) : text);
    return true;
}

bool CanBeInProfile(char16_t const* section, char16_t const* entry, char16_t const* value) {
    if (section == nullptr || !CanBeRead(section, u"]\r\n")) {
        return false;
    }
    if (entry != nullptr) {
        std::u16string_view const name = Trimmed(std::u16string_view(entry));
        if (!CanBeRead(entry, u"=\r\n") || name.front() == u';' || name.front() == u'[') {
            return false;
        }
    }
    return value == nullptr || std::u16string_view(value).find_first_of(u"\r\n") == std::u16string_view::npos;
}

bool ChangeProfile(std::string& bytes, char16_t const* section, char16_t const* entry, char16_t const* value) {
    Profile profile{bytes};
    if (!Change(profile, section, entry, value)) {
        return false;
    }
    bytes = profile.Text();
    return true;
}

} // namespace platform
