// SPDX-License-Identifier: MIT
#include "registry_values.h"

#include "terminal.h"
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/platform/registry_types.h>

#include <charconv>
#include <cstring>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace zel {

namespace {

struct Type {
    char const* name;
    unsigned int number;
};

constexpr Type Types[] = {{"string", RegString}, {"expand", RegExpandString}, {"multi", RegMultiString},
                          {"int", RegInt},       {"int64", RegInt64},         {"binary", RegBinary},
                          {"none", RegNone}};

/// The texts in the bytes of a value; those of types 1 and 2 are one.
std::vector<std::string> Texts(RegistryValue const& value) {
    std::vector<std::string> texts;
    std::u16string text;
    for (int i = 0; i + 1 < value.bytes.GetSize(); i += 2) {
        auto const unit = static_cast<char16_t>(value.bytes[i] | value.bytes[i + 1] << 8);
        if (unit == 0) {
            if (value.type == RegMultiString && text.empty()) {
                return texts; // the empty text that ends the list
            }
            texts.push_back(Utf8(text.c_str()));
            text.clear();
            if (value.type != RegMultiString) {
                return texts;
            }
            continue;
        }
        text += unit;
    }
    if (!text.empty() || (texts.empty() && value.type != RegMultiString)) {
        texts.push_back(Utf8(text.c_str()));
    }
    return texts;
}

bool IsText(unsigned int type) {
    return type == RegString || type == RegExpandString || type == RegMultiString;
}

/// The number in a value of exactly four or eight bytes.
bool IsNumber(RegistryValue const& value, long long& number) {
    int const size = value.type == RegInt ? 4 : value.type == RegInt64 ? 8 : -1;
    if (value.bytes.GetSize() != size) {
        return false;
    }
    number = 0;
    int narrow = 0;
    std::memcpy(size == 4 ? static_cast<void*>(&narrow) : &number, value.bytes.GetData(),
                static_cast<std::size_t>(size));
    number = size == 4 ? narrow : number;
    return true;
}

std::string Hexadecimal(RegistryValue const& value) {
    std::string text;
    for (unsigned char const byte : value.bytes) {
        text += fmt::format("{:02x}", byte);
    }
    return text;
}

void Append(CXArray<unsigned char>& bytes, void const* data, std::size_t size) {
    int const before = bytes.GetSize();
    bytes.SetSize(before + static_cast<int>(size));
    if (size != 0) {
        std::memcpy(bytes.GetData() + before, data, size);
    }
}

bool AppendHexadecimal(std::string const& text, CXArray<unsigned char>& bytes) {
    bool isValid = text.size() % 2 == 0;
    for (std::size_t i = 0; isValid && i < text.size(); i += 2) {
        unsigned char byte = 0;
        auto const [end, error] = std::from_chars(text.data() + i, text.data() + i + 2, byte, 16);
        isValid = error == std::errc() && end == text.data() + i + 2;
        bytes.Add(byte);
    }
    return isValid;
}

/// Takes a number of a type, decimal or with 0x in front. Those above the signed range are taken as their bits.
template <class Signed>
bool AppendNumber(std::string const& text, CXArray<unsigned char>& bytes) {
    bool const isHexadecimal = text.compare(0, 2, "0x") == 0;
    char const* const begin = text.data() + (isHexadecimal ? 2 : 0);
    char const* const end = text.data() + text.size();
    auto const take = [&](auto number) {
        auto const [stop, error] = std::from_chars(begin, end, number, isHexadecimal ? 16 : 10);
        bool const isWhole = error == std::errc() && stop == end && begin != end;
        if (isWhole) {
            Append(bytes, &number, sizeof(number));
        }
        return isWhole;
    };
    return (!isHexadecimal && take(Signed())) || take(std::make_unsigned_t<Signed>());
}

} // namespace

std::string Utf8(CXTString<char16_t> const& text) {
    return static_cast<char const*>(XCW2A(text, xEncodingUtf8));
}

CXTString<char16_t> Wide(std::string const& utf8) {
    return static_cast<char16_t const*>(XCA2W(utf8.c_str(), xEncodingUtf8));
}

std::vector<std::string> TypeNames() {
    std::vector<std::string> names;
    for (Type const& type : Types) {
        names.emplace_back(type.name);
    }
    return names;
}

std::string TypeName(unsigned int number) {
    for (Type const& type : Types) {
        if (type.number == number) {
            return type.name;
        }
    }
    return std::to_string(number);
}

std::string PlainText(RegistryValue const& value) {
    long long number = 0;
    if (IsText(value.type)) {
        return fmt::format("{}", fmt::join(Texts(value), "\n"));
    }
    return IsNumber(value, number) ? std::to_string(number) : Hexadecimal(value);
}

std::string OneLine(RegistryValue const& value) {
    return value.type == RegMultiString ? nlohmann::json(Texts(value)).dump() : PlainText(value);
}

nlohmann::ordered_json ToJson(RegistryValue const& value) {
    nlohmann::ordered_json content = PlainText(value);
    long long number = 0;
    if (value.type == RegMultiString) {
        content = Texts(value);
    } else if (IsNumber(value, number)) {
        content = number;
    }
    return {{"name", value.name}, {"type", TypeName(value.type)}, {"value", content}};
}

bool FromTexts(std::string const& typeName, std::vector<std::string> const& texts, RegistryValue& value,
               std::string& reason) {
    for (Type const& type : Types) {
        value.type = typeName == type.name ? type.number : value.type;
    }
    if (value.type != RegMultiString && texts.size() != (value.type == RegNone ? 0U : 1U)) {
        reason = fmt::format("a value of the type {} takes {}", typeName,
                             value.type == RegNone ? "no VALUE" : "one VALUE; an empty one is ''");
        return false;
    }
    bool isValid = true;
    for (std::string const& text : texts) {
        if (IsText(value.type)) {
            bool exact = false;
            ValidUtf8(text, exact);
            // An empty text would end the list of a multi.
            isValid = isValid && exact && !(value.type == RegMultiString && text.empty());
            CXTString<char16_t> const wide = Wide(text);
            Append(value.bytes, wide.GetConstBuffer(), (static_cast<std::size_t>(wide.GetLength()) + 1) * 2);
        } else {
            isValid = value.type == RegBinary  ? AppendHexadecimal(text, value.bytes)
                      : value.type == RegInt64 ? AppendNumber<long long>(text, value.bytes)
                                               : AppendNumber<int>(text, value.bytes);
        }
        if (!isValid) {
            reason = fmt::format("'{}' is no value of the type {}", ShownName(text, true), typeName);
            return false;
        }
    }
    if (value.type == RegMultiString) {
        Append(value.bytes, u"", 2);
    }
    return true;
}

} // namespace zel
