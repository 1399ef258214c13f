#include "sandbox/session/row_values.h"

#include "sandbox/values/decimal.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

Status TooLong(const Table& table, const Column& column, std::size_t actual, int maximum) {
  return {12899, "value too large for column " + QuotedColumn(table, column) + " (actual: " +
                     std::to_string(actual) + ", maximum: " + std::to_string(maximum) + ")"};
}

Status FitText(const Table& table, const Column& column, const Datum& value, RowValue* out) {
  if (value.text.empty()) return {};
  const ColumnType& type = column.type;
  std::string text = value.text;
  if (type.char_length > 0) {
    const std::size_t size = type.in_characters ? CountCharacters(text) : text.size();
    const auto most = static_cast<std::size_t>(type.char_length);
    if (size > most) return TooLong(table, column, size, type.char_length);
    if (type.IsFixedChar()) text.append(most - size, ' ');
  }
  *out = std::move(text);
  return {};
}

Status FitNumber(const Column& column, const Datum& value, RowValue* out) {
  const auto number = Decimal::Parse(value.text);
  if (!number) return Ora(1722);
  const ColumnType& type = column.type;
  if (type.code == TypeCode::Float || !type.scale) {
    *out = number->Text();
    return {};
  }
  const Decimal rounded = number->Rounded(*type.scale);
  if (rounded.DigitsAtScale(*type.scale) > type.precision.value_or(38)) {
    return {1438, "value larger than specified precision allowed for this column: \"" +
                      column.name + "\""};
  }
  *out = rounded.Text();
  return {};
}

Status FitTimestamp(const Column& column, const Datum& value, RowValue* out) {
  DateTime time;
  if (!DateTime::FromCanonical(value.text, &time)) return Ora(1866);
  int unit = 1;
  for (int digits = column.type.scale.value_or(9); digits < 9; ++digits) unit *= 10;
  time.nanosecond = (time.nanosecond + unit / 2) / unit * unit;
  if (time.nanosecond >= 1000000000) {
    time.nanosecond -= 1000000000;
    time = time.PlusSeconds(1);
  }
  *out = value.kind == Kind::TimestampTz ? time.TimestampTzText() : time.TimestampText();
  return {};
}

}  // namespace

std::string QuotedColumn(const Table& table, const Column& column) {
  return "\"" + table.owner + "\".\"" + table.name + "\".\"" + column.name + "\"";
}

Status FitValue(const Table& table, const Column& column, const Datum& value, RowValue* out) {
  out->reset();
  if (value.null) return {};
  switch (column.type.kind()) {
    case Kind::Text:
      return FitText(table, column, value, out);
    case Kind::Number:
      return FitNumber(column, value, out);
    case Kind::Timestamp:
    case Kind::TimestampTz:
      return FitTimestamp(column, value, out);
    case Kind::Raw:
      if (column.type.code == TypeCode::Raw) {
        if (value.text.empty()) return {};
        const std::size_t size = value.text.size() / 2;
        if (size > static_cast<std::size_t>(column.type.data_length)) {
          return TooLong(table, column, size, column.type.data_length);
        }
      }
      break;
    default:
      break;
  }
  *out = value.text;
  return {};
}

}  // namespace quillmere::sandbox
