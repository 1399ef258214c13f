// SPDX-License-Identifier: MIT
// The engine with one job from a source model, SRC, to a destination model, DES: ORDERS to
// SHOP.ORDERS, ITEMS to COPY.ITEMS, SECRET excluded; an interval of one minute.
#pragma once

#include <string>
#include <vector>

#include "engine/job_runner.h"
#include "sim/model_oci.h"
#include "support/config_of.h"
#include "support/temp_folder.h"

namespace quillmere::sim {

struct EngineOnModels final : RunnerListener {
  explicit EngineOnModels(const SourceShape& shape) : source(shape, clock.now.load().ms) {
    client.Add("SRC", source);
    client.Add("DES", destination);
    destination.AddTable("SHOP.ORDERS", 0);
    destination.AddTable("COPY.ITEMS", 1);
    JobConfig& config = ConfigOf(job);
    config.name = "J";
    config.sync_interval = 1;
    config.source = {"SRC", "u", "p", false};
    config.destination = {"DES", "u", "p", false};
    config.table_list_fetched = true;
    JobSchema& shop = config.schemas["SHOP"];
    shop.Append({.name = "ORDERS", .desowner = "SHOP"});
    shop.Append({.name = "ITEMS", .desowner = "COPY"});
    shop.Append({.name = "SECRET", .desowner = "SHOP", .includeflag = false});
    jobs.SetState(index, JobState::Stopped);
  }
  void OnJobChanged(std::size_t, bool) override {}
  void OnError(std::size_t, std::string_view text) override { errors.emplace_back(text); }
  void OnInformation(std::size_t, std::string_view) override {}

  void Start() {
    std::string reason;
    if (!RequestRun(context, index, reason)) errors.push_back(reason);
    runner.Step(index);
  }
  void NextPass() {
    clock.TurnMinutes(1);
    runner.Step(index);
  }

  TempFolder folder;
  HandClock clock;
  SourceModel source;
  DestinationModel destination;
  ModelOci client{clock};
  std::vector<std::string> errors;
  Settings settings;
  MessageLog log{folder.Files(), folder.Path(), clock, settings};
  JobList jobs;
  JobCatalogue catalogue{folder.Files(), folder.Path(), jobs, log};
  OciLibrary library{client.Api()};
  EngineContext context{folder.Files(), folder.Path(), jobs, catalogue, library, log,
                        clock,          settings,      *this};
  JobRunner runner{context};
  std::size_t index = jobs.Claim();
  SyncJob& job = jobs.At(index);
};

}  // namespace quillmere::sim
