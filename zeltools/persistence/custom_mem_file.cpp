// SPDX-License-Identifier: MIT
#include "zeltools/persistence/custom_mem_file.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CCustomMemFile, CXMemFile, RuntimeClassNotSerializable)

CCustomMemFile::CCustomMemFile() : CCustomMemFile(GrowByFactor, 1024) {}

CCustomMemFile::CCustomMemFile(unsigned int fileFlags, unsigned int growBytes)
    : CXMemFile(growBytes, true), flags(fileFlags) {}

CCustomMemFile::CCustomMemFile(unsigned char const* givenBuffer, unsigned long long size, bool ownsBuffer,
                               unsigned int fileFlags)
    : CXMemFile(givenBuffer, size, ownsBuffer, true), flags(fileFlags) {}

bool CCustomMemFile::GrowBuffer(unsigned long long needed) {
    if (needed > capacity && (flags & GrowByFactor) != 0) {
        constexpr double Factor = 1.6;
        constexpr double TwoTo64 = 18446744073709551616.0;
        unsigned long long const step = growStep != 0 ? growStep : DefaultGrowBytes;
        double const scaled = static_cast<double>(capacity) * Factor;
        // Only an attached buffer with a false size can be that large.
        unsigned long long const target = scaled < TwoTo64 ? static_cast<unsigned long long>(scaled) : needed;
        unsigned long long const delta = (target < needed ? needed : target) - capacity;
        if (delta > step) {
            growStep = delta;
        }
    }
    return CXMemFile::GrowBuffer(needed);
}
