// SPDX-License-Identifier: MIT
#include "zeltools/foundation/instanciated_object.h"
#include "zeltools/foundation/scoped_values.h"
#include "zeltools/foundation/shared_object.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace {

class CCounted : public CInstanciatedObject {
public:
    explicit CCounted(bool* gone) : isGone(gone) {}

private:
    ~CCounted() override { *isGone = true; }
    bool* isGone;
};

TEST(InstanciatedObject, OnlyTheLastOwnerDeletes) {
    bool gone = false;
    auto* const object = new CCounted(&gone);
    EXPECT_EQ(object->AddRef(), 2);
    EXPECT_FALSE(object->Delete());
    EXPECT_EQ(object->GetRefCount(), 1);
    ASSERT_FALSE(gone);
    EXPECT_TRUE(DeleteMe(object));
    EXPECT_TRUE(gone);
    EXPECT_TRUE(DeleteMe(nullptr));
}

TEST(ScopedValues, ComeBackWhenAnExceptionLeavesTheScope) {
    int depth = 5;
    bool reset = false, inverted = true;
    try {
        CPopValue const inside(&depth);
        CBoolReset const restore(&reset, true);
        CBoolSwitch const other(&inverted);
        EXPECT_EQ(depth, 6);
        EXPECT_FALSE(reset || inverted);
        throw 0;
    } catch (int) {
    }
    EXPECT_EQ(depth, 5);
    EXPECT_TRUE(reset && inverted);
}

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
