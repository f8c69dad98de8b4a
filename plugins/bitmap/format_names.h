// SPDX-License-Identifier: MIT
// What people call the formats that OpenImageIO knows by short words.

#pragma once

#include <string>
#include <string_view>

/// Letters of the format's four-character class.
struct FormatName {
    std::string classLetters; ///< Four.
    std::string description;
};

/// The name of a format; one made from the word itself where it is new here: "xyz" gives "XYZ " and "XYZ images".
FormatName GetFormatName(std::string_view format);
