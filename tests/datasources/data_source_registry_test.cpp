// SPDX-License-Identifier: MIT
#include "datasources/data_source_registry.h"
#include "support/hand_clock.h"
#include "support/temp_folder.h"

#include <sys/stat.h>

namespace quillmere {
namespace {

// A program's registry on a working folder; a second one on the same folder is its restart.
struct Program {
  explicit Program(const TempFolder& folder) : files(folder.Files()), path(folder.Path()) {}

  DataSource& Add(std::string_view name) {
    DataSource source;
    source.name = name;
    source.user_id = "scott";
    source.password = "tiger";
    return registry.At(registry.Add(std::move(source)));
  }

  // Of all data sources, each with a blank behind.
  std::string Names() const {
    std::string names;
    for (std::size_t i = 0; i < registry.Count(); ++i) {
      if (registry.At(i).state != ConnectionState::Empty) names += registry.At(i).name + " ";
    }
    return names;
  }

  std::string Messages() const {
    std::string all;
    for (const auto& entry : log.Entries()) {
      all += (entry.error ? "E " : "I ") + entry.text.substr(18) + "\n";
    }
    return all;
  }

  FileSystem& files;
  std::filesystem::path path;
  HandClock clock;
  Settings settings;
  MessageLog log{files, path, clock, settings};
  DataSourceRegistry registry{files, path, log, settings};
  std::string error;
};

struct DataSourceRegistryTest : testing::Test {
  TempFolder folder;
  Program program{folder};
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
  ASSERT_TRUE(program.registry.Save(program.error)) << program.error;
  EXPECT_EQ(folder.ReadFlat("config/database.xml"),
            "<database><dbname>ORCL</dbname></database>"
            "<database><dbname>EMPTY</dbname></database>");
  const std::string before_state =
      "<database><dbtype>ORACLE</dbtype><name>ORCL</name><version>19.3</version><dbstatus>";
  const std::string after_state =
      "</dbstatus><needsave>false</needsave><login><userid>scott</userid><password>"
      "ECAA0FDBD7A31783A76C7E791EDA4D00A76C7E791EDA4D00A76C7E791EDA4D00</password>"
      "<mode>SYSDBA</mode></login><schema><primarykey><tableowner>S</tableowner>"
      "<tablename>EMP</tablename><keyname>PK</keyname><status>ENABLED</status></primarykey>"
      "<index><tableowner>S</tableowner><tablename>EMP</tablename><indexowner>S2</indexowner>"
      "<indexname>IX</indexname><type>NORMAL</type><status>VALID</status><level>-1</level></index>"
      "<tables><tableowner>S</tableowner><tablename>EMP</tablename><tablespace>USERS</tablespace>"
      "<type>TABLE</type><rows>14</rows></tables></schema></database>";
  EXPECT_EQ(folder.ReadFlat("config/ORCL.xml"), before_state + "2" + after_state);
  struct stat status {};
  ASSERT_EQ(stat((folder / "config/ORCL.xml").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);

  Program restarted(folder);
  restarted.registry.Load();
  ASSERT_EQ(restarted.Names(), "ORCL EMPTY ");
  EXPECT_EQ(restarted.Messages() + program.Messages(), "");
  DataSource& read = restarted.registry.At(0);
  EXPECT_EQ(read.state, ConnectionState::Disconnected);
  EXPECT_EQ(read.description, "");
  EXPECT_EQ(read.password, "tiger");
  EXPECT_EQ(restarted.registry.At(1).password, "");
  // All the rest has come back if it is written again as it was.
  EXPECT_FALSE(read.needsave);
  read.needsave = true;
  ASSERT_TRUE(restarted.registry.Save(restarted.error));
  EXPECT_EQ(folder.ReadFlat("config/ORCL.xml"), before_state + "3" + after_state);
}

TEST_F(DataSourceRegistryTest, SavesOnlyWhatNeedsIt) {
  program.settings.registry_messages = true;
  program.Add("A");
  program.Add("B");
  ASSERT_TRUE(program.registry.Save(program.error));
  EXPECT_EQ(program.Messages(), "I A need save before save.\nI B need save before save.\n");
  for (const char* file : {"config/A.xml", "config/B.xml", "config/database.xml"}) {
    folder.Write(file, "untouched");
  }
  program.registry.At(1).needsave = true;
  ASSERT_TRUE(program.registry.Save(program.error));
  EXPECT_EQ(folder.Read("config/A.xml"), "untouched");
  EXPECT_NE(folder.Read("config/B.xml"), "untouched");
  EXPECT_NE(folder.Read("config/database.xml"), "untouched") << "the list is always written";
}

TEST_F(DataSourceRegistryTest, ReadsOddValues) {
  const std::tuple<const char*, ConnectionState, const char*> cases[] = {
      {"<dbstatus>1</dbstatus>", ConnectionState::Registered, ""},
      {"<dbstatus>0</dbstatus>", ConnectionState::Disconnected, ""},
      {"<dbstatus>-7</dbstatus>", ConnectionState::Disconnected, ""},
      {"<dbstatus>on</dbstatus>", ConnectionState::Disconnected, ""},
      {"<login><password>ecaa0fdbd7a31783a76c7e791eda4d00a76c7e791eda4d00a76c7e791eda4d00"
       "</password></login>",
       ConnectionState::Disconnected, "tiger"}};
  folder.Write("config/database.xml", "<database><dbname>A</dbname></database>");
  for (const auto& [inside, state, password] : cases) {
    folder.Write("config/A.xml",
                 "<database><name>other</name><description>by hand</description><schema>"
                 "<primarykey><keyname>K</keyname></primarykey></schema>" +
                     std::string(inside) + "</database>");
    program.registry.Load();
    ASSERT_EQ(program.Names(), "A ") << inside;
    const DataSource& source = program.registry.At(0);
    EXPECT_EQ(source.state, state) << inside;
    EXPECT_EQ(source.password, password) << inside;
    EXPECT_EQ(source.description + source.Mode(), "by handNORMAL");
    EXPECT_EQ(source.primary_keys.at(0).status, "undef");
  }
}

TEST_F(DataSourceRegistryTest, AListThatCannotBeReadIsReportedAndKept) {
  program.registry.Load();
  EXPECT_EQ(program.Messages(), "E Can't not open database.xml\n") << "a missing list";
  folder.Write("config/database.xml", "<database>\n");
  program.registry.Load();
  EXPECT_EQ(program.Messages(), "E Can't not open database.xml\nE Can't not open database.xml\n");
  program.Add("A");
  ASSERT_TRUE(program.registry.Save(program.error)) << program.error;
  EXPECT_EQ(folder.Read("config/database.xml.bad"), "<database>\n");
  EXPECT_NE(folder.Read("config/database.xml").find("<dbname>A"), std::string::npos);
}

TEST_F(DataSourceRegistryTest, WhatIsLeftOutStaysListed) {
  std::string list;
  for (const char* name :
       {"GOOD", "gone", "broken", "hollow", "../evil", "GOOD", "good", "database", ""}) {
    list += std::string("<database><dbname>") + name + "</dbname></database>\n";
  }
  const char* const whole = "<database><dbtype>ORACLE</dbtype></database>";
  folder.Write("config/database.xml", list);
  folder.Write("config/GOOD.xml", whole);
  folder.Write("config/good.xml", whole);
  folder.Write("config/broken.xml", "<database>\n");
  folder.Write("config/hollow.xml", "");
  folder.Write("evil.xml", whole);
  program.registry.Load();
  EXPECT_EQ(program.Names(), "GOOD ");
  const std::string messages = program.Messages();
  for (const char* name : {"gone", "broken", "hollow"}) {
    EXPECT_NE(messages.find("E open" + (folder / "config" / name).string() + ".xml failed\n"),
              std::string::npos)
        << name << "\n"
        << messages;
  }
  for (const char* name : {"../evil", "GOOD", "good", "database", ""}) {
    EXPECT_NE(messages.find(std::string("E Data source \"") + name + "\" in "), std::string::npos);
  }

  // The broken one is entered again; the others stay listed, and nothing is lost.
  EXPECT_EQ(program.registry.WhyNameRefused("broken"), "");
  EXPECT_NE(program.registry.WhyNameRefused("Hollow"), "");
  program.Add("broken");
  ASSERT_TRUE(program.registry.Save(program.error)) << program.error;
  EXPECT_EQ(folder.Read("config/broken.xml.bad"), "<database>\n");
  std::string names;
  for (const char* name : {"GOOD", "broken", "gone", "hollow", "../evil", "good", "database"}) {
    names += std::string("<database><dbname>") + name + "</dbname></database>";
  }
  EXPECT_EQ(folder.ReadFlat("config/database.xml"), names);
  EXPECT_EQ(folder.Read("config/hollow.xml"), "");
}

TEST_F(DataSourceRegistryTest, RefusesNames) {
  program.Add("ORCL");
  EXPECT_EQ(program.registry.WhyNameRefused("ORCL"), "Database already exist, user another please");
  for (const char* name : {"", "orcl", "a/b", "..", "DATABASE", "Settings", "nul"}) {
    EXPECT_NE(program.registry.WhyNameRefused(name), "") << name;
  }
  EXPECT_EQ(program.registry.WhyNameRefused("ORCL2"), "");
  for (int i = 1; i < 20; ++i) program.Add("DS" + std::to_string(i));
  EXPECT_NE(program.registry.WhyNameRefused("ORCL2"), "") << "twenty are the most";
  ASSERT_TRUE(program.registry.Remove(7, program.error));
  EXPECT_EQ(program.registry.WhyNameRefused("ORCL2"), "");
}

TEST_F(DataSourceRegistryTest, RemovingTakesThePasswordAlong) {
  program.Add("A");
  program.Add("B");
  ASSERT_TRUE(program.registry.Save(program.error));
  folder.Write("config/A.xml.bad", "old password");
  folder.Write("config/A.xml.tmp-1-1", "password left by a crash");
  ASSERT_TRUE(program.registry.Remove(0, program.error)) << program.error;
  ASSERT_TRUE(program.registry.Save(program.error));
  EXPECT_EQ(folder.List("config"), (std::vector<std::string>{"B.xml", "database.xml"}));
  EXPECT_EQ(folder.Read("config/database.xml").find("<dbname>A"), std::string::npos);
  EXPECT_EQ(program.registry.IndexOf("B"), 1) << "indices stay";
  EXPECT_EQ(program.registry.IndexOf("A"), -1);
  EXPECT_EQ(program.registry.IndexOf(""), -1) << "an empty slot has no name";
  EXPECT_EQ(program.registry.CountInUse(), 1u);
  program.Add("C");
  EXPECT_EQ(program.registry.IndexOf("C"), 0) << "the first free slot";

  std::filesystem::remove(folder / "config/B.xml");
  folder.Write("config/B.xml/inside", "can not be removed");
  EXPECT_FALSE(program.registry.Remove(1, program.error));
  EXPECT_NE(program.error.find("B.xml"), std::string::npos);
  EXPECT_EQ(program.registry.IndexOf("B"), 1) << "it stays";
}

TEST_F(DataSourceRegistryTest, FailuresKeepTheFlag) {
  folder.Write("config/A.xml/inside", "a folder in the file's place");
  program.Add("A");
  program.Add("B");
  program.Add("C").password = std::string(32, 'p');
  EXPECT_FALSE(program.registry.Save(program.error));
  EXPECT_NE(program.error.find("A.xml"), std::string::npos)
      << "the first reason: " << program.error;
  EXPECT_TRUE(program.registry.At(0).needsave);
  EXPECT_FALSE(program.registry.At(1).needsave) << "the others are saved all the same";
  EXPECT_TRUE(program.registry.At(2).needsave) << "a password that would be cut";
  EXPECT_FALSE(folder.Exists("config/C.xml"));
}

}  // namespace
}  // namespace quillmere
