// SPDX-License-Identifier: MIT
// A client library whose connections lead to source and destination models: the 13 functions, on a
// clock that calls move on. One at a time and one thread: the table serves the one made last.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "oracle/oci_abi.h"
#include "sim/destination_model.h"
#include "sim/source_answers.h"
#include "support/hand_clock.h"

namespace quillmere::sim {

class ModelOci {
 public:
  explicit ModelOci(HandClock& clock);
  ~ModelOci();
  ModelOci(const ModelOci&) = delete;
  ModelOci& operator=(const ModelOci&) = delete;

  // Models are reached by their connect names and must outlive this.
  void Add(const std::string& name, SourceModel& source) { sources_[name] = &source; }
  void Add(const std::string& name, DestinationModel& model) { destinations_[name] = &model; }
  OciApi Api() const;
  std::int64_t Now() const { return clock_.now.load().ms; }

  // What an execution on a source and on a destination, and a round trip of fetched rows, cost:
  // the source goes on working meanwhile.
  std::int64_t source_ms = 1, destination_ms = 0, round_trip_ms = 1;

  // Asked before each call on a handle, with its name (StmtExecute) and its statement or connect
  // name where it has one: what goes wrong with it.
  struct Fault {
    oci::sword status = oci::kError;
    int code = 3113;
    bool served_before = false;  // the server has done it, but the answer is lost
    bool connection_lost = true;
  };
  std::function<std::optional<Fault>(std::string_view call, std::string_view text)> fault;

  // The program died: its handles are gone, and a destination notices after so many ms.
  void Die(std::int64_t noticed_after_ms = 0);
  std::size_t LiveHandles() const;  // but for sessions, which stay with the library

 private:
  struct Handle;
  void Free(const void* handle);
  template <typename Serve>
  oci::sword Served(std::string_view call, const void* on, oci::ub4 type, std::string_view text,
                    Serve serve);
  oci::sword Error(int code);
  void Lose(Handle& server);
  void Tick(std::int64_t ms, SourceModel* source);
  oci::sword Execute(Handle& server, Handle& statement);
  int ExecuteOnSource(Handle& server, Handle& statement);
  int OpenContents(Handle& server, Handle& statement);
  oci::sword Fetch(Handle& statement);
  oci::sword FetchMined(Handle& statement);

  HandClock& clock_;
  std::map<std::string, SourceModel*, std::less<>> sources_;
  std::map<std::string, DestinationModel*, std::less<>> destinations_;
  std::set<Handle*, std::less<>> handles_;  // found by the address that a call names
  std::string message_;
  int code_ = 0;
  std::int64_t commit_second_ = -1;  // whose text is commit_time_
  std::string commit_time_;
};

}  // namespace quillmere::sim
