// SPDX-License-Identifier: MIT
#include "tests/support/thrown.h"
#include "zeltools/foundation/exit_callbacks_private.h"
#include "zeltools/foundation/thread_exceptions.h"
#include "zeltools/foundation/xload_string.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/language.h"

#include <atomic>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <thread>

namespace {

/// Counts the exceptions alive, and tells a second destruction.
class CCountedException : public CXException {
public:
    CCountedException() { ++alive; }
    ~CCountedException() override { --alive; }
    static inline std::atomic<int> alive = 0;
};

TEST(ThreadExceptions, EachIsDeletedOnceWhicheverWayAndWhicheverThread) {
    struct {
        char const* name;
        void (*catchIt)(CXException*);
    } const ways[] = {
        {"through the table", [](CXException*) { XDeleteThreadException(); }},
        {"by the pointer", [](CXException* e) { e->Delete(); }},
        {"by the pointer, then through the table",
         [](CXException* e) {
             CXException::Delete(e);
             XDeleteThreadException();
         }},
        {"by another thread",
         [](CXException* e) {
             std::jthread([e] { e->Delete(); }).join();
             XDeleteThreadException();
         }},
    };
    for (auto const& way : ways) {
        try {
            auto* const exception = new CCountedException;
            XSetThreadException(exception);
            throw exception;
        } catch (CCountedException* exception) {
            way.catchIt(exception);
        }
        EXPECT_EQ(CCountedException::alive, 0) << way.name;
    }
    XSetThreadException(nullptr);
    CXException::Delete(nullptr);
    XDeleteThreadException();
}

TEST(ThreadExceptions, TableEndsWithTheLibraryAndBeginsAgain) {
    auto* const caught = new CCountedException;
    XSetThreadException(caught);
    detail::RunExitCallbacks();
    XDeleteThreadException();
    EXPECT_EQ(CCountedException::alive, 1); // it belongs to whoever caught it
    caught->Delete();
    XSetThreadException(new CCountedException);
    XDeleteThreadException();
    EXPECT_EQ(CCountedException::alive, 0);
    detail::RunExitCallbacks();
    detail::DeleteExitCallbackTable();
}

TEST(FileException, ThrowsOrFillsTheTarget) {
    using F = CXFileException;
    struct {
        unsigned int error;
        F::FileExceptionType type, cause;
        char const* thrown;
    } const rows[] = {
        {32, F::badSeek, F::sharingViolation, "cause 11"},
        {0, F::badSeek, F::badSeek, "cause 9"},
        {0, F::none, F::none, "nothing"}, // nothing happened, so nothing is thrown
    };
    for (auto const& row : rows) {
        F target(F::endOfFile, u"old");
        platform::SetLastError(row.error);
        F::ThrowOsError(row.type, u"C:\\a", &target);
        EXPECT_EQ(target.cause, row.cause);
        EXPECT_TRUE(target.fileName == u"C:\\a");
        platform::SetLastError(row.error);
        EXPECT_EQ(support::Thrown([&] { F::ThrowOsError(row.type, u"C:\\a"); }), row.thrown);
    }
}

/// One text for each cause, all different, each with the name in it, in both languages.
TEST(Exceptions, MessagesNameTheFileAndTellTheCausesApart) {
    unsigned short const before = platform::GetThreadUILanguage();
    for (int const language : {0x0409, 0x040C}) {
        platform::SetThreadUILanguage(static_cast<unsigned short>(language));
        std::set<std::u16string> texts;
        auto const check = [&texts](CXTString<char16_t> const& text, char16_t const* name) {
            EXPECT_GE(text.Find(name), 0);
            EXPECT_TRUE(texts.insert(static_cast<char16_t const*>(text)).second);
        };
        for (int cause = 1; cause <= 14; ++cause)
            check(CXFileException(CXFileException::FileExceptionType(cause), u"C:\\100%s.png").GetErrorMessage(),
                  u"C:\\100%s.png");
        for (int cause = 1; cause <= 8; ++cause)
            check(CXArchiveException(CXArchiveException::ArchiveExceptionType(cause), u"x.arc").GetErrorMessage(),
                  u"x.arc");
        CXTString<char16_t> const unnamed = xLoadString(61446);
        EXPECT_FALSE(unnamed.IsEmpty());
        check(CXFileException(CXFileException::badSeek, u"").GetErrorMessage(), unnamed);
        EXPECT_TRUE(CXFileException(CXFileException::none, u"a").GetErrorMessage().IsEmpty());
    }
    platform::SetThreadUILanguage(before);
}

} // namespace
