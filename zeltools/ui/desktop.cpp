// SPDX-License-Identifier: MIT
#include "zeltools/ui/desktop.h"

#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/ui/memory_edit.h"
#include "zeltools/ui/memory_rich_edit_ctrl.h"

#include <atomic>

namespace {

/// Takes the questions of the lower floors, which do not know Desktop, to whatever desktop is installed.
class InstalledHooks final : public detail::DesktopHooks {
public:
    MessageBoxAnswer ShowMessageBox(CXTString<char16_t> const& text, MessageBoxButtons buttons) override {
        return GetDesktop().ShowMessageBox(text, buttons);
    }
    bool ChooseFile(CXTString<char16_t> const& title, CXTString<char16_t> const& start, bool loading, bool multiple,
                    CXTString<char16_t>& chosen) override {
        return GetDesktop().ChooseFile(title, start, loading, multiple, chosen);
    }
    bool ChooseFromList(CXArray<CXTString<char16_t>> const& list, CXArray<CXTString<char16_t>>& chosen) override {
        return GetDesktop().ChooseFromList(list, chosen);
    }
    CWnd* GetMainWindow() override { return GetDesktop().GetMainWindow(); }
    std::optional<int> MeasureText(CWnd* window, CXTString<char16_t> const& text) override {
        return GetDesktop().MeasureText(window, text);
    }
    int GetClientWidth(CWnd* window) override { return GetDesktop().GetClientWidth(window); }
    void ShowBusy(bool busy) override { GetDesktop().ShowBusy(busy); }
};

std::atomic<Desktop*> installedDesktop = nullptr;

} // namespace

unsigned int Desktop::TrackPopupMenu(CCustomMenu const&, CPoint const&, CWnd*) {
    return 0;
}

std::unique_ptr<CEdit> Desktop::CreateEdit(CWnd*) {
    return std::make_unique<MemoryEdit>();
}

std::unique_ptr<CCustomRichEditCtrl> Desktop::CreateRichEdit(CWnd*) {
    return std::make_unique<MemoryRichEditCtrl>();
}

MessageBoxAnswer Desktop::ShowMessageBox(CXTString<char16_t> const& text, MessageBoxButtons buttons) {
    return detail::GetHeadlessHooks().ShowMessageBox(text, buttons);
}

bool Desktop::ChooseFile(CXTString<char16_t> const& title, CXTString<char16_t> const& start, bool loading,
                         bool multiple, CXTString<char16_t>& chosen) {
    return detail::GetHeadlessHooks().ChooseFile(title, start, loading, multiple, chosen);
}

bool Desktop::ChooseFromList(CXArray<CXTString<char16_t>> const& list, CXArray<CXTString<char16_t>>& chosen) {
    return detail::GetHeadlessHooks().ChooseFromList(list, chosen);
}

CWnd* Desktop::GetMainWindow() {
    return detail::GetHeadlessHooks().GetMainWindow();
}

std::optional<int> Desktop::MeasureText(CWnd* window, CXTString<char16_t> const& text) {
    return detail::GetHeadlessHooks().MeasureText(window, text);
}

int Desktop::GetClientWidth(CWnd* window) {
    return detail::GetHeadlessHooks().GetClientWidth(window);
}

void Desktop::ShowBusy(bool busy) {
    detail::GetHeadlessHooks().ShowBusy(busy);
}

Desktop& GetDesktop() {
    static Desktop headless;
    Desktop* const desktop = installedDesktop.load(std::memory_order_acquire);
    return desktop != nullptr ? *desktop : headless;
}

void SetDesktop(Desktop* desktop) {
    static InstalledHooks hooks;
    installedDesktop.store(desktop, std::memory_order_release);
    detail::SetDesktopHooks(desktop != nullptr ? &hooks : nullptr);
}
