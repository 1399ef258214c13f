// SPDX-License-Identifier: MIT
#include "ui/jobs/job_health.h"

#include <QCoreApplication>
#include <QStringList>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

struct HealthTexts {
  Q_DECLARE_TR_FUNCTIONS(HealthTexts)
};

// The worst first.
constexpr std::array kMarked = {Health::Failing, Health::Held, Health::Behind};

}  // namespace

WatchedJob LookAt(const JobList& jobs, const JobWatch* watch, std::size_t index) {
  if (watch != nullptr) return watch->Look(index);
  WatchedJob job;
  job.state = jobs.State(index);
  job.held = jobs.HeldBecause(index);
  job.health = HealthOf({job.state, !job.held.empty(), false, 0, {}, {}});
  return job;
}

QIcon HealthIcon(Health health) {
  switch (health) {
    case Health::UpToDate:
      return Icon("up-to-date");
    case Health::Paused:
      return Icon("state-paused");
    case Health::Stopped:
      return Icon("state-stopped");
    case Health::Failing:
    case Health::Held:
    case Health::Behind:
      break;
  }
  return Icon(HealthMark(health));
}

std::string_view HealthMark(Health health) {
  switch (health) {
    case Health::Failing:
      return "error";
    case Health::Held:
      return "warning";
    case Health::Behind:
      return "behind";
    case Health::UpToDate:
    case Health::Paused:
    case Health::Stopped:
      break;
  }
  return {};
}

std::optional<Health> WorstOf(const HealthCounts& counts) {
  for (const Health health : kMarked) {
    if (counts[health] > 0) return health;
  }
  return std::nullopt;
}

QString HealthWords(const HealthCounts& counts) {
  QStringList words;
  const auto add = [&](Health health) {
    if (counts[health] == 0) return;
    const QString count = words.isEmpty()
                              ? HealthTexts::tr("%Ln job(s)", nullptr, Plural(counts[health]))
                              : Grouped(static_cast<std::int64_t>(counts[health]));
    words << HealthTexts::tr("%1 %2", "a number of jobs, how they are")
                 .arg(count, Translated(HealthName(health)));
  };
  for (const Health health : kMarked) add(health);
  if (words.isEmpty()) add(Health::UpToDate);
  return words.join(QStringLiteral(", "));
}

}  // namespace quillmere
