// SPDX-License-Identifier: MIT
#include "zeltools/platform/muldiv.h"

#include "tests/support/vectors.h"

#include <gtest/gtest.h>

namespace {

TEST(MulDiv, AgreesWithTheRecordings) {
    for (vectors::Row const& row : vectors::ReadTable("muldiv")) {
        auto const cell = [&row](char const* column) { return static_cast<int>(row.Number(column)); };
        EXPECT_EQ(platform::MulDiv(cell("number"), cell("numerator"), cell("denominator")), cell("result")) << row;
    }
}

} // namespace
