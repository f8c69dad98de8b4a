// SPDX-License-Identifier: MIT
#include "zeltools/files/file_io.h"

#include "zeltools/files/file_types.h"
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/platform/clock.h"
#include "zeltools/process/thread_registry.h"
#include "zeltools/process/xsingle_lock.h"

#include <memory>

namespace {

/// The managers that exist, for those who want to reach one that another thread uses.
struct LiveManagers {
    CXCriticalSection lock;
    CHashTable<CFileIo*> table; ///< Guarded by lock.

    /// Never deleted: a manager may outlive every static object.
    static LiveManagers& Instance() {
        static LiveManagers* const instance = new LiveManagers;
        return *instance;
    }
};

using CreationTable = CHashMap<unsigned int, unsigned int, FileIoCreationCallback>;

/// By kind. Never deleted, for the same reason.
CreationTable& CreationCallbacks() {
    static CreationTable* const instance = new CreationTable;
    return *instance;
}

CFileNameSpec SpecOfClass(unsigned int classId) {
    return {fileGetMainExtension(classId), classId};
}

} // namespace

CFileIo::CFileIo(CFileNameSpec const& name, unsigned int flagBits, CWnd* parent)
    : flagWord(flagBits), startTick(platform::GetTickCount64()),
      parentWindow(parent ? parent : detail::GetDesktopHooks().GetMainWindow()) {
    fileInfo.Init(name, FileNameTypeAuto, nullptr);
    if (name.IsDefaultParserChoice()) {
        unsigned int const wanted = IsLoading() ? FilePropertyLoad : FilePropertySave;
        while ((fileInfo.GetProperties() & wanted) == 0 && fileInfo.CanTryAnotherParser()) {
            fileInfo.TryNextParser();
        }
    }
    cancelClass = GetClass();
    LiveManagers& live = LiveManagers::Instance();
    CXSingleLock const guard(&live.lock, true);
    live.table.Insert(this);
}

CFileIo::CFileIo(unsigned int classId, unsigned int flagBits, CWnd* parent)
    : CFileIo(SpecOfClass(classId), flagBits, parent) {}

CFileIo::~CFileIo() {
    LiveManagers& live = LiveManagers::Instance();
    {
        CXSingleLock const guard(&live.lock, true);
        live.table.Remove(this);
    }
    CFileIo::CloseParser();
}

void CFileIo::RegisterFileIoCreationCallback(unsigned int kind, FileIoCreationCallback callback) {
    if (callback) {
        CreationCallbacks().Insert(kind, callback);
    } else {
        CreationCallbacks().Remove(kind);
    }
}

CFileIo* CFileIo::CreateFileIoFromPath(CFileNameSpec const& name, unsigned int flags, CWnd* parent) {
    FileIoCreationCallback const* const callback = CreationCallbacks().Find(fileGetKindOf(name));
    return callback ? (*callback)(name, flags, parent) : new CFileIo(name, flags, parent);
}

bool CFileIo::IsSingleThreaded(CFileNameSpec const& name, unsigned int flags) {
    std::unique_ptr<CFileIo> const io(CreateFileIoFromPath(name, flags));
    CFileParser const* const parser = io ? io->InitParser() : nullptr;
    return parser && parser->IsSingleThreaded();
}

void CFileIo::SetNewFileName(CFileNameSpec const& name) {
    fileInfo.Init(name, FileNameTypeAuto, nullptr);
    cancelClass = GetClass();
}

void CFileIo::TryNextParser() {
    fileInfo.TryNextParser();
    cancelClass = GetClass();
}

void CFileIo::SetFlag(FILE_PARSER_FLAGS bits, bool set) {
    if (set) {
        flagWord |= bits;
    } else {
        flagWord &= ~static_cast<unsigned int>(bits);
    }
}

bool CFileIo::ShouldCancelParser() const {
    return IsFlagSet(IoFlagCancel) || ShouldCancelThread();
}

CFileParser* CFileIo::InitParser() {
    CloseParser();
    unsigned int const id = GetParser();
    if (id == FileIdBuiltIn || id == FileIdExternal) {
        return nullptr;
    }
    if (IoPluginCallback const callback = fileInfo.GetInitIoCallback();
        callback && (id == FileIdPlugin || id == FileIdCallback)) {
        IoPluginParserInfo info{.io = this, .classId = GetClass()};
        if (callback(IoPluginCreateParser, &info) && info.parser) {
            currentParser = info.parser;
            return currentParser;
        }
    }
    errorText = CXTString<char16_t>();
    ioError = IoUnknownType;
    return nullptr;
}

void CFileIo::CloseParser() {
    delete currentParser;
    SetFlag(IoFlagCancel, false);
    currentParser = nullptr;
}

void SetFileClassCancel(unsigned int classId) {
    LiveManagers& live = LiveManagers::Instance();
    CXSingleLock const guard(&live.lock, true);
    CFileIo* io = nullptr;
    for (unsigned int position = live.table.GetFirst(); live.table.GetNext(position, io);) {
        if (io->cancelClass == classId) {
            io->SetFlag(IoFlagCancel, true);
        }
    }
}

bool fileClassIsSingleThreaded(CFileNameSpec const& name, unsigned int flags) {
    return CFileIo::IsSingleThreaded(name, flags);
}
