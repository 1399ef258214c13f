// INSERT, UPDATE and DELETE: planned once per shape of statement, executed for each statement of
// that shape. Used under the session's lock, inside its transaction.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sandbox/expr/compiler.h"
#include "sandbox/session/row_changer.h"

namespace quillmere::sandbox {

class DmlPlan {
 public:
  // `statement` is an Insert, Update or Delete, and stays with the plan.
  static Status Make(std::unique_ptr<Statement> statement, TablePtr table,
                     std::unique_ptr<DmlPlan>* out);

  // `rows` receives the number of rows changed. After a failure the statement must be undone.
  Status Execute(const std::vector<Token>& tokens, const EvalContext& context,
                 SqliteConnection* writer, RowChanger* changer, std::int64_t* rows) const;

  const Table& table() const { return *table_; }

 private:
  // Where one column's value comes from.
  struct Source {
    std::size_t column = 0;
    const Expr* constant = nullptr;  // of the statement or the column's default
    const std::vector<Token>* default_tokens = nullptr;
    int fetched = -1;  // or: column of the fetch query
  };
  struct Default {
    std::vector<Token> tokens;
    ExprPtr expr;
  };

  Status PlanInsert(const Insert& insert);
  Status PlanUpdate(const Update& update);
  Status PlanRows(const std::string& alias, const Expr* where);
  Status PlanSource(std::size_t column, const Expr* expr, Source* out);
  Status DefaultSource(std::size_t column, Source* out);
  Status FindColumn(const std::string& name, std::size_t* out) const;
  Scope TableScope(const std::string& alias) const;

  Status RunInsert(const std::vector<Token>& tokens, const EvalContext& context,
                   RowChanger* changer) const;
  Status FindRows(const std::vector<Token>& tokens, const EvalContext& context,
                  SqliteConnection* writer, std::vector<std::int64_t>* out) const;
  Status FetchUpdate(const std::vector<Token>& tokens, const EvalContext& context,
                     SqliteConnection* writer, std::int64_t row, RowUpdate* out) const;
  Status SourceValue(const Source& source, const std::vector<Token>& tokens,
                     const EvalContext& context, const SqliteStatement* fetched,
                     RowValue* out) const;
  bool ChangesKeys() const;

  std::unique_ptr<Statement> statement_;
  TablePtr table_;
  std::vector<Source> sources_;
  std::vector<std::unique_ptr<Default>> defaults_;
  std::string rows_sql_;
  std::vector<Parameter> row_parameters_;
  std::string fetch_sql_;                    // Update: all columns, then computed values
  std::vector<Parameter> fetch_parameters_;  // bound from ?1; the row follows them
};

// Evaluates and binds the parameters of a compiled text.
Status BindParameters(const std::vector<Parameter>& parameters, const std::vector<Token>& tokens,
                      const EvalContext& context, SqliteStatement* statement);

}  // namespace quillmere::sandbox
