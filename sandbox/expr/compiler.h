// Turns expressions into SQLite's SQL. Everything that depends on no row becomes a parameter that
// is evaluated at each execution, so a compiled text serves all statements of its shape.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "sandbox/expr/constant.h"

namespace quillmere::sandbox {

// Bound, in order, to ?1, ?2, ... of the compiled text.
struct Parameter {
  const Expr* expr = nullptr;  // lives in the statement that was compiled
  Kind kind = Kind::Text;
};

struct ScopeColumn {
  std::string name;
  Kind kind = Kind::Text;
  std::string sql;
};

struct ScopeSource {
  std::string alias;
  std::vector<ScopeColumn> columns;
  std::string rowid_sql;  // empty: no row addresses
};

// The names a query can see; `outer` is the query around a subquery.
struct Scope {
  std::vector<ScopeSource> sources;
  const Scope* outer = nullptr;
};

struct Compiled {
  std::string sql;
  Kind kind = Kind::Null;
  const Expr* constant = nullptr;  // set: sql is empty until Emit binds it
};

class ExpressionCompiler {
 public:
  // Compiles the inside of EXISTS in the scope given; set by whoever knows the tables.
  using SubqueryCompiler = std::function<Status(const Select&, const Scope&, std::string*)>;

  explicit ExpressionCompiler(std::vector<Parameter>* parameters) : parameters_(*parameters) {}

  void SetSubqueryCompiler(SubqueryCompiler compiler) { subquery_ = std::move(compiler); }

  Status Value(const Expr& expr, const Scope& scope, Compiled* out);
  Status Condition(const Expr& expr, const Scope& scope, std::string* out);
  // The text of a value converted to a kind.
  std::string Emit(const Compiled& value, Kind kind);

 private:
  Status Column(const Expr& expr, const Scope& scope, Compiled* out);
  Status Rowid(const Expr& expr, const Scope& scope, Compiled* out);
  Status Call(const Expr& expr, const Scope& scope, Compiled* out);
  Status Aggregate(const Expr& expr, const Scope& scope, Compiled* out);
  Status Compare(const Expr& expr, const Scope& scope, std::string* out);
  Status In(const Expr& expr, const Scope& scope, std::string* out);
  Status Between(const Expr& expr, const Scope& scope, std::string* out);
  Status Like(const Expr& expr, const Scope& scope, std::string* out);
  Status Junction(const Expr& expr, const Scope& scope, std::string* out);
  Status Values(const Expr& expr, const Scope& scope, std::vector<Compiled>* out, Kind* common);

  std::vector<Parameter>& parameters_;
  SubqueryCompiler subquery_;
};

}  // namespace quillmere::sandbox
