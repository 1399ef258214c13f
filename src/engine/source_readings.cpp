// SPDX-License-Identifier: MIT
#include "engine/source_readings.h"

#include <algorithm>
#include <limits>

namespace quillmere {
namespace {

// While nothing can be used a reading is taken every sweep. The oldest stays: it is the first that
// will be usable.
constexpr std::size_t kMostTaken = 64;
// Of sweeps that are closer together only the newest is remembered: however short they are, what is
// remembered reaches back far enough for a reading to become old enough.
constexpr std::chrono::seconds kLeastApart{1};

}  // namespace

void SourceReadings::NoteThreads(const std::vector<RedoThread>& threads, SteadyTime now) {
  open_threads_ = 0;
  for (auto& [number, progress] : threads_) progress.open = false;
  for (const RedoThread& thread : threads) {
    const auto [found, added] = threads_.try_emplace(thread.number);
    ThreadProgress& progress = found->second;
    if (added || !thread.open || progress.scn != thread.last_redo_scn) progress.since = now;
    progress.scn = thread.last_redo_scn;
    progress.open = thread.open;
    if (thread.open) ++open_threads_;
  }
}

bool SourceReadings::Take(const ReadingAnswers& answers, SteadyTime now,
                          std::optional<std::int64_t> known_mine_from) {
  Taken taken;
  taken.scn_before = taken.oldest = answers.scn_before;
  if (answers.oldest_open == 0) {
    if (!known_mine_from) return false;
    taken.oldest = std::min(taken.oldest, *known_mine_from);
  } else if (answers.oldest_open != CommitMiner::kNoneOpen) {
    taken.oldest = std::min(taken.oldest, answers.oldest_open);
  }
  // The SCN that was read may be that of the last commit itself.
  taken.upto = Behind(answers.scn_after);
  taken.several_threads = open_threads_ > 1;
  taken.when = now;
  if (taken_.size() > 1 && now - taken_[taken_.size() - 2].when < kLeastApart) taken_.pop_back();
  if (taken_.size() == kMostTaken) taken_.erase(taken_.begin() + 1);
  taken_.push_back(taken);
  return true;
}

const SourceReadings::Taken* SourceReadings::Before(const Taken& taken) const {
  const auto before = std::find_if(taken_.rbegin(), taken_.rend(), [&](const Taken& one) {
    return one.when + kMostLag <= taken.when;
  });
  return before == taken_.rend() ? nullptr : &*before;
}

// One instance knows its own SCN. Of several, the one that is asked may be behind: what commits
// above its answer had perhaps not begun to commit when the reading before was taken, which in turn
// may have shown an SCN of the one before that.
std::optional<Reading> SourceReadings::Understood(const Taken& taken) const {
  if (!taken.several_threads) return Reading{taken.oldest, taken.upto};
  const Taken* const before = Before(taken);
  const Taken* const further = before == nullptr ? nullptr : Before(*before);
  if (further == nullptr) return std::nullopt;
  return Reading{std::min(before->oldest, further->scn_before), taken.upto};
}

std::optional<Reading> SourceReadings::NewestUsable(std::int64_t cutoff, SteadyTime now,
                                                    SteadyTime least_age) const {
  const std::int64_t written = WrittenUpTo(now);
  for (auto taken = taken_.rbegin(); taken != taken_.rend() && taken->upto > cutoff; ++taken) {
    if (now - taken->when < least_age || written < taken->upto - 1) continue;
    if (const auto reading = Understood(*taken)) return reading;
  }
  return std::nullopt;
}

std::optional<Reading> SourceReadings::Newest() const {
  return taken_.empty() ? std::nullopt : Understood(taken_.back());
}

std::int64_t SourceReadings::WrittenUpTo(SteadyTime now) const {
  const auto idle_after = open_threads_ > 1 ? kIdleAfter : kOnlyOneIdleAfter;
  std::int64_t least = std::numeric_limits<std::int64_t>::max();
  for (const auto& [number, progress] : threads_) {
    if (!progress.open || now - progress.since >= idle_after) continue;
    least = std::min(least, progress.scn);
  }
  return least;
}

}  // namespace quillmere
