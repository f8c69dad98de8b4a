// SPDX-License-Identifier: MIT
// A desktop for the length of a test: it notes the boxes that it is asked to show and draws each character 10 pixels
// wide.

#pragma once

#include "zeltools/foundation/desktop_hooks_private.h"

#include <vector>

class NotingDesktop final : public detail::DesktopHooks {
public:
    NotingDesktop() { detail::SetDesktopHooks(this); }
    ~NotingDesktop() override { detail::SetDesktopHooks(nullptr); }
    NotingDesktop(NotingDesktop const&) = delete;
    NotingDesktop& operator=(NotingDesktop const&) = delete;

    detail::MessageBoxAnswer ShowMessageBox(CXTString<char16_t> const& text,
                                            detail::MessageBoxButtons buttons) override {
        boxes.push_back({text, buttons});
        return detail::AnswerYes;
    }
    CWnd* GetMainWindow() override { return mainWindow; }
    std::optional<int> MeasureText(CWnd*, CXTString<char16_t> const& text) override { return 10 * text.GetLength(); }
    int GetClientWidth(CWnd*) override { return 200; }
    void ShowBusy(bool busy) override { busyDepth += busy ? 1 : -1; }

    struct Box {
        CXTString<char16_t> text;
        unsigned int buttons;
    };
    std::vector<Box> boxes;
    int busyDepth = 0;
    CWnd* mainWindow = nullptr;
};
