// SPDX-License-Identifier: MIT
#include "ui/waiting/database_thread.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "foundation/mutex.h"

namespace quillmere {

class DatabaseThread::Lane {
 public:
  Lane() : thread_([this] { Loop(); }) {}

  ~Lane() {
    {
      const MutexLock lock(mutex_);
      ending_ = true;
    }
    changed_.NotifyAll();
    thread_.join();
  }

  bool Busy() {
    const MutexLock lock(mutex_);
    return busy_;
  }

  // False while other work is under way.
  bool Take(std::function<void()>& work, std::function<void()>& done) {
    {
      const MutexLock lock(mutex_);
      if (busy_) return false;
      busy_ = true;
      work_ = std::move(work);
      done_ = std::move(done);
    }
    changed_.NotifyAll();
    return true;
  }

 private:
  void Loop() {
    for (;;) {
      std::function<void()> work, done;
      {
        const MutexLock lock(mutex_);
        while (!busy_ && !ending_) changed_.Wait(mutex_);
        if (!busy_) return;
        work = std::exchange(work_, {});
        done = std::exchange(done_, {});
      }
      work();
      work = {};
      {
        const MutexLock lock(mutex_);
        busy_ = false;
      }
      done();
    }
  }

  Mutex mutex_;
  Condition changed_;
  bool busy_ GUARDED_BY(mutex_) = false;
  bool ending_ GUARDED_BY(mutex_) = false;
  std::function<void()> work_ GUARDED_BY(mutex_);
  std::function<void()> done_ GUARDED_BY(mutex_);
  std::thread thread_;
};

DatabaseThread::DatabaseThread() = default;

DatabaseThread::~DatabaseThread() {
  End();
}

void DatabaseThread::Run(std::function<void()> work, std::function<void()> done) {
  for (const auto& lane : lanes_) {
    if (lane->Take(work, done)) return;
  }
  lanes_.push_back(std::make_unique<Lane>());
  lanes_.back()->Take(work, done);
}

bool DatabaseThread::Busy() const {
  return std::any_of(lanes_.begin(), lanes_.end(), [](const auto& lane) { return lane->Busy(); });
}

void DatabaseThread::End() {
  lanes_.clear();
}

}  // namespace quillmere
