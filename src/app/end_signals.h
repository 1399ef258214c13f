// SPDX-License-Identifier: MIT
// The signals that ask the program to end: SIGINT, SIGTERM and SIGHUP, or what the platform has
// instead.
#pragma once

#include <functional>
#include <memory>

namespace quillmere {

// From its construction until its end, calls `ask` in the event loop of the thread that made it
// when such a signal comes. Made after the QApplication; one at a time. Each platform has a file of
// its own.
class EndSignals {
 public:
  explicit EndSignals(std::function<void()> ask);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  class Watch;
  std::unique_ptr<Watch> watch_;
};

}  // namespace quillmere
