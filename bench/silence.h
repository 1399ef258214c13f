// SPDX-License-Identifier: MIT
// A listener for engines that nobody listens to.
#pragma once

#include "engine/runner_listener.h"

namespace quillmere::bench {

class Silence final : public RunnerListener {
  void OnJobChanged(std::size_t, bool) override {}
  void OnError(std::size_t, std::string_view) override {}
  void OnInformation(std::size_t, std::string_view) override {}
};

}  // namespace quillmere::bench
