// SPDX-License-Identifier: MIT
// What the library takes for granted of the machine it is compiled for. A port that breaks one of these must
// change stored formats or arithmetic elsewhere, so it stops here.

#include <bit>
#include <climits>
#include <cstddef>

static_assert(CHAR_BIT == 8 && sizeof(int) == 4 && sizeof(long long) == 8);
static_assert(sizeof(void*) == 8 && sizeof(std::size_t) == 8);
static_assert(sizeof(char16_t) == 2);
static_assert(std::endian::native == std::endian::little, "stored integers are little-endian");
static_assert((-1 >> 1) == -1, "signed shifts keep the sign");
