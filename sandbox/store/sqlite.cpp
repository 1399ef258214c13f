// SPDX-License-Identifier: MIT
#include "sandbox/store/sqlite.h"

#include <charconv>

namespace quillmere::sandbox {

namespace {

struct Failure {
  int code;  // SQLite's
  int number;
  const char* text;
};

constexpr Failure kFailures[] = {
    {SQLITE_BUSY, 54, "resource busy and acquire with NOWAIT specified or timeout expired: "},
    {SQLITE_LOCKED, 54, "resource busy: "},
    {SQLITE_NOMEM, 4030, "out of process memory: "},
    {SQLITE_FULL, 1653, "unable to extend the database file: "},
    {SQLITE_READONLY, 16000, "database open for read-only access: "},
    {SQLITE_CORRUPT, 1578, "the database file is damaged: "},
    {SQLITE_NOTADB, 1578, "the database file is damaged: "},
    {SQLITE_IOERR, 1115, "I/O error on the database file: "},
    {SQLITE_CANTOPEN, 1157, "cannot open the database file: "},
    {SQLITE_TOOBIG, 1489, "value or statement too long: "},
};

// Functions of ours report their ORA- error as the text of a SQLite error.
bool OwnError(std::string_view message, Status* out) {
  if (!message.starts_with("ORA-") || message.size() < 11) return false;
  int code = 0;
  const auto [end, error] = std::from_chars(message.data() + 4, message.data() + 9, code);
  if (error != std::errc() || end != message.data() + 9) return false;
  *out = Status(code, std::string(message.substr(11)));
  return true;
}

}  // namespace

Status SqliteError(sqlite3* db) {
  const std::string message = db == nullptr ? "out of memory" : sqlite3_errmsg(db);
  const int code = db == nullptr ? SQLITE_NOMEM : sqlite3_extended_errcode(db);
  Status own;
  if (OwnError(message, &own)) return own;
  if (message.find("parser stack overflow") != std::string::npos ||
      message.find("Expression tree is too large") != std::string::npos) {
    return Ora(900, "expression nests too deeply");
  }
  if (message.find("misuse of aggregate") != std::string::npos) return Ora(934);
  if (message.starts_with("ESCAPE expression")) return Ora(1425);
  for (const Failure& failure : kFailures) {
    if (failure.code == (code & 0xFF)) return {failure.number, failure.text + message};
  }
  return {600, "internal error: [storage] [" + std::to_string(code) + "] [" + message + "]"};
}

void SqliteStatement::BindText(int index, std::string_view text) {
  sqlite3_bind_text64(statement_, index, text.data() == nullptr ? "" : text.data(), text.size(),
                      SQLITE_TRANSIENT, SQLITE_UTF8);
}

void SqliteStatement::BindBlob(int index, std::string_view bytes) {
  sqlite3_bind_blob64(statement_, index, bytes.data() == nullptr ? "" : bytes.data(), bytes.size(),
                      SQLITE_TRANSIENT);
}

Status SqliteStatement::Step(bool* row) {
  const int result = sqlite3_step(statement_);
  *row = result == SQLITE_ROW;
  if (*row) return {};
  if (result == SQLITE_DONE) {
    sqlite3_reset(statement_);
    return {};
  }
  const Status status = SqliteError(sqlite3_db_handle(statement_));
  sqlite3_reset(statement_);
  return status;
}

Status SqliteStatement::Run() {
  for (;;) {
    bool row = false;
    if (Status status = Step(&row); !status.ok() || !row) return status;
  }
}

std::string_view SqliteStatement::Text(int column) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
  return bytes == nullptr ? std::string_view() : std::string_view(bytes, size);
}

Status SqliteConnection::Open(const std::string& path, std::unique_ptr<SqliteConnection>* out) {
  sqlite3* db = nullptr;
  // A connection is used by one thread at a time: its session's lock sees to that.
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
  const int result = sqlite3_open_v2(path.c_str(), &db, kFlags, nullptr);
  std::unique_ptr<SqliteConnection> connection(new SqliteConnection(db));
  if (result != SQLITE_OK) return SqliteError(db);
  sqlite3_extended_result_codes(db, 1);
  *out = std::move(connection);
  return {};
}

SqliteConnection::~SqliteConnection() {
  cached_.clear();
  sqlite3_close_v2(db_);
}

Status SqliteConnection::Exec(const std::string& sql) {
  return sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK ? Status()
                                                                                : SqliteError(db_);
}

Status SqliteConnection::Prepare(const std::string& sql, std::unique_ptr<SqliteStatement>* out) {
  sqlite3_stmt* statement = nullptr;
  const int result = sqlite3_prepare_v3(db_, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (result != SQLITE_OK) return SqliteError(db_);
  *out = std::make_unique<SqliteStatement>(statement);
  return {};
}

Status SqliteConnection::Cached(const std::string& sql, SqliteStatement** out) {
  constexpr std::size_t kMost = 1000;
  auto found = cached_.find(sql);
  if (found == cached_.end()) {
    if (cached_.size() >= kMost) cached_.clear();
    std::unique_ptr<SqliteStatement> statement;
    if (Status status = Prepare(sql, &statement); !status.ok()) return status;
    found = cached_.emplace(sql, std::move(statement)).first;
  }
  found->second->Reset();
  *out = found->second.get();
  return {};
}

void SqliteConnection::SetBusyHandler(std::function<bool()> handler) {
  busy_ = std::move(handler);
  const auto call = [](void* self, int) -> int {
    return static_cast<SqliteConnection*>(self)->busy_() ? 1 : 0;
  };
  sqlite3_busy_handler(db_, busy_ ? +call : nullptr, this);
}

}  // namespace quillmere::sandbox
