#include "jobs/job_catalogue.h"

#include <atomic>
#include <thread>

#include "foundation/temp_folder.h"
#include "jobs/job_list.h"

namespace quillmere {
namespace {

class HandClock final : public Clock {
 public:
  LocalTime Now() const override { return LocalTime{1769903947000}; }
};

// A program's jobs on a working folder; a second one on the same folder is its restart.
struct Program {
  explicit Program(const TempFolder& folder) : path(folder.Path()) {}

  SyncJob& Add(std::string_view name) {
    const std::size_t index = jobs.Claim();
    SyncJob& job = jobs.At(index);
    job.name = name;
    job.database_type = "ORACLE";
    jobs.SetState(index, JobState::Stopped);
    return job;
  }

  void Load() {
    catalogue.Load(
        [this](std::string_view name) -> std::optional<JobLogin> {
          if (name != "SRC") return std::nullopt;
          return JobLogin{"scott", "tiger", true};
        },
        [this](SyncJob& job) {
          jobs.SetProgress(jobs.IndexOf(job), {11, 22});
          return restored;
        });
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < jobs.Count(); ++i) {
      if (jobs.State(i) != JobState::Empty) names.push_back(jobs.At(i).name);
    }
    return names;
  }

  std::string Messages() const {
    std::string all;
    for (const auto& entry : log.Entries()) all += entry.text.substr(18) + "\n";
    return all;
  }

