// SPDX-License-Identifier: MIT
// Where the source's transactions begin in a batch, so that each is applied whole or not at all. In
// a batch that was taken by rows every entry stands for itself. Internal to engine/.
#pragma once

#include <cstddef>

#include "jobs/pending_batch.h"

namespace quillmere {

// The first entry of the transaction that next would go on with; next itself at a boundary.
std::size_t BeginOfTransaction(const PendingBatch& batch, std::size_t next);

// Walks over the entries in order, from a boundary on. The batch must outlive it and stay as it is.
class TransactionCursor {
 public:
  TransactionCursor(const PendingBatch& batch, std::size_t begin);

  // True when a savepoint is due before the entry: a transaction begins there that has more than
  // this one. A single statement is whole by itself.
  bool NeedsSavepoint(std::size_t entry);

 private:
  const PendingBatch& batch_;
  TransactionMarks::Walk next_;
};

}  // namespace quillmere
