// SPDX-License-Identifier: MIT
// A workspace on a scripted client library and files in memory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "support/account.h"
#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/scripted_oci.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"
#include "workspace/source_operations.h"

namespace quillmere {

// Cancels from the given call on; counts them.
struct TestProgress final : InPlace {
  bool OnProgress(std::string_view, std::size_t, std::size_t) override { return ++calls < cancel; }
  int calls = 0;
  int cancel = 1000000;
};

struct ScriptedWorkspace : AccountTest {
  static constexpr const char* kUsers = "from dba_users";
  static constexpr const char* kTables = "from dba_all_tables";

  ScriptedWorkspace() {
    script.Answer(kUsers, {{"SYS"}, {"SHOP"}, {"EMPTY"}});
    script.Answer(kTables, {{"SHOP", "CLIENT", "USERS", "10"}, {"SHOP", "ORDERS", "USERS", "20"}});
    script.Answer("constraint_type='P'", {{"0"}});
    workspace = Open();
  }

  Workspace::Options Options() {
    Workspace::Options options;
    options.folder = "/work";
    options.files = &files;
    options.oci = &api;
    options.clock = &clock;
    options.user = "olga";
    return options;
  }

  std::unique_ptr<Workspace> Open(Workspace::Access access = Workspace::Access::Change) {
    Workspace::Options options = Options();
    options.access = access;
    std::string reason;
    auto opened = Workspace::Open(options, reason);
    EXPECT_NE(opened, nullptr) << reason;
    return opened;
  }

  // As after the program's end and a new start.
  void Restart() {
    workspace.reset();
    workspace = Open();
  }

  void AddSources() {
    for (const char* name : {"A", "B", "C"}) {
      const Outcome added = AddDataSource(*workspace, {name, "scott", "tiger", false}, progress);
      EXPECT_TRUE(added.done) << added.text;
    }
    Forget();
  }

  // What has been told and written so far is as it should be.
  void Forget() {
    TakeMessages();
    files.Remove("/work/error.log");
    ForgetFiles();
  }

  std::size_t NewJob(const std::string& name = "Job1") {
    std::size_t index = JobList::kNotFound;
    const Outcome added = AddJob(*workspace, {name, "text", "A", "B", 5}, index, progress);
    EXPECT_TRUE(added.done) << added.text;
    return index;
  }

  SyncJob& Job(std::size_t index) { return workspace->Jobs().At(index); }
  JobTable* Table(std::size_t index, std::string_view name) {
    return ConfigOf(Job(index)).schemas.find("SHOP")->second.Find(name);
  }

  // The log's lines without their time stamps since the last taking; errors begin with "E".
  std::vector<std::string> TakeMessages() {
    std::vector<std::string> messages;
    const auto& entries = workspace->Log().Entries();
    for (; taken < entries.size(); ++taken) {
      messages.push_back((entries[taken].error ? "E " : "I ") + entries[taken].text.substr(18));
    }
    return messages;
  }

  // A paragraph: what an operation said, the messages, the files that are others now.
  void Tell(const std::string& what, const Outcome& outcome) {
    account << "= " << what << (outcome.done ? ": done " : ": refused ") << outcome.text << "\n";
    for (const std::string& line : TakeMessages()) account << line << "\n";
    files.Remove("/work/error.log");
    TellFiles();
  }

  testing::ScriptedOci script;
  const OciApi api = script.Api();
  HandClock clock;
  std::unique_ptr<Workspace> workspace;
  TestProgress progress;
  std::size_t taken = 0;
};

}  // namespace quillmere
