#include "sandbox/redo/log_miner.h"

namespace quillmere::sandbox {

Status LogMiner::AddFile(const std::string& file, bool fresh) {
  if (file != log_file_) return {1284, "file " + Shortened(file, 300) + " cannot be opened"};
  if (!fresh && has_file_) return {1289, "cannot add duplicate logfile " + file};
  has_file_ = true;
  started_ = false;
  return {};
}

Status LogMiner::Start(std::int64_t start_scn, std::int64_t end_scn) {
  if (!has_file_) return Ora(1292);
  start_scn_ = start_scn;
  end_scn_ = end_scn;
  started_ = true;
  return {};
}

Status LogMiner::End() {
  if (!has_file_) return Ora(1307);
  has_file_ = false;
  started_ = false;
  return {};
}

Status LogMiner::FindShape(SqliteStatement* lookup, std::int64_t id,
                           std::shared_ptr<const RedoShape>* out) {
  constexpr std::size_t kMost = 20000;
  if (const auto found = shapes_.find(id); found != shapes_.end()) {
    *out = found->second;
    return {};
  }
  lookup->Reset();
  lookup->BindInt(1, id);
  bool row = false;
  if (Status status = lookup->Step(&row); !status.ok()) return status;
  auto shape = std::make_shared<RedoShape>();
  if (!row || !DecodeShapeColumns(lookup->Text(3), &shape->columns)) {
    return {1578, "the redo refers to a table form that is not there"};
  }
  shape->table_id = lookup->Int(0);
  shape->owner = lookup->Text(1);
  shape->name = lookup->Text(2);
  lookup->Reset();
  if (shapes_.size() >= kMost) shapes_.clear();
  shapes_.emplace(id, shape);
  *out = shape;
  return {};
}

}  // namespace quillmere::sandbox
