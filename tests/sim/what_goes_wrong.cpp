// SPDX-License-Identifier: MIT
// The simulation's operations on files and calls of the client library, and the faults that come
// with them.
#include <algorithm>
#include <new>

#include "sim/job_under_test.h"

namespace quillmere::sim {
namespace {

constexpr std::uint32_t Bits(std::initializer_list<Fault> faults) {
  std::uint32_t bits = 0;
  for (const Fault fault : faults) bits |= 1U << static_cast<unsigned>(fault);
  return bits;
}

constexpr std::uint32_t kAny = Bits({Fault::Die, Fault::Power, Fault::Pause, Fault::Stop});
constexpr std::uint32_t kReads = kAny | Bits({Fault::Io, Fault::Denied});
constexpr std::uint32_t kChanges = kReads | Bits({Fault::NoSpace});
constexpr std::uint32_t kWrites = kReads | Bits({Fault::ShortWrite});
constexpr std::uint32_t kLocal = kAny | Bits({Fault::Refused});
constexpr std::uint32_t kRemote =
    kLocal | Bits({Fault::Lost, Fault::Unanswered, Fault::WithInfo, Fault::NoData});
constexpr std::uint32_t kMemory = Bits({Fault::NoMemory});
constexpr std::uint32_t kInAStep = kMemory | Bits({Fault::Pause, Fault::Stop});

std::uint32_t FaultsOfFile(std::string_view what) {
  for (const std::string_view read : {"open", "read", "look", "list", "lock", "close"}) {
    if (what == read) return kReads;
  }
  return what == "write" || what == "append" ? kWrites : kChanges;
}

std::uint32_t FaultsOfCall(std::string_view call) {
  if (call == "HandleFree") return kAny;
  if (call == "HandleAlloc") return kLocal | kMemory;
  // No data is the end of the rows: nobody can tell that it is not.
  if (call == "StmtFetch2") {
    return (kRemote | kMemory | Bits({Fault::Switch})) & ~Bits({Fault::NoData});
  }
  const bool remote = call.starts_with("Session") || call.starts_with("Server");
  return remote || call == "StmtExecute" ? kRemote : kLocal;
}

// Without what differs from run to run: names of jobs, numbers, literals.
std::string PlaceOf(std::string_view what, std::string_view text, bool file) {
  std::string place = std::string(what) + ' ';
  if (file) {
    std::string_view name = text.substr(text.rfind('/') + 1);
    if (name.size() > 2 && name[0] == 'J' && name[1] < 'e') {
      place += "<job>";
      name.remove_prefix(3);
    }
    for (const char c : name) {
      const bool digit = c >= '0' && c <= '9';
      if (!digit || !place.ends_with('#')) place += digit ? '#' : c;
    }
    return place;
  }
  for (const std::string_view change : {"INSERT INTO ", "UPDATE  ", "DELETE FROM "}) {
    if (text.starts_with(change)) return place + "a change";
  }
  return place.append(text.substr(0, std::min<std::size_t>(text.find_first_of("'0123456789"), 44)));
}

}  // namespace

void Simulation::Arm(Fault fault, const Event& event) {
  const bool upon = event.text.starts_with('+') && !armed_.empty();
  const auto first = static_cast<std::uint64_t>(event.first) + 1;
  const std::size_t where = event.text.find_first_not_of('+');
  armed_.push_back({upon ? first : operation_ + first, fault, event.second,
                    where == std::string::npos ? "" : event.text.substr(where), ++last_armed_,
                    upon ? armed_.back().id : 0});
  if (!upon) next_armed_ = std::min(next_armed_, operation_ + first);
}

bool Simulation::Fires(const Armed& armed, const Operation& operation) {
  const auto number = static_cast<std::size_t>(armed.fault);
  if (((operation.faults >> number) & 1U) == 0) return false;
  const bool behind_commit = committed_at_ + 1 == operation_;
  if (armed.fault == Fault::Die && armed.number == 1 && !behind_commit) return false;
  const bool file = operation.text.starts_with('/');
  if (!armed.where.empty() &&
      PlaceOf(operation.what, operation.text, file).find(armed.where) == std::string::npos) {
    return false;
  }
  Trace(kFaults[number], operation.text);
  ++counts_.of_kind[number];
  if (!places_) return true;
  Counts::Place& place = PlaceAt(operation);
  ++place.fired[number];
  if (armed.fault <= Fault::Unanswered || armed.fault == Fault::NoMemory) {
    came_.emplace_back(&place, number);
  }
  return true;
}

Counts::Place& Simulation::PlaceAt(const Operation& operation) {
  const bool file = operation.text.starts_with('/');
  Counts::Place& place = counts_.places[PlaceOf(operation.what, operation.text, file)];
  place.faults |= operation.faults;
  return place;
}

std::optional<Fault> Simulation::Meet(Operation operation) {
  if (!stepping_) operation.faults &= ~kInAStep;
  ++operation_;
  ++counts_.operations;
  if (trace_ != nullptr) Trace(operation.what, operation.text);
  if (noted_ != nullptr) noted_->push_back(operation.faults);
  if (places_) PlaceAt(operation);
  if (operation_ < next_armed_) return std::nullopt;
  const auto due = std::find_if(armed_.begin(), armed_.end(), [&](const Armed& armed) {
    return armed.upon == 0 && armed.at <= operation_ && Fires(armed, operation);
  });
  std::optional<Fault> met;
  if (due != armed_.end()) {
    const Armed armed = *due;
    const bool again = armed.number > 0 && (armed.fault <= Fault::Refused);
    if (again) --due->number;
    if (!again) armed_.erase(due);
    for (Armed& next : armed_) {
      if (next.upon == armed.id) next.upon = 0, next.at += operation_;
    }
    met = armed.fault;
    given_up_ |= met == Fault::NoMemory;
    if (met == Fault::Die || met == Fault::Power) {
      dead_ = true;
      if (met == Fault::Power) power_ = armed.number;
      disk_->CutOff();
    } else if (met == Fault::Switch) {
      met.reset();
      RedoThread& thread = sources_[0]->Thread(0);
      for (std::size_t i = 0; i < thread.Online().size(); ++i)
        thread.Switch(thread.LastWritten() + 1);
    } else if (met == Fault::Pause || met == Fault::Stop) {
      Job& job = *jobs_[static_cast<std::size_t>(armed.number)];
      JobList& list = program_->workspace->Jobs();
      const std::size_t index = job.IndexIn(list);
      met.reset();
      if (index != JobList::kNotFound && armed.fault == Fault::Pause) RequestPause(list, index);
      if (index != JobList::kNotFound && armed.fault == Fault::Stop) RequestStop(list, index);
      if (index != JobList::kNotFound && list.State(index) == JobState::Pausing)
        job.asked = Job::Asked::ToRest;
      if (index != JobList::kNotFound && list.State(index) == JobState::Stopping) job.AskedToStop();
    }
  }
  next_armed_ = ~std::uint64_t{0};
  for (const Armed& armed : armed_) {
    if (armed.upon == 0) next_armed_ = std::min(next_armed_, armed.at);
  }
  return met;
}

FileStatus Simulation::OnFile(const testing::FileOperation& operation) {
  if (dead_) return {};
  const auto met = Meet({operation.what, operation.path, FaultsOfFile(operation.what)});
  if (!met || dead_) return {};
  switch (*met) {
    case Fault::NoSpace:
      return {FileCode::NoSpace, "No space left on device"};
    case Fault::ShortWrite:
      return {FileCode::NoSpace, "short write"};
    case Fault::Denied:
      return {FileCode::Denied, "Permission denied"};
    default:
      return {FileCode::Failed, "Input/output error"};
  }
}

std::optional<ModelOci::Fault> Simulation::OnCall(std::string_view call, std::string_view text) {
  if (dead_) return ModelOci::Fault{};
  const auto met = Meet({call, text, FaultsOfCall(call)});
  if (dead_) return ModelOci::Fault{};
  if (!met) return std::nullopt;
  switch (*met) {
    case Fault::NoMemory:
      throw std::bad_alloc();
    case Fault::Refused:
      return ModelOci::Fault{.code = 54, .connection_lost = false};
    case Fault::Unanswered:
      if (call == "SessionEnd") {
        for (const auto& job : jobs_) job->may_go_back = true;
      }
      return ModelOci::Fault{.served_before = true};
    case Fault::WithInfo:
      return ModelOci::Fault{oci::kSuccessWithInfo, 28002, true, false};
    case Fault::NoData:
      return ModelOci::Fault{oci::kNoData, 1403, false, false};
    default:
      return ModelOci::Fault{};
  }
}

void Simulation::Tell() {
  if (dead_) return;
  if (Meet({"tell", "", kAny | kMemory}) != Fault::NoMemory) return;
  for (const auto& job : jobs_) ++job->told;  // it would have been
  throw std::bad_alloc();
}

}  // namespace quillmere::sim
