// SPDX-License-Identifier: MIT
// One run of a plan: the workspace with its engine on source and destination models, on a clock and
// files of its own; what goes wrong; and whether all is as it should be. One thread.
//
// There are four jobs, each with a destination of its own: 0 and 1 follow commits from a source
// with long transactions, 2 and 3 rows from one whose transactions begin and end at one moment, so
// that following by rows loses nothing. 1 and 3 have a position row.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "sim/model_oci.h"
#include "sim/plan.h"
#include "sim/truth.h"
#include "support/memory_files.h"
#include "workspace/database_work.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere::sim {

// How often which fault came at which place.
struct Counts {
  struct Place {
    std::uint32_t faults = 0;  // that can come there
    std::uint32_t usual = 0;   // those that can without another one before
    std::array<std::uint64_t, kFaultCount> fired{}, silent{};  // silent: nothing told of it
  };
  std::map<std::string, Place> places;
  std::array<std::uint64_t, kFaultCount> of_kind{};
  std::uint64_t statements = 0, deaths = 0, passes = 0, moments = 0, operations = 0;
};

class Simulation final : public RunnerListener {
 public:
  // places: whether each place is written down, too. trace may be null.
  Simulation(const Plan& plan, Counts& counts, bool places, std::ostream* trace);
  ~Simulation();

  // Plays the plan, then lets everything come to rest. What was found wrong, or nothing.
  std::string Run();

  // What can go wrong with each operation of the run, a bit for each fault.
  using Operations = std::vector<std::uint32_t>;
  void Note(Operations& operations) { noted_ = &operations; }

 private:
  struct Program;
  struct Job;
  struct Operation {
    std::string_view what, text;
    std::uint32_t faults;
  };
  struct Armed {
    std::uint64_t at;
    Fault fault;
    std::int64_t number;
    std::string where;       // a part of the place's name
    std::uint64_t id, upon;  // of which other it is counted from; 0: none
  };

  void Play(const Event& event);
  void PlayOnJob(const Event& event, Job& job, std::size_t index);
  void Add(Job& job);
  void Skip(Job& job, std::size_t index);
  bool Hear(const Outcome& outcome);  // whether it is done
  void Pass(std::int64_t ms);
  void Tick(std::int64_t ms);
  void Burst(std::size_t source, std::int64_t changes);
  void Rest();

  void Arm(Fault fault, const Event& event);
  // The fault that comes with the operation.
  std::optional<Fault> Meet(Operation operation);
  Counts::Place& PlaceAt(const Operation& operation);
  bool Fires(const Armed& armed, const Operation& operation);
  FileStatus OnFile(const testing::FileOperation& operation);
  std::optional<ModelOci::Fault> OnCall(std::string_view call, std::string_view text);
  void OnCommit(Job& job, std::span<const Arrival> arrived);

  void Begin();
  void Die();
  void DieWhileOpening();
  void Reopen();
  std::uint64_t Faults(Fault last) const;
  std::uint64_t FileFaults() const { return Faults(Fault::Denied); }
  void WithWhatCouldBeRead();
  void TakeUp(Job& job);
  void Check();
  void SeeTheMoment(Job& job, std::size_t index);
  void CheckJob(Job& job, std::size_t index);
  void SeeMined(Job& job, std::size_t index, const std::vector<Ledger::Choice>& choices);
  void TakeChoices(Job& job, std::size_t index, bool are_saved);
  void CheckKept(Job& job, std::size_t index);
  void CheckTables(Job& job, SyncJob& found);
  std::size_t MinedUpTo(const Job& job, std::size_t index) const;
  std::size_t BehindIt(const Job& job, std::size_t index) const;
  void Wrong(const Job& job, const std::string& what);
  void Trace(std::string_view what, std::string_view text = {}) const;

  void OnJobChanged(std::size_t, bool) override { Tell(); }
  void OnError(std::size_t index, std::string_view text) override;
  void OnInformation(std::size_t index, std::string_view text) override;
  void Tell();
  Job* JobAt(std::size_t index);

  const Plan plan_;
  Counts& counts_;
  bool places_;
  std::ostream* const trace_;
  Operations* noted_ = nullptr;
  std::string wrong_;

  HandClock clock_;
  std::vector<std::unique_ptr<SourceModel>> sources_;
  std::unique_ptr<SourceModel> backup_;  // of the first
  std::vector<History> histories_{2};
  ModelOci client_{clock_};
  const OciApi api_ = client_.Api();
  InPlace place_;
  std::vector<std::unique_ptr<Job>> jobs_;
  std::unique_ptr<testing::MemoryFiles> disk_;
  std::unique_ptr<Program> program_;

  std::uint64_t operation_ = 0, committed_at_ = 0;
  std::vector<Armed> armed_;
  std::uint64_t next_armed_ = ~std::uint64_t{0}, last_armed_ = 0;
  // What came since the last check, and how much was told of things that fail.
  std::vector<std::pair<Counts::Place*, std::size_t>> came_;
  std::uint64_t told_ = 0, told_before_ = 0;
  std::uint64_t faults_before_ = 0;
  bool undisturbed_ = false;  // nothing went wrong since the last check
  bool dead_ = false, given_up_ = false, stop_here_ = false, stepping_ = false;
  bool after_power_ = false;           // what is on the disk now stays there
  std::optional<std::int64_t> power_;  // it died of that; the seed of what was kept
};

}  // namespace quillmere::sim
