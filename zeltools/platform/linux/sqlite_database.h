// SPDX-License-Identifier: MIT
// A connection to an SQLite file, and statements on it. What SQLite refuses becomes an exception of this folder's own,
// which the registry's store catches: none leaves the seam.

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace platform {

/// What SQLite refused.
struct DatabaseError {
    int code = 0;       ///< SQLite's result code, extended.
    int errnoValue = 0; ///< The system's number behind it, or 0.

    /// Whether the file itself is at fault, so that no other try can succeed.
    bool IsDamage() const;

    /// The registry's status for it.
    int Status() const;
};

/// A statement at work; it goes back to the connection when the object ends.
/// Errors:  DatabaseError from Step. Binding takes views: the bytes must live until the object ends.
class Statement {
public:
    explicit Statement(sqlite3_stmt* prepared) : statement(prepared) {}
    ~Statement();
    Statement(Statement const&) = delete;
    Statement& operator=(Statement const&) = delete;

    Statement& Bind(int position, long long number);
    Statement& Bind(int position, void const* bytes, std::size_t size);
    Statement& Bind(int position, std::u16string_view text);

    /// Goes to the next row. False: there is none, and a change has been made.
    bool Step();

    long long Number(int column) const;
    /// The column's bytes; valid until the next Step.
    std::string_view Bytes(int column) const;
    /// The column's bytes as UTF-16 units; an odd byte at the end is left out.
    std::u16string Text(int column) const;

private:
    sqlite3_stmt* statement;
};

/// One open file. Threads: one at a time. It must not be used, nor closed, in a child of fork: Abandon is for that.
class Database {
public:
    Database() = default;
    ~Database() { Close(); }
    Database(Database const&) = delete;
    Database& operator=(Database const&) = delete;

    /// Opens an existing file, empty or not, for reading and writing, or for reading alone where the disk allows no
    /// more. Errors:  DatabaseError.
    void Open(std::string const& path);

    /// Closes; a transaction under way is undone.
    void Close();

    /// Forgets the connection without closing it: after a fork it is the parent's.
    void Abandon();

    bool IsOpen() const { return connection != nullptr; }

    /// Prepares a statement, once for each connection. `sql` is a literal: its address is the key.
    /// Errors:  DatabaseError.
    Statement Prepare(char const* sql);

    /// Runs statements that give no rows.
    /// Errors:  DatabaseError.
    void Execute(char const* sql);

    /// The row id of the last insertion.
    long long LastRow() const;

private:
    sqlite3* connection = nullptr;
    std::unordered_map<char const*, sqlite3_stmt*> prepared;
};

} // namespace platform
