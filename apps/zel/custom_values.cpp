// SPDX-License-Identifier: MIT
#include "custom_values.h"

#include "terminal.h"
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/foundation/xtime.h>
#include <zeltools/persistence/custom_data.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

struct Type {
    unsigned int kind;
    char const* name;
    bool isSettable;
};

constexpr Type Types[] = {
    {CustomDataInt, "int", true},
    {CustomDataUInt, "uint", true},
    {CustomDataLong, "long", true},
    {CustomDataULong, "ulong", true},
    {CustomDataLongInt, "int64", true},
    {CustomDataULongInt, "uint64", true},
    {CustomDataChar, "char", true},
    {CustomDataUChar, "uchar", true},
    {CustomDataBool, "bool", true},
    {CustomDataFloat, "float", true},
    {CustomDataDouble, "double", true},
    {CustomDataXTime, "time", true},
    {CustomDataBinary, "binary", true},
    {CustomDataWide, "string", true},
    {CustomDataNarrow, "ansi", true},
    {CustomDataWideList, "strings", true},
    {CustomDataUtf8, "utf8", false},
    {CustomDataNarrowList, "ansi-strings", false},
    {CustomDataUtf8List, "utf8-strings", false},
    {CustomDataUTCTime, "utc-time", false},
    {CustomDataPtr, "pointer", false},
    {CustomDataOldPtr, "old-pointer", false},
    {CustomDataArray, "array", false},
    {CustomDataNested, "store", false},
    {CustomDataNestedOld, "old-store", false},
    {CustomDataBlank, "untyped", false},
};

std::string Utf8(CXTString<char16_t> const& text) {
    bool exact = false;
    return ValidUtf8(static_cast<char const*>(XCW2A(text, xEncodingUtf8)), exact);
}

CXTString<char16_t> FromUtf8(std::string const& text) {
    return static_cast<char16_t const*>(XCA2W(text.c_str(), xEncodingUtf8));
}

Json HexadecimalOf(CustomPrivateData const& value) {
    return fmt::format("{:02x}", fmt::join(value.Data(), value.Data() + value.size, ""));
}

template <class T>
Json NumberOf(CustomPrivateData const& value) {
    T number;
    if (value.size != sizeof(number)) {
        return HexadecimalOf(value);
    }
    std::memcpy(&number, value.Data(), sizeof(number));
    if constexpr (std::is_floating_point_v<T>) {
        std::string const shortest = fmt::format("{}", number); // 0.1f is 0.1, not the double next to it
        return std::isfinite(number) ? Json(std::strtod(shortest.c_str(), nullptr)) : Json(shortest);
    } else {
        return number;
    }
}

/// The nine fields of a broken-down time as a date; hexadecimal when they are none.
Json DateOf(CustomPrivateData const& value) {
    int fields[9];
    if (value.size != sizeof(fields)) {
        return HexadecimalOf(value);
    }
    std::memcpy(fields, value.Data(), sizeof(fields));
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", fields[5] + 1900LL, fields[4] + 1LL, fields[3], fields[2],
                       fields[1], fields[0]);
}

Json ListOf(CCustomData const& store, unsigned int id) {
    CXArray<CXTString<char16_t>> texts;
    store.GetStringArray(id, texts);
    Json list = Json::array();
    for (CXTString<char16_t> const& text : texts) {
        list.push_back(Utf8(text));
    }
    return list;
}

/// A value of a legacy file has no kind: a text where its bytes are one and nothing but one, else the bytes.
Json UntypedOf(CCustomData const& store, CustomPrivateData const& value) {
    CXTString<char16_t> text;
    store.GetString(value.id, text);
    auto const units = static_cast<unsigned int>(text.GetLength()) + 1;
    bool isText = units > 1 && (value.size == units || value.size == units * 2);
    for (int i = 0; i < text.GetLength(); ++i) {
        isText = isText && text[i] >= u' ' && text[i] != 0x7F;
    }
    return isText ? Json(Utf8(text)) : HexadecimalOf(value);
}

Json JsonOf(CCustomData& store, CustomPrivateData const& value, int depth);

Json JsonOf(CCustomData& store, int depth) {
    Json list = Json::array();
    for (CustomPrivateData const* const value : ValuesOf(store)) {
        list.push_back(
            {{"id", CodeText(value->id)}, {"type", TypeOf(*value)}, {"value", JsonOf(store, *value, depth)}});
    }
    return list;
}

Json NestedOf(CCustomData& store, unsigned int id, int depth) {
    // A copy, since the older form is rewritten in its store when it is read.
    CCustomData outer;
    outer.CopyID(&store, id, 0U);
    CCustomData nested;
    return outer.GetCustomData(id, nested) ? JsonOf(nested, depth + 1) : Json::array();
}

