// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/registry_store.h"

#include "zeltools/platform/errors.h"
#include "zeltools/platform/folder_lock.h"
#include "zeltools/platform/known_folders.h"
#include "zeltools/platform/linux/rename.h"
#include "zeltools/platform/registry.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr long long ApplicationId = 0x5A454C52; // "ZELR", in the header of the file
constexpr long long SchemaVersion = 1;

// AUTOINCREMENT keeps an id from coming back, so that a handle to a deleted key never means a later one. The ids of
// each file begin anywhere in 40 bits, so that neither does a handle to a key of a file that was replaced.
constexpr char const* Schema = R"(
CREATE TABLE key (
    id     INTEGER PRIMARY KEY AUTOINCREMENT,
    parent INTEGER NOT NULL,
    name   BLOB NOT NULL,
    folded BLOB NOT NULL,
    UNIQUE (parent, folded)
);
CREATE TABLE value (
    id     INTEGER PRIMARY KEY AUTOINCREMENT,
    key    INTEGER NOT NULL,
    name   BLOB NOT NULL,
    folded BLOB NOT NULL,
    type   INTEGER NOT NULL,
    data   BLOB NOT NULL,
    UNIQUE (key, folded)
);
INSERT INTO sqlite_sequence (name, seq) VALUES ('key', 15 + (random() & 1099511627775));
PRAGMA application_id = 1514490962;
PRAGMA user_version = 1;
)";

struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(FileIdentity const& other) const { return device == other.device && inode == other.inode; }
};

/// False when there is no such file.
bool Identify(std::string const& path, FileIdentity& identity) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return false;
    }
    identity = {status.st_dev, status.st_ino};
    return true;
}

/// What the process knows of the store; guarded by `lock`. Never destroyed: settings may be saved at exit.
struct Store {
    std::mutex lock; // no recursive one: its owner has another number after a fork and could not leave it
    Database database;
    std::string path;      // of the open database
    FileIdentity identity; // of the open database
    bool isReady = false;  // the database has the tables
};

std::atomic<unsigned long long> ownWrites;

Store& TheStore() {
    static Store& store = []() -> Store& {
        static Store& made = *new Store;
        // No other thread is inside while a process is copied, so that the child finds a lock that it can take. The
        // connection stays the parent's: SQLite allows no use of it in the child.
        pthread_atfork([] { made.lock.lock(); }, [] { made.lock.unlock(); },
                       [] {
                           made.database.Abandon();
                           made.lock.unlock();
                       });
        return made;
    }();
    return store;
}

std::string StorePath() {
    char const* const variable = std::getenv("ZELTOOLS_REGISTRY");
    if (variable != nullptr && variable[0] != '\0') {
        return variable;
    }
    std::string const folder = GetNativeKnownFolder(KnownFolder::Configuration);
    return folder.empty() ? folder : folder + "/zeltools/registry.db";
}

/// Makes the folder of a path with those above it. False with errno.
bool MakeFolderOf(std::string const& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
        if (mkdir(path.substr(0, slash).c_str(), 0700) != 0 && errno != EEXIST) {
            struct stat status {};
            int const cause = errno; // a folder on a read-only disk is there and cannot be made
            if (stat(path.substr(0, slash).c_str(), &status) != 0) {
                errno = cause;
                return false;
            }
        }
    }
    return true;
}

/// Makes the empty file, which only its owner may read, and its folder. False with errno.
bool MakeFile(std::string const& path) {
    if (!MakeFolderOf(path)) {
        return false;
    }
    int const descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        return errno == EEXIST; // another process was faster
    }
    close(descriptor);
    return true;
}

// Who sets a store aside ----------------------------------------------------------------------------------------------

struct Reports {
    std::mutex mutex; // guards the two below; nothing is taken under it
    void (*reporter)(std::string const&) = nullptr;
    std::vector<std::string> pending; // what nobody has been told yet
};

Reports& TheReports() {
    static Reports& reports = *new Reports;
    return reports;
}

void DeliverReports() {
    std::vector<std::string> pending;
    void (*reporter)(std::string const&) = nullptr;
    {
        std::lock_guard const hold(TheReports().mutex);
        reporter = TheReports().reporter;
        if (reporter != nullptr) {
            pending.swap(TheReports().pending);
        }
    }
    for (std::string const& name : pending) {
        reporter(name);
    }
}

/// Gives a damaged store the first free name of registry.db.damaged-1, -2, ... True when the name is free for a new
/// one.
bool SetAside(std::string const& path, FileIdentity const& damaged) {
    // The second process that finds the damage must not take away the sound file that the first has put there.
    FolderLock const hold(FolderOf(path));
    if (!hold.IsHeld()) {
        return false;
    }
    FileIdentity present;
    if (!Identify(path, present) || !(present == damaged)) {
        return true; // another process was faster
    }
    for (int number = 1; number < 10000; ++number) {
        std::string const newName = path + ".damaged-" + std::to_string(number);
        struct stat status {};
        if (lstat(newName.c_str(), &status) == 0) {
            continue;
        }
        // The journal goes first: left alone it would be played back into the new store.
        rename((path + "-journal").c_str(), (newName + "-journal").c_str());
        if (!RenameWithoutReplacing(path, newName, false)) {
            return false;
        }
        FlushFolderOf(path);
        std::lock_guard const holdReports(TheReports().mutex);
        TheReports().pending.push_back(newName);
        return true;
    }
    return false;
}

// One transaction -----------------------------------------------------------------------------------------------------

