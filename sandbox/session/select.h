// SPDX-License-Identifier: MIT
// SELECT: compiled, then opened as a cursor. Used by the thread that holds the session.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/expr/compiler.h"
#include "sandbox/store/sqlite.h"
#include "sandbox/store/table.h"

namespace quillmere::sandbox {

struct SelectColumn {
  std::string name;
  Kind kind = Kind::Text;
  bool large = false;  // LOB or LONG: such rows are not fetched ahead
};

// What a query may see; given by the session.
struct SelectEnvironment {
  // ORA-00942 for what the user must not see, too.
  std::function<Status(const ObjectName&, TablePtr*)> find_table;
  std::function<Status(const DictionaryView&)> check_view;
  // What stands in views for the session: ":log" and the like, each with its SQL.
  std::function<std::vector<std::pair<std::string, std::string>>()> placeholders;
  const EvalContext* context = nullptr;
};

// A query in SQLite's SQL.
struct SelectPlan {
  std::string sql;
  std::vector<std::string> parameters;  // to be bound to ?1, ?2, ...
  std::vector<SelectColumn> columns;
  bool reads_redo = false;
};

// After a failure `out` means nothing.
Status CompileSelect(const Select& select, const SelectEnvironment& environment, SelectPlan* out);

using DisplayRow = std::vector<std::optional<std::string>>;

// An open query. Rows come as texts in the session's formats. Shared by the client's statement and
// the session, which closes it at its end.
class Cursor {
 public:
  // `context` is the session's. With a connection of its own the statement is on that one.
  Cursor(std::vector<SelectColumn> columns, std::unique_ptr<SqliteStatement> statement,
         const EvalContext* context, std::unique_ptr<SqliteConnection> connection)
      : columns_(std::move(columns)),
        connection_(std::move(connection)),
        statement_(std::move(statement)),
        context_(*context) {}

  const std::vector<SelectColumn>& columns() const { return columns_; }
  // `found` false: no more rows. After a failure there are no more either.
  Status Next(DisplayRow* row, bool* found);
  // Takes the rest of the rows into memory and lets go of the database.
  Status Detach();
  // After Detach: whether nothing is left.
  bool empty() const { return rest_.empty(); }
  // The session is over: every later fetch fails.
  void Close();

 private:
  Status Read(DisplayRow* row, bool* found);
  void LetGo();

  std::vector<SelectColumn> columns_;
  std::unique_ptr<SqliteConnection> connection_;  // none: the statement is on one of the session's
  std::unique_ptr<SqliteStatement> statement_;    // none: what is left is in rest_
  const EvalContext& context_;
  std::deque<DisplayRow> rest_;
  bool closed_ = false;
};

}  // namespace quillmere::sandbox
