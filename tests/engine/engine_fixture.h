// SPDX-License-Identifier: MIT
// A program with one job, from SRC to DES every five minutes, on a working folder in memory, a
// scripted client library and a clock that is turned by hand.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "engine/job_runner.h"
#include "support/account.h"
#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/scripted_oci.h"

namespace quillmere {

using testing::MemoryFiles;
using testing::ScriptedOci;

inline const std::string kScnQuery = "from x$ktuxe";
inline const std::string kMembersQuery = "from v$logfile";
inline const std::string kRedoQuery = "from v$logmnr_contents";
inline const std::string kRowAddress = " and ROWID = 'AAABBBAAACCCDDDEEE'";

// As it is mined, and as it is applied.
inline std::string Insert(const std::string& id, const std::string& table = "ORDERS") {
  return "insert into \"SHOP\".\"" + table + "\"(\"ID\") values ('" + id + "');";
}
inline std::string InsertOf(const std::string& id, const std::string& table = "SHOP.ORDERS") {
  return "INSERT INTO " + table + "(\"ID\") values ('" + id + "')";
}

// Writes down what it is told, in order: "i:", "e:" and the text, "fetched".
struct Recorder final : RunnerListener {
  void OnJobChanged(std::size_t, bool fetched) override {
    if (fetched) lines.push_back("fetched");
  }
  void OnError(std::size_t, std::string_view text) override { Note("e:", text); }
  void OnInformation(std::size_t, std::string_view text) override { Note("i:", text); }
  void OnPassEnd(std::size_t, const PassReport& report) override {
    constexpr const char* kOutcomes[] = {"worked off", "interrupted", "failed", "later"};
    constexpr const char* kWhere[] = {"source", "destination", "statement", "disk"};
    const PassProblem& problem = report.problem;
    std::ostringstream text;
    text << "pass " << kOutcomes[static_cast<int>(report.outcome)] << ": +" << report.captured
         << " captured, " << report.applied << " applied, " << report.blocked << " blocked, below "
         << report.reached_scn << " of " << report.source_scn << "\n";
    if (!problem.error.empty()) {
      text << "  " << kWhere[static_cast<int>(problem.where)] << " " << problem.number << "/"
           << problem.of << " " << problem.owner << "." << problem.table << "\n  "
           << problem.statement << "\n  " << problem.error << "\n";
    }
    passes += text.str();
  }
  void Note(std::string_view kind, std::string_view text) {
    lines.push_back(std::string(kind) + std::string(text));
  }
  std::vector<std::string> Take() { return std::exchange(lines, {}); }
  std::vector<std::string> lines;
  std::string passes;
};

// Another one on the same files, with Load instead of AddJob, is its restart.
struct EngineProgram {
  EngineProgram(FileSystem& disk, const Clock& time, ScriptedOci& client)
      : files(disk), clock(time), library(client.Api()) {}

  void AddJob() {
    index = jobs.Claim();
    JobConfig& config = Config();
    config.name = "J";
    config.sync_interval = 5;
    config.src_database_name = "SRC";
    config.des_database_name = "DES";
    ResolveLogOns(config, LogOnOf);
    config.table_list_fetched = true;
    JobSchema& shop = config.schemas["SHOP"];
    shop.Append({.name = "ORDERS", .desowner = "SHOP"});
    shop.Append({.name = "ITEMS", .desowner = "ARCHIVE"});
    shop.Append({.name = "SECRET", .desowner = "SHOP", .includeflag = false});
    jobs.SetState(index, JobState::Stopped);
  }
  void Load() {
    catalogue.Load(LogOnOf, [this](SyncJob& job) {
      const RestoredRun restored =
          RestoreRunState(files, job, catalogue.FolderOf("J"), RestoreMode::Resume);
      if (!restored.problem.empty()) listener.lines.push_back("e:" + restored.problem);
      jobs.Hold(index, restored.held, restored.asks_again);
      jobs.SetProgress(index, restored.progress);
      return restored.state;
    });
  }
  static std::optional<LogOn> LogOnOf(std::string_view name) {
    if (name == "SRC") return LogOn{"SRC", "su", "sp", true};
    return LogOn{"DES", "du", "dp", false};
  }

  SyncJob& Job() { return jobs.At(index); }
  JobConfig& Config() { return ConfigOf(Job()); }
  JobTable& Table(std::string_view name) {
    return *Config().schemas.find("SHOP")->second.Find(name);
  }
  JobState State() const { return jobs.State(index); }

  FileSystem& files;
  const Clock& clock;
  std::size_t index = 0;
  Settings settings;
  MessageLog log{files, "/work", clock, settings};
  JobList jobs;
  JobCatalogue catalogue{files, "/work", jobs, log};
  OciLibrary library;
  Recorder listener;
  EngineContext context{files, "/work", jobs, catalogue, library, log, clock, settings, listener};
  JobRunner runner{context};
};

class EngineTest : public AccountTest {
 protected:
  EngineTest() {
    script_.Answer(kScnQuery, {{"100"}});
    script_.Answer(kMembersQuery, {{"/redo01.log"}});
    program_.AddJob();
  }

  std::string Read(const std::string& name) const { return files.Content("/work/" + name); }
  RunRecord Record() {
    RunRecord record;
    const std::string bytes = Read("jobs/J/block.dat");
    if (bytes.size() == sizeof record) std::memcpy(&record, bytes.data(), sizeof record);
    return record;
  }
  void Step() { program_.runner.Step(program_.index); }
  void StartJob() {
    std::string reason;
    ASSERT_TRUE(RequestRun(program_.context, program_.index, reason)) << reason;
    Step();
    ASSERT_EQ(program_.State(), JobState::Started);
    listener_.Take();
    script_.TakeTranscript();
    script_.TakeExecuted();
  }
  // One pass, an interval later.
  void NextPass() {
    clock_.TurnMinutes(5);
    Step();
  }
  // Of what was executed: the statements on the destination.
  std::vector<std::string> Applied() {
    std::vector<std::string> applied = script_.TakeExecuted();
    std::erase_if(applied, [](const std::string& sql) {
      return !sql.starts_with("INSERT") && !sql.starts_with("UPDATE") &&
             !sql.starts_with("DELETE") && sql != "rollback";
    });
    return applied;
  }

  HandClock clock_;
  ScriptedOci script_;
  EngineProgram program_{files, clock_, script_};
  Recorder& listener_ = program_.listener;
  SyncJob& job_ = program_.Job();
};

}  // namespace quillmere
