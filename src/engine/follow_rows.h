// SPDX-License-Identifier: MIT
// Following by rows: by the SCN of each change. Mined from the mining start SCN, kept below the
// cut-off SCN; then both move on by one step, so that every change is applied by the pass after the
// one that first saw it, once. A change whose transaction stays open for longer than that can be
// missed. Internal to engine/.
#pragma once

#include "engine/follow.h"
#include "engine/intake.h"

namespace quillmere {

class FollowRows final : public FollowWay {
 public:
  FollowRows(EngineContext& context, std::size_t index, CaptureWatcher* watcher = nullptr);

  FollowResult Start(OracleSession& source, Positions& positions, std::string& error) override;
  FollowResult Capture(OracleSession& source, std::string& error) override;
  bool Keep(std::string& error) override;
  void AfterCapture() override {}
  // The positions move here, in the write that also says that no batch is pending.
  void Finish() override;
  NameQuotes Quotes() const override { return NameQuotes::Dropped; }

  // The part of a capture that reads the redo, on a session whose logs are set. On failure the
  // reason is in the session's LastError().
  bool Mine(OracleSession& source);

 private:
  EngineContext& context_;
  const std::size_t index_;
  SyncJob& job_;
  CaptureWatcher* const watcher_;
  Intake intake_;
};

}  // namespace quillmere
