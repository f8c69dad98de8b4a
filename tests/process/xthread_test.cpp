// SPDX-License-Identifier: MIT
#include "zeltools/process/xthread.h"

#include "tests/support/wait_until.h"
#include "zeltools/process/thread_registry.h"

#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

/// Counts its objects and writes down what is called on them.
class Recorder : public CXThread {
    ZEL_DECLARE_RUNTIME_CLASS(Recorder)

public:
    explicit Recorder(bool keep = false, bool startResult = true) : CXThread(keep), startAnswer(startResult) {
        ++alive;
    }
    ~Recorder() override { --alive; }

    std::string calls;
    static inline std::atomic<int> alive{0};
    static inline std::atomic<int> runs{0};

protected:
    bool Start() override {
        calls += 'S';
        return startAnswer;
    }
    bool Run() override {
        calls += 'R';
        ++runs;
        return true;
    }
    void Finish() override { calls += 'F'; }

private:
    bool startAnswer;
};

ZEL_IMPLEMENT_RUNTIME_CLASS(Recorder, CXThread, RuntimeClassNotSerializable)

bool Increment(void* counter) {
    ++*static_cast<std::atomic<int>*>(counter);
    return true;
}

TEST(CXThread, CallsStartRunFinish) {
    for (bool const startAnswer : {true, false}) {
        Recorder thread(true, startAnswer);
        EXPECT_FALSE(thread.IsValidThread());
        EXPECT_EQ(thread.GetThreadID(), 0U);
        ASSERT_EQ(CXThread::BeginThread(&thread), &thread);
        EXPECT_NE(thread.GetThreadID(), CXThread::GetCurrentThreadID());
        WaitUntil([&] { return thread.IsTerminated(); });
        EXPECT_EQ(thread.calls, startAnswer ? "SRF" : "SF");
        EXPECT_EQ(CXThread::BeginThread(&thread), nullptr); // once in its life
        // The object is told of the end a moment before the system's thread is gone.
        WaitUntil([&] { return !thread.ResumeThread(); });
        EXPECT_FALSE(thread.SuspendThread());
        EXPECT_FALSE(thread.IsSuspended());
    }
    EXPECT_EQ(Recorder::alive, 0);
}

TEST(CXThread, StartFlagDecidesWhoDeletes) {
    Recorder::runs = 0;
    auto* const selfDeleting = new Recorder(true);
    EXPECT_FALSE(selfDeleting->AutoDelete());
    EXPECT_NE(CXThread::BeginThread(selfDeleting, xThreadPriorityNormal, BeginThreadAutoDelete), nullptr);
    WaitUntil([] { return Recorder::alive == 0; });
    EXPECT_EQ(Recorder::runs, 1);

    Recorder kept; // its constructor asks for self-deletion, the start says otherwise
    EXPECT_TRUE(kept.AutoDelete());
    CXThread::BeginThread(&kept);
    WaitUntil([&] { return kept.IsTerminated(); });
    EXPECT_EQ(Recorder::alive, 1);
}

TEST(CXThread, MadeFromFunctionAndClass) {
    std::atomic<int> counter{0};
    std::unique_ptr<CXThread> const function(CXThread::BeginThread(&Increment, &counter));
    ASSERT_TRUE(function);
    EXPECT_EQ(function->GetUserThreadData(), &counter);
    CXThread::BeginThread(&Increment, &counter, xThreadPriorityLowest, BeginThreadAutoDelete, 65536);
    WaitUntil([&] { return counter == 2 && function->IsTerminated(); });

    std::unique_ptr<CXThread> const made(CXThread::BeginThread(Recorder::GetThisRuntimeClassDescriptor(), &counter));
    ASSERT_TRUE(made);
    EXPECT_EQ(made->GetUserThreadData(), &counter);
    WaitUntil([&] { return made->IsTerminated(); });
    EXPECT_EQ(static_cast<Recorder*>(made.get())->calls, "SRF");
    EXPECT_TRUE(made->IsKindOf(CXThread::GetThisRuntimeClassDescriptor()));
}

TEST(CXThread, FailedStartsLeaveNothingAndDeleteNothing) {
    constexpr unsigned long long tooLarge = 1ULL << 60;
    EXPECT_EQ(CXThread::BeginThread(static_cast<CXThread*>(nullptr)), nullptr);
    EXPECT_EQ(CXThread::BeginThread(static_cast<bool (*)(void*)>(nullptr), nullptr), nullptr);
    EXPECT_EQ(CXThread::BeginThread(CXObject::GetThisRuntimeClassDescriptor(), nullptr), nullptr);
    EXPECT_EQ(CXThread::BeginThread(Recorder::GetThisRuntimeClassDescriptor(), nullptr, xThreadPriorityNormal,
                                    BeginThreadAutoDelete, tooLarge),
              nullptr);
    EXPECT_EQ(Recorder::alive, 0);
    Recorder thread;
    EXPECT_EQ(CXThread::BeginThread(&thread, xThreadPriorityNormal, 0, tooLarge), nullptr);
    EXPECT_EQ(Recorder::alive, 1);
    EXPECT_FALSE(thread.IsValidThread());
    EXPECT_EQ(CXThread::BeginThread(&thread), &thread); // a failed start is none
    WaitUntil([&] { return thread.IsTerminated(); });
}

TEST(CXThread, SuspendsItself) {
    struct Sleeper : CXThread {
        Sleeper() : CXThread(true) {}
        bool Run() override {
            EXPECT_TRUE(SuspendThread());
            resumed = true;
            return true;
        }
        std::atomic<bool> resumed{false};
    } thread;
    CXThread::BeginThread(&thread);
    WaitUntil([&] { return thread.IsSuspended(); });
    EXPECT_FALSE(thread.resumed);
    WaitUntil([&] { // the bit is set just before the thread stands; a resume in between finds nothing to resume
        thread.ResumeThread();
        return thread.resumed.load();
    });
    WaitUntil([&] { return thread.IsTerminated(); });
}

TEST(CXThread, TenThousandSelfDeletingBodiesOutrunTheirStart) {
    std::atomic<int> counter{0};
    for (int round = 0; round < 10'000; ++round) {
        ASSERT_NE(CXThread::BeginThread(&Increment, &counter, xThreadPriorityNormal, BeginThreadAutoDelete, 65536),
                  nullptr);
    }
    WaitUntil([&] { return counter == 10'000; });
}

TEST(CXThread, MayBeDeletedAsSoonAsItIsTerminated) {
    for (int round = 0; round < 2'000; ++round) {
        auto thread = std::make_unique<Recorder>(true);
        CXThread::BeginThread(thread.get(), xThreadPriorityNormal, 0, 65536);
        WaitUntil([&] { return thread->IsTerminated(); });
        thread.reset();
    }
}

TEST(CXThread, FlagsOfAnObjectAreItsOwn) {
    SetCancelThread(true);
    {
        CXThread neverStarted(true);
        neverStarted.SetCancel();
        EXPECT_TRUE(neverStarted.ShouldCancel());
        neverStarted.SetCancel(false);
        EXPECT_FALSE(neverStarted.ShouldCancel());
    }
    EXPECT_TRUE(ShouldCancelThread()); // the destructor's id of 0 must not stand for the caller
    SetCancelThread(false);
}

} // namespace
