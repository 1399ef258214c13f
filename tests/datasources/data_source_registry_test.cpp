// SPDX-License-Identifier: MIT
#include "datasources/data_source_registry.h"

#include <gtest/gtest.h>

#include "support/account.h"
#include "support/hand_clock.h"

namespace quillmere {
namespace {

// A program's registry in /work; a second one on the same files is its restart.
struct Program {
  explicit Program(FileSystem& disk) : files(disk) {}

  DataSource& Add(std::string_view name) {
    DataSource source;
    source.name = name;
    source.user_id = "scott";
    source.password = "tiger";
    return registry.At(registry.Add(std::move(source)));
  }

  FileSystem& files;
  HandClock clock;
  Settings settings;
  MessageLog log{files, "/work", clock, settings};
  DataSourceRegistry registry{files, "/work", log, settings};
  std::string error;
};

class DataSourceRegistryTest : public AccountTest {
 protected:
  void Tell(const std::string& what, Program& of) {
    account << "= " << what << "\n";
    if (!of.error.empty()) account << "error: " << std::exchange(of.error, {}) << "\n";
    for (std::size_t i = 0; i < of.registry.Count(); ++i) {
      const DataSource& source = of.registry.At(i);
      if (source.state == ConnectionState::Empty) continue;
      account << source.name << ", state " << static_cast<int>(source.state) << ", "
              << source.password << " " << source.Mode() << " " << source.description
              << (source.needsave ? ", to be saved\n" : "\n");
    }
    TellFiles();
  }
  void Save(const std::string& what, Program& of) {
    of.registry.Save(of.error);
    Tell(what, of);
  }
  void Save(const std::string& what) { Save(what, program); }
  void Load(const std::string& what) {
    program.registry.Load();
    Tell(what, program);
  }
  void Remove(std::size_t index, const std::string& what) {
    program.registry.Remove(index, program.error);
    Tell(what, program);
  }
  Program program{files};
};

TEST_F(DataSourceRegistryTest, FilesHoldWhatTheyShould) {
  DataSource& source = program.Add("ORCL");
  source.state = ConnectionState::Connected;
  source.version = "19.3";
  source.description = "never written";
  source.sysdba = true;
  source.primary_keys.push_back({"S", "EMP", "PK", "ENABLED"});
  source.indexes.push_back({"S", "EMP", "S2", "IX", "NORMAL", "VALID", -1});
  source.tables.push_back({"S", "EMP", "USERS", "TABLE", 14});
  program.Add("EMPTY").password.clear();
  Save("saved");
  FileFacts facts;
  ASSERT_TRUE(files.Look("/work/config/ORCL.xml", facts));
  EXPECT_EQ(facts.mode, FileSystem::kOwnerOnly);
  Program restarted(files);
  restarted.registry.Load();
  Tell("read", restarted);
  restarted.registry.At(0).needsave = true;
  Save("and written, as it was but for the state", restarted);
}

TEST_F(DataSourceRegistryTest, SavesOnlyWhatNeedsIt) {
  program.settings.registry_messages = true;
  program.Add("A");
  program.Add("B");
  Save("both are new");
  program.registry.At(1).needsave = true;
  Save("B, and the list always");
  for (const char* name : {"C", "D", "E"}) program.Add(name);
  program.registry.At(3).password = std::string(32, 'p');
  Refuse("append", "C.xml");
  Save("C is refused, D has a password that would be cut, E is saved all the same");
}

TEST_F(DataSourceRegistryTest, ReadsOddValues) {
  files.Put("/work/config/database.xml", "<database><dbname>A</dbname></database>");
  for (const std::string inside :
       {"<dbstatus>1</dbstatus>", "<dbstatus>0</dbstatus>", "<dbstatus>-7</dbstatus>",
        "<dbstatus>on</dbstatus>",
        "<login><password>ecaa0fdbd7a31783a76c7e791eda4d00a76c7e791eda4d00a76c7e791eda4d00"
        "</password></login>"}) {
    files.Put("/work/config/A.xml",
              "<database><name>other</name><description>by hand</description><schema><primarykey>"
              "<keyname>K</keyname></primarykey></schema>" +
                  inside + "</database>");
    Load("read");
    EXPECT_EQ(program.registry.At(0).primary_keys.at(0).status, "undef");
  }
}

TEST_F(DataSourceRegistryTest, AListThatCanNotBeReadIsReportedAndKept) {
  Load("missing");
  files.Put("/work/config/database.xml", "<database>\n");
  Load("broken");
  program.Add("A");
  Save("saved over it");
  Refuse("open", "database.xml");
  Load("not readable");
  Refuse();
  program.Add("B");
  Save("not saved over it");
}

TEST_F(DataSourceRegistryTest, WhatIsLeftOutStaysListed) {
  std::string list;
  for (const std::string name :
       {"GOOD", "gone", "broken", "hollow", "../evil", "GOOD", "good", "database", ""}) {
    list += "<database><dbname>" + name + "</dbname></database>\n";
  }
  const std::string whole = "<database><dbtype>ORACLE</dbtype></database>";
  files.Put("/work/config/database.xml", list);
  for (const char* name : {"config/GOOD", "config/good", "evil"}) {
    files.Put("/work/" + std::string(name) + ".xml", whole);
  }
  files.Put("/work/config/broken.xml", "<database>\n");
  files.Put("/work/config/hollow.xml", "");
  Load("read");
  EXPECT_EQ(program.registry.WhyNameRefused("broken"), "");
  EXPECT_NE(program.registry.WhyNameRefused("Hollow"), "");
  program.Add("broken");
  Save("the broken one is entered again; the others stay listed, and nothing is lost");
}

TEST_F(DataSourceRegistryTest, RefusesNames) {
  program.Add("ORCL");
  for (const char* name : {"ORCL", "", "orcl", "a/b", "..", "DATABASE", "Settings", "nul", "OR"}) {
    account << name << ": " << program.registry.WhyNameRefused(name) << "\n";
  }
  for (int i = 1; i < 20; ++i) program.Add("DS" + std::to_string(i));
  EXPECT_NE(program.registry.WhyNameRefused("ORCL2"), "") << "twenty are the most";
  ASSERT_TRUE(program.registry.Remove(7, program.error));
  EXPECT_EQ(program.registry.WhyNameRefused("ORCL2"), "");
}

TEST_F(DataSourceRegistryTest, RemovingTakesThePasswordAlong) {
  program.Add("A");
  program.Add("B");
  Save("saved");
  files.Put("/work/config/A.xml.bad", "old password");
  files.Put("/work/config/A.xml.tmp-1-1", "password left by a crash");
  Remove(0, "A removed");
  EXPECT_EQ(program.registry.IndexOf("B"), 1) << "indices stay";
  EXPECT_EQ(program.registry.IndexOf("A"), -1);
  EXPECT_EQ(program.registry.IndexOf(""), -1) << "an empty slot has no name";
  EXPECT_EQ(program.registry.CountInUse(), 1u);
  program.Add("C");
  Save("C in the first free slot");
  Refuse("remove", "B.xml");
  Remove(1, "B can not be removed, and stays");
}

}  // namespace
}  // namespace quillmere
