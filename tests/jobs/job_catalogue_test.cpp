// SPDX-License-Identifier: MIT
#include "jobs/job_catalogue.h"

#include <atomic>
#include <thread>

#include "jobs/job_list.h"
#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/memory_files.h"
#include "support/temp_folder.h"
#include "support/watched_files.h"

namespace quillmere {
namespace {

using Files = std::vector<std::string>;
using testing::MemoryFiles;
using testing::WatchedFiles;

// A program's jobs on a working folder; a second one on the same folder is its restart.
struct Program {
  explicit Program(const TempFolder& folder) : Program(folder.Files(), folder.Path()) {}
  Program(FileSystem& disk, std::filesystem::path at) : files(disk), path(std::move(at)) {}

  JobConfig& Add(std::string_view name) {
    const std::size_t index = jobs.Claim();
    JobConfig& job = ConfigOf(jobs.At(index));
    job.name = name;
    job.database_type = "ORACLE";
    jobs.SetState(index, JobState::Stopped);
    return job;
  }

  JobConfig& Job(std::size_t index) { return ConfigOf(jobs.At(index)); }

  void Load() {
    catalogue.Load(
        [](std::string_view name) -> std::optional<LogOn> {
          if (name != "SRC") return std::nullopt;
          return LogOn{"SRC", "scott", "tiger", true};
        },
        [this](SyncJob& job) {
          jobs.SetProgress(jobs.IndexOf(job), {11, 22});
          return restored;
        });
  }

  // Of all jobs, each with a blank behind.
  std::string Names() {
    std::string names;
    for (const SyncJob* job : jobs.LiveJobs()) names += NameOf(*job) + " ";
    return names;
  }

  std::string Messages() const {
    std::string all;
    for (const auto& entry : log.Entries()) all += entry.text.substr(18) + "\n";
    return all;
  }