Json JsonOf(CCustomData& store, CustomPrivateData const& value, int depth) {
    switch (value.kind) {
    case CustomDataInt:
    case CustomDataLong: return NumberOf<int>(value);
    case CustomDataUInt:
    case CustomDataULong: return NumberOf<unsigned int>(value);
    case CustomDataLongInt:
    case CustomDataXTime: return NumberOf<long long>(value);
    case CustomDataULongInt:
    case CustomDataPtr: return NumberOf<unsigned long long>(value);
    case CustomDataChar: return NumberOf<signed char>(value);
    case CustomDataUChar: return NumberOf<unsigned char>(value);
    case CustomDataFloat: return NumberOf<float>(value);
    case CustomDataDouble: return NumberOf<double>(value);
    case CustomDataBool: {
        Json const number = NumberOf<int>(value);
        return number.is_number() ? Json(number != 0) : number;
    }
    case CustomDataWide:
    case CustomDataNarrow:
    case CustomDataUtf8: {
        CXTString<char16_t> text;
        store.GetString(value.id, text);
        return Utf8(text);
    }
    case CustomDataWideList:
    case CustomDataNarrowList:
    case CustomDataUtf8List: return ListOf(store, value.id);
    case CustomDataUTCTime: return DateOf(value);
    case CustomDataNested:
    case CustomDataNestedOld:
        return depth < CCustomData::MaxDumpDepth && value.id != 0 ? NestedOf(store, value.id, depth)
                                                                  : HexadecimalOf(value);
    case CustomDataBlank: return UntypedOf(store, value);
    default: return HexadecimalOf(value);
    }
}

template <class T>
bool ParseNumber(std::string const& word, T& number) {
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size();
}

template <class T, class Set>
std::string SetNumber(std::string const& word, Set set) {
    T number{};
    if (!ParseNumber(word, number)) {
        return fmt::format("'{}' is no number of this type", ShownName(word, true));
    }
    set(number);
    return {};
}

std::string SetBool(CCustomData& store, unsigned int id, std::string const& word) {
    if (word != "true" && word != "false") {
        return fmt::format("'{}' is neither true nor false", ShownName(word, true));
    }
    store.SetBool(id, word == "true");
    return {};
}

std::string SetBinary(CCustomData& store, unsigned int id, std::string const& word) {
    std::string bytes;
    for (std::size_t i = 0; i < word.size(); i += 2) {
        unsigned char byte = 0;
        auto const [end, error] =
            std::from_chars(word.data() + i, word.data() + std::min(i + 2, word.size()), byte, 16);
        if (error != std::errc() || end != word.data() + i + 2) {
            return fmt::format("'{}' is no row of hexadecimal bytes", ShownName(word, true));
        }
        bytes += static_cast<char>(byte);
    }
    if (bytes.empty()) {
        return "a value cannot be empty";
    }
    store.SetBinary(id, bytes.data(), static_cast<unsigned int>(bytes.size()));
    return {};
}

std::string SetList(CCustomData& store, unsigned int id, Words const& words) {
    CXArray<CXTString<char16_t>> texts;
    for (std::string const& word : words) {
        texts.Add(FromUtf8(word));
    }
    store.SetStringArray(id, texts);
    return {};
}

std::string SetText(CCustomData& store, unsigned int id, unsigned int kind, std::string const& word) {
    if (kind == CustomDataWide) {
        store.SetString(id, FromUtf8(word));
    } else {
        store.SetStringA(id, static_cast<char const*>(XCW2A(FromUtf8(word))));
    }
    return {};
}

} // namespace

std::string CodeText(unsigned int code) {
    std::string text;
    bool isPrintable = true;
    for (int shift = 24; shift >= 0; shift -= 8) {
        auto const character = static_cast<char>(code >> shift & 0xFF);
        isPrintable = isPrintable && character >= ' ' && character < 0x7F;
        text += character;
    }
    return isPrintable && !text.starts_with("0x") ? text : fmt::format("0x{:08X}", code);
}

std::optional<unsigned int> ParseCode(std::string_view text) {
    unsigned int code = 0;
    bool const isHexadecimal = text.starts_with("0x");
    std::string_view const digits = text.substr(isHexadecimal ? 2 : 0);
    auto const [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), code, isHexadecimal ? 16 : 10);
    bool const isNumber = error == std::errc() && end == digits.data() + digits.size();
    if (isHexadecimal || (isNumber && text.size() != 4)) {
        return isNumber ? std::optional(code) : std::nullopt;
    }
    if (text.empty() || text.size() > 4) {
        return std::nullopt;
    }
    code = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        char const character = i < text.size() ? text[i] : ' ';
        if (character < ' ' || character >= 0x7F) {
            return std::nullopt;
        }
        code = code << 8 | static_cast<unsigned char>(character);
    }
    return code;
}

