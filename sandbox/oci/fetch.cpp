// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <limits>

#include "sandbox/oci/handles.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

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

Status Refill(Environment& environment, StatementHandle* statement, std::size_t wanted) {
  auto* user = environment.Find<SessionHandle>(statement->session);
  if (user == nullptr || !user->session) return Ora(1012);
  user->session->link().RoundTrip();
  return TakeRows(statement, wanted);
}

template <typename T>
void Put(T* array, std::size_t index, long long value) {
  if (array != nullptr) array[index] = static_cast<T>(value);
}

// Puts one value into one buffer, by the table of return and error codes for data.
Outcome Deliver(const DefineBuffer& define, std::size_t index,
                const std::optional<std::string>& value) {
  const auto capacity = static_cast<std::size_t>(define.size);
  const std::size_t size = value ? value->size() : 0;
  const std::size_t fits = value ? CutAtCharacter(*value, std::min(capacity, size)) : 0;
  constexpr std::size_t kMostInIndicator = std::numeric_limits<oci::sb2>::max();
  long long indicator = 0;
  if (!value) indicator = -1;
  if (fits < size) indicator = size > kMostInIndicator ? -2 : static_cast<long long>(size);
  const int code = !value ? 1405 : fits < size ? 1406 : 0;
  if (fits > 0)
    std::memcpy(static_cast<char*>(define.value) + index * capacity, value->data(), fits);
  Put(define.length, index, static_cast<long long>(fits));
  Put(define.indicator, index, indicator);
  Put(define.code, index, code);
  const bool told = code == 1405 && define.indicator != nullptr;
  if (code == 0 || told) return oci::kSuccess;
  if (define.code == nullptr) return Ora(code);
  return {oci::kSuccessWithInfo, Ora(24345)};
}

// The worst of its columns.
Outcome DeliverRow(const StatementHandle& statement, std::size_t index, const DisplayRow& row) {
  Outcome worst(oci::kSuccess);
  for (std::size_t i = 0; i < statement.defines.size() && i < row.size(); ++i) {
    if (statement.defines[i].value == nullptr) continue;
    Outcome outcome = Deliver(statement.defines[i], index, row[i]);
    const bool worse = outcome.result != oci::kSuccess && worst.result != oci::kError;
    if (worse) worst = std::move(outcome);
  }
  return worst;
}

}  // namespace

Status TakeRows(StatementHandle* statement, std::size_t wanted) {
  const std::size_t memory = statement->prefetch_memory;
  std::size_t extra = std::min<std::size_t>(statement->prefetch_rows, kMostAhead);
  if (extra == 0 && memory > 0) extra = kMostAhead;
  if (HasLarge(*statement->cursor)) extra = 0;
  std::size_t bytes = 0;
  while (statement->ahead.size() < wanted + extra) {
    if (statement->ahead.size() >= wanted && memory > 0 && bytes >= memory) return {};
    DisplayRow row;
    bool found = false;
    Status status = statement->cursor->Next(&row, &found);
    if (!status.ok() || !found) {
      statement->at_end = status.ok();
      return status;
    }
    bytes += RowBytes(row);
    statement->ahead.push_back(std::move(row));
  }
  return {};
}

Outcome FetchRows(Environment& environment, StatementHandle* statement, oci::ub4 rows) {
  if (statement->defines.size() > statement->cursor->columns().size()) return Ora(1007);
  const bool defined =
      std::any_of(statement->defines.begin(), statement->defines.end(),
                  [](const DefineBuffer& define) { return define.value != nullptr; });
  if (!defined) return Ora(24374);
  Outcome outcome(oci::kSuccess);
  for (std::size_t index = 0; index < rows; ++index) {
    if (statement->ahead.empty() && !statement->at_end) {
      const std::size_t wanted = std::min<std::size_t>(rows - index, kMostAhead);
      Status status = Refill(environment, statement, wanted);
      if (!status.ok()) return status;
    }
    if (statement->ahead.empty()) return {oci::kNoData, Ora(1403)};
    // The row counts as fetched also when a column of it does not fit.
    const DisplayRow row = std::move(statement->ahead.front());
    statement->ahead.pop_front();
    Outcome of_row = DeliverRow(*statement, index, row);
    if (of_row.result == oci::kError) return of_row;
    if (of_row.result != oci::kSuccess) outcome = std::move(of_row);
  }
  return outcome;
}

}  // namespace quillmere::sandbox
