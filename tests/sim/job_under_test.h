// SPDX-License-Identifier: MIT
// The program of a simulation, and a job of it with what is known of it.
#pragma once

#include <string>

#include "sim/simulation.h"
#include "support/config_of.h"

namespace quillmere::sim {

inline constexpr std::string_view kSources[] = {"SRC0", "SRC1"};

struct Simulation::Program {
  Program(std::unique_ptr<Workspace> opened, RunnerListener& listener)
      : workspace(std::move(opened)), engine(workspace->EngineFor(listener)) {}
  std::unique_ptr<Workspace> workspace;
  EngineContext engine;
  JobRunner runner{engine};
};

struct Simulation::Job {
  enum class There { No, Yes, Unclear };  // a change of that failed, or was cut off
  enum class Asked { Nothing, ToRun, ToRest };

  Job(std::size_t which, const History& history)
      : number(which),
        follow(which < 2 ? Follow::Commits : Follow::Rows),
        ledger(history, follow),
        name("Ja" + std::to_string(which)) {
    for (std::size_t i = 0; i < kTableCount; ++i) {
      const auto table = static_cast<std::uint8_t>(i);
      destination.AddTable("SHOP." + std::string(kTables[i]), table);
      destination.AddTable("COPY." + std::string(kTables[i]),
                           static_cast<std::uint8_t>(table + kCopied));
    }
  }

  std::string Destination() const { return "DES" + std::to_string(number); }
  std::size_t IndexIn(JobList& list) const {
    for (std::size_t i = 0; i < list.Count(); ++i) {
      if (list.State(i) == JobState::Empty) continue;
      if (ConfigOf(list.At(i)).des_database_name == Destination()) return i;
    }
    return JobList::kNotFound;
  }
  // Whatever it is called.
  bool HasCommitPoint(const testing::MemoryFiles& disk) const {
    for (char letter = 'a'; letter < 'e'; ++letter) {
      const std::string folder = std::string("/work/jobs/J") + letter + std::to_string(number);
      if (disk.Content(folder + "/commit.dat") != "(none)") return true;
    }
    return false;
  }

  // What has statements is the owner's.
  void CheckModes(testing::MemoryFiles& disk, std::string& wrong) const {
    disk.Release();
    FileFacts facts;
    const auto path = "/work/jobs/" + name + "/sqlcmds.txt";
    if (disk.Look(path, facts) && facts.mode != FileSystem::kOwnerOnly) wrong = path;
  }

  static std::vector<Ledger::Choice> ChoicesOf(SyncJob& job) {
    std::vector<Ledger::Choice> choices(kTableCount);
    const SchemaMap& schemas = ConfigOf(job).schemas;
    const auto shop = schemas.find("SHOP");
    for (std::size_t i = 0; i < kTableCount && shop != schemas.end(); ++i) {
      const JobTable* const table = shop->second.Find(kTables[i]);
      if (table != nullptr) choices[i] = {table->includeflag, table->desowner == "COPY"};
    }
    return choices;
  }
  // As they are in memory; on disk, too, unless that is not known.
  void TakeChoices(SyncJob& job, bool are_saved) {
    ledger.choices = ChoicesOf(job);
    choices_unclear = !are_saved;
    if (are_saved) saved = ledger.choices;
  }
  static std::vector<Ledger::Counts> TablesOf(SyncJob& job) {
    std::vector<Ledger::Counts> counts(kTableCount);
    const SchemaMap& schemas = ConfigOf(job).schemas;
    const auto shop = schemas.find("SHOP");
    for (std::size_t i = 0; i < kTableCount && shop != schemas.end(); ++i) {
      const JobTable* const table = shop->second.Find(kTables[i]);
      if (table != nullptr) counts[i] = {table->totalsynced, table->RecordsBlocked};
    }
    return counts;
  }
  void BeginLedger(SyncJob& job) {
    const Positions& at = job.run.positions;
    ledger.Begin(follow == Follow::Commits ? at.cutoff_scn : at.mining_start_scn);
    tables_unclear = true;
    in_the_moment = false;
    mined = ledger.Next();
  }
  void AskedToStop() {
    asked = Asked::ToRest;
    runs = false;
  }
  // It is removed, or made.
  void Forget() {
    ledger.End();
    asked = Asked::Nothing;
    runs = starting = may_go_back = false;
    choices_unclear = tables_unclear = true;
    destination.refused.reset();
    skipped = aside_seen = 0;
    aside.clear();
  }
  // The program dies at an operation, or goes on from what it could read.
  void SeeDeath(std::uint64_t operation, std::uint64_t file_faults) {
    // Behind the commit comes the removal of the commit point, and that reaches the disk.
    in_the_moment |= operation <= committed_at + 2;
    SeeEnd(file_faults);
    tables_unclear = true;
  }
  // It was told that the commit point stays and what comes of that.
  void SeeEnd(std::uint64_t file_faults) { in_the_moment |= file_faults != faults_at_commit; }

  const std::size_t number;
  const Follow follow;
  DestinationModel destination;
  Ledger ledger;
  std::string name;
  There there = There::No;
  bool half_removed = false;  // some of its files may be gone; then it is held
  Asked asked = Asked::Nothing;
  bool runs = false;      // it was started, and nobody asked for its stop since
  bool starting = false;  // nobody was told yet
  bool may_go_back = false, in_the_moment = false;
  std::uint64_t committed_at = 0, faults_at_commit = 0;
  std::size_t refusals = 0, seen_refusals = 0, skipped = 0;
  std::vector<std::string> aside;  // how it begins in setaside.sql
  std::size_t aside_seen = 0, mined = 0;
  // Counts of the tables less the ledger's, at the last look; unclear: read from disk since.
  std::vector<Ledger::Counts> tables = std::vector<Ledger::Counts>(kTableCount);
  bool tables_unclear = true;
  std::vector<Ledger::Choice> saved = std::vector<Ledger::Choice>(kTableCount);
  bool choices_unclear = true;
  std::size_t told = 0;
  std::string last_error;
};

}  // namespace quillmere::sim
