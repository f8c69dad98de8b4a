// SPDX-License-Identifier: MIT
#include "zeltools/platform/registry.h"

#include "zeltools/platform/character_case.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/registry_store.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace platform {

namespace {

// Handles -------------------------------------------------------------------------------------------------------------

/// What a handle stands for.
struct OpenKey {
    long long row = 0; // of the table `key`; 1 to 6 for the roots
    unsigned int access = 0;
};

/// Handles are numbers that are never used again, so that one that was closed is found out.
class HandleTable {
public:
    HKEY Add(OpenKey key) {
        std::lock_guard const hold(mutex);
        next += 4;
        keys[next] = key;
        return reinterpret_cast<HKEY>(next);
    }

    /// False for what is no open handle.
    bool Find(HKEY handle, OpenKey& key) {
        for (unsigned int number = 0; number < 7; ++number) {
            if (handle == RootKey(0x80000000 + number) && number != 4) { // 4 counted performance, and is no tree
                key = {number < 4 ? number + 1 : number, KeyAllAccess};
                return true;
            }
        }
        std::lock_guard const hold(mutex);
        auto const found = keys.find(reinterpret_cast<std::uintptr_t>(handle));
        if (found == keys.end()) {
            return false;
        }
        key = found->second;
        return true;
    }

    bool Remove(HKEY handle) {
        std::lock_guard const hold(mutex);
        return keys.erase(reinterpret_cast<std::uintptr_t>(handle)) != 0;
    }

private:
    std::mutex mutex; // guards the two below; nothing is taken under it
    std::uintptr_t next = 0x100;
    std::unordered_map<std::uintptr_t, OpenKey> keys;
};

HandleTable& Handles() {
    static HandleTable& handles = *new HandleTable;
    return handles;
}

constexpr long long LastRootRow = 6;

/// Finds a handle and asks whether it allows something.
int CheckHandle(HKEY handle, unsigned int needed, OpenKey& key) {
    if (!Handles().Find(handle, key)) {
        return ErrorInvalidHandle;
    }
    constexpr unsigned int genericRead = 0x80000000, genericWrite = 0x40000000, genericAll = 0x10000000;
    constexpr unsigned int maximumAllowed = 0x02000000;
    unsigned int access = key.access;
    access |= (access & genericRead) != 0 ? KeyRead : 0U;
    access |= (access & genericWrite) != 0 ? KeyWrite : 0U;
    access |= (access & (genericAll | maximumAllowed)) != 0 ? KeyAllAccess : 0U;
    return (access & needed) == needed ? static_cast<int>(ErrorSuccess) : static_cast<int>(ErrorAccessDenied);
}

// Names ---------------------------------------------------------------------------------------------------------------

std::u16string Folded(std::u16string_view name) {
    std::u16string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), &CharUpperW);
    return folded;
}

std::u16string_view ViewOf(char16_t const* text) {
    return text == nullptr ? std::u16string_view{} : std::u16string_view{text};
}

