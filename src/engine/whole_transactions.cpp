// SPDX-License-Identifier: MIT
#include "engine/whole_transactions.h"

namespace quillmere {

std::size_t BeginOfTransaction(const PendingBatch& batch, std::size_t next) {
  const TransactionMarks::Walk transaction(batch.Transactions(), next);
  const TransactionMark* const mark = transaction.Mark();
  return mark == nullptr || mark->first > next || next >= batch.Size() ? next : mark->first;
}

TransactionCursor::TransactionCursor(const PendingBatch& batch, std::size_t begin)
    : batch_(batch), next_(batch.Transactions(), begin) {
  if (next_.Mark() != nullptr && next_.Mark()->first < begin) next_.Next();
}

bool TransactionCursor::NeedsSavepoint(std::size_t entry) {
  if (next_.Mark() == nullptr || next_.Mark()->first != entry) return false;
  next_.Next();
  return (next_.Mark() == nullptr ? batch_.Size() : next_.Mark()->first) - entry > 1;
}

}  // namespace quillmere
