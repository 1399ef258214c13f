// Short ways to run one statement with its parameters.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sandbox/store/sqlite.h"

namespace quillmere::sandbox {

inline void BindOne(SqliteStatement* statement, int index, std::int64_t value) {
  statement->BindInt(index, value);
}
inline void BindOne(SqliteStatement* statement, int index, int value) {
  statement->BindInt(index, value);
}
inline void BindOne(SqliteStatement* statement, int index, const std::string& value) {
  statement->BindText(index, value);
}
inline void BindOne(SqliteStatement* statement, int index, std::nullptr_t) {
  statement->BindNull(index);
}
inline void BindOne(SqliteStatement* statement, int index, const std::optional<int>& value) {
  if (value) {
    statement->BindInt(index, *value);
  } else {
    statement->BindNull(index);
  }
}

// Prepares (or finds prepared) and binds ?1, ?2, ...
template <typename... Args>
Status PrepareSql(SqliteConnection* connection, const std::string& sql, SqliteStatement** out,
                  const Args&... args) {
  if (Status status = connection->Cached(sql, out); !status.ok()) return status;
  int index = 0;
  (BindOne(*out, ++index, args), ...);
  return {};
}

template <typename... Args>
Status RunSql(SqliteConnection* connection, const std::string& sql, const Args&... args) {
  SqliteStatement* statement = nullptr;
  Status status = PrepareSql(connection, sql, &statement, args...);
  return status.ok() ? statement->Run() : status;
}

// The first column of the first row; nothing when there is no row.
template <typename... Args>
Status QueryInt(SqliteConnection* connection, std::optional<std::int64_t>* out,
                const std::string& sql, const Args&... args) {
  SqliteStatement* statement = nullptr;
  Status status = PrepareSql(connection, sql, &statement, args...);
  bool row = false;
  if (status.ok()) status = statement->Step(&row);
  out->reset();
  if (status.ok() && row) {
    *out = statement->Int(0);
    statement->Reset();
  }
  return status;
}

// The first column of every row.
template <typename... Args>
Status QueryInts(SqliteConnection* connection, std::vector<std::int64_t>* out,
                 const std::string& sql, const Args&... args) {
  SqliteStatement* statement = nullptr;
  Status status = PrepareSql(connection, sql, &statement, args...);
  bool row = false;
  while (status.ok() && (status = statement->Step(&row)).ok() && row) {
    out->push_back(statement->Int(0));
  }
  return status;
}

}  // namespace quillmere::sandbox
