// SPDX-License-Identifier: MIT
// Tells the service manager how the program is, where there is one that listens; otherwise nothing.
// Not for several threads at once.
#pragma once

#include <chrono>

namespace quillmere::cli {

class ServiceNotice {
 public:
  // Reads what the manager put into the environment.
  ServiceNotice();

  void Ready() const;
  void Ending() const;

  // That the main loop turns; to be called often, is sent twice in the time after which the manager
  // takes the program for dead. It says nothing of a call that waits for a server on the worker's
  // thread: that may last as long as the server likes.
  void Alive(std::chrono::steady_clock::time_point now);

 private:
  std::chrono::microseconds pause_{0};  // 0: nobody wants to hear that it is alive
  std::chrono::steady_clock::time_point next_{};
};

}  // namespace quillmere::cli
