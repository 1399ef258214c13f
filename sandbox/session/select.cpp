// SPDX-License-Identifier: MIT
#include "sandbox/session/select.h"

#include <algorithm>

#include "sandbox/store/sqlite_functions.h"

namespace quillmere::sandbox {

namespace {

class SelectCompiler {
 public:
  SelectCompiler(const SelectEnvironment& environment, SelectPlan* plan)
      : environment_(environment), plan_(*plan), expressions_(environment.context) {
    expressions_.SetSubqueryCompiler(
        [this](const Select& select, const Scope& outer, std::vector<Kind>* kinds) {
          std::vector<SelectColumn> columns;
          std::string sql = Compile(select, &outer, &columns);
          for (const SelectColumn& column : columns) kinds->push_back(column.kind);
          return sql;
        });
  }

  Status Run(const Select& select) {
    plan_.sql = Compile(select, nullptr, &plan_.columns);
    plan_.parameters = expressions_.parameters();
    return expressions_.status();
  }

 private:
  std::string Compile(const Select& select, const Scope* outer,
                      std::vector<SelectColumn>* columns) {
    Scope scope{{}, outer};
    std::string from;
    for (const SelectSource& source : select.from) {
      from += (from.empty() ? " FROM " : ", ") + Source(source, &scope);
    }
    std::string sql = "SELECT " + Items(select, scope, columns) + from;
    if (select.where) {
      expressions_.met_aggregate = false;
      sql += " WHERE " + expressions_.Condition(*select.where, scope);
      if (expressions_.met_aggregate) expressions_.Fail(Ora(934));
    }
    std::string order;
    for (const OrderItem& item : select.order_by) {
      order += (order.empty() ? " ORDER BY " : ", ") + Order(item, select, scope, *columns);
    }
    return sql + order;
  }

  std::string Source(const SelectSource& source, Scope* scope) {
    const std::string sql_alias = "s" + std::to_string(next_source_++);
    ScopeSource& added = scope->sources.emplace_back();
    added.alias = source.alias.empty() ? source.object.name : source.alias;
    added.prefix = sql_alias + ".";
    const Status status = environment_.find_table(source.object, &added.table);
    if (status.ok()) return added.table->SqlName() + " AS " + sql_alias;
    const bool may_be_view = source.object.owner.empty() || source.object.owner == "SYS";
    added.table = nullptr;
    added.view = may_be_view ? FindDictionaryView(source.object.name) : nullptr;
    if (added.view == nullptr) {
      scope->sources.pop_back();
      expressions_.Fail(status);
      return "";
    }
    expressions_.Fail(environment_.check_view(*added.view));
    plan_.reads_redo = plan_.reads_redo || added.view->name == "V$LOGMNR_CONTENTS";
    std::string sql = added.view->sql;
    for (const auto& [name, value] : environment_.placeholders()) {
      for (std::size_t at = sql.find(name); at != std::string::npos;
           at = sql.find(name, at + value.size())) {
        sql.replace(at, name.size(), value);
      }
    }
    return "(" + sql + ") AS " + sql_alias;
  }

  std::string Items(const Select& select, const Scope& scope, std::vector<SelectColumn>* columns) {
    std::string list;
    bool rows = false;
    bool aggregates = false;
    const auto append = [&](const std::string& name, const Compiled& value) {
      list += (list.empty() ? "" : ", ") + expressions_.Emit(value);
      columns->push_back({name, value.kind, value.large});
    };
    for (const SelectItem& item : select.items) {
      if (!item.expr) {
        rows = true;
        bool any = false;
        for (const ScopeSource& source : scope.sources) {
          if (!item.qualifier.empty() && item.qualifier != source.alias) continue;
          any = true;
          for (std::size_t i = 0; i < source.size(); ++i) append(source.Name(i), source.Column(i));
        }
        if (!any) expressions_.Fail({904, "\"" + item.qualifier + "\": invalid identifier"});
        continue;
      }
      expressions_.met_column = expressions_.met_aggregate = false;
      const Compiled value = expressions_.Value(*item.expr, scope);
      rows = rows || expressions_.met_column;
      aggregates = aggregates || expressions_.met_aggregate;
      const bool named = item.alias.empty() && item.expr->op != ExprOp::Literal;
      append(named ? item.expr->text : item.alias, value);
    }
    if (aggregates && rows) expressions_.Fail(Ora(937));
    return list;
  }

  // NULL sorts above everything, as Oracle has it.
  std::string Order(const OrderItem& item, const Select& select, const Scope& scope,
                    const std::vector<SelectColumn>& columns) {
    const int position = item.expr ? AliasPosition(select, *item.expr) : item.position;
    Kind kind = Kind::Null;
    std::string term = std::to_string(position);
    if (position > static_cast<int>(columns.size())) {
      expressions_.Fail(Ora(1785));
    } else if (position > 0) {
      kind = columns[static_cast<std::size_t>(position) - 1].kind;
    } else {
      const Compiled value = expressions_.Value(*item.expr, scope);
      kind = value.kind;
      term = expressions_.Emit(value);
    }
    if (kind == Kind::Number) term += " COLLATE " + std::string(kNumberOrder);
    return term + (item.descending ? " DESC NULLS FIRST" : " ASC NULLS LAST");
  }

  // The item that an order by its alias means; 0 when there is none.
  static int AliasPosition(const Select& select, const Expr& expr) {
    if (expr.op != ExprOp::Column || !expr.qualifier.empty()) return 0;
    for (std::size_t i = 0; i < select.items.size(); ++i) {
      if (!select.items[i].expr) return 0;  // "*" moves the positions
      if (select.items[i].alias == expr.text) return static_cast<int>(i) + 1;
    }
    return 0;
  }

  const SelectEnvironment& environment_;
  SelectPlan& plan_;
  ExpressionCompiler expressions_;
  int next_source_ = 1;
};

}  // namespace

Status CompileSelect(const Select& select, const SelectEnvironment& environment, SelectPlan* out) {
  return SelectCompiler(environment, out).Run(select);
}

Status Cursor::Read(DisplayRow* row, bool* found) {
  if (Status status = statement_->Step(found); !status.ok() || !*found) return status;
  row->resize(columns_.size());
  Status status;
  for (std::size_t i = 0; i < columns_.size() && status.ok(); ++i) {
    const int column = static_cast<int>(i);
    (*row)[i].reset();
    if (statement_->IsNull(column)) continue;
    const Datum value = Datum::Of(columns_[i].kind, std::string(statement_->Text(column)));
    status = DisplayText(value, context_, &(*row)[i].emplace());
  }
  return status;
}

Status Cursor::Next(DisplayRow* row, bool* found) {
  *found = false;
  if (closed_) return Ora(1001);
  if (statement_) {
    Status status = Read(row, found);
    // A statement stepped past its end would begin again.
    if (!status.ok() || !*found) LetGo();
    return status;
  }
  *found = !rest_.empty();
  if (!*found) return {};
  *row = std::move(rest_.front());
  rest_.pop_front();
  return {};
}

Status Cursor::Detach() {
  Status status;
  for (bool found = statement_ != nullptr; found;) {
    DisplayRow row;
    status = Read(&row, &found);
    found = found && status.ok();
    if (found) rest_.push_back(std::move(row));
  }
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
