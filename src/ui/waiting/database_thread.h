// SPDX-License-Identifier: MIT
// The thread of the window's own database work: connections, queries and DDL of the dialogs and of
// the database manager, with an OCI environment of its own. Neither the user interface nor the jobs
// wait for it. No Qt.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace quillmere {

// User-interface thread. Made before the windows and ended after them, while the workspace is still
// there.
class DatabaseThread {
 public:
  DatabaseThread();
  ~DatabaseThread();  // End
  DatabaseThread(const DatabaseThread&) = delete;
  DatabaseThread& operator=(const DatabaseThread&) = delete;

  // Runs work at once, then done, both on the thread; when done is called, the next work may come.
  // Where a connection attempt that nobody waits for any more still holds the thread up, another
  // one takes its place, and goes on beside it afterwards: there are never more than there were
  // such attempts at a time. So it is while a file is being read (quiet_work.h).
  void Run(std::function<void()> work, std::function<void()> done);

  // Some work is not over: a connection attempt that nobody waits for any more, most likely.
  bool Busy() const;

  // Waits until all work is over. Nothing runs afterwards.
  void End();

 private:
  class Lane;

  std::vector<std::unique_ptr<Lane>> lanes_;
};

}  // namespace quillmere
