// SPDX-License-Identifier: MIT
#include "zeltools/process/progress_dlg.h"

#include "zeltools/foundation/start_and_close.h"
#include "zeltools/process/progress_callbacks.h"
#include "zeltools/process/search_file_info.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace {

/// A listener that keeps what it hears and answers what it is told to.
struct Listener {
    std::vector<std::pair<unsigned int, int>> heard; ///< flags and the position that they are about
    std::u16string title;
    bool answer = false;

    static bool Hear(unsigned int flags, ProcessProgressInfo const& progress, void* user) {
        auto& self = *static_cast<Listener*>(user);
        self.heard.emplace_back(flags, flags & 4 ? progress.second.position : progress.first.position);
        self.title = progress.title.GetConstBuffer();
        return self.answer;
    }
};

TEST(ProgressCallbacks, OnlyTheTopIsCalledAndOnlyACancelQuestionIsRemembered) {
    void* user = &user;
    EXPECT_EQ(processProgressGetCallback(user), nullptr);
    EXPECT_EQ(user, nullptr);
    EXPECT_FALSE(processProgressPopCallback());
    EXPECT_FALSE(processProgressCallCallback(64, {}));
    Listener lower;
    Listener upper;
    upper.answer = true;
    processProgressPushCallback(&Listener::Hear, &lower);
    processProgressPushCallback(nullptr, &lower);
    processProgressPushCallback(&Listener::Hear, &upper);
    EXPECT_EQ(processProgressGetCallback(user), &Listener::Hear);
    EXPECT_EQ(user, &upper);
    EXPECT_TRUE(processProgressCallCallback(2, {}));
    EXPECT_FALSE(processProgressUserCancel());
    EXPECT_TRUE(processProgressCallCallback(64, {}));
    EXPECT_TRUE(processProgressUserCancel());
    upper.answer = false;
    processProgressCallCallback(4, {});
    EXPECT_TRUE(processProgressPopCallback());
    EXPECT_TRUE(lower.heard.empty());
    EXPECT_FALSE(processProgressPopCallback());
}

TEST(ProgressCallbacks, ListenerMayPushAndPopDuringItsCall) {
    auto const push = [](unsigned int, ProcessProgressInfo const&, void* user) {
        for (int i = 0; i < 100; ++i) { // so many that the stack moves
            processProgressPushCallback(&Listener::Hear, user);
        }
        return true;
    };
    auto const popItself = [](unsigned int, ProcessProgressInfo const&, void*) {
        processProgressPopCallback();
        return true;
    };
    Listener pushed;
    processProgressPushCallback(push, &pushed);
    EXPECT_TRUE(processProgressCallCallback(64, {}));
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(processProgressPopCallback());
    }
    EXPECT_TRUE(processProgressPopCallback()); // the answer went to the one that gave it
    processProgressPushCallback(&Listener::Hear, &pushed);
    processProgressPushCallback(popItself, nullptr);
    EXPECT_TRUE(processProgressCallCallback(64, {}));
    EXPECT_FALSE(processProgressPopCallback());
    EXPECT_FALSE(processProgressPopCallback());
}

/// The test's thread is the main thread.
class ProgressDlg : public testing::Test {
protected:
    ProgressDlg() { InitQuenbyApplication(nullptr, nullptr, 0, nullptr); }
    ~ProgressDlg() override {
        processProgressPopCallback();
        CloseQuenbyApplication(0xFFFFFFFF);
    }
    Listener listener;
};

TEST_F(ProgressDlg, KeepsPositionsOnceItIsOpen) {
    CProgressDlg dialog(0, ProgressDlgShowTime | ProgressDlgNoSecondTime);
    EXPECT_FALSE(dialog.SetPos(30, true));
    EXPECT_EQ(dialog.GetPos(true), 0);
    EXPECT_TRUE(dialog.Create(nullptr, u"Loading", u"Textures"));
    EXPECT_FALSE(dialog.Create(nullptr, u"Other", u""));
    EXPECT_EQ(dialog.GetProgressInfo().title, u"Loading");
    dialog.SetPos(0, true);
    EXPECT_TRUE(dialog.SetPos(300, true));
    EXPECT_EQ(dialog.GetPercentText(true), u"100 % (0:00)");
    dialog.SetPos(30, false);
    EXPECT_EQ(dialog.GetPercentText(false), u"30 %");
    EXPECT_TRUE(dialog.VerifyData());
    dialog.PushSubRange(2, false);
    EXPECT_FALSE(dialog.VerifyData());
    std::thread([&] { dialog.SetPos(40, false); }).join();
    EXPECT_EQ(dialog.GetPercentText(false), u"30 %"); // the text is the main thread's
    dialog.DelayDestroy();
    EXPECT_TRUE(dialog.IsCreated());
    dialog.CheckCancelButton(false);
    EXPECT_FALSE(dialog.SetPos(50, true));
}

TEST_F(ProgressDlg, ExternalThreadReportsToTheListenerAndAsksIt) {
    processProgressPushCallback(&Listener::Hear, &listener);
    CProgressDlg dialog(0, ProgressDlgExternalThread);
    dialog.Create(nullptr, u"Loading", u"");
    std::thread([&] {
        dialog.PushSubRange(4, true);
        dialog.SetSubRangePos(1, true);
        dialog.SetPos(7, false);
        EXPECT_FALSE(dialog.CheckCancelButton(true));
        listener.answer = true;
        EXPECT_TRUE(dialog.CheckCancelButton(true)); // only the main thread takes the flag back
        listener.answer = false;
        EXPECT_TRUE(dialog.CheckCancelButton(true)); // and while it is set nobody is asked
    }).join();
    using Heard = std::vector<std::pair<unsigned int, int>>;
    EXPECT_EQ(listener.heard, (Heard{{2, 25}, {4, 7}, {64, 25}, {64, 25}}));
    EXPECT_EQ(listener.title, u"Loading");
    EXPECT_EQ(dialog.GetPercentText(true), u"");
    EXPECT_TRUE(processProgressUserCancel());
}

TEST_F(ProgressDlg, CancelFlagIsReadAndReset) {
    CProgressDlg dialog;
    dialog.SetCancel();
    std::thread([&] { EXPECT_TRUE(dialog.CheckCancelButton(true)); }).join();
    EXPECT_TRUE(dialog.CheckCancelButton(false));
    EXPECT_TRUE(dialog.CheckCancelButton(true));
    EXPECT_FALSE(dialog.CheckCancelButton(true));
    CSearchFileInfo search(nullptr);
    EXPECT_FALSE(search.UserCancel());
    search.OnCancel();
    EXPECT_TRUE(search.UserCancel());
}

} // namespace
