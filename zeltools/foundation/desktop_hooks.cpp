// SPDX-License-Identifier: MIT
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/log_file.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/foundation/xexception.h"

#include <atomic>
#include <cstdio>

namespace detail {

namespace {

class HeadlessDesktop final : public DesktopHooks {
public:
    MessageBoxAnswer ShowMessageBox(CXTString<char16_t> const& text, MessageBoxButtons buttons) override {
        CXTString<char> bytes;
        XFASTCW2A(bytes, text, xEncodingUtf8);
        std::fprintf(stderr, "%s\n", static_cast<char const*>(bytes));
        try {
            WriteToLogFile(u"%s\n", static_cast<char16_t const*>(text));
        } catch (CXException* failure) { // of the log's file; the message was shown
            CXException::Delete(failure);
        }
        return SafestAnswer(buttons);
    }
    std::optional<int> MeasureText(CWnd*, CXTString<char16_t> const&) override { return std::nullopt; }
    int GetClientWidth(CWnd*) override { return 0; }
};

std::atomic<DesktopHooks*> installedHooks = nullptr;

} // namespace

bool DesktopHooks::ChooseFile(CXTString<char16_t> const&, CXTString<char16_t> const&, bool, bool,
                              CXTString<char16_t>&) {
    return false;
}

bool DesktopHooks::ChooseFromList(CXArray<CXTString<char16_t>> const&, CXArray<CXTString<char16_t>>&) {
    return false;
}

DesktopHooks& GetHeadlessHooks() {
    static HeadlessDesktop headless;
    return headless;
}

DesktopHooks& GetDesktopHooks() {
    DesktopHooks* const hooks = installedHooks.load(std::memory_order_acquire);
    return hooks != nullptr ? *hooks : GetHeadlessHooks();
}

void SetDesktopHooks(DesktopHooks* hooks) {
    installedHooks.store(hooks, std::memory_order_release);
}

MessageBoxAnswer SafestAnswer(MessageBoxButtons buttons) {
    switch (static_cast<MessageBoxButtons>(buttons & MessageBoxButtonMask)) {
    case MessageBoxOk: return AnswerOk;
    case MessageBoxAbortRetryIgnore: return AnswerAbort;
    case MessageBoxYesNo: return AnswerNo;
    default: break;
    }
    return AnswerCancel;
}

} // namespace detail