/// What a store is that has been opened.
enum class StoreKind {
    Ready,
    Empty, // a file without content: killed before its first transaction was through
    Foreign,
};

StoreKind LookAt(Database& database) {
    auto const number = [&](char const* sql) {
        Statement statement = database.Prepare(sql);
        return statement.Step() ? statement.Number(0) : 0;
    };
    long long const applicationId = number("PRAGMA application_id");
    long long const version = number("PRAGMA user_version");
    if (applicationId == ApplicationId && version == SchemaVersion) {
        return StoreKind::Ready;
    }
    bool const isEmpty = number("SELECT count(*) FROM sqlite_schema") == 0;
    return isEmpty && applicationId == 0 && version == 0 ? StoreKind::Empty : StoreKind::Foreign;
}

/// Opens the file unless it is open. False when it was replaced meanwhile.
bool Attach(Store& store, std::string const& path, FileIdentity const& identity) {
    if (store.database.IsOpen() && store.path == path) {
        return true;
    }
    store.isReady = false;
    store.path = path;
    store.identity = identity;
    store.database.Open(path);
    FileIdentity opened;
    return Identify(path, opened) && opened == identity;
}

/// Runs the work between BEGIN and COMMIT. An exception leaves the transaction to Close.
int RunOnce(Store& store, StoreUse use, std::function<int(Database*)> const& work, bool& isStale) {
    Database& database = store.database;
    database.Execute(use == StoreUse::Read ? "BEGIN" : "BEGIN IMMEDIATE");
    FileIdentity present;
    isStale = !Identify(store.path, present) || !(present == store.identity);
    if (isStale) {
        return ErrorBusy; // the connection is to a file that has been set aside or removed
    }
    bool isThere = true;
    if (!store.isReady) {
        StoreKind const kind = LookAt(database);
        if (kind == StoreKind::Foreign) {
            database.Execute("ROLLBACK");
            return ErrorNotRegistryFile;
        }
        if (kind == StoreKind::Empty && use == StoreUse::Create) {
            database.Execute(Schema);
        }
        isThere = kind == StoreKind::Ready || use == StoreUse::Create;
    }
    int const status = work(isThere ? &database : nullptr);
    database.Execute(status == ErrorSuccess ? "COMMIT" : "ROLLBACK");
    store.isReady = isThere && (status == ErrorSuccess || store.isReady);
    return status;
}

int RunLocked(Store& store, StoreUse use, std::function<int(Database*)> const& work) {
    std::string const path = StorePath();
    if (path.empty()) {
        return use != StoreUse::Create ? work(nullptr) : static_cast<int>(ErrorPathNotFound);
    }
    constexpr int mostTries = 6; // a missing file, a stale connection, a damaged file, and all of it once more
    int status = ErrorBusy;
    for (int tries = 0; tries < mostTries; ++tries) {
        FileIdentity identity;
        if (!Identify(path, identity)) {
            int const cause = errno;
            store.database.Close();
            if (use != StoreUse::Create) {
                bool const isMissing = cause == ENOENT || cause == ENOTDIR;
                return isMissing ? work(nullptr) : static_cast<int>(ErrorFromErrno(cause));
            }
            if (!MakeFile(path)) {
                // Not ErrorFileNotFound, which would mean the key.
                return static_cast<int>(errno == ENOENT ? ErrorPathNotFound : ErrorFromErrno(errno));
            }
            continue;
        }
        try {
            bool isStale = !Attach(store, path, identity);
            if (!isStale) {
                status = RunOnce(store, use, work, isStale);
            }
            if (!isStale) {
                return status;
            }
            store.database.Close();
        } catch (DatabaseError const& error) {
            store.database.Close();
            status = error.Status();
            if (!error.IsDamage() || !SetAside(path, store.identity)) {
                return status;
            }
        } catch (...) {
            store.database.Close();
            throw;
        }
    }
    return status;
}

} // namespace

int RunRegistryTransaction(StoreUse use, std::function<int(Database*)> const& work) {
    int status = ErrorSuccess;
    {
        Store& store = TheStore();
        std::lock_guard const hold(store.lock);
        status = RunLocked(store, use, work);
        if (use != StoreUse::Read) {
            ++ownWrites;
        }
    }
    DeliverReports();
    return status;
}

void SetRegistryDamageReporter(void (*reporter)(std::string const& newName)) {
    {
        std::lock_guard const hold(TheReports().mutex);
        TheReports().reporter = reporter;
    }
    DeliverReports();
}

unsigned long long GetRegistryVersion() {
    struct stat status {};
    std::string const path = StorePath();
    if (path.empty() || stat(path.c_str(), &status) != 0) {
        return 0;
    }
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    // Two writes within one tick of the file system's clock leave the same time behind.
    constexpr long long tickNs = 20000000;
    auto const inNs = [](timespec const& time) { return time.tv_sec * 1000000000LL + time.tv_nsec; };
    if (inNs(now) - inNs(status.st_mtim) < tickNs) {
        return ~0ULL;
    }
    unsigned long long version = 14695981039346656037ULL; // FNV-1a
    for (unsigned long long const word :
         {static_cast<unsigned long long>(status.st_dev), static_cast<unsigned long long>(status.st_ino),
          static_cast<unsigned long long>(status.st_size), static_cast<unsigned long long>(inNs(status.st_mtim)),
          ownWrites.load()}) {
        version = (version ^ word) * 1099511628211ULL;
    }
    return version == 0 || version == ~0ULL ? 1 : version;
}

} // namespace platform