std::vector<CustomPrivateData const*> ValuesOf(CCustomData const& store) {
    unsigned int size = 0;
    auto const* const bytes = static_cast<unsigned char const*>(store.GetData(size));
    std::vector<CustomPrivateData const*> values;
    for (std::size_t offset = 0; offset + sizeof(CustomPrivateData) <= size;) {
        auto const* const value = reinterpret_cast<CustomPrivateData const*>(bytes + offset);
        unsigned int valueSize = 0;
        if (store.GetCustomPtr(value->id, valueSize) == value->Data()) {
            values.push_back(value);
        }
        offset += sizeof(CustomPrivateData) + value->size;
    }
    return values;
}

std::string TypeOf(CustomPrivateData const& value) {
    for (Type const& type : Types) {
        if (type.kind == value.kind) {
            return type.name;
        }
    }
    return "unknown";
}

Json JsonOf(CCustomData& store, CustomPrivateData const& value) {
    return JsonOf(store, value, 0);
}

Json JsonOf(CCustomData& store) {
    return JsonOf(store, 0);
}

std::string TextOf(Json const& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (!value.is_array()) {
        return value.dump();
    }
    std::string text;
    for (Json const& item : value) {
        text += text.empty() ? "" : ", ";
        text += item.is_object() ? fmt::format("{} = {}", item.at("id").get<std::string>(), TextOf(item.at("value")))
                                 : TextOf(item);
    }
    return "[" + text + "]";
}

std::string SettableTypes() {
    std::string names;
    for (Type const& type : Types) {
        if (type.isSettable) {
            names += (names.empty() ? "" : ", ") + std::string(type.name);
        }
    }
    return names;
}

std::string SetValue(CCustomData& store, unsigned int id, std::string_view typeName, Words const& words) {
    unsigned int kind = 0;
    for (Type const& type : Types) {
        if (type.isSettable && typeName == type.name) {
            kind = type.kind;
        }
    }
    if (kind == 0) {
        return fmt::format("'{}' is none of the types {}", ShownName(typeName, true), SettableTypes());
    }
    if (words.size() != 1 && kind != CustomDataWideList) {
        return fmt::format("a value of type {} is one word", typeName);
    }
    bool const isText = kind == CustomDataWide || kind == CustomDataNarrow || kind == CustomDataWideList;
    for (std::string const& word : words) {
        bool exact = true;
        ValidUtf8(word, exact);
        if (isText && !exact) { // it would be stored as another text
            return fmt::format("'{}' is no UTF-8", ShownName(word, true));
        }
    }
    std::string const& word = words.front();
    switch (kind) {
    case CustomDataInt: return SetNumber<int>(word, [&](int number) { store.SetInt(id, number); });
    case CustomDataUInt: return SetNumber<unsigned int>(word, [&](unsigned int number) { store.SetUInt(id, number); });
    case CustomDataLong: return SetNumber<int>(word, [&](int number) { store.SetLong(id, number); });
    case CustomDataULong:
        return SetNumber<unsigned int>(word, [&](unsigned int number) { store.SetULong(id, number); });
    case CustomDataLongInt: return SetNumber<long long>(word, [&](long long number) { store.SetLongInt(id, number); });
    case CustomDataULongInt:
        return SetNumber<unsigned long long>(word, [&](unsigned long long number) { store.SetULongInt(id, number); });
    case CustomDataChar:
        return SetNumber<signed char>(word, [&](signed char number) { store.SetChar(id, static_cast<char>(number)); });
    case CustomDataUChar:
        return SetNumber<unsigned char>(word, [&](unsigned char number) { store.SetUChar(id, number); });
    case CustomDataFloat: return SetNumber<float>(word, [&](float number) { store.SetFloat(id, number); });
    case CustomDataDouble: return SetNumber<double>(word, [&](double number) { store.SetDouble(id, number); });
    case CustomDataXTime:
        return SetNumber<long long>(word, [&](long long number) { store.SetXTime(id, CXTime(number)); });
    case CustomDataBool: return SetBool(store, id, word);
    case CustomDataBinary: return SetBinary(store, id, word);
    case CustomDataWideList: return SetList(store, id, words);
    default: return SetText(store, id, kind, word);
    }
}

} // namespace zel
