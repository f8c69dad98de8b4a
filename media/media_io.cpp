// SPDX-License-Identifier: MIT
#include "media/media_io.h"

#include <zeltools/files/io_options.h>
#include <zeltools/foundation/thread_exceptions.h>
#include <zeltools/foundation/xexception.h>
#include <zeltools/foundation/xfile_exception.h>

#include <chrono>
#include <exception>
#include <new>

namespace {

unsigned long long NowMs() {
    using namespace std::chrono;
    return static_cast<unsigned long long>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

/// Whether another parser would meet the same obstacle.
bool IsFinal(int code) {
    return code == IoCannotOpen || code == IoUnauthorized || code == IoCanceled || code == IoDiskFull;
}

} // namespace

bool CMediaIo::IsOutOfTime() const {
    return limits.timeMs != 0 && NowMs() - startMs > limits.timeMs;
}

bool CMediaIo::TryParser(std::function<bool(CFileParser& parser)> const& work) {
    constexpr auto level = IoLogInfo::loglevel{};
    SetIoError(IoSuccess, nullptr, level);
    CFileParser* const parser = InitParser();
    if (!parser) {
        SetIoError(IoUnknownType, nullptr, level);
        return false;
    }
    try {
        if (work(*parser)) {
            return true;
        }
        if (GetIoError() == IoSuccess) {
            SetIoError(IoBadFormat, nullptr, level);
        }
    } catch (CXFileException* exception) {
        SetIoError(exception->GetErrorMessage(), nullptr, level);
        exception->Delete();
    } catch (CXMemoryException* exception) {
        SetIoError(IoNoMemory, nullptr, level);
        exception->Delete();
    } catch (CXException* exception) {
        SetIoError(IoBadFormat, nullptr, level);
        exception->Delete();
    } catch (std::bad_alloc const&) {
        SetIoError(IoNoMemory, nullptr, level);
    } catch (std::exception const& exception) {
        SetIoError(CXTString<char16_t>(exception.what()), nullptr, level);
    }
    return false;
}

bool CMediaIo::TryParsers(CIoOptions* options, std::function<bool(CFileParser& parser)> const& work) {
    errors.RemoveAll();
    answeringClass = 0;
    startMs = NowMs();
    unsigned int const wanted = IsLoading() ? FilePropertyAnyLoad : FilePropertyAnySave;
    for (;;) {
        if ((GetProperties() & wanted) != 0 || !CanTryAnotherParser()) {
            if (TryParser(work)) {
                answeringClass = GetClass();
                break;
            }
            ParserError const failure{.classId = GetClass(), .code = GetIoError(), .text = GetIoErrorTxt()};
            errors.Add(failure);
            if (options) {
                options->AddLogInfo(IoLogInfo::Error, failure.text);
            }
            if (IsFinal(failure.code) || IsOutOfTime() || ShouldCancelParser()) {
                break;
            }
        }
        if (!CanTryAnotherParser()) {
            break;
        }
        TryNextParser();
    }
    CloseParser();
    if (answeringClass == 0 && errors.GetSize() > 1) {
        SetIoError(errors[0].text, nullptr, IoLogInfo::loglevel{});
    }
    return answeringClass != 0;
}
