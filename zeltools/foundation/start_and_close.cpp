// SPDX-License-Identifier: MIT
#include "zeltools/foundation/start_and_close.h"

#include "zeltools/files/plugins_directory.h"
#include "zeltools/files/registered_file.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/foundation/exit_callbacks_private.h"
#include "zeltools/foundation/fault_handlers_private.h"
#include "zeltools/foundation/log_file_private.h"
#include "zeltools/foundation/xruntime_class_private.h"
#include "zeltools/platform/modules.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/registry.h"
#include "zeltools/platform/threads.h"
#include "zeltools/process/application_state_private.h"
#include "zeltools/process/custom_thread.h"
#include "zeltools/process/thread_registry_private.h"
#include "zeltools/process/worker_count.h"
#include "zeltools/process/worker_count_private.h"

#include <atomic>

namespace {

std::atomic<bool> applicationInitialised;
std::atomic<int> zelToolsUseCount;

void LogDamagedRegistry(std::string const& newName) {
    detail::TraceToLog(u"Registry: the store was damaged and is set aside as %s\n",
                       platform::FromNativePath(newName).c_str());
}

/// The steps of a first start, in their order: each may rely on the ones before.
void Start(char16_t const* applicationPath, unsigned int flags, char16_t const* logFile) {
    ApplicationMainThreadId.store(platform::GetCurrentThreadId());
    detail::SetWorkerCountFromProcessors();
    if (logFile) {
        SetLogFile(logFile, LogFileModeReplace, LogLevelThreshold);
    }
    platform::SetRegistryDamageReporter(&LogDamagedRegistry);
    detail::TraceToLog(u"InitQuenbyApplication\n%d core will be used by default (use OMPSetMaxThreadCount, or define "
                       u"OMP_NUM_THREADS under linux, to change the behavior)\n",
                       static_cast<int>(OMPGetMaxThreadCount(true)));
    if (applicationPath) {
        SetApplicationPath(applicationPath);
    }
    if (flags & AppInitFileTypes) {
        CRegisteredFile::Instance();
    }
    if (flags & AppInitInvalidParameter) {
        detail::InstallInvalidParameterHandler();
    }
    if (flags & AppInitSignals) {
        detail::InstallSignalHandlers();
    }
    SetPluginsDirectory(GetApplicationPath(true), true);
}

} // namespace

void InitQuenbyApplication(char const*, char16_t const* applicationPath, unsigned int flags, char16_t const* logFile) {
    if (!applicationInitialised.exchange(true)) {
        Start(applicationPath, flags, logFile);
    }
}

void InitZelTools(unsigned int) {
    // The messages are part of the library itself, so they are always on the chain and its flag asks for nothing more.
    if (++zelToolsUseCount == 1 && !applicationInitialised.exchange(true)) {
        Start(nullptr, AppInitFileTypes | AppInitSignals | AppInitInvalidParameter, nullptr);
    }
}

void CloseZelTools(unsigned int) {
    int count = zelToolsUseCount.load();
    while (count > 0 && !zelToolsUseCount.compare_exchange_weak(count, count - 1)) {
    }
    if (count == 1) {
        CloseQuenbyApplication(0xFFFFFFFF);
    }
}

void BeforeCloseQuenbyApplication() {
    if (!ApplicationCloseStarted.exchange(true)) {
        CCustomThread::AskForThreadsEnd(true);
        while (CCustomThread::GetRunningThreadCount() != 0) {
            platform::Sleep(10);
        }
    }
    detail::RunBeforeCloseCallbacks();
}

void CloseQuenbyApplication(unsigned int flags) {
    if (!applicationInitialised.exchange(false)) {
        return;
    }
    if (flags & AppCloseSignals) {
        detail::RestoreSignalHandlers();
    }
    if (flags & AppCloseFileTypes) {
        CRegisteredFile::Free();
    }
    CloseLogFile(); // what an exit callback traces reaches only a log callback
    detail::RunExitCallbacks();
    if (flags & AppCloseFreeTables) {
        detail::DeleteExitCallbackTable();
        detail::DeleteWorkerCountCallbacks();
        detail::DeleteThreadTables();
        detail::ForgetApplicationPath();
        detail::ForgetProductName();
    }
    detail::RunBeforeCloseCallbacks();
    if (flags & AppCloseFreeTables) {
        detail::DeleteRuntimeClassRegistry();
    }
}

void* ZelToolsResourceHandle() {
    return platform::GetOwnModule();
}
