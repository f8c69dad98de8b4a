// SPDX-License-Identifier: MIT
// A tag's value from one type into another.
#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/date_text.h"
#include "zeltools/foundation/size_text.h"
#include "zeltools/foundation/text_format.h"
#include "zeltools/platform/language.h"
#include "zeltools/resources/string_table_private.h"
#include "zeltools/tags/tag_value.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

namespace {

constexpr unsigned int colorFormat = 5313;
constexpr unsigned int falseText = 5342;
constexpr unsigned int trueText = 5362;

constexpr std::u16string_view separator = u" ; ";

/// Cuts a float towards zero: below 0 the two's complement, beyond 64 bits the nearest end, 0 for what is no number.
unsigned long long Truncated(float value) {
    constexpr float pastSigned = 0x1p63F;
    constexpr float pastUnsigned = 0x1p64F;
    if (value >= pastUnsigned)
        return std::numeric_limits<unsigned long long>::max();
    if (value > -1)
        return static_cast<unsigned long long>(value);
    if (value >= -pastSigned)
        return static_cast<unsigned long long>(static_cast<long long>(value));
    return std::isnan(value) ? 0 : 1ULL << 63;
}

/// A row of the string table in the thread's language, where it lies.
char16_t const* Message(unsigned int id) {
    return platform::FindString(id, platform::GetThreadUILanguage()).data();
}

/// Appends a formatted number, which is short, without going through the allocator.
template <class Number>
void AppendNumber(CXTString<char16_t>& text, char16_t const* format, Number number) {
    constexpr int room = 64; // the longest, a float with six decimals, takes 47
    char16_t part[room];
    int const length = xFormat(part, room, format, number);
    text.Append(part, static_cast<std::size_t>(length));
}

/// A duration above one second's reach of a long long counts as the longest.
long long WholeSeconds(float seconds) {
    return seconds < 0x1p63F ? static_cast<long long>(seconds) : std::numeric_limits<long long>::max();
}

void PrintDuration(CXTString<char16_t>& text, float seconds) {
    if (seconds > 3600) {
        long long const whole = WholeSeconds(seconds);
        text.Format(u"%02I64d h %02d mn %02d s", whole / 3600, static_cast<int>(whole / 60 % 60),
                    static_cast<int>(whole % 60));
    } else if (seconds > 60) {
        int const whole = static_cast<int>(seconds);
        text.Format(u"%d:%02d mn", whole / 60, whole % 60);
    } else {
        text.Format(u"%.2f s", static_cast<double>(seconds));
    }
}

/// Lengths of 10 mm or less have no text.
void PrintLength(CXTString<char16_t>& text, float millimetres) {
    if (millimetres > 1000)
        text.Format(u"%.2f m", static_cast<double>(millimetres / 1000));
    else if (millimetres > 10)
        text.Format(u"%.2f cm", static_cast<double>(millimetres / 10));
}

/// The text of a run of bytes: ASCII that prints, and a blank for anything else.
void PrintBytes(CXTString<char16_t>& text, void const* data, unsigned int size) {
    auto const* const bytes = static_cast<unsigned char const*>(data);
    int const length = static_cast<int>(std::min<unsigned int>(size, std::numeric_limits<int>::max()));
    std::transform(bytes, bytes + length, text.GetBufferSetLength(length),
                   [](unsigned char byte) { return byte >= ' ' && byte <= '~' ? char16_t(byte) : u' '; });
}

/// A token without the white space at its ends.
std::u16string_view Stripped(std::u16string_view token) {
    while (!token.empty() && xIsSpace(token.front()))
        token.remove_prefix(1);
    while (!token.empty() && xIsSpace(token.back()))
        token.remove_suffix(1);
    return token;
}

} // namespace

int CTagValue::HandleParametersAndConvertToType(unsigned int requested, CXTString<char16_t> const& parameters) {
    if (IsEmpty())
        return 0;
    ApplyParameters(parameters);
    if (IsEmpty())
        return 0;
    unsigned int const target = requested & TAGDATA_MASK;
    if (target == TAGDATA_NONE)
        return 1;
    bool const isSameBase = (target & TAGDATA_BASE_MASK) == (type & TAGDATA_BASE_MASK);
    if (!isSameBase && !ConvertTo(target))
        return 0;
    type = static_cast<_TAGDATA_INFO>(target);
    return 1;
}

