#include "sandbox/session/select.h"

#include <algorithm>

#include "sandbox/store/sqlite_functions.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

bool HasAggregate(const Expr& expr) {
  if (expr.op == ExprOp::CountStar) return true;
  if (expr.op == ExprOp::Call && !IsConstant(expr)) {
    for (const std::string_view name : {"COUNT", "MAX", "MIN", "SUM"}) {
      if (expr.name == name) return true;
    }
  }
  return std::any_of(expr.args.begin(), expr.args.end(),
                     [](const ExprPtr& arg) { return HasAggregate(*arg); });
}

void ReplaceAll(std::string* text, std::string_view from, std::string_view to) {
  for (std::size_t at = text->find(from); at != std::string::npos;
       at = text->find(from, at + to.size())) {
    text->replace(at, from.size(), to);
  }
}

}  // namespace

class SelectCompiler {
 public:
  SelectCompiler(const SelectEnvironment& environment, SelectPlan* plan)
      : environment_(environment), plan_(*plan), expressions_(&plan->parameters_) {
    expressions_.SetSubqueryCompiler(
        [this](const Select& select, const Scope& outer, std::string* sql) {
          return Compile(select, &outer, sql, nullptr);
        });
  }

  Status Compile(const Select& select, const Scope* outer, std::string* sql,
                 std::vector<SelectColumn>* columns) {
    Scope scope;
    scope.outer = outer;
    std::string from;
    for (const SelectSource& source : select.from) {
      if (Status status = AddSource(source, &scope, &from); !status.ok()) return status;
    }
    std::string list;
    std::vector<SelectColumn> found;
    if (Status status = Items(select, scope, &list, &found); !status.ok()) return status;
    *sql = std::string("SELECT ") + (select.distinct ? "DISTINCT " : "") + list + " FROM " + from;
    if (select.where) {
      if (HasAggregateAnywhere(*select.where)) return Ora(934);
      std::string condition;
      Status status = expressions_.Condition(*select.where, scope, &condition);
      if (!status.ok()) return status;
      *sql += " WHERE " + condition;
    }
    if (Status status = GroupBy(select, scope, sql); !status.ok()) return status;
    if (Status status = OrderBy(select, scope, found, sql); !status.ok()) return status;
    if (columns != nullptr) *columns = std::move(found);
    return {};
  }

 private:
  static bool HasAggregateAnywhere(const Expr& expr) { return HasAggregate(expr); }

  Status AddSource(const SelectSource& source, Scope* scope, std::string* from) {
    const std::string sql_alias = "s" + std::to_string(next_source_++);
    ScopeSource& added = scope->sources.emplace_back();
    added.alias = source.alias.empty() ? source.object.name : source.alias;
    if (!from->empty()) *from += ", ";
    const bool may_be_view = source.object.owner.empty() || source.object.owner == "SYS";
    TablePtr table;
    const Status status = environment_.find_table(source.object, &table);
    if (status.ok()) {
      added.rowid_sql = "qm_rowid(" + std::to_string(table->id) + "," + sql_alias + ".rid)";
      for (const Column& column : table->columns) {
        added.columns.push_back(
            {column.name, column.type.kind(), sql_alias + "." + column.SqlName()});
        large_.push_back(column.type.IsLarge() ? sql_alias + "." + column.SqlName() : "");
      }
      *from += table->SqlName() + " AS " + sql_alias;
      return {};
    }
    const DictionaryView* view = may_be_view ? FindDictionaryView(source.object.name) : nullptr;
    if (view == nullptr) return status;
    if (Status allowed = environment_.check_view(*view); !allowed.ok()) return allowed;
    if (view->name == "V$LOGMNR_CONTENTS") plan_.reads_redo_ = true;
    std::string sql(view->sql);
    ReplaceAll(&sql, ":log", QuoteLiteral(environment_.log_file));
    ReplaceAll(&sql, ":user", QuoteLiteral(environment_.user));
    for (const ViewColumn& column : view->columns) {
      added.columns.push_back({std::string(column.name), column.kind,
                               sql_alias + ".\"" + std::string(column.name) + "\""});
    }
    *from += "(" + sql + ") AS " + sql_alias;
    return {};
  }

  Status Items(const Select& select, const Scope& scope, std::string* list,
               std::vector<SelectColumn>* columns) {
    bool aggregates = false;
    bool rows = false;
    for (const SelectItem& item : select.items) {
      if (!item.expr) {
        rows = true;
        if (Status status = AllColumns(item, scope, list, columns); !status.ok()) return status;
        continue;
      }
      Compiled value;
      if (Status status = expressions_.Value(*item.expr, scope, &value); !status.ok()) {
        return status;
      }
      const bool aggregate = HasAggregate(*item.expr);
      aggregates = aggregates || aggregate;
      rows = rows || (!aggregate && value.constant == nullptr);
      const std::string sql = expressions_.Emit(value, value.kind);
      const std::string name = !item.alias.empty() ? item.alias : item.expr->name;
      Append(sql, {name, value.kind, IsLarge(sql)}, list, columns);
    }
    if (aggregates && rows && select.group_by.empty()) return Ora(937);
    return {};
  }

  Status AllColumns(const SelectItem& item, const Scope& scope, std::string* list,
                    std::vector<SelectColumn>* columns) {
    bool any = false;
    for (const ScopeSource& source : scope.sources) {
      if (!item.qualifier.empty() && item.qualifier != source.alias) continue;
      any = true;
      for (const ScopeColumn& column : source.columns) {
        Append(column.sql, {column.name, column.kind, IsLarge(column.sql)}, list, columns);
      }
    }
    return any ? Status() : Status(904, "\"" + item.qualifier + "\": invalid identifier");
  }

