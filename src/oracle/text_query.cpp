// SPDX-License-Identifier: MIT
#include "oracle/text_query.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/text.h"

namespace quillmere {

using namespace oci;

namespace {
constexpr sb4 kColumnTruncated = 1406;  // ORA-01406
// Rows of a list that the client fetches in one round trip.
constexpr ub4 kListPrefetchRows = 100;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

template <typename Number>
std::int32_t Saturated(Number value) {
  if (value <= Number{kLeast}) return kLeast;
  return value >= Number{kMost} ? kMost : static_cast<std::int32_t>(value);
}

// A client writes a number that is wider than its column with an exponent.
bool ParseWhole(std::string_view text, std::int32_t& value) {
  std::int64_t whole = 0;
  if (ParseNumber(text, whole)) {
    value = Saturated(whole);
    return true;
  }
  double wide = 0;
  if (!ParseNumber(text, wide) || !std::isfinite(wide) || std::trunc(wide) != wide) return false;
  value = Saturated(wide);
  return true;
}

}  // namespace

TextQuery::TextQuery(OracleSession& session, const QueryLabels& labels)
    : session_(session), labels_(labels) {}

TextQuery::~TextQuery() {
  if (statement_ != nullptr) session_.Api().HandleFree(statement_, kHtypeStmt);
}

bool TextQuery::Fail(std::string_view label, sword status) {
  session_.SetError(label, OracleSession::ErrorSource::Error, status);
  return false;
}

bool TextQuery::Allocate() {
  void* handle = nullptr;
  const sword status =
      session_.Api().HandleAlloc(session_.environment_.handle, &handle, kHtypeStmt, 0, nullptr);
  if (!OracleSession::Succeeded(status)) return Fail(labels_.allocate, status);
  statement_ = static_cast<OCIStmt*>(handle);
  return true;
}

bool TextQuery::Prepare(std::string_view sql) {
  const sword status = session_.Api().StmtPrepare(
      statement_, session_.error_, reinterpret_cast<const OraText*>(sql.data()),
      static_cast<ub4>(sql.size()), kNtvSyntax, kDefault);
  return OracleSession::Succeeded(status) || Fail(labels_.prepare, status);
}

void TextQuery::SetPrefetch(ub4 rows) {
  session_.Api().AttrSet(statement_, kHtypeStmt, &rows, 0, kAttrPrefetchRows, session_.error_);
}

bool TextQuery::Define(const std::vector<sb4>& capacities) {
  std::size_t size = 0;
  for (const sb4 capacity : capacities) {
    columns_.push_back(Column{size, capacity, 0, 0});
    size += static_cast<std::size_t>(capacity) + 1;
  }
  buffer_.assign(size, '\0');
  ub4 position = 0;
  for (Column& column : columns_) {
    OCIDefine* define = nullptr;
    const sword status = session_.Api().DefineByPos(
        statement_, &define, session_.error_, ++position, buffer_.data() + column.offset,
        column.capacity, kSqltChr, &column.indicator, &column.length, nullptr, kDefault);
    if (!OracleSession::Succeeded(status)) return Fail(labels_.define, status);
  }
  return true;
}

bool TextQuery::Execute() {
  if (!session_.MayGoOn()) return false;
  const sword status = session_.Api().StmtExecute(session_.service_, statement_, session_.error_, 0,
                                                  0, nullptr, nullptr, kDefault);
  return OracleSession::Succeeded(status) || Fail(labels_.execute, status);
}

bool TextQuery::ExecuteWithRow() {
  row_label_ = labels_.execute;
  if (!session_.MayGoOn()) return false;
  const sword status = session_.Api().StmtExecute(session_.service_, statement_, session_.error_, 1,
                                                  0, nullptr, nullptr, kDefault);
  return OracleSession::Succeeded(status) || RowWasTruncated(status) ||
         Fail(labels_.execute, status);
}

bool TextQuery::Open(std::string_view sql, const std::vector<sb4>& capacities) {
  if (!Allocate() || !Prepare(sql)) return false;
  SetPrefetch(kListPrefetchRows);
  return Define(capacities) && Execute();
}

bool TextQuery::OpenWithRow(std::string_view sql, const std::vector<sb4>& capacities) {
  return Allocate() && Prepare(sql) && Define(capacities) && ExecuteWithRow();
}

TextQuery::Row TextQuery::Fetch() {
  row_label_ = labels_.fetch;
  for (Column& column : columns_) column.indicator = 0, column.length = 0;
  if (!session_.MayGoOn()) return Row::Failed;
  const sword status =
      session_.Api().StmtFetch2(statement_, session_.error_, 1, kFetchNext, 0, kDefault);
  if (OracleSession::Succeeded(status)) return Row::Fetched;
  if (status == kNoData) return Row::End;
  if (RowWasTruncated(status)) return Row::Fetched;
  Fail(labels_.fetch, status);
  return Row::Failed;
}

// A client that is given no return codes reports a cut column as an error of the fetch, although
// the row is there and the cursor has moved on.
bool TextQuery::RowWasTruncated(sword status) {
  if (status != kError || !Truncated()) return false;
  sb4 code = 0;
  OraText text[512] = {};
  session_.Api().ErrorGet(session_.error_, 1, nullptr, &code, text, sizeof text, kHtypeError);
  return code == kColumnTruncated;
}

bool TextQuery::DidNotFit(const Column& column) {
  return column.indicator > 0 || column.indicator == -2;
}

bool TextQuery::Truncated(std::size_t first_columns) const {
  return std::any_of(columns_.begin(),
                     columns_.begin() + static_cast<std::ptrdiff_t>(first_columns), DidNotFit);
}

bool TextQuery::Number(std::size_t column, std::string_view what, std::int32_t& value) {
  const std::string_view text = Text(column);
  if (DidNotFit(columns_[column])) {
    value = text.starts_with('-') ? kLeast : kMost;
    return true;
  }
  if (ParseWhole(text, value)) return true;
  return Refuse(std::string(what) + " is not a number: '" + std::string(text) + "'");
}

void TextQuery::LeaveOut(std::string_view what, std::string_view name) {
  const auto column = std::find_if(columns_.begin(), columns_.end(), DidNotFit);
  session_.warnings_.push_back(std::string(what) + " beginning with " + std::string(name) +
                               " left out: a name in it is longer than " +
                               std::to_string(column->capacity) + " bytes");
}

bool TextQuery::GoesOn(std::size_t rows) {
  session_.list_ended_ = session_.row_watch_ && !session_.row_watch_(rows);
  return !session_.list_ended_ || Refuse("cancelled");
}

bool TextQuery::Refuse(std::string_view reason) {
  return session_.Refuse(std::string(row_label_) += reason);
}

std::string_view TextQuery::Raw(std::size_t position) const {
  const Column& column = columns_[position];
  if (column.indicator == -1) return {};
  const auto length =
      std::min<std::size_t>(column.length, static_cast<std::size_t>(column.capacity));
  return {buffer_.data() + column.offset, length};
}

std::string_view TextQuery::Text(std::size_t position) const {
  return TrimRight(Raw(position), " ");
}

}  // namespace quillmere
