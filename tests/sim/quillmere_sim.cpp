// SPDX-License-Identifier: MIT
// quillmere_sim: runs of the simulator.
//   --seeds FROM COUNT    plays the plans of these seeds; of one that goes wrong the shrunk plan
//   --seconds N           the same from a new seed on, for so long
//   --replay FILE...      plays plans
//   --report FILE...      each fault at each operation of plans, and where which came how often
//   --plan SEED           prints the seed's plan
//   --trace FILE          plays a plan and prints every operation
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

#include "sim/simulation.h"

namespace quillmere::sim {
namespace {

constexpr std::size_t kSmall = 20;

std::string Play(const Plan& plan, Counts& counts, std::ostream* trace = nullptr) {
  Simulation simulation(plan, counts, false, trace);
  return simulation.Run();
}

// What was found without what differs from run to run.
std::string KindOf(std::string wrong) {
  if (wrong.starts_with('J')) wrong.erase(0, wrong.find(':'));
  std::erase_if(wrong, [](char c) { return c >= '0' && c <= '9'; });
  return wrong.substr(0, 30);
}

// The plan with as little as goes wrong in the same way: parts are taken out, halves first.
Plan Shrunk(Plan plan, const std::string& wrong) {
  Counts counts;
  for (std::size_t part = plan.size() / 2; part > 0; part = part == 1 ? 0 : (part + 1) / 2) {
    for (std::size_t from = 1; from < plan.size();) {
      Plan less = plan;
      const auto begin = less.begin() + static_cast<std::ptrdiff_t>(from);
      less.erase(begin, begin + static_cast<std::ptrdiff_t>(std::min(part, plan.size() - from)));
      if (KindOf(Play(less, counts)) != KindOf(wrong)) {
        from += part;
      } else {
        plan = std::move(less);
      }
    }
  }
  return plan;
}

struct Seeds {
  std::uint64_t next, end;
  double seconds;
};

int PlaySeeds(Seeds seeds) {
  const auto begin = std::chrono::steady_clock::now();
  const auto passed = [&] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  Counts counts;
  const std::uint64_t first = seeds.next;
  for (; seeds.next < seeds.end && passed() < seeds.seconds; ++seeds.next) {
    const Plan plan = PlanOf(seeds.next);
    const std::string wrong = Play(plan, counts);
    if (wrong.empty()) continue;
    const Plan shrunk = Shrunk(plan, wrong);
    Counts unused;
    std::cout << "# seed " << seeds.next << ", after " << passed() << " s: " << wrong << "\n# "
              << shrunk.size() << " of " << plan.size() << " events: " << Play(shrunk, unused)
              << "\n"
              << TextOf(shrunk) << (shrunk.size() > kSmall + 1 ? "# not small\n" : "");
    return 1;
  }
  std::cout << "seeds " << first << " to " << seeds.next - 1 << ": " << counts.statements
            << " statements, " << counts.deaths << " deaths, " << counts.passes << " passes, "
            << counts.operations << " operations, " << counts.moments << " times the one moment, "
            << passed() << " s\n";
  return 0;
}

// A life that does not come there proves nothing.
constexpr std::string_view kOfALife[] = {"StmtExecute a change", "remove commit.dat",
                                         "rename <job>", "rename skip.xml", "remove skip.xml"};

// Each fault at each operation of the plan.
std::string PlayEach(const Plan& plan, Counts& counts) {
  Simulation::Operations operations;
  Counts usual;
  {
    Simulation simulation(plan, usual, true, nullptr);
    simulation.Note(operations);
    if (std::string wrong = simulation.Run(); !wrong.empty()) return wrong;
  }
  for (const std::string_view place : kOfALife) {
    if (!usual.places.contains(std::string(place))) return std::string(place) + " is never met";
  }
  for (const auto& [name, place] : usual.places) counts.places[name].usual |= place.faults;
  for (std::size_t at = 0; at < operations.size(); ++at) {
    for (std::size_t fault = 0; fault < kFaultCount; ++fault) {
      if (((operations[at] >> fault) & 1U) == 0) continue;
      Plan with = plan;
      const bool of_job = fault >= static_cast<std::size_t>(Fault::Pause);
      const std::int64_t second = of_job ? plan[1].first : 0;
      with.insert(with.begin() + 1,
                  {std::string(kFaults[fault]), static_cast<std::int64_t>(at), second});
      Simulation simulation(with, counts, true, nullptr);
      const std::string wrong = simulation.Run();
      if (!wrong.empty()) return TextOf(with) + wrong;
    }
  }
  return {};
}

// What may fail without a word: the outcome is the same, or it is the telling that fails.
constexpr std::string_view kSilent[] = {"look ",           "open source.dat", "quillmere.lock",
                                        "lock work",       "error.log",       "remove <job>.",
                                        "remove skip.xml", "AttrSet",         "flush folder <job>",
                                        "SessionEnd",      "ServerDetach",    "list kept"};

// True when each that can come without another one before has come, and was told of.
bool Report(const Counts& counts) {
  std::size_t never = 0, silent = 0;
  for (const auto& [name, place] : counts.places) {
    std::cout << name << ":";
    for (std::size_t i = 0; i < kFaultCount; ++i) {
      if (((place.faults >> i) & 1U) == 0) continue;
      std::cout << ' ' << kFaults[i] << ' ' << place.fired[i];
      never += ((place.usual >> i) & 1U) != 0 && place.fired[i] == 0 ? 1 : 0;
      const bool may = std::any_of(std::begin(kSilent), std::end(kSilent),
                                   [&at = name](auto one) { return at.find(one) != at.npos; });
      if (place.silent[i] == 0) continue;
      silent += may ? 0 : 1;
      std::cout << (may ? " (" : " SILENT (") << place.silent[i] << " without a word)";
    }
    std::cout << "\n";
  }
  std::cout << counts.places.size() << " places, " << never << " faults that never came, " << silent
            << " silent, " << counts.deaths << " deaths\n";
  return never + silent == 0;
}

int PlayEachOf(std::vector<Plan> plans) {
  Counts counts;
  for (const Plan& plan : plans) {
    const std::string wrong = PlayEach(plan, counts);
    if (!wrong.empty()) return std::cout << wrong << "\n", 1;
  }
  return Report(counts) ? 0 : 1;
}

Plan PlanIn(const char* path) {
  std::stringstream text;
  text << std::ifstream(path).rdbuf();
  return ReadPlan(text.str());
}

int Main(int count, char** given) {
  const std::string_view what = count > 1 ? given[1] : "";
  const auto number = [&](int place) {
    return count > place ? std::strtoull(given[place], nullptr, 10) : 0;
  };
  constexpr double kForever = 1e9;
  if (what == "--seeds") return PlaySeeds({number(2), number(2) + number(3), kForever});
  if (what == "--seconds") {
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    const auto seed = count > 3 ? number(3) : static_cast<std::uint64_t>(now) % 1'000'000'000;
    return PlaySeeds({seed, ~std::uint64_t{0}, static_cast<double>(number(2))});
  }
  if (what == "--plan") std::cout << TextOf(PlanOf(number(2)));
  if (what == "--report") {
    std::vector<Plan> plans;
    for (int i = 2; i < count; ++i) plans.push_back(PlanIn(given[i]));
    return PlayEachOf(std::move(plans));
  }
  int wrong = 0;
  for (int i = 2; i < count && (what == "--replay" || what == "--trace"); ++i) {
    Counts counts;
    const std::string found =
        Play(PlanIn(given[i]), counts, what == "--trace" ? &std::cout : nullptr);
    std::cout << given[i] << ": " << (found.empty() ? "as it should be" : found) << "\n";
    wrong += found.empty() ? 0 : 1;
  }
  return wrong == 0 ? 0 : 1;
}

}  // namespace
}  // namespace quillmere::sim

int main(int count, char** given) {
  return quillmere::sim::Main(count, given);
}
