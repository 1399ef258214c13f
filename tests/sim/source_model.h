// SPDX-License-Identifier: MIT
// A source database in memory: tables that transactions change, SCNs, redo threads with their logs,
// and time as it is told. What LogMiner makes of it is mining.h. Deterministic for its seed; keeps
// the changes whose redo is still held, and those of open transactions. A copy is a backup.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "sim/change.h"
#include "sim/dictionary.h"
#include "sim/redo_thread.h"
#include "sim/workload.h"

namespace quillmere::sim {

// What LogMiner returns of a transaction that began before the SCN it starts at.
enum class Straddling { WholeOrNothing, PartInside };

struct SourceShape {
  std::uint64_t seed = 1;
  Straddling straddling = Straddling::WholeOrNothing;
  std::size_t threads = 1;      // the first is busy, the others are idle most of the time
  std::size_t instance = 0;     // the thread of the instance that connections are on
  std::int64_t lag_ms = 0;      // how far an instance's SCN is behind that of the others at most
  std::size_t containers = 1;   // 2: connections are at a root, and see the redo of both
  bool background_redo = true;  // of the first thread, every 3 s
  LogShape log = {};
  Habits habits = {};  // of the users
};

class SourceModel {
 public:
  explicit SourceModel(const SourceShape& shape, std::int64_t now = 0);

  // Lets the users and the log writers work until then (ms).
  void RunUntil(std::int64_t now);
  std::int64_t Now() const { return now_; }
  const SourceShape& Shape() const { return shape_; }

  ModelDictionary dictionary;

  // --- What a connection can see --------------------------------------------------------------
  std::int64_t CurrentScn();
  // -1: none open; 0: one of them is younger than 200 ms.
  std::int64_t OldestOpen() const;
  const Transaction* OldestTransaction() const;  // null: none open
  std::int64_t ResetlogsScn() const { return resetlogs_scn_; }
  const std::vector<RedoThread>& Threads() const { return threads_; }
  std::uint64_t Switches() const { return switches_; }  // grows whenever redo may go

  // Committed transactions of a thread in the order of their redo, counted from 0 since the
  // beginning; null when their redo is gone.
  const Transaction* Committed(std::size_t thread, std::uint64_t index) const;
  std::uint64_t FirstCommitted(std::size_t thread, std::int64_t commit_scn) const;

  // --- Transactions made by hand, beside those of the users -----------------------------------
  // The number of the transaction, which is open from its first change on.
  std::uint32_t Begin(std::size_t thread = 0);
  // A change of the row, which must be free for it, or of any (an insert when there is none); the
  // row.
  static constexpr std::uint32_t kAnyRow = ~0U;
  std::uint32_t Do(std::uint32_t transaction, Operation operation, std::uint8_t table,
                   std::uint32_t row = kAnyRow, std::uint16_t note = 0);
  std::size_t Savepoint(std::uint32_t transaction) const;
  void RollbackTo(std::uint32_t transaction, std::size_t savepoint);
  // shares_scn: takes the SCN of the record before, if that is not older than 50 ms.
  void Commit(std::uint32_t transaction, bool shares_scn = false);
  void Rollback(std::uint32_t transaction);

  // Told of each commit while what is live in it is known.
  std::function<void(const Transaction&)> on_commit;

  // The users finish what they are at, and nobody begins anything.
  void SendUsersHome() { workload_.SendHome(); }

  // --- Fate -----------------------------------------------------------------------------------
  RedoThread& Thread(std::size_t thread) { return threads_[thread]; }
  // The database is opened with RESETLOGS: open transactions are taken back.
  void ResetLogs();
  // Becomes what it was when the backup was taken, and goes on from now otherwise than it did then.
  void RestoreFrom(const SourceModel& backup, bool resetlogs);

 private:
  struct Row {
    std::int64_t value = 0;    // V; 0: there is no such row
    std::uint32_t holder = 0;  // the open transaction that changed it
  };
  // One for each thread. Rows belong to threads, too: their number modulo threads.
  struct Instance {
    std::int64_t scn = 1000, synchronized_at = 0, last_record_at = 0;
    std::vector<Row> tables[std::size(kContainers)][kTableCount];
    std::deque<Transaction> committed;
    std::uint64_t committed_gone = 0;
  };

  void Synchronize(Instance& instance);
  std::int64_t Append(std::size_t thread, std::uint64_t bytes, bool commit, bool shares_scn);
  void Write();
  void ForgetWhatIsGone();
  std::uint32_t PickRow(const Transaction& transaction, Change& change);
  Row& RowOf(const Transaction& transaction, const Change& change);
  void Record(Transaction& transaction, Change change);
  void TakeBack(Transaction& transaction, std::size_t keep, bool records);
  void Release(const Transaction& transaction);
  void LoseOpenTransactions();

  SourceShape shape_;
  Random random_;
  std::int64_t now_ = 0;
  std::vector<RedoThread> threads_;
  std::vector<Instance> instances_;
  std::map<std::uint32_t, Transaction> open_;
  std::uint32_t last_number_ = 0;
  std::int64_t last_id_ = 0, resetlogs_scn_ = 1;
  std::uint64_t switches_ = 0;
  Workload workload_;
};

}  // namespace quillmere::sim
