// SPDX-License-Identifier: MIT
// The prime sizes of the hash containers:
//
//     NextPrime(92);   // 97
//     NextPrime(97);   // 97: an odd prime is its own answer
//     NextPrime(2);    // 3: below 3 it is the number's successor
//
// It is not a general source of primes: NextPrime(0) is 1.

#pragma once

#include "zeltools/foundation/api.h"

/// Gives the first prime that is not below `number`; `number + 1` for a number below 3.
///
/// @return the prime; 0 above 4294967291, which is the largest prime that fits.
/// Errors:  none.
/// Threads: any. The worst case, near 2^32, takes some thirty thousand divisions for each candidate.
ZEL_API unsigned int NextPrime(unsigned int number);
