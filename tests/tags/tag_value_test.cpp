// SPDX-License-Identifier: MIT
#include "zeltools/tags/tag_value.h"

#include <gtest/gtest.h>

TEST(TagValue, InitTypePreparesOnlyTypesThatHaveAnObject) {
    CTagValue value;
    value.InitType(TAGDATA_UINT);
    EXPECT_TRUE(value.IsEmpty());
    value.SetUInt(3);
    EXPECT_EQ(value.GetDataType(), TAGDATA_UINT);
    value.InitType(static_cast<_TAGDATA_INFO>(TAGDATA_TEXT | TAGFLAG_READONLY));
    EXPECT_EQ(value.GetDataType(), TAGDATA_TEXT);
}