  std::filesystem::path path;
  HandClock clock;
  Settings settings;
  MessageLog log{path, clock, settings};
  JobList jobs;
  JobCatalogue catalogue{path, jobs, log};
  JobState restored = JobState::Stopped;
  std::string error;
};

struct JobCatalogueTest : testing::Test {
  TempFolder folder;
  Program program{folder};
};

TEST_F(JobCatalogueTest, FilesHoldWhatTheyShould) {
  SyncJob& job = program.Add("J1");
  job.description = "two\n <lines>";
  job.sync_interval = 15;
  job.has_runned = true;
  job.src_database_name = "SRC";
  job.des_database_name = "DES";
  job.source = {"scott", "tiger", false};
  job.schemas["B"];
  JobTable table{.name = "EMP", .desowner = "X", .beginrows = 1, .rows = -2};
  table.totalsynced = 3;
  table.RecordsBlocked = 4;
  table.synced = 5;
  table.includeflag = false;
  job.schemas["A"].Append(table);
  program.Add("J2");
  ASSERT_TRUE(program.catalogue.SaveAll(program.error)) << program.error;
  EXPECT_EQ(folder.Read("jobs/jobs.xml"),
            "<job>\n"
            "   <name>J1</name>\n"
            "   <database_type>ORACLE</database_type>\n"
            "   <description>\n"
            "      two\n"
            "      \\ \\<lines\\>\n"
            "   </description>\n"
            "   <sync_interval>15</sync_interval>\n"
            "   <src_database_name>SRC</src_database_name>\n"
            "   <des_database_name>DES</des_database_name>\n"
            "   <has_runned>true</has_runned>\n"
            "</job>\n"
            "<job>\n"
            "   <name>J2</name>\n"
            "   <database_type>ORACLE</database_type>\n"
            "   <sync_interval>0</sync_interval>\n"
            "   <has_runned>false</has_runned>\n"
            "</job>\n");
  EXPECT_EQ(folder.Read("jobs/J1/J1.xml"),
            "<schema>\n"
            "   <schema_name>A</schema_name>\n"
            "   <table_list>\n"
            "      <name>EMP</name>\n"
            "      <desowner>X</desowner>\n"
            "      <beginrows>1</beginrows>\n"
            "      <rows>-2</rows>\n"
            "      <totalsynced>3</totalsynced>\n"
            "      <RecordsBlocked>4</RecordsBlocked>\n"
            "      <synced>5</synced>\n"
            "      <includeflag>false</includeflag>\n"
            "   </table_list>\n"
            "</schema>\n"
            "<schema>\n"
            "   <schema_name>B</schema_name>\n"
            "</schema>\n");
  EXPECT_EQ(folder.Read("jobs/J2/J2.xml"), "") << "no owners: an empty file";

  Program restarted(folder);
  restarted.restored = JobState::Paused;
  restarted.Load();
  EXPECT_EQ(restarted.Names(), (std::vector<std::string>{"J1", "J2"}));
  EXPECT_EQ(restarted.Messages(), "");
  const SyncJob& read = restarted.jobs.At(0);
  EXPECT_EQ(read.description, "two\n <lines>");
  EXPECT_EQ(read.sync_interval, 15);
  EXPECT_TRUE(read.has_runned);
  EXPECT_EQ(read.source.password, "tiger");
  EXPECT_TRUE(read.source.sysdba);
  EXPECT_EQ(read.destination.user_id, "") << "an unregistered data source";
  EXPECT_EQ(read.des_database_name, "DES");
  EXPECT_EQ(read.error_log_path, (folder / "jobs/J1/error.log").string());
  EXPECT_TRUE(read.table_list_fetched);
  EXPECT_FALSE(restarted.jobs.At(1).table_list_fetched);
  JobList::Progress progress;
  EXPECT_EQ(restarted.jobs.State(0, &progress), JobState::Paused);
  EXPECT_EQ(progress.batch_remaining, 22u);
  const JobTable* emp = read.schemas.at("A").Find("EMP");
  ASSERT_NE(emp, nullptr);
  EXPECT_EQ(emp->desowner, "X");
  EXPECT_EQ(emp->rows, -2);
  EXPECT_EQ(emp->totalsynced, 3);
  EXPECT_EQ(emp->RecordsBlocked, 4);
  EXPECT_EQ(emp->synced, 5);
  EXPECT_FALSE(emp->includeflag);
}

TEST_F(JobCatalogueTest, ASaveWritesWhatChanged) {
  program.Add("a").schemas["S"];
  program.Add("b").schemas["S"];
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  for (const char* file : {"jobs/a/a.xml", "jobs/b/b.xml", "jobs/jobs.xml"}) {
    folder.Write(file, "untouched");
  }
  program.jobs.At(1).schemas["S2"];
  program.jobs.At(1).tables_revision.Increment();
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/a/a.xml"), "untouched");
  EXPECT_EQ(folder.Read("jobs/jobs.xml"), "untouched");
  EXPECT_NE(folder.Read("jobs/b/b.xml").find("S2"), std::string::npos);
  std::filesystem::remove(folder / "jobs/jobs.xml");
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_NE(folder.Read("jobs/jobs.xml").find("<name>b"), std::string::npos);
  const std::string list = folder.Read("jobs/jobs.xml");

  Program restarted(folder);
  folder.Write("jobs/b/b.xml", "<schema>\n<schema_name>S</schema_name>\n</schema>\n");
  restarted.Load();
  folder.Write("jobs/b/b.xml", "untouched");
  ASSERT_TRUE(restarted.catalogue.SaveAll(restarted.error));
  EXPECT_EQ(folder.Read("jobs/b/b.xml"), "untouched") << "as it was read";
  EXPECT_EQ(folder.Read("jobs/jobs.xml"), list);
}

TEST_F(JobCatalogueTest, SavesTheMarkedOnly) {
  program.Add("a").save_mark = true;
  program.Add("b");
  ASSERT_TRUE(program.catalogue.SaveMarked(program.error));
  EXPECT_NE(folder.Read("jobs/jobs.xml").find("<name>a"), std::string::npos);
  EXPECT_EQ(folder.Read("jobs/jobs.xml").find("<name>b"), std::string::npos);
  EXPECT_FALSE(folder.Exists("jobs/b"));
  program.jobs.At(0).save_mark = false;
  ASSERT_TRUE(program.catalogue.SaveMarked(program.error));
  EXPECT_EQ(folder.Read("jobs/jobs.xml"), "");
}

TEST_F(JobCatalogueTest, ReadsOddValues) {
  folder.Write("jobs/jobs.xml",
               "<job>\n<name>a</name>\n<has_runned>TRUE</has_runned>\n"
               "<sync_interval>99999999999</sync_interval>\n</job>\n");
  folder.Write("jobs/a/a.xml",
               "<schema>\n<schema_name>S</schema_name>\n"
               "<table_list>\n<rows>x</rows>\n<name>T1</name>\n<includeflag>FALSE</includeflag>\n"
               "<name>second</name>\n</table_list>\n"
               "<table_list>\n<name>T2</name>\n</table_list>\n</schema>\n"
               "<schema>\n<table_list>\n<name>T3</name>\n</table_list>\n"
               "<schema_name>S</schema_name>\n</schema>\n");
  program.restored = static_cast<JobState>(77);
  program.Load();
  const SyncJob& job = program.jobs.At(0);
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
  folder.Write("jobs/jobs.xml", broken);
  program.Load();
  EXPECT_TRUE(program.Names().empty());
  EXPECT_EQ(program.Messages(), "");
  EXPECT_NE(folder.Read("ravelkin.log").find("jobs.xml: Unexpected EOF"), std::string::npos);
  program.Add("new");
  ASSERT_TRUE(program.catalogue.SaveAll(program.error)) << program.error;
  EXPECT_EQ(folder.Read("jobs/jobs.xml.bad"), broken);
  program.jobs.At(0).description = "changed";
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/jobs.xml.bad"), broken) << "only before the first save";
}

TEST_F(JobCatalogueTest, AMissingListIsAnEmptyCatalogue) {
  program.Load();
  EXPECT_EQ(program.Messages(), "");
  EXPECT_FALSE(folder.Exists("ravelkin.log"));
}

TEST_F(JobCatalogueTest, AnUnreadableOwnFileIsLeftAloneUntilARefresh) {
  folder.Write("jobs/jobs.xml", "<job>\n<name>a</name>\n</job>\n<job>\n<name>b</name>\n</job>\n");
  folder.Write("jobs/a/a.xml", "<schema>\n");
  program.Load();
  const auto failed = [&](const char* file) {
    return "open" + (folder / file).string() + " failed, please refresh contents when connected.\n";
  };
  EXPECT_EQ(program.Messages(), failed("jobs/a/a.xml") + failed("jobs/b/b.xml"));
  EXPECT_FALSE(program.jobs.At(0).table_list_fetched);
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  EXPECT_EQ(folder.Read("jobs/a/a.xml"), "<schema>\n");
  EXPECT_FALSE(folder.Exists("jobs/b/b.xml"));
  program.jobs.At(0).schemas["S"];
  program.jobs.At(0).tables_revision.Increment();
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
  for (const char* name : {"a", "b"})
    folder.Write(std::string("jobs/") + name + "/" + name + ".xml", "");
  program.Load();
  EXPECT_EQ(program.Names(), (std::vector<std::string>{"a", "b"}));
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

  TempFolder blocked;
  blocked.Write("jobs", "a file in the folder's place");
  Program other(blocked);
  other.Add("a");
  EXPECT_FALSE(other.catalogue.SaveAll(other.error));
  EXPECT_NE(other.error.find("jobs"), std::string::npos);
}

TEST_F(JobCatalogueTest, RefusesNames) {
  program.Add("Orders");
  EXPECT_NE(program.catalogue.WhyNameRefused("oRDERS", JobList::kNotFound), "");
  EXPECT_EQ(program.catalogue.WhyNameRefused("oRDERS", 0), "") << "its own name in other letters";
  EXPECT_EQ(program.catalogue.WhyNameRefused("Orders2", JobList::kNotFound), "");
  EXPECT_NE(program.catalogue.WhyNameRefused("JOBS.xml.bad", JobList::kNotFound), "");
  EXPECT_NE(program.catalogue.WhyNameRefused("a/b", JobList::kNotFound), "");
}

TEST_F(JobCatalogueTest, RenamesFolderFileAndList) {
  program.Add("old").schemas["S"];
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  folder.Write("jobs/old/block.dat", "record");
  ASSERT_TRUE(program.catalogue.Rename(0, "new", program.error)) << program.error;
  EXPECT_EQ(folder.List("jobs"), (std::vector<std::string>{"jobs.xml", "new"}));
  EXPECT_EQ(folder.List("jobs/new"), (std::vector<std::string>{"block.dat", "new.xml"}));
  EXPECT_NE(folder.Read("jobs/jobs.xml").find("<name>new"), std::string::npos);

  folder.Write("jobs/taken/error.log", "of another job");
  EXPECT_FALSE(program.catalogue.Rename(0, "taken", program.error));
  EXPECT_NE(program.error.find("taken"), std::string::npos);
  EXPECT_FALSE(program.catalogue.Rename(0, "a/b", program.error));
  std::filesystem::remove(folder / "jobs/jobs.xml");
  folder.Write("jobs/jobs.xml/inside", "the list can not be written");
  EXPECT_FALSE(program.catalogue.Rename(0, "newer", program.error));
  EXPECT_EQ(program.jobs.At(0).name, "new") << "everything stays";
  EXPECT_EQ(folder.List("jobs/new"), (std::vector<std::string>{"block.dat", "new.xml"}));
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
  EXPECT_EQ(folder.List("jobs/b"), std::vector<std::string>{"error.log"});
}

TEST_F(JobCatalogueTest, LongDescriptionsDoNotBreakTheList) {
  program.Add("a").description = std::string(9000, '<');
  ASSERT_TRUE(program.catalogue.SaveAll(program.error));
  Program restarted(folder);
  restarted.Load();
  ASSERT_EQ(restarted.Names(), std::vector<std::string>{"a"});
  EXPECT_EQ(std::ranges::count(restarted.jobs.At(0).description, '<'), 9000);
}

TEST_F(JobCatalogueTest, ASaveSeesAJobBeforeOrAfterAnEdit) {
  SyncJob& job = program.Add("busy");
  job.schemas["S"].Append({.name = "T"});
  std::atomic<bool> done{false};
  int round = 0;
  std::thread editor([&] {
    for (; !done || round == 0; ++round) {
      {
        const std::lock_guard<std::mutex> lock(job.config_mutex);
        job.description = std::string(200, static_cast<char>('a' + round % 26));
        job.schemas.clear();
        for (int i = 0; i <= round % 7; ++i) {
          job.schemas["S"].Append({.name = "T" + std::to_string(i), .rows = round});
        }
        job.tables_revision.Increment();
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
    EXPECT_TRUE(list.Load(folder / "jobs/jobs.xml")) << list.Message();
    const std::string_view text = list.Root().Child("job")->ChildValue("description");
    EXPECT_EQ(text.find_first_not_of(text.substr(0, 1)), std::string_view::npos) << text;
    EXPECT_TRUE(own.Load(folder / "jobs/busy/busy.xml")) << own.Message();
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
