// SPDX-License-Identifier: MIT
#include "jobs/pending_batch.h"

namespace quillmere {

void PendingBatch::Append(std::string_view statement) {
  entries_.emplace_back(Kind::Statement, texts_.Copy(statement));
}

void PendingBatch::AppendSetAside() {
  entries_.emplace_back(Kind::SetAside, std::string_view());
}

void PendingBatch::Clear() {
  entries_.clear();
  entries_.shrink_to_fit();
  texts_.Clear();
}

}  // namespace quillmere
