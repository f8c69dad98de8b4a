// SPDX-License-Identifier: MIT
#include "zeltools/foundation/stack.h"

#include <gtest/gtest.h>
#include <string>

namespace {

struct OpenStack : CStack<std::string> {
    using CStack::top;
};

TEST(CStack, GivesBackInReverseAcrossGrowth) {
    OpenStack stack;
    for (int i = 0; i < 100; ++i)
        stack.Push(std::to_string(i));
    stack.Drop();
    for (int i = 98; i >= 0; --i) {
        ASSERT_EQ(*stack.Top(), std::to_string(i));
        std::string item;
        stack.Pop(item);
        ASSERT_EQ(item, std::to_string(i));
    }
    EXPECT_TRUE(stack.IsEmpty());
    stack.Push("long enough to lie on the heap");
    for (int i = 0; i < 200; ++i) // its own top, through growth
        stack.Push(*stack.Top());
    EXPECT_EQ(*stack.Top(), "long enough to lie on the heap");
}

TEST(CStack, UnderflowStopsDebugAndDoesNothingInRelease) {
    OpenStack stack;
    std::string item = "untouched";
    EXPECT_DEBUG_DEATH(stack.Pop(item), "empty stack");
    EXPECT_DEBUG_DEATH(stack.Drop(), "empty stack");
    EXPECT_DEBUG_DEATH(EXPECT_EQ(stack.Top(), nullptr), "empty stack");
    EXPECT_EQ(item, "untouched");
    EXPECT_EQ(stack.top, -1);
}

} // namespace
