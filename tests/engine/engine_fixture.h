// SPDX-License-Identifier: MIT
// An engine in a folder of its own, on a scripted client library, with one job and a clock that is
// turned by hand.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/job_runner.h"
#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/scripted_oci.h"
#include "support/temp_folder.h"

namespace quillmere {

inline const std::string kScnQuery = "select max(ktuxescnw * power(2,32) + ktuxescnb) from x$ktuxe";
inline const std::string kMembersQuery = "select member from v$logfile where type='ONLINE'";
inline const std::string kRedoQuery =
    "select scn, sql_redo from v$logmnr_contents where ( operation='INSERT' or operation='UPDATE' "
    "or operation='DELETE' ) and ( seg_owner NOT IN ('SYS', 'SYSTEM') ) ";
inline const std::string kRowAddress = " and ROWID = 'AAABBBAAACCCDDDEEE'";

// Writes down what it is told, in order: "i:", "e:" and the text, "changed", "fetched".
struct Recorder final : RunnerListener {
  void OnJobChanged(std::size_t, bool fetched) override {
    ++changes;
    if (fetched) lines.push_back("fetched");
  }
  void OnError(std::size_t, std::string_view text) override {
    lines.push_back("e:" + std::string(text));
  }
  void OnInformation(std::size_t, std::string_view text) override {
    lines.push_back("i:" + std::string(text));
  }
  std::vector<std::string> Take() { return std::exchange(lines, {}); }
  std::vector<std::string> lines;
  int changes = 0;
};

class EngineTest : public ::testing::Test {
 protected:
  using ScriptedOci = testing::ScriptedOci;

  EngineTest() {
    script_.Answer(kScnQuery, {{"100"}});
    script_.Answer(kMembersQuery, {{"/redo01.log"}});
    config_.name = "J";
    config_.sync_interval = 5;
    config_.source = {"SRC", "su", "sp", true};
    config_.destination = {"DES", "du", "dp", false};
    config_.table_list_fetched = true;
    JobSchema& shop = config_.schemas["SHOP"];
    shop.Append({.name = "ORDERS", .desowner = "SHOP"});
    shop.Append({.name = "ITEMS", .desowner = "ARCHIVE"});
    shop.Append({.name = "SECRET", .desowner = "SHOP", .includeflag = false});
    jobs_.SetState(index_, JobState::Stopped);
  }

  JobTable& Table(std::string_view name) {
    return *config_.schemas.find("SHOP")->second.Find(name);
  }
  std::filesystem::path JobFile(std::string_view name) const {
    return folder_ / ("jobs/J/" + std::string(name));
  }
  RunRecord Record() const {
    RunRecord record;
    static_cast<void>(ReadRunRecord(folder_.Files(), JobFile("block.dat"), record));
    return record;
  }
  JobList::Progress Progress() const {
    JobList::Progress progress;
    jobs_.State(index_, &progress);
    return progress;
  }
  void StartJob() {
    std::string reason;
    ASSERT_TRUE(RequestRun(context_, index_, reason)) << reason;
    runner_.Step(index_);
    ASSERT_EQ(jobs_.State(index_), JobState::Started);
    listener_.Take();
    script_.TakeTranscript();
    script_.TakeExecuted();
  }
  // One pass, an interval later.
  void NextPass() {
    clock_.now = AddMinutes(clock_.now, 5);
    runner_.Step(index_);
  }
  // A started job whose next pass has the statements to apply.
  void StartWithBatch(const ScriptedOci::Rows& rows) {
    StartJob();
    script_.Answer(kRedoQuery, rows);
    NextPass();
    listener_.Take();
    script_.TakeExecuted();
    script_.TakeTranscript();
  }
  // Of what was executed: the statements on the destination.
  std::vector<std::string> Applied() {
    std::vector<std::string> applied;
    for (const std::string& sql : script_.TakeExecuted()) {
      if (sql.starts_with("INSERT") || sql.starts_with("UPDATE") || sql.starts_with("DELETE")) {
        applied.push_back(sql);
      }
    }
    return applied;
  }

  TempFolder folder_;
  HandClock clock_;
  Settings settings_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  JobList jobs_;
  JobCatalogue catalogue_{folder_.Files(), folder_.Path(), jobs_, log_};
  ScriptedOci script_;
  OciLibrary library_{script_.Api()};
  Recorder listener_;
  EngineContext context_{folder_.Files(), folder_.Path(), jobs_,    catalogue_, library_, log_,
                         clock_,          settings_,      listener_};
  JobRunner runner_{context_};
  std::size_t index_ = jobs_.Claim();
  SyncJob& job_ = jobs_.At(index_);
  JobConfig& config_ = ConfigOf(job_);
};

}  // namespace quillmere
