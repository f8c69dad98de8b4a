// SPDX-License-Identifier: MIT
#include "zeltools/platform/errors.h"

#include "zeltools/platform/language.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

using namespace platform;

namespace {

TEST(Errors, EachThreadHasItsOwn) {
    SetLastError(ErrorDiskFull);
    unsigned int elsewhere = 1;
    std::thread([&] {
        elsewhere = GetLastError();
        SetLastError(ErrorCrc);
    }).join();
    EXPECT_EQ(elsewhere, 0U);
    EXPECT_EQ(GetLastError(), 112U);
}

TEST(Errors, NumbersOfErrno) {
    struct {
        int errnoValue;
        unsigned int error;
    } const rows[] = {{0, 0},       {ENOENT, 2},       {ENOTDIR, 3},        {EMFILE, 4},   {EACCES, 5},
                      {EPERM, 5},   {EISDIR, 5},       {EBADF, 6},          {ENOMEM, 8},   {EXDEV, 17},
                      {EROFS, 19},  {EWOULDBLOCK, 32}, {ENOSPC, 112},       {EDQUOT, 112}, {EEXIST, 183},
                      {EINTR, 995}, {ENOTEMPTY, 145},  {ENAMETOOLONG, 206}, {12345, 31},   {-1, 31}};
    for (auto const& row : rows) {
        EXPECT_EQ(ErrorFromErrno(row.errnoValue), row.error) << row.errnoValue;
    }
}

TEST(Errors, EveryNumberOfErrnoHasATextInBothLanguages) {
    unsigned short const before = GetThreadUILanguage();
    for (int value = 0; value < 134; ++value) {
        unsigned int const error = ErrorFromErrno(value);
        SetThreadUILanguage(0x409);
        std::u16string const english = FormatMessageW(error);
        SetThreadUILanguage(0x40C);
        EXPECT_FALSE(english.empty()) << error;
        EXPECT_NE(FormatMessageW(error), english) << error;
    }
    EXPECT_EQ(FormatMessageW(424242), u"");
    SetThreadUILanguage(before);
}

} // namespace
