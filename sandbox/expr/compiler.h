// SPDX-License-Identifier: MIT
// Turns expressions into SQLite's SQL. Literals become parameters in the kind they are compared or
// stored as, so that statements which differ in nothing else have the same text. Used on one
// thread, for one statement.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "sandbox/expr/functions.h"
#include "sandbox/sql/ast.h"
#include "sandbox/store/dictionary_views.h"
#include "sandbox/store/table.h"

namespace quillmere::sandbox {

// A value on its way into SQL: Emit turns it into the text of the kind that is wanted.
struct Compiled {
  std::string sql;
  Kind kind = Kind::Null;
  bool literal = false;  // sql is the literal's text, not bound yet
  bool large = false;    // a LOB or LONG column
};

// A table or view that a query reads from.
struct ScopeSource {
  std::string alias;
  std::string prefix;  // of its columns in SQL: "s1."
  TablePtr table;      // this or the view
  const DictionaryView* view = nullptr;

  std::size_t size() const { return table ? table->columns.size() : view->columns.size(); }
  std::string Name(std::size_t column) const;
  Compiled Column(std::size_t column) const;
};

// The names a query can see; `outer` is the query around a subquery.
struct Scope {
  std::vector<ScopeSource> sources;
  const Scope* outer = nullptr;
};

// Keeps its first error, and gives something useless from then on.
class ExpressionCompiler {
 public:
  // Compiles the query of a subquery and says of which kinds its columns are; set by whoever knows
  // the tables.
  using SubqueryCompiler =
      std::function<std::string(const Select&, const Scope& outer, std::vector<Kind>* kinds)>;

  // `context` must outlive it.
  explicit ExpressionCompiler(const EvalContext* context) : context_(*context) {}

  void SetSubqueryCompiler(SubqueryCompiler compiler) { subquery_ = std::move(compiler); }

  Compiled Value(const Expr& expr, const Scope& scope);
  std::string Condition(const Expr& expr, const Scope& scope);
  // The text of a value converted to a kind; Kind::Null leaves it as it is.
  std::string Emit(const Compiled& value, Kind kind = Kind::Null);

  const Status& status() const { return status_; }
  void Fail(const Status& status);
  // What is to be bound to ?1, ?2, ... of the texts so far.
  const std::vector<std::string>& parameters() const { return parameters_; }
  // What has been met since they were last set to false.
  bool met_column = false;
  bool met_aggregate = false;

 private:
  Compiled Column(const Expr& expr, const Scope& scope);
  Compiled Rowid(const Expr& expr, const Scope& scope);
  Compiled Call(const Expr& expr, const Scope& scope);
  Compiled Concatenation(const Expr& expr, const Scope& scope);
  Compiled Aggregate(const Expr& expr, const Scope& scope);
  Compiled Subquery(const Expr& expr, const Scope& scope);
  std::string Junction(const Expr& expr, const Scope& scope);
  // The operands in the kind that they are compared in.
  std::vector<std::string> Operands(const Expr& expr, const Scope& scope, bool ordered);

  const EvalContext& context_;
  SubqueryCompiler subquery_;
  std::vector<std::string> parameters_;
  Status status_;
};

}  // namespace quillmere::sandbox
