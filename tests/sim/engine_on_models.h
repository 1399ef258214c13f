// SPDX-License-Identifier: MIT
// The engine with one job from a source model, SRC, to a destination model, DES: ORDERS to
// SHOP.ORDERS, ITEMS to COPY.ITEMS, SECRET excluded. Its files are in memory; the program can die,
// the power fail, and another life of it go on from what is on the disk.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/job_runner.h"
#include "sim/model_oci.h"
#include "support/config_of.h"
#include "support/memory_files.h"

namespace quillmere::sim {

// One run of the program on a folder. The job comes back as its files say.
struct Life final : RunnerListener {
  Life(testing::MemoryFiles& disk, const JobConfig& config, const HandClock& time,
       const OciApi& api, const Settings& set)
      : files(disk), clock(time), settings(set), library(api) {
    JobConfig& own = ConfigOf(job);
    own.name = config.name;
    own.sync_interval = config.sync_interval;
    own.follow = config.follow;
    own.position_owner = config.position_owner;
    own.container = config.container;
    own.source = config.source;
    own.destination = config.destination;
    own.table_list_fetched = true;
    JobSchema& shop = own.schemas["SHOP"];
    shop.Append({.name = "ORDERS", .desowner = "SHOP"});
    shop.Append({.name = "ITEMS", .desowner = "COPY"});
    shop.Append({.name = "SECRET", .desowner = "SHOP", .includeflag = false});
    RestoredRun restored =
        RestoreRunState(files, job, catalogue.FolderOf(config.name), RestoreMode::Resume);
    if (!restored.problem.empty()) errors.push_back(restored.problem);
    jobs.Hold(index, restored.held);
    jobs.SetState(index, restored.state, restored.progress);
  }
  void OnJobChanged(std::size_t, bool) override {}
  void OnError(std::size_t, std::string_view text) override { errors.emplace_back(text); }
  void OnInformation(std::size_t, std::string_view text) override { told.emplace_back(text); }

  // Starts or continues the job.
  void Run() {
    std::string reason;
    if (!RequestRun(context, index, reason)) errors.push_back(reason);
  }
  void Step() { runner.Step(index); }
  JobState State() const { return jobs.State(index); }

  testing::MemoryFiles& files;
  const HandClock& clock;
  const Settings& settings;
  std::vector<std::string> errors, told;
  MessageLog log{files, "/work", clock, settings};
  JobList jobs;
  JobCatalogue catalogue{files, "/work", jobs, log};
  OciLibrary library;
  EngineContext context{files, "/work", jobs, catalogue, library, log, clock, settings, *this};
  JobRunner runner{context};
  const std::size_t index = jobs.Claim();
  SyncJob& job = jobs.At(index);
};

struct EngineOnModels {
  explicit EngineOnModels(const SourceShape& shape, Follow follow = Follow::Rows,
                          std::int32_t interval = 1)
      : source(shape, clock.now.load().ms) {
    client.Add("SRC", source);
    client.Add("DES", destination);
    destination.AddTable("SHOP.ORDERS", 0);
    destination.AddTable("COPY.ITEMS", 1);
    config.name = "J";
    config.sync_interval = interval;
    config.follow = follow;
    config.source = {"SRC", "u", "p", false};
    config.destination = {"DES", "u", "p", false};
    Restart();
  }

  // The program is started (again) on what its disk holds.
  void Restart() {
    life.reset();
    disk->Release();
    life = std::make_unique<Life>(*disk, config, clock, client.Api(), settings);
  }
  // The power fails: of what was not flushed the disk has what keep says.
  void CutPower(const testing::MemoryFiles::Keep& keep) {
    life.reset();
    disk = disk->AfterPowerCut(keep);
  }
  void Wait(std::int64_t ms) { clock.now = LocalTime{clock.now.load().ms + ms}; }

  HandClock clock;
  SourceModel source;
  DestinationModel destination;
  ModelOci client{clock};
  Settings settings;
  JobConfig config;
  std::unique_ptr<testing::MemoryFiles> disk = std::make_unique<testing::MemoryFiles>();
  std::unique_ptr<Life> life;
};

}  // namespace quillmere::sim
