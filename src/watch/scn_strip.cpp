// SPDX-License-Identifier: MIT
#include "watch/scn_strip.h"

#include "jobs/run_state_files.h"
#include "oracle/source_facts.h"

namespace quillmere {
namespace {

constexpr std::size_t kMostOpen = 50;

void Set(std::optional<std::int64_t>& place, std::int64_t scn) {
  if (scn > 0) place = scn;
}

}  // namespace

ScnStrip KnownStrip(FileSystem& files, const JobFolder& folder, Follow follow,
                    const HistoryRead& history, const std::optional<RedoRoom>& room) {
  ScnStrip strip;
  RunRecord record;
  if (!ReadRunRecord(files, folder.File(JobFile::Record), record)) return strip;
  if (record.state == static_cast<std::int32_t>(JobState::Stopped)) return strip;
  Set(strip.oldest_needed, record.mining_start_scn);
  // By rows the cut-off of the next range is known before that is captured.
  const bool up_to_cutoff = follow == Follow::Commits || record.batch_pending != 0;
  Set(strip.captured, up_to_cutoff ? record.cutoff_scn : record.mining_start_scn);
  Set(strip.applied, history.reached_scn);
  Set(strip.now, history.source_scn);
  if (room) Set(strip.oldest_there, room->oldest_scn);
  return strip;
}

bool AskSource(OracleSession& source, Follow follow, ScnStrip& strip) {
  CommitMiner miner(source);
  SourceFacts facts(source);
  const bool by_commits = follow == Follow::Commits;
  std::int64_t now = 0;
  if (!(by_commits ? miner.ReadScn(now) : source.ReadCurrentScn(now))) return false;
  Set(strip.now, now);
  RedoReach online, archived;
  if (!facts.ReadOnlineReach(online)) return false;
  if (by_commits && !facts.ReadArchivedReach(archived)) return false;
  Set(strip.oldest_there, archived.logs > 0 ? archived.from_scn : online.from_scn);
  if (!miner.ListOpen(strip.open, kMostOpen)) return false;
  strip.live = true;
  return true;
}

}  // namespace quillmere
