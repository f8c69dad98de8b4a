// SPDX-License-Identifier: MIT
#include "zeltools/ui/desktop.h"

#include "tests/support/printers.h"
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/log_file.h"
#include "zeltools/ui/custom_menu.h"
#include "zeltools/ui/custom_rich_edit_ctrl.h"
#include "zeltools/ui/edit.h"

#include <gtest/gtest.h>

namespace {

class WideDesktop final : public Desktop {
public:
    WideDesktop() { SetDesktop(this); }
    ~WideDesktop() override { SetDesktop(nullptr); }
    MessageBoxAnswer ShowMessageBox(CXTString<char16_t> const&, MessageBoxButtons) override { return AnswerRetry; }
    CWnd* GetMainWindow() override { return reinterpret_cast<CWnd*>(this); }
    int GetClientWidth(CWnd*) override { return 640; }
};

} // namespace

TEST(Desktop, InstalledOneReachesTheLowerFloors) {
    {
        WideDesktop desktop;
        EXPECT_EQ(&GetDesktop(), &desktop);
        EXPECT_EQ(detail::GetDesktopHooks().ShowMessageBox(u"Again?", MessageBoxRetryCancel), AnswerRetry);
        EXPECT_NE(detail::GetDesktopHooks().GetMainWindow(), nullptr);
        EXPECT_EQ(detail::GetDesktopHooks().GetClientWidth(nullptr), 640);
        EXPECT_FALSE(detail::GetDesktopHooks().MeasureText(nullptr, u"not measured"));
    }
    EXPECT_EQ(&detail::GetDesktopHooks(), &detail::GetHeadlessHooks());
}

TEST(Desktop, HeadlessOneDecidesForTheLeast) {
    CCustomMenu menu;
    menu.InsertItem(-1, 7, u"Delete everything");
    EXPECT_EQ(GetDesktop().TrackPopupMenu(menu, CPoint(1, 2), nullptr), 0U);
    CXTString<char16_t> logged;
    SetLogCallback([](unsigned, auto text, bool, void* user) { *static_cast<decltype(text)*>(user) += text; }, &logged);
    EXPECT_EQ(GetDesktop().ShowMessageBox(u"Delete 100%s?", MessageBoxYesNo), AnswerNo);
    SetLogCallback(nullptr, nullptr);
    EXPECT_EQ(logged, u"Delete 100%s?\n");
    EXPECT_TRUE(GetDesktop().CreateEdit(nullptr)->IsWindow());
    EXPECT_TRUE(GetDesktop().CreateRichEdit(nullptr)->IsWindow());
}
