// SPDX-License-Identifier: MIT
// Whoever listens to the job runner: the window posts and sends events, the command line prints.
#pragma once

#include <cstddef>
#include <string_view>

#include "engine/pass_report.h"

namespace quillmere {

// Called on the thread that runs the step, with no lock held; the step goes on when the call comes
// back. Texts are valid during the call only. Outlives the runner.
class RunnerListener {
 public:
  virtual ~RunnerListener() = default;
  // A job's state or counters changed; batch_fetched right after a capture found something.
  virtual void OnJobChanged(std::size_t job, bool batch_fetched) = 0;
  virtual void OnError(std::size_t job, std::string_view text) = 0;
  virtual void OnInformation(std::size_t job, std::string_view text) = 0;
  // Behind all that was told of the pass.
  virtual void OnPassEnd(std::size_t /*job*/, const PassReport& /*report*/) {}
};

}  // namespace quillmere