  FileSystem& files;
  std::filesystem::path path;
  HandClock clock;
  Settings settings;
  MessageLog log{files, path, clock, settings};
  JobList jobs;
  JobCatalogue catalogue{files, path, jobs, log};
  JobState restored = JobState::Stopped;
  std::string error;
};

struct JobCatalogueTest : ::testing::Test {
  TempFolder folder;
  Program program{folder};
};

TEST_F(JobCatalogueTest, FilesHoldWhatTheyShould) {
  JobConfig& job = program.Add("J1");
  job.description = "two\n <lines>";
  job.sync_interval = 15;
  job.has_runned = true;
  job.src_database_name = "SRC";
  job.des_database_name = "DES";
  job.source = {"SRC", "scott", "tiger", false};
  job.schemas["B"];
  JobTable table{.name = "EMP", .desowner = "X", .beginrows = 1, .rows = -2, .totalsynced = 3};
  table.RecordsBlocked = 4;
  table.synced = 5;
  table.includeflag = false;
  job.schemas["A"].Append(table);
  program.Add("J2");
  ASSERT_TRUE(program.catalogue.SaveAll(program.error)) << program.error;
  EXPECT_EQ(folder.ReadFlat("jobs/jobs.xml"),
            "<job><name>J1</name><database_type>ORACLE</database_type><description>two"
            "\\ \\<lines\\></description><sync_interval>15</sync_interval>"
            "<src_database_name>SRC</src_database_name><des_database_name>DES</des_database_name>"
            "<has_runned>true</has_runned></job>"
            "<job><name>J2</name><database_type>ORACLE</database_type>"
            "<sync_interval>0</sync_interval><has_runned>false</has_runned></job>");
  EXPECT_EQ(folder.ReadFlat("jobs/J1/J1.xml"),
            "<schema><schema_name>A</schema_name><table_list><name>EMP</name><desowner>X</desowner>"
            "<beginrows>1</beginrows><rows>-2</rows><totalsynced>3</totalsynced><RecordsBlocked>4"
            "</RecordsBlocked><synced>5</synced><includeflag>false</includeflag></table_list>"
            "</schema><schema><schema_name>B</schema_name></schema>");
  EXPECT_EQ(folder.Read("jobs/J2/J2.xml"), "") << "no owners: an empty file";

  Program restarted(folder);
  restarted.restored = JobState::Paused;
  restarted.Load();
  EXPECT_EQ(restarted.Names(), "J1 J2 ");
  EXPECT_EQ(restarted.Messages(), "");
  JobList::Progress progress;
  EXPECT_EQ(restarted.jobs.State(0, &progress), JobState::Paused);
  EXPECT_EQ(progress.batch_remaining, 22u);
  const JobConfig& read = restarted.Job(0);
  EXPECT_EQ(read.source.password, "tiger");
  EXPECT_TRUE(read.source.sysdba);
  EXPECT_EQ(read.destination.user_id, "") << "an unregistered data source";
  EXPECT_EQ(read.error_log_path, (folder / "jobs/J1/error.log").string());
  EXPECT_TRUE(read.table_list_fetched);
  EXPECT_FALSE(restarted.Job(1).table_list_fetched);
  // All the rest has come back if it is written again as it was.
  const std::string list = folder.Read("jobs/jobs.xml"), own = folder.Read("jobs/J1/J1.xml");
  std::filesystem::remove(folder / "jobs/jobs.xml");
  ++restarted.Job(0).tables_revision;
  ASSERT_TRUE(restarted.catalogue.SaveAll(restarted.error));
  EXPECT_EQ(folder.Read("jobs/jobs.xml"), list);
  EXPECT_EQ(folder.Read("jobs/J1/J1.xml"), own);
}

TEST_F(JobCatalogueTest, ASaveWritesWhatChanged) {
  const auto touch = [&] {
    for (const char* file : {"jobs/a/a.xml", "jobs/b/b.xml", "jobs/jobs.xml"}) {
      if (folder.Exists(file)) folder.Write(file, "untouched");
    }
  };
  for (const char* name : {"a", "b"}) program.Add(name).schemas["S"];
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  const std::string list = folder.Read("jobs/jobs.xml"), own = folder.Read("jobs/b/b.xml");
  touch();
  ++program.Job(1).tables_revision;
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/a/a.xml") + folder.Read("jobs/jobs.xml"), "untoucheduntouched");
  EXPECT_EQ(folder.Read("jobs/b/b.xml"), own);
  std::filesystem::remove(folder / "jobs/jobs.xml");
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/jobs.xml"), list) << "a list that is gone is written again";
  folder.Write("jobs/a/a.xml", own);
  Program restarted(folder);
  restarted.Load();
  touch();
  ASSERT_TRUE(restarted.catalogue.SaveAll(restarted.error));
  EXPECT_EQ(folder.Read("jobs/b/b.xml"), "untouched") << "as it was read";

  program.Job(0).save_mark = true;
  ++program.Job(1).tables_revision;
  ASSERT_TRUE(program.catalogue.SaveMarked(program.error));
  EXPECT_EQ(folder.Read("jobs/jobs.xml"), list.substr(0, list.size() / 2)) << "the marked only";
  EXPECT_EQ(folder.Read("jobs/b/b.xml"), "untouched");
  program.Job(0).save_mark = false;
  ASSERT_TRUE(program.catalogue.SaveMarked(program.error));
  EXPECT_EQ(folder.Read("jobs/jobs.xml"), "");
}

TEST(JobCatalogue, WhatIsCountedDuringASaveIsWrittenByTheNext) {
  MemoryFiles disk;
  WatchedFiles files(disk);
  Program program(files, "/work");
  JobConfig& job = program.Add("a");
  JobTable& table = job.schemas["S"].Append({.name = "T"});
  files.on_operation = [&](const testing::FileOperation& operation) {
    const bool own_file = operation.path.find("a.xml") != std::string::npos;
    if (operation.what == "append" && own_file && table.totalsynced == 0) {
      table.totalsynced = 7;
      ++job.tables_revision;
    }
    return FileStatus();
  };
  for (const bool counted : {false, true}) {
    ASSERT_TRUE(program.catalogue.SaveAll(program.error)) << program.error;
    const std::string own = disk.Content("/work/jobs/a/a.xml");
    EXPECT_EQ(own.find("<totalsynced>7<") != std::string::npos, counted) << own;
  }
}

TEST_F(JobCatalogueTest, ReadsOddValues) {
  folder.Write("jobs/jobs.xml",
               "<job><name>a</name><has_runned>TRUE</has_runned>"
               "<sync_interval>99999999999</sync_interval></job>");
  folder.Write("jobs/a/a.xml",
               "<schema><schema_name>S</schema_name>"
               "<table_list><rows>x</rows><name>T1</name><includeflag>FALSE</includeflag>"
               "<name>second</name></table_list><table_list><name>T2</name></table_list></schema>\n"
               "<schema><table_list><name>T3</name></table_list><schema_name>S</schema_name>"
               "</schema>\n");
  program.restored = static_cast<JobState>(77);
  program.Load();
  const JobConfig& job = program.Job(0);
  EXPECT_FALSE(job.has_runned);
  EXPECT_EQ(job.sync_interval, INT32_MAX);
  EXPECT_EQ(program.jobs.State(0), JobState::Stopped) << "no state";
  EXPECT_NE(program.Messages().find("a has no valid run state"), std::string::npos);
  const JobSchema& schema = job.schemas.at("S");
  ASSERT_NE(schema.Find("T1"), nullptr) << "the first name counts, wherever it stands";
  EXPECT_TRUE(schema.Find("T1")->includeflag);
  EXPECT_TRUE(schema.Find("T2")->includeflag);
  EXPECT_NE(schema.Find("T3"), nullptr) << "an owner that stands there twice keeps all tables";
}

TEST_F(JobCatalogueTest, AnUnreadableListIsKept) {
  const std::string broken = "<job>\n<name>a</name>\n";
  program.Load();
  EXPECT_FALSE(folder.Exists("ravelkin.log")) << "no list at all is an empty catalogue";
  folder.Write("jobs/jobs.xml", broken);
  program.Load();
  EXPECT_TRUE(program.Names().empty());
  EXPECT_EQ(program.Messages(), "");
  EXPECT_NE(folder.Read("ravelkin.log").find("jobs.xml: Unexpected EOF"), std::string::npos);
  program.Add("new");
  ASSERT_TRUE(program.catalogue.SaveAll(program.error)) << program.error;
  EXPECT_EQ(folder.Read("jobs/jobs.xml.bad"), broken);
  program.Job(0).description = "changed";
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/jobs.xml.bad"), broken) << "only before the first save";
}

TEST_F(JobCatalogueTest, AnUnreadableOwnFileIsLeftAloneUntilARefresh) {
  folder.Write("jobs/jobs.xml", "<job><name>a</name></job>\n<job><name>b</name></job>");
  folder.Write("jobs/a/a.xml", "<schema>\n");
  program.Load();
  const auto failed = [&](const char* file) {
    return "open" + (folder / file).string() + " failed, please refresh contents when connected.\n";
  };
  EXPECT_EQ(program.Messages(), failed("jobs/a/a.xml") + failed("jobs/b/b.xml"));
  EXPECT_FALSE(program.Job(0).table_list_fetched);
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/a/a.xml"), "<schema>\n");
  EXPECT_FALSE(folder.Exists("jobs/b/b.xml"));
  program.Job(0).schemas["S"];
  ++program.Job(0).tables_revision;
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/a/a.xml.bad"), "<schema>\n");
  EXPECT_NE(folder.Read("jobs/a/a.xml").find("schema_name"), std::string::npos);
}

TEST_F(JobCatalogueTest, JobsThatCannotBeAreLeftOutAndKept) {
  std::string list;
  for (const char* name : {"a", "A", "../evil", "nul", "", "jobs.xml", "b"}) {
    list += std::string("<job>\n<name>") + name + "</name>\n</job>\n";
  }
  folder.Write("jobs/jobs.xml", list);
  folder.Write("jobs/a/a.xml", "");
  folder.Write("jobs/b/b.xml", "");
  program.Load();
  EXPECT_EQ(program.Names(), "a b ");
  for (const char* name : {"\"A\"", "\"../evil\"", "\"nul\"", "\"\"", "\"jobs.xml\""}) {
    EXPECT_NE(program.Messages().find(std::string("Job ") + name), std::string::npos) << name;
  }
  ASSERT_TRUE(program.catalogue.SaveAll(program.error)) << program.error;
  EXPECT_EQ(folder.Read("jobs/jobs.xml.bad"), list);
  EXPECT_EQ(folder.Read("jobs/jobs.xml").find("evil"), std::string::npos);
}

TEST_F(JobCatalogueTest, FailuresNameTheFileAndAreTriedAgain) {
  folder.Write("jobs/a/a.xml/inside", "x");
  program.Add("a").schemas["S"];
  program.Add("b").schemas["S"];
  EXPECT_FALSE(program.catalogue.SaveAll(program.error));
  EXPECT_NE(program.error.find("a.xml"), std::string::npos) << program.error;
  EXPECT_NE(folder.Read("jobs/b/b.xml"), "(none)") << "the others are saved all the same";
  std::filesystem::remove_all(folder / "jobs/a/a.xml");
  EXPECT_TRUE(program.catalogue.SaveAll(program.error)) << program.error;
  EXPECT_NE(folder.Read("jobs/a/a.xml"), "(none)");
}

TEST_F(JobCatalogueTest, RefusesNames) {
  program.Add("Orders");
  const std::tuple<const char*, std::size_t, bool> cases[] = {
      {"oRDERS", JobList::kNotFound, false},
      {"oRDERS", 0, true},
      {"Orders2", JobList::kNotFound, true},
      {"JOBS.xml.bad", JobList::kNotFound, false},
      {"a/b", JobList::kNotFound, false}};
  for (const auto& [name, index, accepted] : cases) {
    EXPECT_EQ(program.catalogue.WhyNameRefused(name, index).empty(), accepted) << name;
  }
}

TEST_F(JobCatalogueTest, RenamesFolderFileAndList) {
  program.Add("old").schemas["S"];
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  folder.Write("jobs/old/block.dat", "record");
  ASSERT_TRUE(program.catalogue.Rename(0, "new", program.error)) << program.error;
  EXPECT_EQ(folder.List("jobs"), (Files{"jobs.xml", "new"}));
  EXPECT_EQ(folder.List("jobs/new"), (Files{"block.dat", "new.xml"}));
  EXPECT_NE(folder.Read("jobs/jobs.xml").find("<name>new"), std::string::npos);

  folder.Write("jobs/taken/error.log", "of another job");
  EXPECT_FALSE(program.catalogue.Rename(0, "taken", program.error));
  EXPECT_NE(program.error.find("taken"), std::string::npos);
  EXPECT_FALSE(program.catalogue.Rename(0, "a/b", program.error));
  std::filesystem::remove(folder / "jobs/jobs.xml");
  folder.Write("jobs/jobs.xml/inside", "the list can not be written");
  EXPECT_FALSE(program.catalogue.Rename(0, "newer", program.error));
  EXPECT_EQ(program.Job(0).name, "new") << "everything stays";
  EXPECT_EQ(folder.List("jobs/new"), (Files{"block.dat", "new.xml"}));
}

TEST_F(JobCatalogueTest, RemovesAJobsFiles) {
  program.Add("a").schemas["S"];
  program.Add("b").schemas["S"];
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  for (const char* file : {"block.dat", "commit.dat", "sqlcmds.txt", "a.xml.bad"}) {
    folder.Write(std::string("jobs/a/") + file, "x");
  }
  folder.Write("jobs/b/error.log", "kept");
  ASSERT_TRUE(program.catalogue.Remove(0, program.error)) << program.error;
  ASSERT_TRUE(program.catalogue.Remove(1, program.error)) << program.error;
  EXPECT_TRUE(program.Names().empty());
  EXPECT_FALSE(folder.Exists("jobs/a"));
  EXPECT_EQ(folder.List("jobs/b"), Files{"error.log"});
}

TEST_F(JobCatalogueTest, LongDescriptionsDoNotBreakTheList) {
  program.Add("a").description = std::string(9000, '<');
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  Program restarted(folder);
  restarted.Load();
  ASSERT_EQ(restarted.Names(), "a ");
  EXPECT_EQ(std::ranges::count(restarted.Job(0).description, '<'), 9000);
}

TEST_F(JobCatalogueTest, ASaveSeesAJobBeforeOrAfterAnEdit) {
  JobConfig& job = program.Add("busy");
  job.schemas["S"].Append({.name = "T"});
  std::atomic<bool> done{false};
  int round = 0;
  std::thread editor([&] {
    for (; !done || round == 0; ++round) {
      {
        const MutexLock lock(program.jobs.At(0).config_mutex);
        job.description = std::string(200, static_cast<char>('a' + round % 26));
        job.schemas.clear();
        for (int i = 0; i <= round % 7; ++i) {
          job.schemas["S"].Append({.name = "T" + std::to_string(i), .rows = round});
        }
        ++job.tables_revision;
      }
      program.jobs.SetState(0, round % 2 == 0 ? JobState::Started : JobState::Paused);
    }
  });
  std::thread second_saver([&] {
    std::string reason;
    while (!done) EXPECT_TRUE(program.catalogue.SaveAll(reason)) << reason;
  });
  std::string error;
  for (int saves = 0; saves < 100; ++saves) {
    EXPECT_TRUE(program.catalogue.SaveAll(error)) << error;
    XmlDocument list, own;
    EXPECT_TRUE(list.Load(folder.Files(), folder / "jobs/jobs.xml")) << list.Message();
    const std::string_view text = list.Root().Child("job")->ChildValue("description");
    EXPECT_EQ(text.find_first_not_of(text.substr(0, 1)), std::string_view::npos) << text;
    EXPECT_TRUE(own.Load(folder.Files(), folder / "jobs/busy/busy.xml")) << own.Message();
    std::vector<const XmlNode*> tables;
    own.Root().Child("schema")->Children("table_list", tables);
    for (const XmlNode* table : tables) {
      EXPECT_EQ(table->ChildNumber("rows") % 7 + 1, static_cast<int>(tables.size()));
    }
  }
  done = true;
  editor.join();
  second_saver.join();
  ASSERT_TRUE(program.catalogue.SaveAll(error));
  EXPECT_NE(folder.Read("jobs/busy/busy.xml").find("<rows>" + std::to_string(round - 1)),
            std::string::npos);
}

}  // namespace
}  // namespace quillmere
