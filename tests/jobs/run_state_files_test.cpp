// SPDX-License-Identifier: MIT
#include "jobs/run_state_files.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/config_of.h"
#include "support/memory_files.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

using testing::MemoryFiles;

RunRecord SomeRecord() {
  return {.state = 2,
          .applied_count = 3,
          .batch_applied = 4,
          .batch_remaining = 1,
          .mining_start_scn = 0x0102030405060708,
          .cutoff_scn = 500,
          .blocked_count = 6,
          .batch_pending = 1};
}

std::string Bytes(const RunRecord& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

TEST(RunRecordFile, IsFortyBytesAndAShortOneKeepsItsDefaults) {
  MemoryFiles files;
  RunRecordWriter writer(files, JobFolder("/work", "J"));
  std::string error;
  ASSERT_TRUE(writer.Write(SomeRecord(), error)) << error;
  const std::string bytes = files.Content("/work/jobs/J/block.dat");
  ASSERT_EQ(bytes.size(), 40U);
  EXPECT_EQ(bytes.substr(0, 4), std::string("\x02\0\0\0", 4));
  EXPECT_EQ(bytes.substr(16, 8), "\x08\x07\x06\x05\x04\x03\x02\x01");
  RunRecord record = SomeRecord();
  EXPECT_TRUE(ReadRunRecord(files, "/work/none", record).Missing());
  EXPECT_EQ(Bytes(record), Bytes(RunRecord()));
  files.Put("/work/short", bytes.substr(0, 8));
  EXPECT_EQ(ReadRunRecord(files, "/work/short", record).code, FileCode::Damaged);
  EXPECT_EQ(record.applied_count, 3);
  EXPECT_EQ(record.batch_remaining, 0U);
}

// Given are files, or after "refuse" the operation that fails: a record by its fields, "|" for a
// line's end in a batch; both ways of looking at them, and the files that stand then.
TEST(Restore, TakesUpWhatIsWholeAndTellsTheRest) {
  ExpectCases(TABLES "/restore.txt", [](const std::string& given) {
    MemoryFiles files;
    SyncJob job;
    ConfigOf(job).name = "J";
    std::istringstream lines(given);
    for (std::string name, text; lines >> name && std::getline(lines >> std::ws, text);) {
      RunRecord r;
      std::istringstream fields(text);
      if (name == "job") {  // and what it is
        ConfigOf(job).follow = text.find("commits") != text.npos ? Follow::Commits : Follow::Rows;
        ConfigOf(job).position_owner = text.find("row") != text.npos ? "OPS" : "";
        continue;
      }
      if (fields >> r.state >> r.applied_count >> r.batch_applied >> r.batch_remaining >>
          r.mining_start_scn >> r.cutoff_scn >> r.blocked_count >> r.batch_pending) {
        text = Bytes(r);
      }
      std::ranges::replace(text, '|', '\n');
      if (text == "nothing") text = "";
      if (name != "refuse") files.Put("/work/jobs/J/" + name, text);
      if (name == "refuse") {
        files.on_operation = [refused = text](const testing::FileOperation& operation) {
          return FileStatus{operation.Text() == refused ? FileCode::NoSpace : FileCode::Ok, "full"};
        };
      }
    }
    std::ostringstream found;
    for (const RestoreMode mode : {RestoreMode::LookOnly, RestoreMode::Resume}) {
      const RestoredRun run = RestoreRunState(files, job, JobFolder("/work", "J"), mode);
      const auto& [mining_start, cutoff] = job.run.positions;
      found << StateName(run.state) << ", " << run.progress.batch_applied << " done, "
            << run.progress.batch_remaining << " to do of " << job.run.pending_batch.Size()
            << "; applied " << job.run.applied_count << ", blocked " << job.run.blocked_count
            << ", from " << mining_start << " below " << cutoff << "\n"
            << run.problem << (run.problem.empty() ? "" : "\n")
            << (run.asks_again ? "asks again: " : "") << run.held << (run.held.empty() ? "" : "\n");
    }
    const auto on_disk = files.AfterPowerCut([] { return false; });
    for (const auto& [name, content] : on_disk->All("/work")) {
      const bool settled = content == Bytes({.state = 2, .applied_count = 3, .batch_remaining = 1});
      found << name << (settled ? " of the commit point" : "") << "\n";
    }
    return found.str();
  });
}

}  // namespace
}  // namespace quillmere
