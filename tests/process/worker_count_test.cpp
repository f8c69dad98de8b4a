// SPDX-License-Identifier: MIT
#include "zeltools/process/worker_count.h"

#include "zeltools/process/worker_count_private.h"

#include <gtest/gtest.h>
#include <omp.h>
#include <string>

namespace {

class WorkerCount : public testing::Test {
protected:
    WorkerCount() : former(omp_get_max_threads()) {}
    ~WorkerCount() override {
        omp_set_num_threads(former);
        detail::DeleteWorkerCountCallbacks();
    }
    int const former;
};

TEST_F(WorkerCount, StaysBetweenOneAndAllButOne) {
    struct Row {
        int openMpThreads;
        unsigned int asked;
        unsigned int set;
        unsigned int highest;
    } const rows[] = {{8, 100, 7, 7},        {8, 7, 7, 7}, {8, 3, 3, 7}, {8, 0, 1, 7},
                      {8, 0xFFFFFFFF, 7, 7}, {2, 5, 1, 1}, {1, 5, 1, 1}, {1, 0, 1, 1}};
    for (Row const& row : rows) {
        omp_set_num_threads(row.openMpThreads);
        EXPECT_EQ(OMPSetMaxThreadCount(row.asked), row.set) << row.openMpThreads << ' ' << row.asked;
        EXPECT_EQ(OMPGetMaxThreadCount(true), row.set);
        EXPECT_EQ(OMPGetMaxThreadCount(false), row.highest);
    }
}

std::string callOrder;

TEST_F(WorkerCount, CallsListenersInOrderAndThoseAddedMeanwhile) {
    callOrder.clear();
    omp_set_num_threads(8);
    void (*const first)() = [] { callOrder += 'a'; };
    OMPAddChangeCallback(nullptr);
    OMPAddChangeCallback(first);
    OMPAddChangeCallback([] {
        callOrder += std::to_string(OMPGetMaxThreadCount(true)); // the new count is there already
        if (callOrder == "a5") {
            OMPAddChangeCallback([] { callOrder += 'z'; });
        }
    });
    OMPAddChangeCallback(first);
    OMPSetMaxThreadCount(5);
    EXPECT_EQ(callOrder, "a5az");
    OMPSetMaxThreadCount(6);
    EXPECT_EQ(callOrder, "a5aza6az");
}

TEST_F(WorkerCount, AListenerMayChangeTheCount) {
    omp_set_num_threads(8);
    OMPAddChangeCallback([] {
        if (OMPGetMaxThreadCount(true) != 2) {
            EXPECT_EQ(OMPSetMaxThreadCount(2), 2U);
        }
    });
    EXPECT_EQ(OMPSetMaxThreadCount(5), 2U);
}

} // namespace
