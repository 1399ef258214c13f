// SPDX-License-Identifier: MIT
// A thin owner of SQLite connections and statements: every failure becomes an ORA- error with its
// cause. A connection and its statements belong to one thread at a time.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "sandbox/base/status.h"

namespace quillmere::sandbox {

class SqliteStatement {
 public:
  explicit SqliteStatement(sqlite3_stmt* statement) : statement_(statement) {}
  ~SqliteStatement() { sqlite3_finalize(statement_); }
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  // Parameters count from 1. Texts are copied.
  void BindText(int index, std::string_view text);
  void BindBlob(int index, std::string_view bytes);
  void BindInt(int index, std::int64_t value) { sqlite3_bind_int64(statement_, index, value); }
  void BindNull(int index) { sqlite3_bind_null(statement_, index); }

  // One step; `row` says whether there is a row. After the last row or a failure it is reset.
  Status Step(bool* row);
  // Runs to the end, ignoring rows.
  Status Run();
  void Reset() { sqlite3_reset(statement_); }

  // Columns count from 0 and are valid until the next step.
  bool IsNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }
  std::string_view Text(int column) const;
  std::int64_t Int(int column) const { return sqlite3_column_int64(statement_, column); }

 private:
  sqlite3_stmt* statement_;
};

class SqliteConnection {
 public:
  // Opens a file that is there.
  static Status Open(const std::string& path, std::unique_ptr<SqliteConnection>* out);
  ~SqliteConnection();
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  // Statements without parameters; those before one that fails have run.
  Status Exec(const std::string& sql);
  // The statement must be gone before the connection is.
  Status Prepare(const std::string& sql, std::unique_ptr<SqliteStatement>* out);
  // A statement kept for texts that come again and again; reset before it is handed out, so a
  // text must not be in use twice at a time.
  Status Cached(const std::string& sql, SqliteStatement** out);
  void ForgetCached() { cached_.clear(); }

  // Called while another writer holds the file, on the thread that waits for it; false gives up. It
  // sleeps by itself.
  void SetBusyHandler(std::function<bool()> handler);

  bool InTransaction() const { return sqlite3_get_autocommit(db_) == 0; }
  std::int64_t LastRowId() const { return sqlite3_last_insert_rowid(db_); }
  sqlite3* handle() { return db_; }

 private:
  explicit SqliteConnection(sqlite3* db) : db_(db) {}

  sqlite3* db_;
  std::function<bool()> busy_;
  std::unordered_map<std::string, std::unique_ptr<SqliteStatement>> cached_;
};

// What went wrong last on the connection, as an ORA- error.
Status SqliteError(sqlite3* db);

}  // namespace quillmere::sandbox
