// SPDX-License-Identifier: MIT
// The values of a property store as a person types and reads them, and as JSON.

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class CCustomData;
struct CustomPrivateData;

namespace zel {

/// A key or id: its four characters where all can be printed, else 0x and eight hexadecimal digits. A code whose
/// characters begin with 0x comes as a number too, so that what is printed can be typed.
std::string CodeText(unsigned int code);

/// What CodeText gives, with or without the blanks at its end; any other hexadecimal number behind 0x, or a decimal one
/// that has not four digits.
std::optional<unsigned int> ParseCode(std::string_view text);

/// The chunks of a store in their order; of several with one id, the last, which is the one that counts.
std::vector<CustomPrivateData const*> ValuesOf(CCustomData const& store);

/// The word for a value's kind: int, string, store...; "untyped" for a value of a legacy file, "unknown" for others.
std::string TypeOf(CustomPrivateData const& value);

/// The value itself: number, text, list of texts, list of values for a nested store, hexadecimal bytes for the rest.
nlohmann::ordered_json JsonOf(CCustomData& store, CustomPrivateData const& value);

/// All values of a store as objects with "id", "type" and "value".
nlohmann::ordered_json JsonOf(CCustomData& store);

/// A value in one line; control characters stay.
std::string TextOf(nlohmann::ordered_json const& value);

/// The words that SetValue takes, separated by commas.
std::string SettableTypes();

/// Sets a value from what was typed.
/// @param type   One of SettableTypes.
/// @param words  One, or any number for a list of texts.
/// @return what is wrong with the words; empty when the value was set.
std::string SetValue(CCustomData& store, unsigned int id, std::string_view type, std::vector<std::string> const& words);

} // namespace zel
