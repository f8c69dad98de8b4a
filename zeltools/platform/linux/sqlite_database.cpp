// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/sqlite_database.h"

#include "zeltools/platform/errors.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <sqlite3.h>
#include <vector>

namespace platform {

namespace {

constexpr int LongestWaitMs = 30000;

long long NowMs() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

/// Called while another process holds the file. SQLite's own handler sleeps longer and longer, so that who has waited
/// most gets in last; this one asks at the same pace for all, a little apart from each other.
int WaitForOthers(void*, int tries) {
    thread_local long long begin = 0;
    if (tries == 0) {
        begin = NowMs();
    } else if (NowMs() - begin > LongestWaitMs) {
        return 0;
    }
    timespec const pause{0, 300000 + (tries * 7919LL + begin) % 7 * 100000};
    nanosleep(&pause, nullptr);
    return 1;
}

[[noreturn]] void ThrowLast(sqlite3* connection, int result) {
    DatabaseError error;
    error.code = connection != nullptr ? sqlite3_extended_errcode(connection) : result;
    // A statement that is stepped again after its error answers misuse; the first answer is the cause.
    if ((error.code & 0xFF) != (result & 0xFF)) {
        error.code = result;
    }
    int const primary = result & 0xFF;
    if (connection != nullptr && (primary == SQLITE_CANTOPEN || primary == SQLITE_IOERR)) {
        error.errnoValue = sqlite3_system_errno(connection);
    }
    throw error;
}

} // namespace

bool DatabaseError::IsDamage() const {
    int const primary = code & 0xFF;
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

int DatabaseError::Status() const {
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return ErrorBusy;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH: return ErrorAccessDenied;
    case SQLITE_FULL: return ErrorDiskFull;
    case SQLITE_NOMEM: return ErrorNotEnoughMemory;
    case SQLITE_TOOBIG: return ErrorInvalidParameter;
    case SQLITE_CANTOPEN:
        return errnoValue != 0 ? static_cast<int>(ErrorFromErrno(errnoValue)) : static_cast<int>(ErrorAccessDenied);
    case SQLITE_IOERR:
        return errnoValue == ENOSPC || errnoValue == EDQUOT ? static_cast<int>(ErrorDiskFull)
                                                            : static_cast<int>(ErrorRegistryIoFailed);
    default: return IsDamage() ? static_cast<int>(ErrorRegistryCorrupt) : static_cast<int>(ErrorGenFailure);
    }
}

Statement::~Statement() {
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
}

Statement& Statement::Bind(int position, long long number) {
    sqlite3_bind_int64(statement, position, number);
    return *this;
}

Statement& Statement::Bind(int position, void const* bytes, std::size_t size) {
    // A null pointer would bind NULL; an empty value is a blob of no bytes.
    int const result = sqlite3_bind_blob64(statement, position, size == 0 ? "" : bytes, size, SQLITE_STATIC);
    if (result != SQLITE_OK) {
        ThrowLast(sqlite3_db_handle(statement), result);
    }
    return *this;
}

Statement& Statement::Bind(int position, std::u16string_view text) {
    return Bind(position, text.data(), text.size() * sizeof(char16_t));
}

bool Statement::Step() {
    int const result = sqlite3_step(statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        ThrowLast(sqlite3_db_handle(statement), result);
    }
    return result == SQLITE_ROW;
}

long long Statement::Number(int column) const {
    return sqlite3_column_int64(statement, column);
}

std::string_view Statement::Bytes(int column) const {
    void const* const bytes = sqlite3_column_blob(statement, column);
    return bytes == nullptr ? std::string_view{}
                            : std::string_view(static_cast<char const*>(bytes),
                                               static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
}

std::u16string Statement::Text(int column) const {
    std::string_view const bytes = Bytes(column);
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    if (!text.empty()) {
        std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
    }
    return text;
}

void Database::Open(std::string const& path) {
    Close();
    int const flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    int const result = sqlite3_open_v2(path.c_str(), &connection, flags, nullptr);
    if (result != SQLITE_OK) {
        DatabaseError error{result, connection != nullptr ? sqlite3_system_errno(connection) : 0};
        Close();
        throw error;
    }
    sqlite3_extended_result_codes(connection, 1);
    sqlite3_busy_handler(connection, &WaitForOthers, nullptr);
    // The file may come from anywhere: what its schema could make SQLite do is switched off.
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    Execute("PRAGMA synchronous = FULL; PRAGMA cell_size_check = ON");
}

void Database::Close() {
    for (auto const& entry : prepared) {
        sqlite3_finalize(entry.second);
    }
    prepared.clear();
    sqlite3_close(connection);
    connection = nullptr;
}

void Database::Abandon() {
    // Kept reachable, so that a leak checker knows that it is meant.
    static std::vector<sqlite3*>& abandoned = *new std::vector<sqlite3*>;
    if (connection != nullptr) {
        abandoned.push_back(connection);
    }
    connection = nullptr;
    prepared.clear();
}

Statement Database::Prepare(char const* sql) {
    sqlite3_stmt*& statement = prepared[sql];
    if (statement == nullptr) {
        int const result = sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
        if (result != SQLITE_OK) {
            prepared.erase(sql);
            // A statement of ours that does not fit the tables: only damage can have changed them.
            ThrowLast(connection, result == SQLITE_ERROR ? SQLITE_CORRUPT : result);
        }
    }
    return Statement(statement);
}

void Database::Execute(char const* sql) {
    int const result = sqlite3_exec(connection, sql, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) {
        ThrowLast(connection, result);
    }
}

long long Database::LastRow() const {
    return sqlite3_last_insert_rowid(connection);
}

} // namespace platform
