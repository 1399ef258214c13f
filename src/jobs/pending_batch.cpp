// SPDX-License-Identifier: MIT
#include "jobs/pending_batch.h"

namespace quillmere {

std::string PendingBatch::Transaction::Xid() const {
  return std::to_string(segment) + "." + std::to_string(slot) + "." + std::to_string(sequence);
}

void PendingBatch::Append(std::string_view statement) {
  AppendStored(Store(statement));
}

void PendingBatch::AppendStored(std::string_view stored) {
  entries_.emplace_back(Kind::Statement, stored);
}

void PendingBatch::AppendSetAside() {
  entries_.emplace_back(Kind::SetAside, std::string_view());
}

void PendingBatch::BeginTransaction(Transaction transaction) {
  transaction.first = static_cast<std::uint32_t>(entries_.size());
  // One of which nothing came in leaves no mark.
  if (!transactions_.empty() && transactions_.back().first == transaction.first) {
    transactions_.back() = transaction;
  } else {
    transactions_.push_back(transaction);
  }
}

void PendingBatch::Clear() {
  entries_.clear();
  entries_.shrink_to_fit();
  transactions_.clear();
  transactions_.shrink_to_fit();
  range_.reset();
  texts_.Clear();
}

}  // namespace quillmere
