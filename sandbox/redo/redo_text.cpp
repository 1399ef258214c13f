// SPDX-License-Identifier: MIT
#include "sandbox/redo/redo_text.h"

#include <algorithm>

#include "sandbox/values/rowid.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

using Changes = std::vector<std::pair<std::size_t, RowValue>>;

std::string QuotedName(const std::string& name) {
  return "\"" + name + "\"";
}

// Writes one record; keeps the first error.
class Writer {
 public:
  Writer(const RedoShape& shape, const RedoRecord& record, std::int64_t row,
         const EvalContext& context)
      : shape_(shape),
        record_(record),
        row_(row),
        context_(context),
        target_(QuotedName(shape.owner) + "." + QuotedName(shape.name)) {}

  Status Write(std::vector<RedoStatement>* out) {
    if (record_.operation == RedoOperation::Insert) {
      WriteInsert(out);
    } else if (record_.operation == RedoOperation::Delete) {
      out->push_back({RedoOperation::Delete, "delete from " + target_ + Conditions()});
    } else {
      WriteUpdate(record_.changes, out);
    }
    return status_;
  }

  // The values before the change, of a row told by its address.
  Status WriteUndo(std::vector<RedoStatement>* out) {
    address_only_ = true;
    if (record_.operation == RedoOperation::Delete) {
      WriteInsert(out);
    } else if (record_.operation == RedoOperation::Insert) {
      Changes emptied = Later();
      for (auto& [column, value] : emptied) value = "";
      if (!emptied.empty()) WriteUpdate(emptied, out);
      out->push_back({RedoOperation::Delete, "delete from " + target_ + Conditions()});
    } else {
      Changes before = record_.changes;
      for (auto& [column, value] : before) value = record_.row[column];
      WriteUpdate(before, out);
    }
    return status_;
  }

 private:
  std::string Literal(TypeCode type, const RowValue& value) {
    const Kind kind = KindOf(type);
    if (!value) return "NULL";
    if (kind == Kind::Lob && value->empty()) return "EMPTY_CLOB()";
    if (kind == Kind::Raw && value->empty()) return "EMPTY_BLOB()";
    if (kind == Kind::Raw) return "HEXTORAW(" + QuoteLiteral(*value) + ")";
    std::string shown;
    if (Status status = DisplayText(Datum::Of(kind, *value), context_, &shown); !status.ok()) {
      status_ = status;
    }
    shown = QuoteLiteral(shown);
    if (kind == Kind::Date) {
      return "TO_DATE(" + shown + ", " + QuoteLiteral(context_.nls.date_format) + ")";
    }
    if (kind == Kind::Timestamp) return "TO_TIMESTAMP(" + shown + ")";
    if (kind == Kind::TimestampTz) return "TO_TIMESTAMP_TZ(" + shown + ")";
    return shown;
  }

  void WriteInsert(std::vector<RedoStatement>* out) {
    std::string names;
    std::string values;
    const Changes later = Later();
    for (std::size_t i = 0; i < shape_.columns.size(); ++i) {
      const RedoShape::Column& column = shape_.columns[i];
      const bool follows = std::any_of(later.begin(), later.end(),
                                       [i](const auto& change) { return change.first == i; });
      const char* comma = i > 0 ? "," : "";
      names += comma + QuotedName(column.name);
      values += comma + Literal(column.type, follows ? RowValue("") : record_.row[i]);
    }
    out->push_back({RedoOperation::Insert,
                    "insert into " + target_ + "(" + names + ") values (" + values + ");"});
    if (!later.empty()) WriteUpdate(later, out);
  }

  // The insert itself says of a large object that it is empty: its text follows in an update.
  Changes Later() const {
    Changes later;
    for (std::size_t i = 0; i < shape_.columns.size(); ++i) {
      const TypeCode type = shape_.columns[i].type;
      const bool is_long = type == TypeCode::Long || type == TypeCode::LongRaw;
      const RowValue& value = record_.row[i];
      if (IsLarge(type) && !is_long && value && !value->empty()) later.emplace_back(i, value);
    }
    return later;
  }

  void WriteUpdate(const Changes& changes, std::vector<RedoStatement>* out) {
    std::string text = "update " + target_ + " set ";
    for (std::size_t i = 0; i < changes.size(); ++i) {
      const RedoShape::Column& column = shape_.columns[changes[i].first];
      text += (i > 0 ? ", " : "") + QuotedName(column.name) + " = ";
      text += Literal(column.type, changes[i].second);
    }
    out->push_back({RedoOperation::Update, text + Conditions()});
  }

  std::string Conditions() {
    std::string text = " where ";
    for (std::size_t i = 0; i < shape_.columns.size(); ++i) {
      const RedoShape::Column& column = shape_.columns[i];
      if (IsLarge(column.type) || !IsLogged(i)) continue;
      const RowValue& value = record_.row[i];
      text += QuotedName(column.name);
      text += value ? " = " + Literal(column.type, value) : " IS NULL";
      text += " and ";
    }
    return text + "ROWID = '" + RowAddress(shape_.table_id, row_) + "';";
  }

  bool IsLogged(std::size_t column) const {
    const std::vector<std::size_t>& logged = record_.logged;
    return !address_only_ &&
           (logged.empty() || std::find(logged.begin(), logged.end(), column) != logged.end());
  }

  const RedoShape& shape_;
  const RedoRecord& record_;
  std::int64_t row_;
  const EvalContext& context_;
  std::string target_;
  bool address_only_ = false;
  Status status_;
};

}  // namespace

Status WriteRedo(const RedoShape& shape, const RedoRecord& record, std::int64_t row, bool undo,
                 const EvalContext& context, std::vector<RedoStatement>* out) {
  out->clear();
  if (record.row.size() != shape.columns.size()) {
    return {1578, "a redo record does not fit its table"};
  }
  Writer writer(shape, record, row, context);
  return undo ? writer.WriteUndo(out) : writer.Write(out);
}

std::vector<std::string> SplitRedo(const std::string& text, bool by_characters) {
  std::vector<std::string> pieces;
  std::string_view rest = text;
  while (rest.size() > kRedoPiece) {
    const std::size_t cut =
        by_characters ? ByteOfCharacter(rest, kRedoPiece) : CutAtCharacter(rest, kRedoPiece);
    if (cut == rest.size()) break;
    pieces.emplace_back(rest.substr(0, cut));
    rest.remove_prefix(cut);
  }
  pieces.emplace_back(rest);
  return pieces;
}

}  // namespace quillmere::sandbox
