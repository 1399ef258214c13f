#include <algorithm>
#include <cstring>
#include <limits>

#include "sandbox/oci/handles.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

constexpr oci::ub2 kSqltStr = 5;
constexpr oci::ub2 kSqltAfc = 96;

// Every row that is held ahead costs memory here: a client that asks for a million gets these.
constexpr std::size_t kMostAhead = 10000;

std::size_t RowBytes(const DisplayRow& row) {
  std::size_t bytes = 0;
  for (const auto& value : row) bytes += value ? value->size() : 0;
  return bytes;
}

bool HasLarge(const Cursor& cursor) {
  return std::any_of(cursor.columns().begin(), cursor.columns().end(),
                     [](const SelectColumn& column) { return column.large; });
}

Status Refill(StatementState* statement, std::size_t wanted) {
  Session* session = statement->slot->session.get();
  if (session == nullptr) return Ora(1012);
  if (Status status = session->link().RoundTrip(); !status.ok()) {
    session->Rollback();
    return status;
  }
  return TakeRows(statement, wanted);
}

template <typename T>
void Put(T* array, std::size_t index, long long value) {
  if (array != nullptr) array[index] = static_cast<T>(value);
}

// Puts one value into one buffer, by the table of return and error codes for data.
Status Deliver(const DefineBuffer& define, std::size_t index,
               const std::optional<std::string>& value, bool* warned) {
  auto* buffer = static_cast<char*>(define.value) + index * static_cast<std::size_t>(define.size);
  const bool zero_ended = define.type == kSqltStr;
  const auto capacity = static_cast<std::size_t>(define.size) - (zero_ended ? 1 : 0);
  if (!value) {
    Put(define.length, index, 0);
    Put(define.indicator, index, -1);
    Put(define.code, index, 1405);
    if (zero_ended) buffer[0] = '\0';
    if (define.indicator != nullptr) return {};
    if (define.code == nullptr) return Ora(1405);
    *warned = true;
    return {};
  }
  const std::size_t fits = CutAtCharacter(*value, std::min(capacity, value->size()));
  if (fits > 0) std::memcpy(buffer, value->data(), fits);
  if (zero_ended) buffer[fits] = '\0';
  if (define.type == kSqltAfc) std::memset(buffer + fits, ' ', capacity - fits);
  Put(define.length, index, static_cast<long long>(fits));
  Put(define.code, index, 0);
  Put(define.indicator, index, 0);
  if (fits == value->size()) return {};
  constexpr std::size_t kMostInIndicator = std::numeric_limits<oci::sb2>::max();
  Put(define.indicator, index,
      value->size() > kMostInIndicator ? -2 : static_cast<long long>(value->size()));
  Put(define.code, index, 1406);
  if (define.code == nullptr) return Ora(1406);
  *warned = true;
  return {};
}

Status DeliverRow(const StatementState& statement, std::size_t index, const DisplayRow& row,
                  bool* warned) {
  Status first;
  for (std::size_t i = 0; i < statement.defines.size() && i < row.size(); ++i) {
    if (statement.defines[i].value == nullptr) continue;
    const Status status = Deliver(statement.defines[i], index, row[i], warned);
    if (first.ok()) first = status;
  }
  return first;
}

}  // namespace

Status TakeRows(StatementState* statement, std::size_t wanted) {
  const bool fetches_ahead = !HasLarge(*statement->cursor);
  const std::size_t memory = statement->prefetch_memory;
  std::size_t extra = fetches_ahead ? statement->prefetch_rows : 0;
  if (fetches_ahead && extra == 0 && memory > 0) extra = kMostAhead;
  extra = std::min(extra, kMostAhead);
  std::size_t bytes = 0;
  while (statement->ahead.size() < wanted + extra) {
    if (statement->ahead.size() >= wanted && memory > 0 && bytes >= memory) return {};
    DisplayRow row;
    bool found = false;
    if (Status status = statement->cursor->Next(&row, &found); !status.ok()) return status;
    if (!found) {
      statement->at_end = true;
      return {};
    }
    bytes += RowBytes(row);
    statement->ahead.push_back(std::move(row));
  }
  return {};
}

Status FetchRows(StatementState* statement, oci::ub4 rows, oci::sword* result) {
  if (statement->defines.size() > statement->cursor->columns().size()) return Ora(1007);
  const bool defined =
      std::any_of(statement->defines.begin(), statement->defines.end(),
                  [](const DefineBuffer& define) { return define.value != nullptr; });
  if (!defined) return Ora(24374);
  bool warned = false;
  for (std::size_t index = 0; index < rows; ++index) {
    if (statement->ahead.empty() && !statement->at_end) {
      const std::size_t wanted = std::min<std::size_t>(rows - index, kMostAhead);
      if (Status status = Refill(statement, wanted); !status.ok()) return status;
    }
    if (statement->ahead.empty()) {
      *result = oci::kNoData;
      return Ora(1403);
    }
    // The row counts as fetched also when a column of it does not fit.
    const DisplayRow row = std::move(statement->ahead.front());
    statement->ahead.pop_front();
    if (Status status = DeliverRow(*statement, index, row, &warned); !status.ok()) return status;
  }
  *result = warned ? oci::kSuccessWithInfo : oci::kSuccess;
  return warned ? Ora(24345) : Status();
}

}  // namespace quillmere::sandbox