  static void Append(const std::string& sql, SelectColumn column, std::string* list,
                     std::vector<SelectColumn>* columns) {
    if (!list->empty()) *list += ", ";
    *list += sql;
    columns->push_back(std::move(column));
  }

  bool IsLarge(const std::string& sql) const {
    return std::find(large_.begin(), large_.end(), sql) != large_.end();
  }

  Status GroupBy(const Select& select, const Scope& scope, std::string* sql) {
    for (std::size_t i = 0; i < select.group_by.size(); ++i) {
      Compiled value;
      if (Status status = expressions_.Value(*select.group_by[i], scope, &value); !status.ok()) {
        return status;
      }
      *sql += (i == 0 ? " GROUP BY " : ", ") + expressions_.Emit(value, value.kind);
    }
    return {};
  }

  // NULL sorts above everything, as Oracle has it.
  Status OrderBy(const Select& select, const Scope& scope, const std::vector<SelectColumn>& columns,
                 std::string* sql) {
    for (std::size_t i = 0; i < select.order_by.size(); ++i) {
      const OrderItem& item = select.order_by[i];
      Kind kind = Kind::Text;
      std::string term;
      if (!item.expr) {
        if (item.position > static_cast<int>(columns.size())) {
          return {1785, "ORDER BY item must be the number of a SELECT-list expression"};
        }
        plan_.reusable_ = false;
        term = std::to_string(item.position);
        kind = columns[static_cast<std::size_t>(item.position) - 1].kind;
      } else if (const int position = AliasPosition(select, *item.expr); position > 0) {
        term = std::to_string(position);
        kind = columns[static_cast<std::size_t>(position) - 1].kind;
      } else {
        Compiled value;
        if (Status status = expressions_.Value(*item.expr, scope, &value); !status.ok()) {
          return status;
        }
        kind = value.kind;
        term = expressions_.Emit(value, value.kind);
      }
      if (kind == Kind::Number) term += " COLLATE " + std::string(kNumberOrder);
      term += item.descending ? " DESC NULLS FIRST" : " ASC NULLS LAST";
      *sql += (i == 0 ? " ORDER BY " : ", ") + term;
    }
    return {};
  }

  static int AliasPosition(const Select& select, const Expr& expr) {
    if (expr.op != ExprOp::Column || !expr.qualifier.empty()) return 0;
    for (const SelectItem& item : select.items) {
      if (!item.expr) return 0;  // "*" moves the positions
    }
    for (std::size_t i = 0; i < select.items.size(); ++i) {
      if (select.items[i].alias == expr.name) return static_cast<int>(i) + 1;
    }
    return 0;
  }

  const SelectEnvironment& environment_;
  SelectPlan& plan_;
  ExpressionCompiler expressions_;
  std::vector<std::string> large_;
  int next_source_ = 1;
};

Status SelectPlan::Make(std::unique_ptr<Statement> statement, const SelectEnvironment& environment,
                        std::unique_ptr<SelectPlan>* out) {
  auto plan = std::make_unique<SelectPlan>();
  plan->statement_ = std::move(statement);
  SelectCompiler compiler(environment, plan.get());
  Status status =
      compiler.Compile(std::get<Select>(*plan->statement_), nullptr, &plan->sql_, &plan->columns_);
  if (status.ok()) *out = std::move(plan);
  return status;
}

Status Cursor::Read(DisplayRow* row, bool* found) {
  if (Status status = statement_->Step(found); !status.ok() || !*found) return status;
  row->resize(columns_.size());
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const int column = static_cast<int>(i);
    (*row)[i].reset();
    if (statement_->IsNull(column)) continue;
    std::string text(statement_->Text(column));
    if (columns_[i].kind == Kind::Date || columns_[i].kind == Kind::Timestamp ||
        columns_[i].kind == Kind::TimestampTz) {
      std::string shown;
      const Datum value = Datum::Of(columns_[i].kind, std::move(text));
      if (Status status = DisplayText(value, context_, &shown); !status.ok()) return status;
      text = std::move(shown);
    }
    (*row)[i] = std::move(text);
  }
  return {};
}

Status Cursor::Next(DisplayRow* row, bool* found) {
  *found = false;
  if (closed_) return Ora(1001);
  if (detached_) {
    if (rest_.empty()) return {};
    *row = std::move(rest_.back());
    rest_.pop_back();
    *found = true;
    return {};
  }
  Status status = Read(row, found);
  // A statement stepped past its end would begin again.
  if (!status.ok() || !*found) {
    detached_ = true;
    LetGo();
  }
  return status;
}

Status Cursor::Detach() {
  if (detached_ || closed_) return {};
  Status status;
  for (;;) {
    DisplayRow row;
    bool found = false;
    status = Read(&row, &found);
    if (!status.ok() || !found) break;
    rest_.push_back(std::move(row));
  }
  std::reverse(rest_.begin(), rest_.end());
  detached_ = true;
  LetGo();
  return status;
}

void Cursor::Close() {
  closed_ = true;
  LetGo();
  rest_.clear();
}

void Cursor::LetGo() {
  statement_.reset();
  connection_.reset();
}

}  // namespace quillmere::sandbox
