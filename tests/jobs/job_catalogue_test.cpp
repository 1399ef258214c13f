// SPDX-License-Identifier: MIT
#include "jobs/job_catalogue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include "jobs/job_list.h"
#include "support/account.h"
#include "support/config_of.h"
#include "support/hand_clock.h"

namespace quillmere {
namespace {

// A program's jobs in /work; a second one on the same files is its restart.
struct Program {
  explicit Program(FileSystem& disk) : files(disk) {}

  JobConfig& Add(std::string_view name) {
    const std::size_t index = jobs.Claim();
    Job(index).name = name;
    Job(index).schemas["S"].Append({.name = "T"});
    jobs.SetState(index, JobState::Stopped);
    return Job(index);
  }
  JobConfig& Job(std::size_t index) { return ConfigOf(jobs.At(index)); }
  void Load() {
    const auto log_on = [](std::string_view name) -> std::optional<LogOn> {
      if (name != "SRC") return std::nullopt;
      return LogOn{"SRC", "scott", "tiger", true};
    };
    catalogue.Load(log_on, [this](SyncJob& job) {
      jobs.SetProgress(jobs.IndexOf(job), {11, 22});
      return restored;
    });
  }

  FileSystem& files;
  HandClock clock;
  Settings settings;
  MessageLog log{files, "/work", clock, settings};
  JobList jobs;
  JobCatalogue catalogue{files, "/work", jobs, log};
  JobState restored = JobState::Stopped;
  std::string error;
};

class JobCatalogueTest : public AccountTest {
 protected:
  void Tell(const std::string& what, Program& of) {
    account << "= " << what << "\n";
    if (!of.error.empty()) account << "error: " << std::exchange(of.error, {}) << "\n";
    for (const SyncJob* job : of.jobs.LiveJobs()) account << "job " << NameOf(*job) << "\n";
    TellFiles();
  }
  void Save(const std::string& what, Program& of) {
    of.catalogue.SaveAll(of.error);
    Tell(what, of);
  }
  void Save(const std::string& what) { Save(what, program); }
  void Load(const std::string& what) {
    program.Load();
    Tell(what, program);
  }
  Program program{files};
};

TEST_F(JobCatalogueTest, FilesHoldWhatTheyShould) {
  JobConfig& job = program.Add("J1");
  job.database_type = "ORACLE";
  job.description = "two\n <lines>";
  job.sync_interval = 15;
  job.has_runned = true;
  job.src_database_name = "SRC";
  job.des_database_name = "DES";
  job.source = {"SRC", "scott", "tiger", false};
  JobTable table{.name = "EMP", .desowner = "X", .beginrows = 1, .rows = -2, .totalsynced = 3};
  table.RecordsBlocked = 4;
  table.synced = 5;
  table.includeflag = false;
  job.schemas["A"].Append(table);
  job.schemas["WITHOUT TABLES"];
  JobConfig& second = program.Add("J2");
  second.schemas.clear();
  second.description = std::string(2100, '<');  // more than a line can hold
  Save("written");

  Program restarted(files);
  restarted.restored = JobState::Paused;
  restarted.Load();
  JobList::Progress progress;
  EXPECT_EQ(restarted.jobs.State(0, &progress), JobState::Paused);
  EXPECT_EQ(progress.batch_remaining, 22u);
  const JobConfig& read = restarted.Job(0);
  EXPECT_TRUE(read.source.password == "tiger" && read.source.sysdba);
  EXPECT_EQ(read.destination.user_id, "") << "an unregistered data source";
  EXPECT_EQ(AsStored(read.error_log_path), "/work/jobs/J1/error.log");
  EXPECT_TRUE(read.table_list_fetched && !restarted.Job(1).table_list_fetched);
  files.Remove("/work/jobs/jobs.xml");
  ++restarted.Job(0).tables_revision;
  Save("read, and written as they were", restarted);
}

TEST_F(JobCatalogueTest, ASaveWritesWhatChanged) {
  program.Add("a");
  program.Add("b");
  Save("both are new");
  ++program.Job(1).tables_revision;
  Save("of b a counter");
  program.Job(0).sync_interval = 3;
  Save("of a a property");
  files.Remove("/work/jobs/jobs.xml");
  Save("the list is gone");
  Program restarted(files);
  restarted.Load();
  Save("nothing: all is as it was read", restarted);
  program.Job(0).save_mark = true;
  ++program.Job(1).tables_revision;
  EXPECT_TRUE(program.catalogue.SaveMarked(program.error));
  Tell("the marked only", program);
  program.Job(0).save_mark = false;
  EXPECT_TRUE(program.catalogue.SaveMarked(program.error));
  Tell("no job is marked", program);
}

TEST_F(JobCatalogueTest, WhatIsCountedDuringASaveIsWrittenByTheNext) {
  JobConfig& job = program.Add("a");
  JobTable& table = job.schemas["S"].Tables().front();
  files.on_operation = [&](const testing::FileOperation& operation) {
    const bool own_file = operation.path.find("a.xml") != std::string::npos;
    if (operation.what == "append" && own_file && table.totalsynced == 0) {
      table.totalsynced = 7;
      ++job.tables_revision;
    }
    return FileStatus();
  };
  Save("counted meanwhile");
  Save("the next");
}

TEST_F(JobCatalogueTest, ReadsOddValues) {
  files.Put("/work/jobs/jobs.xml",
            "<job><name>a</name><has_runned>TRUE</has_runned>"
            "<sync_interval>99999999999</sync_interval></job>");
  files.Put("/work/jobs/a/a.xml",
            "<schema><schema_name>S</schema_name>"
            "<table_list><rows>x</rows><name>T1</name><includeflag>FALSE</includeflag>"
            "<name>second</name></table_list><table_list><name>T2</name></table_list></schema>\n"
            "<schema><table_list><name>T3</name></table_list><schema_name>S</schema_name>"
            "</schema>\n");
  program.restored = static_cast<JobState>(77);
  Load("read");
  ++program.Job(0).tables_revision;
  Save("the first name counts, wherever it stands; an owner twice keeps all tables");
}

TEST_F(JobCatalogueTest, WhatCanNotBeReadIsKept) {
  Load("no list at all is an empty catalogue");
  files.Put("/work/jobs/jobs.xml", "<job>\n<name>a</name>\n");
  Load("a broken list");
  program.Add("new");
  Save("saved over it");
  program.Job(0).description = "changed";
  Save("and once more");
  files.Put("/work/jobs/jobs.xml", "<job><name>a</name></job>\n<job><name>b</name></job>");
  files.Put("/work/jobs/a/a.xml", "<schema>\n");
  Program restarted(files);
  restarted.Load();
  EXPECT_FALSE(restarted.Job(0).table_list_fetched);
  Save("own files, broken and missing, are left alone", restarted);
  restarted.Job(0).schemas["S"];
  ++restarted.Job(0).tables_revision;
  Save("until a refresh", restarted);
  for (const char* name : {"jobs.xml", "b.xml"}) {
    Program blind(files);
    Refuse("open", name);
    blind.Load();
    Refuse();
    account << "list: " << blind.catalogue.WhyListNotRead() << "\n";
    blind.Add("x");
    if (blind.jobs.Count() > 2) {
      account << "held: " << blind.jobs.HeldBecause(1) << "\n";
      ++blind.Job(1).tables_revision;
    }
    Save("one that is not readable is not saved over", blind);
  }
}

TEST_F(JobCatalogueTest, JobsThatCanNotBeAreLeftOutAndKept) {
  std::string list;
  for (const std::string name : {"a", "A", "../evil", "nul", "", "jobs.xml", "b"}) {
    list += "<job>\n<name>" + name + "</name>\n</job>\n";
  }
  files.Put("/work/jobs/jobs.xml", list);
  files.Put("/work/jobs/a/a.xml", "");
  files.Put("/work/jobs/b/b.xml", "");
  Load("read");
  Save("saved");
  for (const char* name : {"B", "B2", "JOBS.xml.bad", "a/b"}) {
    account << name << " " << program.catalogue.WhyNameRefused(name, JobList::kNotFound) << "\n";
  }
  EXPECT_EQ(program.catalogue.WhyNameRefused("B", 1), "") << "its own";
}

TEST_F(JobCatalogueTest, RenamesAndRemovesFolderFileAndList) {
  program.Add("old");
  program.Add("b");
  Save("saved");
  const auto rename = [&](const std::string& name) {
    program.catalogue.Rename(0, name, {}, program.error);
    Tell("rename to " + name, program);
  };
  for (const char* file : {"old/block.dat", "old/commit.dat", "old/sqlcmds.txt", "b/error.log",
                           "old/old.xml.bad", "taken/error.log"}) {
    files.Put("/work/jobs/" + std::string(file), "x");
  }
  TellFiles();
  rename("taken");
  rename("a/b");
  rename("new");
  Refuse("append", "jobs.xml");
  rename("newer");
  Refuse();
  for (const std::size_t index : {0u, 1u}) program.catalogue.Remove(index, program.error);
  Tell("removed, but for what others wrote", program);
}

// What stands behind a tag, wherever it does.
std::set<std::string> Values(const std::string& text, const std::string& tag) {
  std::set<std::string> values;
  for (std::size_t at = 0; (at = text.find(tag, at)) != text.npos;) {
    at += tag.size();
    values.insert(text.substr(at, text.find('<', at) - at));
  }
  return values;
}

TEST_F(JobCatalogueTest, ASaveSeesAJobBeforeOrAfterAnEdit) {
  JobConfig& job = program.Add("busy");
  std::atomic<bool> done{false};
  int round = 0;
  std::thread editor([&] {
    for (; !done || round == 0; ++round) {
      {
        const MutexLock lock(program.jobs.At(0).config_mutex);
        job.description = std::to_string(round);
        job.sync_interval = round;
        job.schemas.clear();
        for (int i = 0; i <= round % 7; ++i) job.schemas["S"].Append({.name = "T", .rows = round});
        ++job.tables_revision;
      }
      program.jobs.SetState(0, round % 2 == 0 ? JobState::Started : JobState::Paused);
    }
  });
  std::string error, reason;
  std::thread second_saver([&] {
    while (!done) EXPECT_TRUE(program.catalogue.SaveAll(reason)) << reason;
  });
  for (int saves = 0; saves < 100; ++saves) {
    EXPECT_TRUE(program.catalogue.SaveAll(error)) << error;
    const std::string list = files.Content("/work/jobs/jobs.xml");
    const auto written = Values(list, "<description>");
    EXPECT_TRUE(written.empty() || written == Values(list, "<sync_interval>")) << list;
    EXPECT_EQ(Values(files.Content("/work/jobs/busy/busy.xml"), "<rows>").size(), 1u);
  }
  done = true;
  editor.join();
  second_saver.join();
  ASSERT_TRUE(program.catalogue.SaveAll(error));
  EXPECT_EQ(Values(files.Content("/work/jobs/busy/busy.xml"), "<rows>"),
            std::set{std::to_string(round - 1)});
}

}  // namespace
}  // namespace quillmere
