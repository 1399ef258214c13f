// SPDX-License-Identifier: MIT
#include "sandbox/redo/redo_record.h"

namespace quillmere::sandbox {

namespace {

void PutNumber(std::uint64_t value, std::string* out) {
  while (value >= 0x80) {
    out->push_back(static_cast<char>((value & 0x7F) | 0x80));
    value >>= 7;
  }
  out->push_back(static_cast<char>(value));
}

// NULL is 0, a text its length plus one and its bytes.
void PutValue(const RowValue& value, std::string* out) {
  PutNumber(value ? value->size() + 1 : 0, out);
  if (value) *out += *value;
}

void PutRow(const RowValues& row, std::string* out) {
  PutNumber(row.size(), out);
  for (const RowValue& value : row) PutValue(value, out);
}

class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  bool Number(std::uint64_t* out) {
    *out = 0;
    for (unsigned shift = 0; shift < 64 && at_ < bytes_.size(); shift += 7) {
      const auto byte = static_cast<unsigned char>(bytes_[at_++]);
      *out |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
      if (byte < 0x80) return true;
    }
    return false;
  }

  bool Value(RowValue* out) {
    std::uint64_t size = 0;
    if (!Number(&size)) return false;
    out->reset();
    if (size == 0) return true;
    if (size - 1 > bytes_.size() - at_) return false;
    *out = std::string(bytes_.substr(at_, size - 1));
    at_ += size - 1;
    return true;
  }

  bool Row(RowValues* out) {
    std::uint64_t count = 0;
    if (!Number(&count) || count > bytes_.size()) return false;
    out->resize(count);
    for (RowValue& value : *out) {
      if (!Value(&value)) return false;
    }
    return true;
  }

  bool AtEnd() const { return at_ == bytes_.size(); }

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
};

}  // namespace

std::string EncodeShapeColumns(const std::vector<Column>& columns) {
  std::string bytes;
  PutNumber(columns.size(), &bytes);
  for (const Column& column : columns) {
    PutNumber(static_cast<std::uint64_t>(column.type.code), &bytes);
    PutValue(column.name, &bytes);
  }
  return bytes;
}

bool DecodeShapeColumns(std::string_view bytes, std::vector<RedoShape::Column>* out) {
  Bytes reader(bytes);
  std::uint64_t count = 0;
  if (!reader.Number(&count) || count > bytes.size()) return false;
  out->resize(count);
  for (RedoShape::Column& column : *out) {
    std::uint64_t type = 0;
    RowValue name;
    if (!reader.Number(&type) || !reader.Value(&name) || !name) return false;
    column.type = static_cast<TypeCode>(type);
    column.name = std::move(*name);
  }
  return reader.AtEnd();
}

std::string EncodeRecord(const RedoRecord& record) {
  std::string bytes;
  PutRow(record.row, &bytes);
  if (record.operation == RedoOperation::Update) {
    PutNumber(record.changes.size(), &bytes);
    for (const auto& [column, value] : record.changes) {
      PutNumber(column, &bytes);
      PutValue(value, &bytes);
    }
  }
  return bytes;
}

bool DecodeRecord(RedoOperation operation, std::string_view bytes, RedoRecord* out) {
  Bytes reader(bytes);
  out->operation = operation;
  out->changes.clear();
  if (!reader.Row(&out->row)) return false;
  if (operation == RedoOperation::Update) {
    std::uint64_t count = 0;
    if (!reader.Number(&count) || count > bytes.size()) return false;
    out->changes.resize(count);
    for (auto& [column, value] : out->changes) {
      std::uint64_t position = 0;
      if (!reader.Number(&position) || position >= out->row.size()) return false;
      column = position;
      if (!reader.Value(&value)) return false;
    }
  }
  return reader.AtEnd();
}

}  // namespace quillmere::sandbox
