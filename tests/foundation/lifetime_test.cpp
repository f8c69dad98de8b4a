// SPDX-License-Identifier: MIT
#include "zeltools/foundation/shared_object.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace {

struct Item {
    unsigned short size;
    char rest[1];
};

TEST(SharedObject, ACopyHasAWholeBlockOfItsOwn) {
    auto* const block = static_cast<Item*>(xTaskMemAlloc(300));
    ASSERT_EQ(xTaskMemSize(block), 300u);
    std::memset(static_cast<void*>(block), 7, 300);
    TSharedObject<Item> const item(block);
    TSharedObject<Item> copy = item;
    ASSERT_NE(copy.Get(), item.Get());
    EXPECT_EQ(xTaskMemSize(copy.Get()), 300u);
    EXPECT_EQ(std::memcmp(copy.Get(), block, 300), 0);
    copy.Attach(nullptr);
    EXPECT_FALSE(TSharedObject<Item>(copy));
    copy = item;
    Item* const detached = copy.Detach();
    EXPECT_EQ(copy.Get(), nullptr);
    xTaskMemFree(detached);
    xTaskMemFree(nullptr);
    EXPECT_EQ(xTaskMemAlloc(std::numeric_limits<std::size_t>::max()), nullptr);
}

} // namespace
