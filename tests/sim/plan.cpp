// SPDX-License-Identifier: MIT
#include "sim/plan.h"

#include <algorithm>
#include <sstream>

#include "sim/random.h"

namespace quillmere::sim {
namespace {

constexpr int kJobs = 4, kTables = 3;

// How often each comes up, and below what its numbers are. 0: they are not used.
constexpr struct {
  int weight;
  std::string_view verb;
  std::uint64_t first, second;
} kKinds[] = {{600, "pass", 60'000, 0},
              {20, "pass", 600'000, 0},
              {80, "burst", 2, 30},
              {10, "switch", 1, 0},
              {10, "stall", 1, 300'000},
              {20, "run", kJobs, 0},
              {20, "pause", kJobs, 0},
              {5, "stop", kJobs, 0},
              {12, "exclude", kJobs, kTables},
              {12, "include", kJobs, kTables},
              {8, "owner", kJobs, kTables},
              {8, "refresh", kJobs, 0},
              {8, "edit", kJobs, 3},
              {8, "rename", kJobs, 4},
              {6, "remove", kJobs, 0},
              {4, "add", kJobs, 0},
              {15, "poison", kJobs, 20},
              {15, "skip", kJobs, 0},
              {15, "restart", 0, 0},
              {8, "jump", 7'200'000, 0},
              {100, "die", 400, 4},
              {100, "power", 400, 1000},
              {10, "nospace", 400, 4},
              {10, "short", 400, 4},
              {10, "io", 400, 4},
              {10, "denied", 400, 4},
              {20, "refused", 400, 2},
              {10, "lost", 400, 0},
              {15, "unanswered", 400, 0},
              {10, "withinfo", 400, 0},
              {10, "nodata", 400, 0},
              {5, "nomemory", 400, 0},
              {15, "pause-at", 400, kJobs},
              {5, "stop-at", 400, kJobs},
              {15, "switch-at", 400, 0}};

// Where what goes wrong does the most, but is seldom met by chance.
constexpr std::string_view kPlaces[] = {
    "remove commit.dat", "write commit.dat", "block.dat",   "flush",        "rename",
    "jobs.xml",          "source.dat",       "read",        "setaside.sql", "SessionEnd",
    "rollback",          "held.xml",         "QUILLMERE",   "commit.dat",   "open ",
    "flush block.dat",   "flush folder",     "sqlcmds.txt", "skip",         "ServerDetach"};

bool IsFault(const Event& event) {
  return std::find(std::begin(kFaults), std::end(kFaults), event.verb) != std::end(kFaults);
}

Event Pick(Random& random) {
  int all = 0;
  for (const auto& kind : kKinds) all += kind.weight;
  auto dice = static_cast<int>(random.Below(static_cast<std::uint64_t>(all)));
  const auto* kind = kKinds;
  while ((dice -= kind->weight) >= 0) ++kind;
  Event event{std::string(kind->verb)};
  const auto below = [&](std::uint64_t limit) {
    return limit == 0 ? 0 : static_cast<std::int64_t>(random.Below(limit));
  };
  event.first = below(kind->first);
  event.second = below(kind->second);
  // There are as many moments near as far away.
  if (kind->first == 400 && random.Chance(.5)) event.first = below(60);
  if (event.verb == "jump") event.first -= 3'600'000;
  // What nobody flushed is lost more often than not.
  if (event.verb == "power" && random.Chance(.5)) event.second = below(4) / 2;
  if (IsFault(event) && random.Chance(.3)) event.text = kPlaces[random.Below(std::size(kPlaces))];
  return event;
}

}  // namespace

std::string TextOf(const Plan& plan) {
  std::ostringstream text;
  for (const Event& event : plan) {
    text << event.verb << ' ' << event.first << ' ' << event.second;
    text << (event.text.empty() ? "" : " ") << event.text << '\n';
  }
  return text.str();
}

Plan ReadPlan(std::string_view text) {
  std::istringstream lines{std::string(text)};
  Plan plan;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    Event event;
    words >> event.verb >> event.first >> event.second >> std::ws;
    std::getline(words, event.text);
    plan.push_back(std::move(event));
  }
  return plan;
}

Plan PlanOf(std::uint64_t seed) {
  Random random(seed);
  Plan plan = {{"world", static_cast<std::int64_t>(random.Below(1'000'000)),
                static_cast<std::int64_t>(random.Below(16))}};
  const auto jobs = static_cast<std::int64_t>(1 + random.Below(15));
  for (std::int64_t job = 0; job < kJobs; ++job) {
    if (((jobs >> job) & 1) == 0) continue;
    plan.push_back({"add", job});
    plan.push_back({"run", job});
  }
  // The first reading must grow old.
  for (int i = 0; i < 6; ++i) plan.push_back({"pass", 2'000});
  for (std::uint64_t i = 20 + random.Below(60); i > 0; --i) {
    const Event event = Pick(random);
    const std::int64_t job = event.first, next = static_cast<std::int64_t>(random.Below(kJobs));
    if (event.verb == "remove") plan.insert(plan.end(), {{"stop", job}, {"pass", 1500}});
    if (event.verb == "skip") plan.insert(plan.end(), {{"pause", job}, {"pass", 1500}});
    plan.push_back(event);
    if (event.verb == "skip") {
      plan.push_back({"run", job});
      plan.push_back({"pause-at", static_cast<std::int64_t>(random.Below(60)), job, "block.dat"});
    }
    if (event.verb == "remove") plan.insert(plan.end(), {{"add", next}, {"run", next}});
    // Often one misfortune comes upon another.
    for (bool more = IsFault(event) && random.Chance(.5); more; more = random.Chance(.3)) {
      Event upon = Pick(random);
      while (!IsFault(upon)) upon = Pick(random);
      upon.first = static_cast<std::int64_t>(random.Below(random.Chance(.7) ? 8 : 60));
      upon.text.insert(0, "+");
      plan.push_back(upon);
    }
  }
  return plan;
}

}  // namespace quillmere::sim