/// Converts to a type of another base, which the caller enters.
bool CTagValue::ConvertTo(unsigned int target) {
    if (type == TAGDATA_TEXT)
        return ConvertText(target);
    if ((target & TAGDATA_BASE_MASK) == TAGDATA_TEXT)
        return ConvertToText();
    switch (type) {
    case TAGDATA_UINT:
        if (target == TAGDATA_FLOATS) {
            InitType(TAGDATA_FLOATS);
            AddFloat(static_cast<float>(number));
            return true;
        }
        if (target != TAGDATA_UINTS)
            return false;
        InitType(TAGDATA_UINTS);
        AddUInt(GetUInt());
        return true;
    case TAGDATA_FLOAT:
        switch (target) {
        case TAGDATA_UINT:
        case TAGDATA_BOOL: number = Truncated(real); return true;
        case TAGDATA_UINTS:
            InitType(TAGDATA_UINTS);
            AddUInt(static_cast<unsigned int>(Truncated(real)));
            return true;
        case TAGDATA_FLOATS:
            InitType(TAGDATA_FLOATS);
            AddFloat(real);
            return true;
        default: return false; // a signed number too
        }
    case TAGDATA_UINTS:
    case TAGDATA_INTS:
        if ((target != TAGDATA_UINT && target != TAGDATA_INT) || UInts().IsEmpty())
            return false;
        number = UInts()[0];
        return true;
    default: return false;
    }
}

/// Each way empties the text first, so that it is gone even where nothing is written.
bool CTagValue::ConvertToText() {
    CXTString<char16_t>& to = GetText();
    switch (type) {
    case TAGDATA_UINT: to.Format(u"%u", GetUInt()); break;
    case TAGDATA_INT: to.Format(u"%d", GetInt()); break;
    case TAGDATA_BOOL: to = Message(number != 0 ? trueText : falseText); break;
    case TAGDATA_FILESIZE: to = GetFileSizeString(number); break;
    case TAGDATA_COLOR: {
        unsigned int const color = GetColor();
        to.Format(Message(colorFormat), color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
        break;
    }
    case TAGDATA_FLOAT: to.Format(u"%.4f", static_cast<double>(real)); break;
    case TAGDATA_DURATION: PrintDuration(to, real); break;
    case TAGDATA_LENGTH:
        to.Empty();
        PrintLength(to, real);
        break;
    case TAGDATA_RESOLUTION: to.Format(u"%f dpi", static_cast<double>(real)); break;
    case TAGDATA_DATE: to = GetFileDateString(GetDate(), true, true, false); break;
    case TAGDATA_STRINGS:
        to.Empty();
        for (CXTString<char16_t> const& element : Strings()) {
            to += element;
            to.Append(separator.data(), separator.size());
        }
        break;
    case TAGDATA_UINTS:
    case TAGDATA_INTS:
        to.Empty();
        for (unsigned int const element : UInts())
            AppendNumber(to, u"%d; ", static_cast<int>(element));
        break;
    case TAGDATA_FLOATS:
        to.Empty();
        for (float const element : Floats())
            AppendNumber(to, u"%f; ", static_cast<double>(element));
        break;
    case TAGDATA_CUSTOMINFO: {
        unsigned int size = 0;
        void const* const bytes = GetCustomPtr(size);
        PrintBytes(to, bytes, size);
        break;
    }
    default: return false;
    }
    return true;
}

bool CTagValue::ConvertText(unsigned int target) {
    CXTString<char16_t>& from = GetText();
    switch (target & TAGDATA_BASE_MASK) {
    case TAGDATA_UINT: {
        unsigned long long scanned = 0;
        if (from.ScanS(target == TAGDATA_INT ? u"%I64d" : u"%I64u", &scanned) != 1)
            return false;
        number = scanned;
        return true;
    }
    case TAGDATA_FLOAT: {
        float scanned = 0;
        if (from.ScanS(u"%f", &scanned) != 1)
            return false;
        real = scanned;
        return true;
    }
    case TAGDATA_DATE:
        InitType(TAGDATA_DATE); // stays when the text is no date
        return ConvertText2Time(from, GetDate());
    case TAGDATA_CUSTOM:
        // As many bytes as the text has characters, so the first half of its UTF-16.
        SetCustomInfo(from.GetConstBuffer(), static_cast<unsigned int>(from.GetLength()));
        from.ReleaseBuffer();
        return true;
    case TAGDATA_STRINGS:
    case TAGDATA_UINTS:
    case TAGDATA_FLOATS: ConvertTextToArray(target); return true;
    default: return false;
    }
}

void CTagValue::ConvertTextToArray(unsigned int target) {
    InitType(TAGDATA_STRINGS);
    std::u16string_view rest(GetText(), static_cast<std::size_t>(GetText().GetLength()));
    while (!rest.empty()) {
        std::size_t const end = rest.find(separator);
        std::u16string_view const token = Stripped(rest.substr(0, end));
        if (!token.empty())
            Strings().Add(CXTString<char16_t>(token.data(), static_cast<int>(token.size())));
        rest.remove_prefix(end == rest.npos ? rest.size() : end + separator.size());
    }
    GetText().Empty();
    unsigned int const base = target & TAGDATA_BASE_MASK;
    if (base == TAGDATA_STRINGS)
        return;
    InitType(static_cast<_TAGDATA_INFO>(target));
    for (CXTString<char16_t> const& token : Strings()) {
        int whole = 0;
        float fraction = 0;
        if (base == TAGDATA_UINTS ? token.ScanS(u"%d", &whole) == 1 : token.ScanS(u"%f", &fraction) == 1) {
            if (base == TAGDATA_UINTS)
                AddInt(whole);
            else
                AddFloat(fraction);
        }
    }
}
