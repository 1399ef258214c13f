// SPDX-License-Identifier: MIT
// Following by commits: by the SCN of each commit, whole transactions in commit order, however long
// they stay open. Mined from where the oldest transaction began that was open when the cut-off was
// read; kept is what committed between that cut-off and the newest reading that can be trusted.
// docs/architecture.md has the rules. Internal to engine/.
#pragma once

#include "engine/follow.h"
#include "engine/follow_memory.h"
#include "engine/intake.h"

namespace quillmere {

class FollowCommits final : public FollowWay {
 public:
  // memory is this job's and outlives the way.
  FollowCommits(EngineContext& context, std::size_t index, FollowMemory& memory,
                CaptureWatcher* watcher = nullptr);

  // Writes source.dat. Later: a transaction has just begun and does not say where yet, or a cluster
  // has not been watched for long enough.
  FollowResult Start(OracleSession& source, Positions& positions, std::string& error) override;
  // Later: no reading can be used yet.
  FollowResult Capture(OracleSession& source, std::string& error) override;
  bool Keep(std::string& error) override;
  // The positions move here, behind the batch: it is all that is left of its range.
  void AfterCapture() override;
  void Finish() override {}
  NameQuotes Quotes() const override { return NameQuotes::Kept; }

  // The part of a capture that reads the redo, from a session on which mining was started. Behind
  // too many statements stopped_at is the commit SCN before which it ended, else it stays.
  bool Read(CommitMiner& miner, std::int64_t upto, std::int64_t& stopped_at, std::string& error);

 private:
  struct Look;

  bool TakeReading(CommitMiner& miner, std::optional<std::int64_t> known_mine_from, Look& look,
                   std::string& error);
  FollowResult CheckSource(CommitMiner& miner, std::string& error);
  FollowResult Wait();
  void ReadReach(OracleSession& source);
  void WarnOfOldest(CommitMiner& miner, std::int64_t oldest_open);
  bool Mine(CommitMiner& miner, const std::vector<RedoThread>& threads, const Reading& reading,
            std::string& error);
  bool SetLogs(CommitMiner& miner, const std::vector<RedoThread>& threads,
               std::vector<RedoLog>& chosen, std::vector<RedoLog>& online, std::string& error);
  std::string SourceName() const;

  EngineContext& context_;
  const std::size_t index_;
  FollowMemory& memory_;
  SyncJob& job_;
  const std::string name_;
  Intake intake_;
};

}  // namespace quillmere
