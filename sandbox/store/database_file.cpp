// SPDX-License-Identifier: MIT
#include "sandbox/store/database_file.h"

#include <algorithm>

#include "sandbox/store/platform.h"
#include "sandbox/store/sql_runner.h"

namespace quillmere::sandbox {

namespace {

constexpr char kSchema[] = R"sql(
CREATE TABLE qm_meta(id INTEGER PRIMARY KEY, format INTEGER NOT NULL, scn INTEGER NOT NULL,
  dict_version INTEGER NOT NULL, next_name INTEGER NOT NULL, created TEXT NOT NULL,
  dbid INTEGER NOT NULL, log_size INTEGER NOT NULL DEFAULT 0, log_bytes INTEGER NOT NULL DEFAULT 0,
  archive INTEGER NOT NULL DEFAULT 0, supplemental TEXT NOT NULL DEFAULT 'ALL',
  charset TEXT NOT NULL DEFAULT 'AL32UTF8');
CREATE TABLE qm_user(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE,
  password TEXT NOT NULL, created TEXT NOT NULL);
CREATE TABLE qm_table(id INTEGER PRIMARY KEY AUTOINCREMENT, owner TEXT NOT NULL, name TEXT NOT NULL,
  tablespace TEXT, shape INTEGER NOT NULL, temporary INTEGER NOT NULL,
  supplemental TEXT NOT NULL DEFAULT 'NONE', created TEXT NOT NULL DEFAULT CURRENT_TIMESTAMP,
  last_ddl TEXT NOT NULL DEFAULT CURRENT_TIMESTAMP, UNIQUE(owner, name));
CREATE INDEX qm_table_name ON qm_table(name);
CREATE TRIGGER qm_table_ddl AFTER UPDATE OF name, shape, supplemental ON qm_table
  BEGIN UPDATE qm_table SET last_ddl = CURRENT_TIMESTAMP WHERE id = new.id; END;
CREATE TABLE qm_column(id INTEGER PRIMARY KEY AUTOINCREMENT, table_id INTEGER NOT NULL,
  position INTEGER NOT NULL, name TEXT NOT NULL, type_code INTEGER NOT NULL, data_type TEXT NOT NULL,
  data_length INTEGER NOT NULL, data_precision INTEGER, data_scale INTEGER,
  char_length INTEGER NOT NULL, char_used TEXT, nullable INTEGER NOT NULL, default_text TEXT,
  UNIQUE(table_id, position));
CREATE TABLE qm_constraint(id INTEGER PRIMARY KEY AUTOINCREMENT, owner TEXT NOT NULL,
  name TEXT NOT NULL, table_id INTEGER NOT NULL, type TEXT NOT NULL, ref_id INTEGER,
  UNIQUE(owner, name));
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
CREATE TABLE qm_redo(scn INTEGER PRIMARY KEY, xid INTEGER NOT NULL, shape INTEGER NOT NULL,
  operation INTEGER NOT NULL, undo INTEGER NOT NULL, row INTEGER NOT NULL, data BLOB NOT NULL);
CREATE TABLE qm_transaction(start_scn INTEGER PRIMARY KEY, commit_scn INTEGER NOT NULL,
  started TEXT NOT NULL, committed TEXT NOT NULL);
CREATE TABLE qm_logfile(grp INTEGER NOT NULL, suffix TEXT PRIMARY KEY);
CREATE TABLE qm_log(sequence INTEGER PRIMARY KEY, grp INTEGER NOT NULL, first_scn INTEGER NOT NULL,
  next_scn INTEGER, first_time TEXT NOT NULL DEFAULT CURRENT_TIMESTAMP);
CREATE VIEW qm_online_log AS SELECT f.grp, f.suffix, l.sequence, l.first_scn, l.next_scn,
  l.first_time
  FROM qm_logfile f LEFT JOIN qm_log l ON l.sequence =
  (SELECT max(sequence) FROM qm_log WHERE grp = f.grp);
CREATE VIEW qm_archived_log AS SELECT '.arch' || sequence AS suffix, *
  FROM qm_log WHERE next_scn IS NOT NULL AND (SELECT archive FROM qm_meta);
INSERT INTO qm_logfile VALUES(1, '');
INSERT INTO qm_log(grp, first_scn) VALUES(1, 1);
INSERT INTO qm_meta(id, format, scn, dict_version, next_name, created, dbid)
  VALUES(1, 6, 1000, 1, 1, strftime('%Y-%m-%d %H:%M:%S', 'now'), abs(random() % 4000000000));
)sql";

Status FillDatabase(SqliteConnection* connection, const std::string& password) {
  SqlRunner sql(connection);
  sql.Exec("PRAGMA journal_mode = WAL");
  sql.Exec("BEGIN");
  sql.Exec(kSchema);
  for (const std::string user : {"SYS", "SYSTEM"}) {
    const std::string hash = HashPassword(password);
    if (hash.empty()) sql.Fail(Ora(988, "the password cannot be hashed on this system"));
    sql.Run(
        "INSERT INTO qm_user(name, password, created)"
        " VALUES(?, ?, strftime('%Y-%m-%d %H:%M:%S', 'now'))",
        user, hash);
  }
  sql.Exec("COMMIT");
  return sql.status();
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
  out->open = directory / (name + ".open");
  return true;
}

Status CreateDatabase(const DatabasePath& path, const std::string& password) {
  std::error_code error;
  std::filesystem::create_directories(path.file.parent_path(), error);
  if (error) {
    return {1119, "cannot make " + path.file.parent_path().string() + ": " + error.message()};
  }
  if (Status status = MakePrivateFile(path.file); !status.ok()) return status;
  std::unique_ptr<SqliteConnection> connection;
  Status status = SqliteConnection::Open(path.file.string(), &connection);
  if (status.ok()) status = FillDatabase(connection.get(), password);
  connection.reset();
  for (const char* suffix : {"", "-wal", "-shm"}) {
    if (!status.ok()) std::filesystem::remove(path.file.string() + suffix, error);
  }
  return status;
}

Status OpenDatabase(const DatabasePath& path, std::unique_ptr<SqliteConnection>* out) {
  constexpr int kFormat = 6;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path.file, error)) return Ora(12154);
  std::unique_ptr<SqliteConnection> connection;
  Status status = SqliteConnection::Open(path.file.string(), &connection);
  if (!status.ok()) return status;
  sqlite3_busy_timeout(connection->handle(), 5000);
  SqlRunner sql(connection.get());
  const auto format = sql.Int("SELECT format FROM qm_meta WHERE id = 1");
  if (sql.status().code() == 600) {
    return {1130, path.file.string() + " is not a database of this program"};
  }
  if (!sql.ok()) return sql.status();
  if (format != kFormat) {
    return {1130, path.file.string() + " was made by another version of this program"};
  }
  *out = std::move(connection);
  return {};
}

}  // namespace quillmere::sandbox
