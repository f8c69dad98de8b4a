// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xexception.h"
#include "zeltools/foundation/xobject.h"
#include "zeltools/foundation/xruntime_class.h"
#include "zeltools/foundation/xruntime_class_private.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace {

class CShape : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CShape)
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CShape, CXObject, 3)

class CRound : public CShape {
    ZEL_DECLARE_RUNTIME_CLASS(CRound)
public:
    explicit CRound(int r) : radius(r) {}
    int radius;
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CRound, CShape, 7 | RuntimeClassNotSerializable)

/// Of the same name as another class, as two plug-ins may have one.
CXRuntimeClass const otherShape = {"CShape", 8, 9, &CXObject::classCreatorCXObject, nullptr, "CXObject"};

TEST(RuntimeClass, KindFollowsTheBaseChain) {
    CRound const round(5);
    CShape const shape;
    EXPECT_TRUE(round.IsKindOf(CRound::GetThisRuntimeClassDescriptor()));
    EXPECT_TRUE(round.IsKindOf(CShape::GetThisRuntimeClassDescriptor()));
    EXPECT_TRUE(round.IsKindOf(CXObject::GetThisRuntimeClassDescriptor()));
    EXPECT_FALSE(shape.IsKindOf(CRound::GetThisRuntimeClassDescriptor()));
    EXPECT_FALSE(shape.IsKindOf(&otherShape)); // the record counts, not the name
    EXPECT_FALSE(CXObject::IsKindOf(nullptr, CShape::GetThisRuntimeClassDescriptor()));
}

TEST(RuntimeClassRegistry, FindsTheLaterOfTwoAndNothingAfterItsEnd) {
    EXPECT_EQ(detail::FindRuntimeClass("CShape"), nullptr);
    EXPECT_FALSE(CXRuntimeClass::DeclareRuntimeClass(nullptr));
    EXPECT_TRUE(CXRuntimeClass::DeclareRuntimeClass(&CShape::classCreatorCShape));
    EXPECT_EQ(detail::FindRuntimeClass("CShape"), &CShape::classCreatorCShape);
    EXPECT_EQ(detail::FindRuntimeClass("cshape"), nullptr);
    EXPECT_TRUE(CXRuntimeClass::DeclareRuntimeClass(&otherShape));
    EXPECT_EQ(detail::FindRuntimeClass("CShape"), &otherShape);
    detail::DeleteRuntimeClassRegistry();
    EXPECT_EQ(detail::FindRuntimeClass("CShape"), nullptr);
    EXPECT_TRUE(CXRuntimeClass::DeclareRuntimeClass(&otherShape));
    detail::DeleteRuntimeClassRegistry();
}

TEST(RuntimeClassRegistry, ThreadsDeclareAndFindAtOnce) {
    std::atomic<int> misses = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&misses] {
                for (int round = 0; round < 500; ++round) {
                    CXRuntimeClass::DeclareRuntimeClass(&CRound::classCreatorCRound);
                    if (detail::FindRuntimeClass("CRound") != &CRound::classCreatorCRound)
                        ++misses;
                }
            });
    }
    EXPECT_EQ(misses, 0);
    detail::DeleteRuntimeClassRegistry();
}

} // namespace
