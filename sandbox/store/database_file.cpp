// SPDX-License-Identifier: MIT
#include "sandbox/store/database_file.h"

#include <algorithm>

#include "sandbox/store/password_hash.h"
#include "sandbox/store/private_file.h"

namespace quillmere::sandbox {

namespace {

constexpr char kSchema[] = R"sql(
CREATE TABLE qm_meta(id INTEGER PRIMARY KEY, format INTEGER NOT NULL, scn INTEGER NOT NULL,
  dict_version INTEGER NOT NULL, next_name INTEGER NOT NULL, created TEXT NOT NULL);
CREATE TABLE qm_user(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE,
  password TEXT NOT NULL, created TEXT NOT NULL);
CREATE TABLE qm_grant(grantee TEXT NOT NULL, privilege TEXT NOT NULL, owner TEXT NOT NULL,
  object TEXT NOT NULL, PRIMARY KEY(grantee, privilege, owner, object)) WITHOUT ROWID;
CREATE TABLE qm_table(id INTEGER PRIMARY KEY AUTOINCREMENT, owner TEXT NOT NULL, name TEXT NOT NULL,
  tablespace TEXT, num_rows INTEGER, shape INTEGER NOT NULL, UNIQUE(owner, name));
CREATE INDEX qm_table_name ON qm_table(name);
CREATE TABLE qm_column(id INTEGER PRIMARY KEY AUTOINCREMENT, table_id INTEGER NOT NULL,
  position INTEGER NOT NULL, name TEXT NOT NULL, type_code INTEGER NOT NULL, data_type TEXT NOT NULL,
  data_length INTEGER NOT NULL, data_precision INTEGER, data_scale INTEGER,
  char_length INTEGER NOT NULL, char_used TEXT, nullable INTEGER NOT NULL, default_text TEXT,
  UNIQUE(table_id, position));
CREATE TABLE qm_constraint(id INTEGER PRIMARY KEY AUTOINCREMENT, owner TEXT NOT NULL,
  name TEXT NOT NULL, table_id INTEGER NOT NULL, type TEXT NOT NULL, ref_id INTEGER,
  delete_rule TEXT, UNIQUE(owner, name));
CREATE INDEX qm_constraint_table ON qm_constraint(table_id);
CREATE INDEX qm_constraint_ref ON qm_constraint(ref_id);
CREATE INDEX qm_constraint_name ON qm_constraint(name);
CREATE TABLE qm_constraint_column(constraint_id INTEGER NOT NULL, position INTEGER NOT NULL,
  column_id INTEGER NOT NULL, PRIMARY KEY(constraint_id, position)) WITHOUT ROWID;
CREATE INDEX qm_constraint_column_column ON qm_constraint_column(column_id);
CREATE TABLE qm_index(id INTEGER PRIMARY KEY AUTOINCREMENT, owner TEXT NOT NULL, name TEXT NOT NULL,
  table_id INTEGER NOT NULL, is_unique INTEGER NOT NULL, constraint_id INTEGER, UNIQUE(owner, name));
CREATE INDEX qm_index_table ON qm_index(table_id);
CREATE TABLE qm_index_column(index_id INTEGER NOT NULL, position INTEGER NOT NULL,
  column_id INTEGER NOT NULL, PRIMARY KEY(index_id, position)) WITHOUT ROWID;
CREATE TABLE qm_shape(id INTEGER PRIMARY KEY AUTOINCREMENT, table_id INTEGER NOT NULL,
  owner TEXT NOT NULL, name TEXT NOT NULL, columns BLOB NOT NULL);
CREATE TABLE qm_redo(scn INTEGER PRIMARY KEY, shape INTEGER NOT NULL, operation INTEGER NOT NULL,
  row INTEGER NOT NULL, data BLOB NOT NULL);
INSERT INTO qm_meta VALUES(1, 1, 1000, 1, 1, strftime('%Y-%m-%d %H:%M:%S', 'now'));
)sql";

Status FillDatabase(SqliteConnection* connection, const std::string& password) {
  Status status = connection->Exec("PRAGMA journal_mode = WAL");
  if (status.ok()) status = connection->Exec("BEGIN");
  if (status.ok()) status = connection->Exec(kSchema);
  if (!status.ok()) return status;
  for (const std::string_view user : {"SYS", "SYSTEM"}) {
    std::unique_ptr<SqliteStatement> insert;
    status = connection->Prepare(
        "INSERT INTO qm_user(name, password, created)"
        " VALUES(?, ?, strftime('%Y-%m-%d %H:%M:%S', 'now'))",
        &insert);
    if (!status.ok()) return status;
    const std::string hash = HashPassword(password);
    if (hash.empty()) return Ora(988, "the password cannot be hashed on this system");
    insert->BindText(1, user);
    insert->BindText(2, hash);
    if (status = insert->Run(); !status.ok()) return status;
  }
  return connection->Exec(
      "INSERT INTO qm_grant VALUES('SYS', 'SYSDBA', '', ''), ('SYSTEM', 'DBA', '', ''); COMMIT");
}

}  // namespace

bool FindDatabasePath(const std::filesystem::path& directory, const std::string& name,
                      DatabasePath* out) {
  const bool usable = !name.empty() && name.size() <= 200 && name.front() != '.' &&
                      std::none_of(name.begin(), name.end(), [](char c) {
                        return static_cast<unsigned char>(c) < 0x20 || c == '/' || c == '\\' ||
                               c == ':' || c == 0x7F;
                      });
  if (!usable) return false;
  out->file = directory / (name + ".db");
  out->cut = directory / (name + ".cut");
  return true;
}

Status CreateDatabase(const DatabasePath& path, const std::string& password) {
  std::error_code error;
  std::filesystem::create_directories(path.file.parent_path(), error);
  if (error)
    return {1119, "cannot make " + path.file.parent_path().string() + ": " + error.message()};
  std::string reason;
  if (!MakePrivateFile(path.file, &reason)) return {1119, reason};
  std::unique_ptr<SqliteConnection> connection;
  Status status = SqliteConnection::Open(path.file.string(), &connection);
  if (status.ok()) status = FillDatabase(connection.get(), password);
  if (status.ok()) return {};
  connection.reset();
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::filesystem::remove(path.file.string() + suffix, error);
  }
  return status;
}

Status OpenDatabase(const DatabasePath& path, std::unique_ptr<SqliteConnection>* out) {
  std::error_code error;
  if (!std::filesystem::exists(path.file, error)) return Ora(12154);
  std::unique_ptr<SqliteConnection> connection;
  Status status = SqliteConnection::Open(path.file.string(), &connection);
  if (!status.ok()) return status;
  sqlite3_busy_timeout(connection->handle(), 5000);
  std::unique_ptr<SqliteStatement> format;
  status = connection->Prepare("SELECT format FROM qm_meta WHERE id = 1", &format);
  bool row = false;
  if (status.ok()) status = format->Step(&row);
  if (status.code() == 600)
    return {1130, path.file.string() + " is not a database of this program"};
  if (!status.ok()) return status;
  if (!row || format->Int(0) != 1) {
    return {1130, path.file.string() + " was made by another version of this program"};
  }
  *out = std::move(connection);
  return {};
}

}  // namespace quillmere::sandbox
