// SELECT: planned once per shape, opened as a cursor for each execution. Used under the session's
// lock.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/expr/compiler.h"
#include "sandbox/session/dictionary_views.h"
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
  std::function<Status(const ObjectName&, TablePtr*)> find_table;
  std::function<Status(const DictionaryView&)> check_view;
  std::string log_file;
  std::string user;
};

class SelectPlan {
 public:
  static Status Make(std::unique_ptr<Statement> statement, const SelectEnvironment& environment,
                     std::unique_ptr<SelectPlan>* out);

  const std::vector<SelectColumn>& columns() const { return columns_; }
  const std::string& sql() const { return sql_; }
  const std::vector<Parameter>& parameters() const { return parameters_; }
  bool reads_redo() const { return reads_redo_; }
  // Whether another statement of the same shape means the same.
  bool reusable() const { return reusable_; }

 private:
  friend class SelectCompiler;

  std::unique_ptr<Statement> statement_;
  std::vector<SelectColumn> columns_;
  std::string sql_;
  std::vector<Parameter> parameters_;
  bool reads_redo_ = false;
  bool reusable_ = true;
};

using DisplayRow = std::vector<std::optional<std::string>>;

// An open query. Rows come as texts in the session's formats.
class Cursor {
 public:
  Cursor(std::vector<SelectColumn> columns, std::unique_ptr<SqliteStatement> statement,
         const EvalContext* context, std::unique_ptr<SqliteConnection> connection)
      : columns_(std::move(columns)),
        connection_(std::move(connection)),
        statement_(std::move(statement)),
        context_(*context) {}

  const std::vector<SelectColumn>& columns() const { return columns_; }
  // `found` false: no more rows.
  Status Next(DisplayRow* row, bool* found);
  // Takes the rest of the rows into memory and lets go of the database.
  Status Detach();
  // The session is over: every later fetch fails.
  void Close();

 private:
  Status Read(DisplayRow* row, bool* found);
  void LetGo();

  std::vector<SelectColumn> columns_;
  std::unique_ptr<SqliteConnection> connection_;  // none: the statement is on one of the session's
  std::unique_ptr<SqliteStatement> statement_;
  const EvalContext& context_;
  std::vector<DisplayRow> rest_;  // last row first
  bool detached_ = false;
  bool closed_ = false;
};

}  // namespace quillmere::sandbox
