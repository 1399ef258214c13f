// SPDX-License-Identifier: MIT
#include "sim/workload.h"

#include "sim/source_model.h"

namespace quillmere::sim {

Workload::Workload(const Habits& habits, std::uint64_t seed, std::int64_t now)
    : habits_(habits), random_(seed) {
  Restart(seed, now);
}

void Workload::Restart(std::uint64_t seed, std::int64_t now) {
  random_ = Random(seed);
  events_ = {};
  plans_.clear();
  if (habits_.per_second > 0) At(now, kBirth);
}

void Workload::At(std::int64_t time, std::uint32_t transaction) {
  events_.push({time, ++order_, transaction});
}

void Workload::Step(SourceModel& source) {
  const Event event = events_.top();
  events_.pop();
  if (event.transaction == kBirth) return GiveBirth(source, event.time);
  Plan& plan = plans_.at(event.transaction);
  if (plan.changes_left == 0) return End(source, event.transaction);
  Change(source, event.transaction, plan);
  const double rest = static_cast<double>(plan.end - event.time);
  const double share = 2 * random_.Unit() / static_cast<double>(plan.changes_left-- + 1);
  At(event.time + static_cast<std::int64_t>(rest * std::min(1., share)), event.transaction);
}

void Workload::GiveBirth(SourceModel& source, std::int64_t now) {
  if (habits_.per_second <= 0) return;
  std::size_t thread = 0;
  for (std::size_t other = 1; other < source.Shape().threads; ++other) {
    if (random_.Chance(habits_.on_idle_thread)) thread = other;
  }
  const std::uint32_t transaction = source.Begin(thread);
  plans_[transaction] = {now + random_.Exponential(habits_.mean_seconds * 1000),
                         1 + random_.Below(habits_.most_changes)};
  At(now, transaction);
  At(now + random_.Exponential(1000 / habits_.per_second), kBirth);
}

void Workload::Change(SourceModel& source, std::uint32_t transaction, Plan& plan) {
  const double dice = random_.Unit();
  Operation operation = dice < .45  ? Operation::Insert
                        : dice < .8 ? Operation::Update
                                    : Operation::Delete;
  if (random_.Chance(habits_.temporary)) operation = Operation::Temporary;
  if (random_.Chance(habits_.no_statement)) {
    operation = random_.Chance(.5) ? Operation::LobWrite : Operation::Unsupported;
  }
  const std::uint64_t note = random_.Chance(habits_.long_text) ? 1 + random_.Below(9000) : 0;
  source.Do(transaction, operation, static_cast<std::uint8_t>(random_.Below(kTableCount)),
            SourceModel::kAnyRow, static_cast<std::uint16_t>(note));
  if (!random_.Chance(habits_.savepoint)) return;
  if (plan.savepoint == kNoSavepoint) {
    plan.savepoint = source.Savepoint(transaction);
  } else {
    source.RollbackTo(transaction, plan.savepoint);
    plan.savepoint = kNoSavepoint;
  }
}

void Workload::End(SourceModel& source, std::uint32_t transaction) {
  plans_.erase(transaction);
  if (random_.Chance(habits_.rolled_back)) return source.Rollback(transaction);
  source.Commit(transaction, random_.Chance(habits_.shares_scn));
}

}  // namespace quillmere::sim
