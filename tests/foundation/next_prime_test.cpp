// SPDX-License-Identifier: MIT
#include "zeltools/foundation/next_prime.h"

#include <gtest/gtest.h>

namespace {

TEST(NextPrime, GivesFirstPrimeNotBelow) {
    struct {
        unsigned int number, prime;
    } const rows[] = {
        {0, 1},
        {2, 3},   // below 3 the successor
        {8, 11},  // 9 is the first odd number that is tested
        {25, 29}, // a square of a prime is no prime
        {92, 97},
        {1328, 1361},               // the longest gap below 9551
        {2147483648u, 2147483659u}, // above the signed range
        {4294967291u, 4294967291u}, // the last one
        {4294967292u, 0},
    };
    for (auto const& row : rows)
        EXPECT_EQ(NextPrime(row.number), row.prime) << row.number;
}

} // namespace
