// SPDX-License-Identifier: MIT
#include "zeltools/foundation/frect.h"
#include "zeltools/foundation/length_units.h"
#include "zeltools/foundation/xrect.h"

#include <climits>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>

void PrintTo(CXRect const& r, std::ostream* stream) {
    *stream << r.left << ',' << r.top << ',' << r.right << ',' << r.bottom;
}

namespace {

TEST(Points, SumsAndDifferencesHaveTheRightKindAndStopAtTheEnds) {
    CXPoint point(10, 20);
    EXPECT_EQ(point - CXPoint(1, 2), CXSize(9, 18));
    EXPECT_EQ(point - CXSize(1, 2), CXPoint(9, 18));
    EXPECT_EQ(-point, CXPoint(-10, -20));
    point.Offset(INT_MAX, INT_MIN);
    EXPECT_EQ(point, CXPoint(INT_MAX, INT_MIN + 20));
    EXPECT_EQ(-CXSize(INT_MIN, 1), CXSize(INT_MAX, -1));
    EXPECT_EQ(CXPoint(INT_MIN, 0) - CXPoint(1, 0), CXSize(INT_MIN, 0));
}

struct PairRow {
    char const* name;
    CXRect a, b, common, both;
};
PairRow const pairs[] = {
    {"Overlap", {0, 0, 10, 10}, {5, 6, 20, 20}, {5, 6, 10, 10}, {0, 0, 20, 20}},
    {"Inside", {0, 0, 10, 10}, {2, 3, 4, 5}, {2, 3, 4, 5}, {0, 0, 10, 10}},
    {"TouchingEdgesDoNotMeet", {0, 0, 10, 10}, {10, 0, 20, 10}, {}, {0, 0, 20, 10}},
    {"AnEmptyOneCountsForNothing", {0, 0, 10, 10}, {50, 50, 50, 60}, {}, {0, 0, 10, 10}},
    {"ATurnedOneIsEmpty", {8, 8, 2, 2}, {0, 0, 10, 10}, {}, {0, 0, 10, 10}},
    {"BothEmpty", {5, 5, 5, 9}, {1, 1, 0, 0}, {}, {}},
};

TEST(Rects, IntersectionAndUnion) {
    for (PairRow const& row : pairs) {
        CXRect rect = row.a;
        EXPECT_EQ(rect.IntersectRect(rect, row.b), !row.common.IsRectNull()) << row.name;
        EXPECT_EQ(rect, row.common) << row.name;
        rect = row.b;
        EXPECT_EQ(rect.UnionRect(row.a, rect), !row.both.IsRectNull()) << row.name;
        EXPECT_EQ(rect, row.both) << row.name;
        EXPECT_EQ(CXRect(row.b) & row.a, row.common) << row.name;
        EXPECT_EQ((CFRect(row.a) & row.b).Rounded(), row.common) << row.name;
        EXPECT_EQ((CFRect(row.a) | row.b).Rounded(), row.both) << row.name;
    }
}

TEST(Rects, SubtractionCutsOnlyWholeSides) {
    CXRect const a(0, 0, 10, 10);
    struct {
        CXRect b, rest;
    } const rows[] = {
        {{-5, -5, 4, 20}, {4, 0, 10, 10}},
        {{0, 0, 10, 3}, {0, 3, 10, 10}},
        {{0, 4, 10, 6}, a}, // would leave two
        {{0, 0, 5, 5}, a},
        {{-1, -1, 11, 11}, {}},
        {{20, 20, 30, 30}, a},
    };
    for (auto const& row : rows) {
        CXRect rect = row.b;
        EXPECT_EQ(rect.SubtractRect(a, rect), !row.rest.IsRectNull());
        EXPECT_EQ(rect, row.rest);
    }
}

TEST(RealRects, RoundAndStayDefinedForEveryNumber) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(CFRect(0.5, -0.5, 1.49, -1.51).Rounded(), CXRect(1, -1, 1, -2));
    EXPECT_EQ(CFRect(nan, -infinity, infinity, 3e9).Rounded(), CXRect(0, INT_MIN, INT_MAX, INT_MAX));
    EXPECT_TRUE(CFRect(0, 0, nan, 5).IsRectEmpty());
    EXPECT_EQ(CFRect(CFPoint(1, 2), CFSize(3, 4)) + CFSize(0.5, 0.5), CFRect(1.5, 2.5, 4.5, 6.5));
    EXPECT_EQ((CFPoint(3, 4) - CFPoint(1, 1)) / 2, CFSize(1, 1.5));
    EXPECT_DOUBLE_EQ(MMToInch(254), 10);
    EXPECT_DOUBLE_EQ(InchToMM(0.5), 12.7);
}

} // namespace
