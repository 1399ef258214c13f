// SPDX-License-Identifier: MIT
#include "sandbox/redo/redo_text.h"

#include "sandbox/values/rowid.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

bool IsLarge(TypeCode code) {
  ColumnType type;
  type.code = code;
  return type.IsLarge();
}

Kind KindOf(TypeCode code) {
  ColumnType type;
  type.code = code;
  return type.kind();
}

std::string QuotedName(const std::string& name) {
  return "\"" + name + "\"";
}

class Writer {
 public:
  Writer(const RedoShape& shape, const RedoRecord& record, std::int64_t row,
         const EvalContext& context)
      : shape_(shape), record_(record), row_(row), context_(context) {}

  Status Write(std::vector<RedoStatement>* out) {
    switch (record_.operation) {
      case RedoOperation::Insert:
        return WriteInsert(out);
      case RedoOperation::Delete:
        return WriteDelete(out);
      case RedoOperation::Update:
        return WriteUpdate(record_.changes, out);
    }
    return {};
  }

 private:
  std::string Target() const { return QuotedName(shape_.owner) + "." + QuotedName(shape_.name); }

  Status Literal(TypeCode type, const RowValue& value, std::string* out) const {
    if (!value) {
      *out += "NULL";
      return {};
    }
    const Kind kind = KindOf(type);
    if (kind == Kind::Raw) {
      *out += value->empty() && type == TypeCode::Blob ? "EMPTY_BLOB()"
                                                       : "HEXTORAW(" + QuoteLiteral(*value) + ")";
      return {};
    }
    if (kind == Kind::Lob && value->empty()) {
      *out += "EMPTY_CLOB()";
      return {};
    }
    if (kind == Kind::Date || kind == Kind::Timestamp || kind == Kind::TimestampTz) {
      std::string shown;
      if (Status status = DisplayText(Datum::Of(kind, *value), context_, &shown); !status.ok()) {
        return status;
      }
      if (kind == Kind::Date) {
        *out +=
            "TO_DATE(" + QuoteLiteral(shown) + ", " + QuoteLiteral(context_.nls.date_format) + ")";
      } else {
        *out += (kind == Kind::Timestamp ? "TO_TIMESTAMP(" : "TO_TIMESTAMP_TZ(") +
                QuoteLiteral(shown) + ")";
      }
      return {};
    }
    *out += QuoteLiteral(*value);
    return {};
  }

  // What the insert itself says of a large value: its text follows in an update.
  static RowValue Placeholder(TypeCode type, const RowValue& value) {
    if (!value || type == TypeCode::Long || type == TypeCode::LongRaw) return value;
    return std::string();
  }

  Status WriteInsert(std::vector<RedoStatement>* out) {
    std::string names;
    std::string values;
    std::vector<std::pair<std::size_t, RowValue>> later;
    for (std::size_t i = 0; i < shape_.columns.size(); ++i) {
      const RedoShape::Column& column = shape_.columns[i];
      if (i > 0) {
        names += ',';
        values += ',';
      }
      names += QuotedName(column.name);
      RowValue value = record_.row[i];
      if (IsLarge(column.type)) {
        RowValue placeholder = Placeholder(column.type, value);
        if (placeholder != value) later.emplace_back(i, std::move(value));
        value = std::move(placeholder);
      }
      if (Status status = Literal(column.type, value, &values); !status.ok()) return status;
    }
    out->push_back({RedoOperation::Insert,
                    "insert into " + Target() + "(" + names + ") values (" + values + ");"});
    return later.empty() ? Status() : WriteUpdate(later, out);
  }

  Status WriteUpdate(const std::vector<std::pair<std::size_t, RowValue>>& changes,
                     std::vector<RedoStatement>* out) {
    std::string text = "update " + Target() + " set ";
    for (std::size_t i = 0; i < changes.size(); ++i) {
      const RedoShape::Column& column = shape_.columns[changes[i].first];
      if (i > 0) text += ", ";
      text += QuotedName(column.name) + " = ";
      if (Status status = Literal(column.type, changes[i].second, &text); !status.ok()) {
        return status;
      }
    }
    if (Status status = AppendConditions(&text); !status.ok()) return status;
    out->push_back({RedoOperation::Update, std::move(text)});
    return {};
  }

  Status WriteDelete(std::vector<RedoStatement>* out) {
    std::string text = "delete from " + Target();
    if (Status status = AppendConditions(&text); !status.ok()) return status;
    out->push_back({RedoOperation::Delete, std::move(text)});
    return {};
  }

  Status AppendConditions(std::string* text) {
    *text += " where ";
    for (std::size_t i = 0; i < shape_.columns.size(); ++i) {
      const RedoShape::Column& column = shape_.columns[i];
      if (IsLarge(column.type)) continue;
      *text += QuotedName(column.name);
      if (record_.row[i]) {
        *text += " = ";
        if (Status status = Literal(column.type, record_.row[i], text); !status.ok()) return status;
      } else {
        *text += " IS NULL";
      }
      *text += " and ";
    }
    *text += "ROWID = '" + RowAddress(shape_.table_id, row_) + "';";
    return {};
  }

  const RedoShape& shape_;
  const RedoRecord& record_;
  std::int64_t row_;
  const EvalContext& context_;
};

}  // namespace

Status WriteRedo(const RedoShape& shape, const RedoRecord& record, std::int64_t row,
                 const EvalContext& context, std::vector<RedoStatement>* out) {
  out->clear();
  if (record.row.size() != shape.columns.size()) {
    return {1578, "a redo record does not fit its table"};
  }
  return Writer(shape, record, row, context).Write(out);
}

std::vector<std::string> SplitRedo(const std::string& text) {
  std::vector<std::string> pieces;
  std::string_view rest = text;
  while (rest.size() > kRedoPieceBytes) {
    const std::size_t cut = CutAtCharacter(rest, kRedoPieceBytes);
    pieces.emplace_back(rest.substr(0, cut));
    rest.remove_prefix(cut);
  }
  pieces.emplace_back(rest);
  return pieces;
}

}  // namespace quillmere::sandbox
