// SPDX-License-Identifier: MIT
#include "zeltools/foundation/next_prime.h"

namespace {

constexpr unsigned int LargestPrime = 4294967291u;

bool IsOddPrime(unsigned int odd) {
    for (unsigned int divisor = 3; divisor <= odd / divisor; divisor += 2)
        if (odd % divisor == 0)
            return false;
    return true;
}

} // namespace

unsigned int NextPrime(unsigned int number) {
    if (number < 3)
        return number + 1;
    if (number > LargestPrime)
        return 0;
    unsigned int candidate = number | 1;
    while (candidate >= 9 && !IsOddPrime(candidate))
        candidate += 2;
    return candidate;
}
