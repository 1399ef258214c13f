// SPDX-License-Identifier: MIT
// What happens in a run of the simulator, as text: an event a line, a verb and its numbers. A plan
// says all there is to chance: the same text gives the same run.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::sim {

// What goes wrong with operations on files or calls of the client library. The names are the verbs
// of the plan; the first number says how many operations from there, a text at which places only
// ("remove commit.dat"), with "+" before it counted from where the one above has struck. Second
// number of what fails: how many times more.
enum class Fault {
  NoSpace,     // of a write half of the bytes are there
  ShortWrite,  // the same, for another reason
  Io,
  Denied,
  Refused,     // an error of the server or the client, nothing was done
  Lost,        // the connection, before the server did it
  Unanswered,  // and after
  WithInfo,    // done, with success with info
  NoData,      // not done, with no data
  NoMemory,
  Die,    // killed before the operation; 2: 1 only if the last one was a destination's commit
  Power,  // the power fails before it; 2: what the disk kept, 0 nothing that was not flushed
  Pause,  // no fault: the operator asks for it in the midst of a step; 2: the job
  Stop,
  Switch,  // no fault either: all logs of the first source are used again while it is read
};
inline constexpr std::string_view kFaults[] = {
    "nospace", "short",    "io",  "denied", "refused",  "lost",    "unanswered", "withinfo",
    "nodata",  "nomemory", "die", "power",  "pause-at", "stop-at", "switch-at"};
inline constexpr std::size_t kFaultCount = std::size(kFaults);

struct Event {
  std::string verb;
  std::int64_t first = 0, second = 0;
  std::string text{};
};

using Plan = std::vector<Event>;

std::string TextOf(const Plan& plan);
// Lines that begin with '#' are left out.
Plan ReadPlan(std::string_view text);

Plan PlanOf(std::uint64_t seed);

}  // namespace quillmere::sim
