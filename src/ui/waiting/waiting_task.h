// SPDX-License-Identifier: MIT
// Between the database thread, which works, and the user interface, which waits: steps and lines
// one way, Cancel the other. Neither ever waits for the other here. No Qt.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "foundation/mutex.h"
#include "schemaops/schema_operations.h"

namespace quillmere {

class WaitingTask final : public SchemaListener, public LogLines {
 public:
  struct Step {
    std::string what;
    std::size_t done = 0;
    std::size_t total = 0;
  };
  enum class LineKind { Log, Result, Detail };
  struct Line {
    LineKind kind = LineKind::Log;
    std::string text;
    bool error = false;
  };
  struct News {
    std::optional<Step> step;  // the latest, when it is another one
    std::vector<Line> lines;
    bool finished = false;
  };

  // wake: asks the user interface to take the news. Called on the database thread with no lock
  // held, and not again before they were taken.
  explicit WaitingTask(std::function<void()> wake) : wake_(std::move(wake)) {}

  // The database thread's.
  bool OnProgress(std::string_view what, std::size_t done, std::size_t total) override;
  bool OnConnect(std::string_view what) override;
  void OnResult(std::string_view line, bool failed) override;
  void OnDetail(std::string_view line) override;
  bool Add(std::string_view text, bool error) override;
  void Finish();

  // The user interface's.
  News Take();
  // From now on the work hears that it is not wanted. True: nothing but a connection attempt is
  // under way, so that nobody needs to wait for its end.
  bool Cancel();

 private:
  bool Begin(Step step, bool connecting);
  void Tell(Line line);
  void Wake();

  const std::function<void()> wake_;
  Mutex mutex_;
  News news_ GUARDED_BY(mutex_);
  bool told_ GUARDED_BY(mutex_) = false;  // that there are news
  bool cancelled_ GUARDED_BY(mutex_) = false;
  bool connecting_ GUARDED_BY(mutex_) = true;
};

}  // namespace quillmere
