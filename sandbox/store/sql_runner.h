// SPDX-License-Identifier: MIT
// Runs statements one after another and keeps the first error: from then on it runs nothing and
// finds nothing, so that a sequence is written down without a check behind each step.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sandbox/store/sqlite.h"

namespace quillmere::sandbox {

struct Blob {
  std::string bytes;
};

class SqlRunner {
 public:
  // Used on the connection's thread; the connection must outlive it.
  explicit SqlRunner(SqliteConnection* connection) : connection_(*connection) {}

  const Status& status() const { return status_; }
  bool ok() const { return status_.ok(); }
  void Fail(const Status& status) {
    if (status_.ok()) status_ = status;
  }

  // Arguments are bound to ?1, ?2, ...; a list takes as many places as it has values.
  template <typename... Args>
  void Run(const std::string& sql, const Args&... args) {
    Each(
        sql, [](const SqliteStatement&) {}, args...);
  }

  // Statements without arguments, of which there may be several in the text.
  void Exec(const std::string& sql) {
    if (ok()) Fail(connection_.Exec(sql));
  }

  // Visits every row. The visitor must not run the same text again.
  template <typename Visit, typename... Args>
  void Each(const std::string& sql, Visit visit, const Args&... args) {
    SqliteStatement* statement = Prepare(sql, args...);
    bool row = false;
    while (ok()) {
      Fail(statement->Step(&row));
      if (!ok() || !row) return;
      visit(*statement);
    }
  }

  // The first column of the first row.
  template <typename... Args>
  std::optional<std::int64_t> Int(const std::string& sql, const Args&... args) {
    SqliteStatement* statement = Prepare(sql, args...);
    bool row = false;
    if (ok()) Fail(statement->Step(&row));
    if (!ok() || !row) return std::nullopt;
    const std::int64_t value = statement->Int(0);
    statement->Reset();
    return value;
  }

  // The first column of every row.
  template <typename... Args>
  std::vector<std::int64_t> Ints(const std::string& sql, const Args&... args) {
    std::vector<std::int64_t> values;
    Each(
        sql, [&values](const SqliteStatement& row) { values.push_back(row.Int(0)); }, args...);
    return values;
  }

  // Of the latest row inserted.
  std::int64_t LastRowId() const { return connection_.LastRowId(); }

 private:
  template <typename... Args>
  SqliteStatement* Prepare(const std::string& sql, const Args&... args) {
    SqliteStatement* statement = nullptr;
    if (ok()) Fail(connection_.Cached(sql, &statement));
    if (!ok()) return nullptr;
    int index = 0;
    (Bind(statement, &index, args), ...);
    return statement;
  }

  static void Bind(SqliteStatement* to, int* index, std::int64_t value) {
    to->BindInt(++*index, value);
  }
  static void Bind(SqliteStatement* to, int* index, int value) { to->BindInt(++*index, value); }
  static void Bind(SqliteStatement* to, int* index, const std::string& value) {
    to->BindText(++*index, value);
  }
  static void Bind(SqliteStatement* to, int* index, const Blob& value) {
    to->BindBlob(++*index, value.bytes);
  }
  template <typename T>
  static void Bind(SqliteStatement* to, int* index, const std::optional<T>& value) {
    if (value) return Bind(to, index, *value);
    to->BindNull(++*index);
  }
  template <typename T>
  static void Bind(SqliteStatement* to, int* index, const std::vector<T>& values) {
    for (const T& value : values) Bind(to, index, value);
  }

  SqliteConnection& connection_;
  Status status_;
};

}  // namespace quillmere::sandbox
