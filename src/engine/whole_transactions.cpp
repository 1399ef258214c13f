// SPDX-License-Identifier: MIT
#include "engine/whole_transactions.h"

#include <algorithm>

namespace quillmere {
namespace {

// The first transaction that begins at the entry or behind it.
auto FirstFrom(const PendingBatch& batch, std::size_t entry) {
  const auto& transactions = batch.Transactions();
  return std::partition_point(
      transactions.begin(), transactions.end(),
      [&](const PendingBatch::Transaction& one) { return one.first < entry; });
}

}  // namespace

std::size_t BeginOfTransaction(const PendingBatch& batch, std::size_t next) {
  const auto from = FirstFrom(batch, next);
  if (from == batch.Transactions().begin() || next >= batch.Size()) return next;
  if (from != batch.Transactions().end() && from->first == next) return next;
  return std::prev(from)->first;
}

TransactionCursor::TransactionCursor(const PendingBatch& batch, std::size_t begin)
    : batch_(batch), next_(FirstFrom(batch, begin)) {}

bool TransactionCursor::NeedsSavepoint(std::size_t entry) {
  const auto end = batch_.Transactions().end();
  if (next_ == end || next_->first != entry) return false;
  ++next_;
  return (next_ == end ? batch_.Size() : next_->first) - entry > 1;
}

}  // namespace quillmere
