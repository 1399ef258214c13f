// A session's LogMiner: the files added, the range started, and the rows of v$logmnr_contents as
// a SQLite virtual table that reads the redo as it goes, however long it is.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sandbox/redo/redo_text.h"
#include "sandbox/store/sqlite.h"

namespace quillmere::sandbox {

class LogMiner {
 public:
  LogMiner(std::string log_file, const EvalContext* context)
      : log_file_(std::move(log_file)), context_(*context) {}

  // `fresh` begins a new list of files. ORA-01284 for a file that is no log of this database.
  Status AddFile(const std::string& file, bool fresh);
  Status Start(std::int64_t start_scn, std::int64_t end_scn);
  Status End();
  bool started() const { return started_; }

  // Makes the virtual table qm_logmnr known to a connection; this object must outlive it.
  Status Register(SqliteConnection* connection);

  // For the virtual table.
  std::int64_t start_scn() const { return start_scn_; }
  std::int64_t end_scn() const { return end_scn_; }
  const EvalContext& context() const { return context_; }
  Status FindShape(SqliteStatement* lookup, std::int64_t id, std::shared_ptr<const RedoShape>* out);

 private:
  std::string log_file_;
  const EvalContext& context_;
  bool has_file_ = false;
  bool started_ = false;
  std::int64_t start_scn_ = 0;
  std::int64_t end_scn_ = 0;
  std::unordered_map<std::int64_t, std::shared_ptr<const RedoShape>> shapes_;
};

}  // namespace quillmere::sandbox