/// Splits the path of a key; backslashes at its end and doubled ones count for nothing.
int SplitKeyPath(char16_t const* path, std::vector<std::u16string_view>& names) {
    std::u16string_view rest = ViewOf(path);
    if (!rest.empty() && rest.front() == u'\\') {
        return ErrorBadPathname;
    }
    while (!rest.empty()) {
        std::size_t const end = std::min(rest.find(u'\\'), rest.size());
        if (end > MaxKeyName || (end > 0 && names.size() == MaxKeyDepth)) {
            return ErrorInvalidParameter;
        }
        if (end > 0) {
            names.push_back(rest.substr(0, end));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return ErrorSuccess;
}

// Questions inside a transaction --------------------------------------------------------------------------------------

/// Whether a key stands behind an open handle.
bool IsThere(Database* database, long long row) {
    return row <= LastRootRow ||
           (database != nullptr && database->Prepare("SELECT 1 FROM key WHERE id = ?1").Bind(1, row).Step());
}

/// Reads from the store what stands below an open key: `read(database)` answers a status, and `whenEmpty` is the status
/// while there is no store.
template <class Read>
int ReadKey(OpenKey const& key, int whenEmpty, Read const& read) {
    return RunRegistryTransaction(StoreUse::Read, [&](Database* database) -> int {
        if (!IsThere(database, key.row)) {
            return ErrorKeyDeleted;
        }
        return database == nullptr ? whenEmpty : read(*database);
    });
}

/// The row of the key below another, or 0.
long long FindChild(Database& database, long long parent, std::u16string_view name) {
    std::u16string const folded = Folded(name);
    Statement statement = database.Prepare("SELECT id FROM key WHERE parent = ?1 AND folded = ?2");
    statement.Bind(1, parent).Bind(2, folded);
    return statement.Step() ? statement.Number(0) : 0;
}

/// Follows names from a key. ErrorFileNotFound where one is missing.
int FindKey(Database* database, long long& row, std::vector<std::u16string_view> const& names) {
    if (!IsThere(database, row)) {
        return ErrorKeyDeleted;
    }
    for (std::u16string_view const name : names) {
        row = database == nullptr ? 0 : FindChild(*database, row, name);
        if (row == 0) {
            return ErrorFileNotFound;
        }
    }
    return ErrorSuccess;
}

/// Keys from a root down to a key.
std::size_t DepthOf(Database& database, long long row) {
    std::size_t depth = 0;
    while (row > LastRootRow && depth <= MaxKeyDepth) { // a damaged file may have a circle
        Statement statement = database.Prepare("SELECT parent FROM key WHERE id = ?1");
        row = statement.Bind(1, row).Step() ? statement.Number(0) : 0;
        ++depth;
    }
    return depth;
}

long long Number(Database& database, char const* sql, long long row) {
    Statement statement = database.Prepare(sql);
    return statement.Bind(1, row).Step() ? statement.Number(0) : 0;
}

/// A size as the caller gets it; a row of a damaged file cannot claim more than there may be.
unsigned int SizeWord(long long size) {
    return static_cast<unsigned int>(std::clamp<long long>(size, 0, 0xFFFFFFFF));
}

/// Gives a found value's size, and its bytes where there is room. `row` is of the table `value`.
int GiveData(Database& database, long long row, void* data, unsigned int* size) {
    if (size == nullptr) {
        return ErrorSuccess;
    }
    unsigned int const needed = SizeWord(Number(database, "SELECT length(data) FROM value WHERE id = ?1", row));
    if (data != nullptr) {
        if (needed > *size) {
            *size = needed;
            return ErrorMoreData;
        }
        Statement statement = database.Prepare("SELECT data FROM value WHERE id = ?1");
        if (statement.Bind(1, row).Step()) {
            std::string_view const bytes = statement.Bytes(0).substr(0, needed);
            if (!bytes.empty()) {
                std::memcpy(data, bytes.data(), bytes.size());
            }
        }
    }
    *size = needed;
    return ErrorSuccess;
}

/// Gives a name where there is room for it with its terminator.
int GiveName(std::u16string const& name, char16_t* out, unsigned int* length) {
    if (name.size() >= *length) {
        return ErrorMoreData;
    }
    out[name.copy(out, name.size())] = u'\0';
    *length = static_cast<unsigned int>(name.size());
    return ErrorSuccess;
}

} // namespace

// Keys ----------------------------------------------------------------------------------------------------------------

int RegOpenKeyExW(HKEY handle, char16_t const* subKey, unsigned int access, HKEY* result) {
    OpenKey key;
    std::vector<std::u16string_view> names;
    int status = result == nullptr ? static_cast<int>(ErrorInvalidParameter) : CheckHandle(handle, 0, key);
    if (status == ErrorSuccess) {
        status = SplitKeyPath(subKey, names);
    }
    if (status != ErrorSuccess) {
        return status;
    }
    if (names.empty() && key.row <= LastRootRow) {
        *result = handle;
        return ErrorSuccess;
    }
    long long row = 0;
    status = RunRegistryTransaction(StoreUse::Read, [&](Database* database) {
        row = key.row;
        return FindKey(database, row, names);
    });
    if (status == ErrorSuccess) {
        *result = Handles().Add({row, access});
    }
    return status;
}

int RegCreateKeyExW(HKEY handle, char16_t const* subKey, unsigned int access, HKEY* result, unsigned int* disposition) {
    // A key that is there, as most are, is opened without asking for the right to write.
    int status = RegOpenKeyExW(handle, subKey, access, result);
    if (status == ErrorSuccess && disposition != nullptr) {
        *disposition = OpenedExistingKey;
    }
    if (status != ErrorFileNotFound) {
        return status;
    }
    OpenKey key;
    std::vector<std::u16string_view> names;
    status = CheckHandle(handle, 0, key);
    if (status == ErrorSuccess) {
        status = SplitKeyPath(subKey, names);
    }
    if (status != ErrorSuccess) {
        return status;
    }
    long long row = 0;
    bool isNew = false;
    status = RunRegistryTransaction(StoreUse::Create, [&](Database* database) -> int {
        row = key.row;
        isNew = false;
        if (!IsThere(database, row)) {
            return ErrorKeyDeleted;
        }
        if (DepthOf(*database, row) + names.size() > MaxKeyDepth) {
            return ErrorInvalidParameter;
        }
        for (std::u16string_view const name : names) {
            long long child = FindChild(*database, row, name);
            if (child == 0) {
                std::u16string const folded = Folded(name);
                database->Prepare("INSERT INTO key (parent, name, folded) VALUES (?1, ?2, ?3)")
                    .Bind(1, row)
                    .Bind(2, name)
                    .Bind(3, folded)
                    .Step();
                child = database->LastRow();
                isNew = true;
            }
            row = child;
        }
        return ErrorSuccess;
    });
    if (status == ErrorSuccess) {
        *result = Handles().Add({row, access});
        if (disposition != nullptr) {
            *disposition = isNew ? CreatedNewKey : OpenedExistingKey;
        }
    }
    return status;
}

int RegCloseKey(HKEY handle) {
    OpenKey key;
    if (!Handles().Find(handle, key)) {
        return ErrorInvalidHandle;
    }
    return Handles().Remove(handle) || key.row <= LastRootRow ? static_cast<int>(ErrorSuccess)
                                                              : static_cast<int>(ErrorInvalidHandle);
}

namespace {

int DeleteTree(HKEY handle, char16_t const* subKey, bool withSubKeys) {
    OpenKey key;
    std::vector<std::u16string_view> names;
    int status = CheckHandle(handle, 0, key);
    if (status == ErrorSuccess) {
        status = SplitKeyPath(subKey, names);
    }
    if (status != ErrorSuccess) {
        return status;
    }
    return RunRegistryTransaction(StoreUse::Change, [&](Database* database) -> int {
        long long row = key.row;
        int const found = FindKey(database, row, names);
        if (found != ErrorSuccess) {
            return found;
        }
        if (row <= LastRootRow ||
            (!withSubKeys && Number(*database, "SELECT count(*) FROM key WHERE parent = ?1", row) != 0)) {
            return ErrorAccessDenied;
        }
        // UNION and not UNION ALL: a circle in a damaged file comes to an end.
        database
            ->Prepare("WITH RECURSIVE doomed (id) AS (SELECT ?1 UNION SELECT key.id FROM key JOIN doomed ON "
                      "key.parent = doomed.id) DELETE FROM value WHERE key IN doomed")
            .Bind(1, row)
            .Step();
        database
            ->Prepare("WITH RECURSIVE doomed (id) AS (SELECT ?1 UNION SELECT key.id FROM key JOIN doomed ON "
                      "key.parent = doomed.id) DELETE FROM key WHERE id IN doomed")
            .Bind(1, row)
            .Step();
        return ErrorSuccess;
    });
}

} // namespace

int RegDeleteKeyW(HKEY key, char16_t const* subKey) {
    return subKey == nullptr ? static_cast<int>(ErrorInvalidParameter) : DeleteTree(key, subKey, false);
}

int SHDeleteKeyW(HKEY key, char16_t const* subKey) {
    return DeleteTree(key, subKey, true);
}

int RegEnumKeyExW(HKEY handle, unsigned int index, char16_t* name, unsigned int* length) {
    OpenKey key;
    int const status = CheckHandle(handle, KeyEnumerateSubKeys, key);
    if (status != ErrorSuccess || name == nullptr || length == nullptr) {
        return status != ErrorSuccess ? status : static_cast<int>(ErrorInvalidParameter);
    }
    return ReadKey(key, ErrorNoMoreItems, [&](Database& database) -> int {
        Statement statement =
            database.Prepare("SELECT name FROM key WHERE parent = ?1 ORDER BY folded LIMIT 1 OFFSET ?2");
        statement.Bind(1, key.row).Bind(2, index);
        return statement.Step() ? GiveName(statement.Text(0), name, length) : static_cast<int>(ErrorNoMoreItems);
    });
}

// Values --------------------------------------------------------------------------------------------------------------

int RegQueryValueExW(HKEY handle, char16_t const* name, unsigned int* type, void* data, unsigned int* size) {
    OpenKey key;
    int const status = CheckHandle(handle, KeyQueryValue, key);
    if (status != ErrorSuccess || (data != nullptr && size == nullptr)) {
        return status != ErrorSuccess ? status : static_cast<int>(ErrorInvalidParameter);
    }
    return ReadKey(key, ErrorFileNotFound, [&](Database& database) -> int {
        std::u16string const folded = Folded(ViewOf(name));
        Statement statement = database.Prepare("SELECT id, type FROM value WHERE key = ?1 AND folded = ?2");
        if (!statement.Bind(1, key.row).Bind(2, folded).Step()) {
            return ErrorFileNotFound;
        }
        unsigned int const found = SizeWord(statement.Number(1));
        int const given = GiveData(database, statement.Number(0), data, size);
        if (type != nullptr && (given == ErrorSuccess || given == ErrorMoreData)) {
            *type = found;
        }
        return given;
    });
}

int RegSetValueExW(HKEY handle, char16_t const* name, unsigned int type, void const* data, unsigned int size) {
    OpenKey key;
    int const status = CheckHandle(handle, KeySetValue, key);
    if (status != ErrorSuccess) {
        return status;
    }
    std::u16string_view const spelled = ViewOf(name);
    if ((data == nullptr && size != 0) || size > MaxValueBytes || spelled.size() > MaxValueName) {
        return ErrorInvalidParameter;
    }
    // A root is there before the store is; any other key went with it.
    StoreUse const use = key.row <= LastRootRow ? StoreUse::Create : StoreUse::Change;
    return RunRegistryTransaction(use, [&](Database* database) -> int {
        if (!IsThere(database, key.row)) {
            return ErrorKeyDeleted;
        }
        std::u16string const folded = Folded(spelled);
        database
            ->Prepare("INSERT INTO value (key, name, folded, type, data) VALUES (?1, ?2, ?3, ?4, ?5) "
                      "ON CONFLICT (key, folded) DO UPDATE SET type = excluded.type, data = excluded.data")
            .Bind(1, key.row)
            .Bind(2, spelled)
            .Bind(3, folded)
            .Bind(4, type)
            .Bind(5, data, size)
            .Step();
        return ErrorSuccess;
    });
}

int RegDeleteValueW(HKEY handle, char16_t const* name) {
    OpenKey key;
    int const status = CheckHandle(handle, KeySetValue, key);
    if (status != ErrorSuccess) {
        return status;
    }
    return RunRegistryTransaction(StoreUse::Change, [&](Database* database) -> int {
        if (!IsThere(database, key.row)) {
            return ErrorKeyDeleted;
        }
        if (database == nullptr) {
            return ErrorFileNotFound;
        }
        std::u16string const folded = Folded(ViewOf(name));
        Statement statement = database->Prepare("DELETE FROM value WHERE key = ?1 AND folded = ?2 RETURNING id");
        bool const wasThere = statement.Bind(1, key.row).Bind(2, folded).Step();
        while (wasThere && statement.Step()) {
        }
        return wasThere ? ErrorSuccess : ErrorFileNotFound;
    });
}

int RegEnumValueW(HKEY handle, unsigned int index, char16_t* name, unsigned int* length, unsigned int* type, void* data,
                  unsigned int* size) {
    OpenKey key;
    int const status = CheckHandle(handle, KeyQueryValue, key);
    if (status != ErrorSuccess || name == nullptr || length == nullptr || (data != nullptr && size == nullptr)) {
        return status != ErrorSuccess ? status : static_cast<int>(ErrorInvalidParameter);
    }
    return ReadKey(key, ErrorNoMoreItems, [&](Database& database) -> int {
        Statement statement =
            database.Prepare("SELECT id, type, name FROM value WHERE key = ?1 ORDER BY id LIMIT 1 OFFSET ?2");
        if (!statement.Bind(1, key.row).Bind(2, index).Step()) {
            return ErrorNoMoreItems;
        }
        std::u16string const found = statement.Text(2);
        if (found.size() >= *length) {
            return ErrorMoreData;
        }
        unsigned int const foundType = SizeWord(statement.Number(1));
        int const given = GiveData(database, statement.Number(0), data, size);
        if (given != ErrorSuccess) {
            return given;
        }
        if (type != nullptr) {
            *type = foundType;
        }
        return GiveName(found, name, length);
    });
}

int RegQueryInfoKeyW(HKEY handle, RegistryKeyInfo& info) {
    OpenKey key;
    int const status = CheckHandle(handle, KeyQueryValue, key);
    if (status != ErrorSuccess) {
        return status;
    }
    return RunRegistryTransaction(StoreUse::Read, [&](Database* database) -> int {
        if (!IsThere(database, key.row)) {
            return ErrorKeyDeleted;
        }
        RegistryKeyInfo found;
        if (database != nullptr) {
            Statement keys =
                database->Prepare("SELECT count(*), ifnull(max(length(name)), 0) / 2 FROM key WHERE parent = ?1");
            if (keys.Bind(1, key.row).Step()) {
                found.subKeys = SizeWord(keys.Number(0));
                found.longestSubKeyName = SizeWord(keys.Number(1));
            }
            Statement values = database->Prepare("SELECT count(*), ifnull(max(length(name)), 0) / 2, "
                                                 "ifnull(max(length(data)), 0) FROM value WHERE key = ?1");
            if (values.Bind(1, key.row).Step()) {
                found.values = SizeWord(values.Number(0));
                found.longestValueName = SizeWord(values.Number(1));
                found.largestValue = SizeWord(values.Number(2));
            }
        }
        info = found;
        return ErrorSuccess;
    });
}

} // namespace platform
