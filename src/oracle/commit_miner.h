// SPDX-License-Identifier: MIT
// What following by commits asks of a source, on a session that is connected: readings of where it
// stands, its redo logs, and the committed changes between two commit SCNs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "oracle/H_oracle.h"

namespace quillmere {

// Two values that only the same database, not opened with RESETLOGS meanwhile, has.
struct SourceIdentity {
  std::string dbid, resetlogs_change;
  bool operator==(const SourceIdentity&) const = default;
};

// An instance's stream of redo.
struct RedoThread {
  std::int64_t number = 0;
  bool open = false;
  std::int64_t last_redo_scn = 0;  // written to disk up to here
  std::int64_t enabled_from = 0;   // SCN
};

struct RedoLog {
  std::int64_t thread = 0;
  std::int64_t sequence = 0;
  std::int64_t first_scn = 0;
  std::int64_t next_scn = 0;  // archived logs only
  bool current = false;
  std::string file;
};

// A row of the mined contents; texts are valid during the call only.
struct MinedRow {
  static constexpr std::int64_t kNoScn = -1;  // NULL

  std::int64_t scn = 0;
  std::int64_t commit_scn = kNoScn;
  std::string_view transaction = {};  // its XID
  std::int64_t operation_code = 0;
  std::string_view operation = {};
  bool undoes = false;  // an earlier change of the same transaction
  bool goes_on = false;
  bool not_executable = false;
  std::string_view owner = {}, table = {};
  std::string_view change = {};  // the same for all pieces of one
  std::string_view row = {};     // object and address
  std::string_view commit_time = {};
  std::string_view text = {};
};

// A transaction that has not ended.
struct OpenTransaction {
  std::int64_t start_scn = 0;
  std::int64_t hours = 0;  // it is open
  std::string holder;      // whose session, in words
};

class CommitSink {
 public:
  enum class Next { GoOn, Enough, Fail };

  virtual ~CommitSink() = default;
  // Enough ends the run with success before its end, Fail with failure and the reason.
  virtual Next OnRow(const MinedRow& row, std::string& reason) = 0;
};

// Made for one task on one session, which must outlive it; used by the session's thread. Each call
// returns false on failure, with the reason in the session's LastError().
class CommitMiner {
 public:
  static constexpr std::int64_t kNoneOpen = -1;

  explicit CommitMiner(OracleSession& session) : session_(session) {}

  const std::string& LastError() const { return session_.LastError(); }
  oci::sb4 LastErrorCode() const { return session_.LastErrorCode(); }
  bool Stopped() const { return session_.Stopped(); }

  bool ReadIdentity(SourceIdentity& identity);
  bool ReadScn(std::int64_t& scn);
  // The smallest START_SCN of the open transactions: kNoneOpen, or 0 while one has none yet.
  bool ReadOldestOpen(std::int64_t& scn);
  // Who holds the transaction that began there, in words, and for how many hours it has been open;
  // empty when it has ended.
  bool DescribeOldest(std::int64_t start_scn, std::string& holder, std::int64_t& hours);
  // The oldest first, and no more than so many.
  bool ListOpen(std::vector<OpenTransaction>& open, std::size_t most);
  bool ReadThreads(std::vector<RedoThread>& threads);

  // The logs by thread and sequence, each once. archived: those that hold redo from from_scn on.
  bool ListOnlineLogs(std::vector<RedoLog>& logs);
  bool ListArchivedLogs(std::int64_t from_scn, std::vector<RedoLog>& logs);
  // The online logs as they are now, without their files.
  bool ListLogsNow(std::vector<RedoLog>& logs);

  // Gives LogMiner the logs and starts it. With a failure it ends with the session.
  bool StartMining(const std::vector<RedoLog>& logs, std::int64_t from_scn);
  // Hands on what was committed in [from, to), in the order in which the server gives it. At the
  // root only that of a container, if one is named: by itself an XID says nothing there.
  bool Mine(std::int64_t from, std::int64_t to, std::string_view container, CommitSink& sink);
  bool EndMining();

 private:
  OracleSession& session_;
};

}  // namespace quillmere
