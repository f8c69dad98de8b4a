// SPDX-License-Identifier: MIT
// Millimetres and inches. An inch is 25.4 mm exactly, by the agreement of 1959.

#pragma once

inline constexpr double MillimetresPerInch = 25.4;

constexpr double MMToInch(double millimetres) {
    return millimetres / MillimetresPerInch;
}

constexpr double InchToMM(double inches) {
    return inches * MillimetresPerInch;
}
