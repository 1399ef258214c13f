// SPDX-License-Identifier: MIT
#include "jobs/run_state_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/config_of.h"
#include "support/memory_files.h"

namespace quillmere {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
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

TEST(BatchFile, ReadsBackByteForByte) {
  MemoryFiles files;
  const std::vector<std::string> statements = {
      "insert into A.B values ('line\nfeed, ''quoted'';\n\n')",
      "",
      "  trailing blanks  ",
      "update A.\"O'B\" set X = '\r\n\t" + std::string(1, '\0') + "x'",
      std::string(20000, 'x'),
      ""};
  PendingBatch batch;
  for (const std::string& statement : statements) {
    statement.empty() ? batch.AppendSetAside() : batch.Append(statement);
  }
  std::string error;
  const JobFolder job("/work", "J");
  ASSERT_TRUE(WriteBatchFile(files, job, batch, error)) << error;
  PendingBatch read;
  ASSERT_TRUE(ReadBatchFile(files, job, read));
  ASSERT_EQ(read.Size(), statements.size());
  for (std::size_t i = 0; i < statements.size(); ++i) {
    EXPECT_EQ(read[i].text, statements[i]);
    EXPECT_EQ(read[i].kind, batch[i].kind);
  }

  // Cut anywhere but at a line's end outside of a literal, the file is refused.
  const std::string whole = files.Content("/work/jobs/J/sqlcmds.txt");
  std::size_t refused = 0;
  for (std::size_t length = 1; length < 120; ++length) {
    files.Put("/work/jobs/J/sqlcmds.txt", whole.substr(0, length));
    PendingBatch part;
    refused += ReadBatchFile(files, job, part).code == FileCode::Damaged ? 1U : 0U;
  }
  EXPECT_EQ(refused, 119U - 4U) << "four statements end within 120 bytes";
}

class Restore : public ::testing::Test {
 protected:
  Restore() { config_.name = "J"; }
  RestoredRun Run(RestoreMode mode = RestoreMode::Resume) {
    return RestoreRunState(files_, job_, JobFolder("/work", "J"), mode);
  }
  void WriteFiles(const RunRecord& record, const std::string& batch) {
    files_.Put("/work/jobs/J/block.dat", Bytes(record));
    files_.Put("/work/jobs/J/sqlcmds.txt", batch);
  }
  MemoryFiles files_;
  SyncJob job_;
  JobConfig& config_ = ConfigOf(job_);
};

// What comes back of a job that was running, the engine's tests of faults have.
TEST_F(Restore, NothingAndUnknownStatesAreStopped) {
  EXPECT_EQ(Run().state, JobState::Stopped);
  EXPECT_TRUE(job_.run.pending_batch.Empty());
  for (const std::int32_t state : {0, -1, 7, 1 << 30}) {
    RunRecord record;
    record.state = state;
    WriteFiles(record, "");
    const RestoredRun restored = Run();
    EXPECT_EQ(restored.state, JobState::Stopped) << state;
    EXPECT_THAT(restored.problem, IsEmpty());
  }
}

TEST_F(Restore, CommitPointReplacesTheRecordOnce) {
  RunRecord later = SomeRecord();
  later.batch_remaining = 0;
  later.batch_applied = 5;
  WriteFiles(later, "a\nb\nc\nd\ne\n");
  files_.Put("/work/jobs/J/commit.dat", Bytes(SomeRecord()));
  EXPECT_EQ(Run(RestoreMode::LookOnly).progress.batch_remaining, 0U);
  EXPECT_NE(files_.Content("/work/jobs/J/commit.dat"), "(none)");
  EXPECT_EQ(Run().progress.batch_remaining, 1U);
  const auto on_disk = files_.AfterPowerCut([] { return false; });
  EXPECT_EQ(on_disk->Content("/work/jobs/J/commit.dat"), "(none)");
  EXPECT_EQ(on_disk->Content("/work/jobs/J/block.dat"), Bytes(SomeRecord()));
}

TEST_F(Restore, DamageIsToldAndNothingHalfReadIsApplied) {
  struct Case {
    std::string what, batch, problem;
  };
  for (const Case& c : std::vector<Case>{
           {"too few statements", "", "holds 0 statements, the run record counts 1"},
           {"cut inside a literal", "a\nb\nc\nd\ninsert ('\n", "ends inside a statement"}}) {
    SCOPED_TRACE(c.what);
    WriteFiles(SomeRecord(), c.batch);
    const RestoredRun restored = Run();
    EXPECT_THAT(restored.problem, HasSubstr(c.problem));
    EXPECT_THAT(restored.problem, HasSubstr("4 of them are on the destination already"));
    EXPECT_TRUE(job_.run.pending_batch.Empty());
  }
  EXPECT_TRUE(files_.RemoveFile("/work/jobs/J/sqlcmds.txt"));
  EXPECT_THAT(Run().problem, HasSubstr("sqlcmds.txt"));

  WriteFiles(SomeRecord(), "a\nb\nc\nd\ne\n");
  files_.Put("/work/jobs/J/commit.dat", "short");
  EXPECT_THAT(Run().problem, HasSubstr("is damaged"));
  EXPECT_EQ(files_.Content("/work/jobs/J/commit.dat.bad"), "short");
}

}  // namespace
}  // namespace quillmere
