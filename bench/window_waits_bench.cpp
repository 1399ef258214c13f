// SPDX-License-Identifier: MIT
// The longest time in which the window takes no event, for every action of both pages, while each
// exchange with a database is slow and somebody has locked the tables that are changed. To be run
// by tests/window/with-display; QUILLMERE_LATENCY_MS (1000) and QUILLMERE_LOCK_MS (60000) say how
// slow.
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "window_actions.h"

namespace quillmere::window {
namespace {

std::chrono::milliseconds FromEnvironment(const char* name, int otherwise) {
  const char* const text = std::getenv(name);
  return std::chrono::milliseconds(text == nullptr ? otherwise : std::atoi(text));
}

// Beats on the user-interface thread; knows the longest pause.
class Heart {
 public:
  Heart() {
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
      const auto now = Driver::Clock::now();
      longest_ = std::max(longest_, now - last_);
      last_ = now;
    });
    timer_.start(1);
  }
  double TakeLongestMs() {
    last_ = std::max(last_, Driver::Clock::time_point{});
    return std::chrono::duration<double, std::milli>(std::exchange(longest_, {})).count();
  }

 private:
  QTimer timer_;
  Driver::Clock::time_point last_ = Driver::Clock::now();
  Driver::Clock::duration longest_{};
};

using WindowWaits = ActionStage;

TEST_F(WindowWaits, OnSlowAndLockedDatabases) {
  const auto latency = FromEnvironment("QUILLMERE_LATENCY_MS", 1000);
  const auto lock = FromEnvironment("QUILLMERE_LOCK_MS", 60'000);
  limit = std::chrono::minutes(10);
  SetStage();
  auto heart = Ui([] { return std::make_unique<Heart>(); });
  gate_.SetLatency(latency);
  gate_.SetLocked({"DROP TABLE", "drop table", "RENAME TO"}, lock);
  std::printf("%-40s %12s %12s\n", "action", "takes s", "longest ms");
  for (const Action& action : kActions) {
    (this->*action.prepare)();
    Ui([&] { heart->TakeLongestMs(); });
    const auto begin = Clock::now();
    (this->*action.act)();
    if (action.finish != nullptr) (this->*action.finish)();
    WaitForNoDialog();
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    const double longest = Ui([&] { return heart->TakeLongestMs(); });
    std::printf("%-40s %12.1f %12.1f\n", action.name, seconds, longest);
    std::fflush(stdout);
    EXPECT_LT(longest, 100) << action.name;
  }
  Ui([&] { heart.reset(); });
}

}  // namespace
}  // namespace quillmere::window
