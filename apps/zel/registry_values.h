// SPDX-License-Identifier: MIT
// Values of the registry as text and JSON, and back.

#pragma once

#include <zeltools/foundation/xarray.h>
#include <zeltools/foundation/xstring.h>

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace zel {

struct RegistryValue {
    std::string name;
    unsigned int type = 0;
    CXArray<unsigned char> bytes{};
};

std::string Utf8(CXTString<char16_t> const& text);
CXTString<char16_t> Wide(std::string const& utf8);

/// string, expand, multi, int, int64, binary, none.
std::vector<std::string> TypeNames();

/// The name of a type; its number for one without a name.
std::string TypeName(unsigned int type);

/// The value as `zel registry get` prints it: a multi has a line for each text, bytes are hexadecimal.
std::string PlainText(RegistryValue const& value);

/// The same in one line, with multi's texts quoted.
std::string OneLine(RegistryValue const& value);

/// Name, type and value. Numbers are numbers, a multi is an array, bytes are a hexadecimal text.
nlohmann::ordered_json ToJson(RegistryValue const& value);

/// Makes the bytes of a value. False with the reason when the texts are none of the type.
bool FromTexts(std::string const& typeName, std::vector<std::string> const& texts, RegistryValue& value,
               std::string& reason);

} // namespace zel
