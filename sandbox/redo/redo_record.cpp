// SPDX-License-Identifier: MIT
#include "sandbox/redo/redo_record.h"

#include <charconv>
#include <iterator>

namespace quillmere::sandbox {

namespace {

// NULL is 0, a text its length plus one and its bytes; lengths in groups of seven bits.
std::string EncodeValues(const RowValues& values) {
  std::string bytes;
  for (const RowValue& value : values) {
    std::size_t size = value ? value->size() + 1 : 0;
    for (; size >= 0x80; size >>= 7) bytes += static_cast<char>((size & 0x7F) | 0x80);
    bytes += static_cast<char>(size);
    bytes += value.value_or("");
  }
  return bytes;
}

bool DecodeValues(std::string_view bytes, RowValues* out) {
  out->clear();
  for (std::size_t at = 0; at < bytes.size();) {
    std::size_t size = 0;
    unsigned char byte = 0x80;
    for (unsigned shift = 0; byte >= 0x80; shift += 7) {
      if (at >= bytes.size() || shift > 56) return false;
      byte = static_cast<unsigned char>(bytes[at++]);
      size |= static_cast<std::size_t>(byte & 0x7FU) << shift;
    }
    RowValue& value = out->emplace_back();
    if (size == 0) continue;
    if (size - 1 > bytes.size() - at) return false;
    value = std::string(bytes.substr(at, size - 1));
    at += size - 1;
  }
  return true;
}

// A position or a code below `limit`.
bool ReadNumber(const RowValue& value, std::size_t limit, std::size_t* out) {
  if (!value) return false;
  const char* end = value->data() + value->size();
  const auto [stop, error] = std::from_chars(value->data(), end, *out);
  return error == std::errc() && stop == end && *out < limit;
}

}  // namespace

std::string EncodeShapeColumns(const std::vector<Column>& columns) {
  RowValues values;
  for (const Column& column : columns) {
    values.emplace_back(std::to_string(static_cast<int>(column.type.code)));
    values.emplace_back(column.name);
  }
  return EncodeValues(values);
}

bool DecodeShapeColumns(std::string_view bytes, std::vector<RedoShape::Column>* out) {
  constexpr std::size_t kTypes = static_cast<std::size_t>(TypeCode::LongRaw) + 1;
  RowValues values;
  out->clear();
  if (!DecodeValues(bytes, &values) || values.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < values.size(); i += 2) {
    std::size_t type = 0;
    if (!ReadNumber(values[i], kTypes, &type) || !values[i + 1]) return false;
    out->push_back({*values[i + 1], static_cast<TypeCode>(type)});
  }
  return true;
}

// The numbers of changes and of logged columns, the changes, each with its column and value, the
// logged columns, then the row.
std::string EncodeRecord(const RedoRecord& record) {
  RowValues values;
  values.emplace_back(std::to_string(record.changes.size()));
  values.emplace_back(std::to_string(record.logged.size()));
  for (const auto& [column, value] : record.changes) {
    values.emplace_back(std::to_string(column));
    values.push_back(value);
  }
  for (const std::size_t column : record.logged) values.emplace_back(std::to_string(column));
  values.insert(values.end(), record.row.begin(), record.row.end());
  return EncodeValues(values);
}

bool DecodeRecord(RedoOperation operation, std::string_view bytes, RedoRecord* out) {
  RowValues values;
  std::size_t changes = 0;
  std::size_t logged = 0;
  if (!DecodeValues(bytes, &values) || values.size() < 2) return false;
  if (!ReadNumber(values[0], values.size() / 2, &changes)) return false;
  if (!ReadNumber(values[1], values.size() - 1 - 2 * changes, &logged)) return false;
  std::size_t at = 2;
  const std::size_t columns = values.size() - at - 2 * changes - logged;
  out->operation = operation;
  out->changes.resize(changes);
  for (auto& [column, value] : out->changes) {
    if (!ReadNumber(values[at], columns, &column)) return false;
    value = std::move(values[at + 1]);
    at += 2;
  }
  out->logged.resize(logged);
  for (std::size_t& column : out->logged) {
    if (!ReadNumber(values[at++], columns, &column)) return false;
  }
  out->row.assign(std::make_move_iterator(values.begin() + static_cast<std::ptrdiff_t>(at)),
                  std::make_move_iterator(values.end()));
  return true;
}

}  // namespace quillmere::sandbox
