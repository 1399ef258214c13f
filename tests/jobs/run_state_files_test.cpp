// SPDX-License-Identifier: MIT
#include "jobs/run_state_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/config_of.h"
#include "support/temp_folder.h"

namespace quillmere {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

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

TEST(RunRecordFile, IsFortyBytesRewrittenInPlace) {
  const TempFolder folder;
  RunRecordWriter writer(folder.Files(), JobFolder(folder.Path(), "J"));
  std::string error;
  ASSERT_TRUE(writer.Write(SomeRecord(), error)) << error;
  const std::string bytes = folder.Read("jobs/J/block.dat");
  ASSERT_EQ(bytes.size(), 40U);
  EXPECT_EQ(bytes.substr(0, 4), std::string("\x02\0\0\0", 4));
  EXPECT_EQ(bytes.substr(16, 8), "\x08\x07\x06\x05\x04\x03\x02\x01");
  // A second name of the same file shows whether it was rewritten or replaced by another.
  std::filesystem::create_hard_link(folder / "jobs/J/block.dat", folder / "jobs/J/second name");
  ASSERT_TRUE(writer.Write(RunRecord(), error));
  EXPECT_EQ(folder.Read("jobs/J/block.dat"), Bytes(RunRecord()));
  EXPECT_EQ(folder.Read("jobs/J/second name"), Bytes(RunRecord()));
}

TEST(RunRecordFile, FailureNamesThePathAndTheNextWriteTriesAgain) {
  const TempFolder folder;
  folder.Write("jobs/J/block.dat/in the way", "");
  RunRecordWriter writer(folder.Files(), JobFolder(folder.Path(), "J"));
  std::string error;
  EXPECT_FALSE(writer.Write(SomeRecord(), error));
  EXPECT_EQ(error, "Can not create " + (folder / "jobs/J/block.dat").string());
  std::filesystem::remove_all(folder / "jobs/J/block.dat");
  EXPECT_TRUE(writer.Write(SomeRecord(), error));
}

TEST(RunRecordFile, WhatIsMissingKeepsItsDefaults) {
  const TempFolder folder;
  RunRecord record = SomeRecord();
  EXPECT_TRUE(ReadRunRecord(folder.Files(), folder / "block.dat", record).Missing());
  EXPECT_EQ(Bytes(record), Bytes(RunRecord()));
  folder.Write("block.dat", Bytes(SomeRecord()).substr(0, 8));
  EXPECT_EQ(ReadRunRecord(folder.Files(), folder / "block.dat", record).code, FileCode::Damaged);
  EXPECT_EQ(record.applied_count, 3);
  EXPECT_EQ(record.batch_remaining, 0U);
}

TEST(BatchFile, ReadsBackByteForByte) {
  const TempFolder folder;
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
  const JobFolder job(folder.Path(), "J");
  ASSERT_TRUE(WriteBatchFile(folder.Files(), job, batch, error)) << error;
  PendingBatch read;
  ASSERT_TRUE(ReadBatchFile(folder.Files(), job, read));
  ASSERT_EQ(read.Size(), statements.size());
  for (std::size_t i = 0; i < statements.size(); ++i) {
    EXPECT_EQ(read[i].text, statements[i]);
    EXPECT_EQ(read[i].kind, batch[i].kind);
  }

  // Cut anywhere but at a line's end outside of a literal, the file is refused.
  const std::string whole = folder.Read("jobs/J/sqlcmds.txt");
  std::size_t refused = 0;
  for (std::size_t length = 1; length < 120; ++length) {
    folder.Write("jobs/J/sqlcmds.txt", whole.substr(0, length));
    PendingBatch part;
    refused += ReadBatchFile(folder.Files(), job, part).code == FileCode::Damaged ? 1U : 0U;
  }
  EXPECT_EQ(refused, 119U - 4U) << "four statements end within 120 bytes";
}

class Restore : public ::testing::Test {
 protected:
  Restore() { config_.name = "J"; }
  RestoredRun Run(RestoreMode mode = RestoreMode::Resume) {
    return RestoreRunState(folder_.Files(), job_, JobFolder(folder_.Path(), "J"), mode);
  }
  void WriteFiles(const RunRecord& record, const std::string& batch) {
    folder_.Write("jobs/J/block.dat", Bytes(record));
    folder_.Write("jobs/J/sqlcmds.txt", batch);
  }
  TempFolder folder_;
  SyncJob job_;
  JobConfig& config_ = ConfigOf(job_);
};

TEST_F(Restore, StartedComesBackPausedWithItsBatch) {
  WriteFiles(SomeRecord(), "a\nb\n\nd\ne\n");
  const RestoredRun restored = Run();
  EXPECT_EQ(restored.state, JobState::Paused);
  EXPECT_THAT(restored.problem, IsEmpty());
  EXPECT_EQ(restored.progress.batch_remaining, 1U);
  EXPECT_EQ(job_.run.pending_batch.Size(), 5U);
  EXPECT_EQ(job_.run.positions.mining_start_scn, 0x0102030405060708);
  EXPECT_EQ(job_.run.blocked_count, 6);
}

TEST_F(Restore, NothingAndUnknownStatesAreStopped) {
  EXPECT_EQ(Run().state, JobState::Stopped);
  EXPECT_THAT(Run().problem, IsEmpty());
  for (const std::int32_t state : {0, -1, 7, 1 << 30}) {
    RunRecord record;
    record.state = state;
    WriteFiles(record, "");
    EXPECT_EQ(Run().state, JobState::Stopped) << state;
  }
}

TEST_F(Restore, CommitPointReplacesTheRecordOnce) {
  RunRecord later = SomeRecord();
  later.batch_remaining = 0;
  later.batch_applied = 5;
  WriteFiles(later, "a\nb\nc\nd\ne\n");
  folder_.Write("jobs/J/commit.dat", Bytes(SomeRecord()));
  EXPECT_EQ(Run(RestoreMode::LookOnly).progress.batch_remaining, 0U);
  EXPECT_TRUE(folder_.Exists("jobs/J/commit.dat"));
  EXPECT_EQ(Run().progress.batch_remaining, 1U);
  EXPECT_FALSE(folder_.Exists("jobs/J/commit.dat"));
  EXPECT_EQ(folder_.Read("jobs/J/block.dat"), Bytes(SomeRecord()));
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
  std::filesystem::remove(folder_ / "jobs/J/sqlcmds.txt");
  EXPECT_THAT(Run().problem, HasSubstr("sqlcmds.txt"));

  WriteFiles(SomeRecord(), "a\nb\nc\nd\ne\n");
  folder_.Write("jobs/J/commit.dat", "short");
  EXPECT_THAT(Run().problem, HasSubstr("is damaged"));
  EXPECT_EQ(folder_.Read("jobs/J/commit.dat.bad"), "short");
}

}  // namespace
}  // namespace quillmere
