#include "jobs/pending_batch.h"

namespace quillmere {

void PendingBatch::Append(std::string_view statement) {
  statements_.push_back(texts_.Copy(statement));
}

void PendingBatch::Clear() {
  statements_.clear();
  statements_.shrink_to_fit();
  texts_.Clear();
}

}  // namespace quillmere
