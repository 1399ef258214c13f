// SPDX-License-Identifier: MIT
// Where the statements that a capture mines go: into the job's batch, or aside. Internal to
// engine/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "engine/follow.h"
#include "engine/set_aside.h"
#include "engine/statement_safety.h"

namespace quillmere {

// Both ways of following put here what they want applied, in the order in which it is to be
// applied. Made for one capture, on its thread.
class Intake {
 public:
  Intake(EngineContext& context, std::size_t index, CaptureWatcher* watcher = nullptr);

  // mined: a whole statement without its semicolon. One that is not safe to apply counts as blocked
  // in its place in the batch; it is set aside when the job carries its table, or when its table
  // can not be told.
  void Take(std::int64_t scn, std::string_view mined, const RowFacts& facts = {});
  // A statement that never ends.
  void TakeUnfinished(std::int64_t scn, std::string_view mined);
  // One that was judged and stored in the batch's memory before: it is safe.
  void TakeStored(std::int64_t scn, std::string_view stored);
  // One that was judged before and is not safe.
  void TakeAside(std::int64_t scn, std::string_view mined, Safety why);
  // A change of rows for which there is no statement. It counts as blocked when the job carries the
  // table. what: the operation and where it was, for the operator.
  void TakeUntold(std::string_view owner, std::string_view table, std::string_view what);
  // A row that is no statement: it only counts.
  void PassOver(std::int64_t scn, std::string_view text);

  // After the last row, and before the batch is kept on disk: what was set aside is, in
  // setaside.sql, and its tables bear the mark "compare". False when it could not be kept: the
  // capture fails, and the same is mined again.
  bool Keep(std::string& error);

  // Once the batch is safe: tells the operator, a line a table.
  void Tell() const;

 private:
  // Of the entry that was just appended.
  void TellWatcher(const ParsedStatement& parsed, std::string_view why, std::string_view text);

  EngineContext& context_;
  const std::size_t index_;
  SyncJob& job_;
  CaptureWatcher* const watcher_;
  SetAside set_aside_;
  struct Untold {
    std::size_t count = 0;
    std::string first;
  };
  std::map<std::pair<std::string, std::string>, Untold> untold_;  // by owner and table
  std::size_t passed_over_ = 0;
  std::string first_passed_over_;
};

}  // namespace quillmere
