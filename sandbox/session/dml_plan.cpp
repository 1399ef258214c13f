#include <algorithm>

#include "sandbox/session/dml.h"
#include "sandbox/sql/parser.h"

namespace quillmere::sandbox {

Status DmlPlan::Make(std::unique_ptr<Statement> statement, TablePtr table,
                     std::unique_ptr<DmlPlan>* out) {
  auto plan = std::make_unique<DmlPlan>();
  plan->statement_ = std::move(statement);
  plan->table_ = std::move(table);
  Status status;
  if (const auto* insert = std::get_if<Insert>(plan->statement_.get())) {
    status = plan->PlanInsert(*insert);
  } else if (const auto* update = std::get_if<Update>(plan->statement_.get())) {
    status = plan->PlanUpdate(*update);
  } else {
    const auto& erase = std::get<Delete>(*plan->statement_);
    status = plan->PlanRows(erase.alias, erase.where.get());
  }
  if (status.ok()) *out = std::move(plan);
  return status;
}

Status DmlPlan::FindColumn(const std::string& name, std::size_t* out) const {
  const int column = table_->FindColumn(name);
  if (column < 0) return {904, "\"" + name + "\": invalid identifier"};
  *out = static_cast<std::size_t>(column);
  return {};
}

Scope DmlPlan::TableScope(const std::string& alias) const {
  Scope scope;
  ScopeSource& source = scope.sources.emplace_back();
  source.alias = alias.empty() ? table_->name : alias;
  source.rowid_sql = "qm_rowid(" + std::to_string(table_->id) + ",rid)";
  for (const Column& column : table_->columns) {
    source.columns.push_back({column.name, column.type.kind(), column.SqlName()});
  }
  return scope;
}

Status DmlPlan::DefaultSource(std::size_t column, Source* out) {
  out->column = column;
  const std::string& text = table_->columns[column].default_text;
  if (text.empty()) return {};
  auto stored = std::make_unique<Default>();
  Status status = Tokenise(text, &stored->tokens);
  if (status.ok()) status = ParseExpression(stored->tokens, &stored->expr);
  if (!status.ok()) return status;
  out->constant = stored->expr.get();
  out->default_tokens = &stored->tokens;
  defaults_.push_back(std::move(stored));
  return {};
}

Status DmlPlan::PlanInsert(const Insert& insert) {
  std::vector<std::size_t> targets;
  for (const std::string& name : insert.columns) {
    std::size_t column = 0;
    if (Status status = FindColumn(name, &column); !status.ok()) return status;
    if (std::find(targets.begin(), targets.end(), column) != targets.end()) return Ora(957, name);
    targets.push_back(column);
  }
  if (insert.columns.empty()) {
    for (std::size_t i = 0; i < table_->columns.size(); ++i) targets.push_back(i);
  }
  if (insert.values.size() > targets.size()) return Ora(913);
  if (insert.values.size() < targets.size()) return Ora(947);
  sources_.resize(table_->columns.size());
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    const auto at = std::find(targets.begin(), targets.end(), i);
    const Expr* expr = at == targets.end()
                           ? nullptr
                           : insert.values[static_cast<std::size_t>(at - targets.begin())].get();
    if (expr == nullptr) {
      if (Status status = DefaultSource(i, &sources_[i]); !status.ok()) return status;
      continue;
    }
    if (!IsConstant(*expr)) {
      return {984, "column not allowed here: the values of an insert must not name columns"};
    }
    sources_[i].column = i;
    sources_[i].constant = expr;
  }
  return {};
}

Status DmlPlan::PlanRows(const std::string& alias, const Expr* where) {
  rows_sql_ = "SELECT rid FROM " + table_->SqlName();
  if (where == nullptr) return {};
  ExpressionCompiler compiler(&row_parameters_);
  std::string condition;
  const Scope scope = TableScope(alias);
  if (Status status = compiler.Condition(*where, scope, &condition); !status.ok()) return status;
  rows_sql_ += " WHERE " + condition;
  return {};
}

Status DmlPlan::PlanUpdate(const Update& update) {
  if (Status status = PlanRows(update.alias, update.where.get()); !status.ok()) return status;
  const Scope scope = TableScope(update.alias);
  ExpressionCompiler compiler(&fetch_parameters_);
  std::string select;
  for (const Column& column : table_->columns) select += column.SqlName() + ",";
  int fetched = static_cast<int>(table_->columns.size());
  for (std::size_t i = 0; i < update.columns.size(); ++i) {
    Source& source = sources_.emplace_back();
    if (Status status = FindColumn(update.columns[i], &source.column); !status.ok()) return status;
    const auto same = [&source](const Source& other) {
      return &other != &source && other.column == source.column;
    };
    if (std::any_of(sources_.begin(), sources_.end(), same)) return Ora(957, update.columns[i]);
    const Expr* expr = update.values[i].get();
    if (expr == nullptr) {
      if (Status status = DefaultSource(source.column, &source); !status.ok()) return status;
    } else if (IsConstant(*expr)) {
      source.constant = expr;
    } else {
      Compiled value;
      if (Status status = compiler.Value(*expr, scope, &value); !status.ok()) return status;
      select += compiler.Emit(value, table_->columns[source.column].type.kind()) + ",";
      source.fetched = fetched++;
    }
  }
  select.pop_back();
  fetch_sql_ = "SELECT " + select + " FROM " + table_->SqlName() + " WHERE rid = ?" +
               std::to_string(fetch_parameters_.size() + 1);
  return {};
}

bool DmlPlan::ChangesKeys() const {
  for (const UniqueKey& key : table_->keys) {
    for (const Source& source : sources_) {
      if (std::find(key.columns.begin(), key.columns.end(), source.column) != key.columns.end()) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace quillmere::sandbox
