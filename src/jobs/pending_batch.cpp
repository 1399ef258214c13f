// SPDX-License-Identifier: MIT
#include "jobs/pending_batch.h"

namespace quillmere {

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
  transactions_.Add(transaction);
}

void PendingBatch::Clear() {
  entries_.clear();
  entries_.shrink_to_fit();
  transactions_.Clear();
  range_.reset();
  texts_.Clear();
}

}  // namespace quillmere
