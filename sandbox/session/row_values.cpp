// SPDX-License-Identifier: MIT
#include "sandbox/session/row_values.h"

#include "sandbox/values/decimal.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

Status CheckLength(const Table& table, const Column& column, std::size_t size, int most) {
  if (size <= static_cast<std::size_t>(most)) return {};
  return {12899, "value too large for column " + QuotedColumn(table, column) + " (actual: " +
                     std::to_string(size) + ", maximum: " + std::to_string(most) + ")"};
}

Status FitNumber(const Column& column, std::string* text) {
  const ColumnType& type = column.type;
  const auto number = Decimal::Parse(*text);
  if (!number) return Ora(1722);
  if (type.code == TypeCode::Float || !type.scale) return {};
  const Decimal rounded = number->Rounded(*type.scale);
  *text = rounded.Text();
  if (rounded.DigitsAtScale(*type.scale) <= type.precision.value_or(38)) return {};
  return {1438,
          "value larger than specified precision allowed for this column: \"" + column.name + "\""};
}

Status FitTimestamp(const Column& column, std::string* text) {
  DateTime time;
  if (!DateTime::FromCanonical(*text, &time)) return Ora(1866);
  int unit = 1;
  for (int digits = column.type.scale.value_or(9); digits < 9; ++digits) unit *= 10;
  const int rounded = (time.nanosecond + unit / 2) / unit * unit;
  if (rounded >= 1000000000) time = time.PlusSeconds(1);
  time.nanosecond = rounded % 1000000000;
  *text = time.Canonical(column.type.kind());
  return {};
}

}  // namespace

std::string QuotedColumn(const Table& table, const Column& column) {
  return "\"" + table.owner + "\".\"" + table.name + "\".\"" + column.name + "\"";
}

Status FitValue(const Table& table, const Column& column, const Datum& value, RowValue* out) {
  const ColumnType& type = column.type;
  const Kind kind = type.kind();
  const bool may_be_empty = kind == Kind::Lob || type.code == TypeCode::Blob;
  out->reset();
  if (value.null || (value.text.empty() && !may_be_empty)) return {};
  std::string text = value.text;
  Status status;
  if (kind == Kind::Number) {
    status = FitNumber(column, &text);
  } else if (kind == Kind::Timestamp || kind == Kind::TimestampTz) {
    status = FitTimestamp(column, &text);
  } else if (type.code == TypeCode::Raw) {
    status = CheckLength(table, column, text.size() / 2, type.data_length);
  } else if (type.char_length > 0) {
    const std::size_t size = type.in_characters ? CountCharacters(text) : text.size();
    status = CheckLength(table, column, size, type.char_length);
    const auto most = static_cast<std::size_t>(type.char_length);
    if (status.ok() && type.IsFixedChar()) text.append(most - size, ' ');
  }
  if (status.ok()) *out = std::move(text);
  return status;
}

RowValues ValuesOf(const SqliteStatement& row, std::size_t first, std::size_t count) {
  RowValues values(count);
  for (std::size_t i = 0; i < count; ++i) {
    const int column = static_cast<int>(first + i);
    if (!row.IsNull(column)) values[i] = std::string(row.Text(column));
  }
  return values;
}

}  // namespace quillmere::sandbox
