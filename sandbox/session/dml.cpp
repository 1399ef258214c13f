#include "sandbox/session/dml.h"

#include "sandbox/session/row_values.h"

namespace quillmere::sandbox {

Status BindParameters(const std::vector<Parameter>& parameters, const std::vector<Token>& tokens,
                      const EvalContext& context, SqliteStatement* statement) {
  int index = 0;
  for (const Parameter& parameter : parameters) {
    Datum value;
    Datum converted;
    Status status = EvaluateConstant(*parameter.expr, tokens, context, &value);
    if (status.ok()) status = Convert(value, parameter.kind, context, &converted);
    if (!status.ok()) return status;
    if (converted.null) {
      statement->BindNull(++index);
    } else {
      statement->BindText(++index, converted.text);
    }
  }
  return {};
}

Status DmlPlan::SourceValue(const Source& source, const std::vector<Token>& tokens,
                            const EvalContext& context, const SqliteStatement* fetched,
                            RowValue* out) const {
  const Column& column = table_->columns[source.column];
  const Kind kind = column.type.kind();
  Datum value;
  if (source.fetched >= 0) {
    value = fetched->IsNull(source.fetched)
                ? Datum::NullOf(kind)
                : Datum::Of(kind, std::string(fetched->Text(source.fetched)));
  } else if (source.constant != nullptr) {
    const auto& from = source.default_tokens != nullptr ? *source.default_tokens : tokens;
    Datum raw;
    Status status = EvaluateConstant(*source.constant, from, context, &raw);
    if (status.ok()) status = Convert(raw, kind, context, &value);
    if (!status.ok()) return status;
  }
  return FitValue(*table_, column, value, out);
}

Status DmlPlan::RunInsert(const std::vector<Token>& tokens, const EvalContext& context,
                          RowChanger* changer) const {
  RowValues row(sources_.size());
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    Status status = SourceValue(sources_[i], tokens, context, nullptr, &row[i]);
    if (!status.ok()) return status;
  }
  return changer->Insert(*table_, row);
}

// All rows are found before the first one changes: a statement never meets its own changes.
Status DmlPlan::FindRows(const std::vector<Token>& tokens, const EvalContext& context,
                         SqliteConnection* writer, std::vector<std::int64_t>* out) const {
  SqliteStatement* select = nullptr;
  Status status = writer->Cached(rows_sql_, &select);
  if (status.ok()) status = BindParameters(row_parameters_, tokens, context, select);
  if (!status.ok()) return status;
  bool row = false;
  while ((status = select->Step(&row)).ok() && row) out->push_back(select->Int(0));
  return status;
}

Status DmlPlan::FetchUpdate(const std::vector<Token>& tokens, const EvalContext& context,
                            SqliteConnection* writer, std::int64_t row, RowUpdate* out) const {
  SqliteStatement* select = nullptr;
  Status status = writer->Cached(fetch_sql_, &select);
  if (status.ok()) status = BindParameters(fetch_parameters_, tokens, context, select);
  if (!status.ok()) return status;
  select->BindInt(static_cast<int>(fetch_parameters_.size()) + 1, row);
  bool found = false;
  if (status = select->Step(&found); !status.ok()) return status;
  if (!found) return {1410, "invalid ROWID"};
  out->row = row;
  for (int i = 0; i < static_cast<int>(table_->columns.size()); ++i) {
    out->old_values.push_back(select->IsNull(i) ? RowValue() : RowValue(select->Text(i)));
  }
  for (const Source& source : sources_) {
    RowValue value;
    status = SourceValue(source, tokens, context, select, &value);
    if (!status.ok()) break;
    out->changes.emplace_back(source.column, std::move(value));
  }
  select->Reset();
  return status;
}

Status DmlPlan::Execute(const std::vector<Token>& tokens, const EvalContext& context,
                        SqliteConnection* writer, RowChanger* changer, std::int64_t* rows) const {
  if (std::holds_alternative<Insert>(*statement_)) {
    *rows = 1;
    if (Status status = RunInsert(tokens, context, changer); !status.ok()) return status;
    return changer->Finish();
  }
  std::vector<std::int64_t> found;
  if (Status status = FindRows(tokens, context, writer, &found); !status.ok()) return status;
  *rows = static_cast<std::int64_t>(found.size());
  const bool is_update = std::holds_alternative<Update>(*statement_);
  const bool together = is_update && found.size() > 1 && ChangesKeys();
  std::vector<RowUpdate> updates;
  for (const std::int64_t row : found) {
    Status status;
    if (is_update) {
      RowUpdate update;
      status = FetchUpdate(tokens, context, writer, row, &update);
      if (status.ok() && together) {
        updates.push_back(std::move(update));
      } else if (status.ok()) {
        status = changer->Update(*table_, update);
      }
    } else {
      RowValues old_values;
      status = changer->ReadRow(*table_, row, &old_values);
      if (status.code() == 1410) continue;  // a cascade of this statement took the row
      if (status.ok()) status = changer->Delete(*table_, row, old_values);
    }
    if (!status.ok()) return status;
  }
  if (together) {
    if (Status status = changer->UpdateKeys(*table_, updates); !status.ok()) return status;
  }
  return changer->Finish();
}

}  // namespace quillmere::sandbox
