// SPDX-License-Identifier: MIT
// The walk over the items of one schema operation: what was done, told to the listener and the log.
// Internal to schemaops/.
#pragma once

#include <chrono>

#include "schemaops/schema_operations.h"

namespace quillmere {

class ItemRun {
 public:
  ItemRun(LogLines& log, SchemaListener& listener) : log_(log), listener_(listener) {}

  // each(item): does one item and ends with Result. verb: "drop", for the progress.
  template <typename Each>
  void ForEach(std::string_view verb, const std::vector<SchemaItem>& items, Each each) {
    for (const SchemaItem& item : items) {
      if (!Begin(verb, item, items.size())) return;
      each(item);
    }
  }

  // Connects; the refusal is the given words with the server's. False also when it is not wanted
  // any more.
  bool Connect(OracleSession& session, const LogOn& log_on, std::string_view failed);
  void Refuse(std::string reason) { run_.refused = std::move(reason); }

  // A result: one of the two texts.
  void Result(bool ok, const std::string& done, const std::string& failed);

  // What an item consists of that went well.
  void Made(std::string_view line) { Log(line, false); }

  // How many of them are there now, for the log.
  void Sum(std::size_t items, const std::string& source, const std::string& target);

  // Something else that belongs into the error log.
  void Detail(std::string_view line);
  // A step of an item that failed; the item's result repeats it.
  void Step(std::string_view line) { listener_.OnDetail(line); }
  void Warnings(OracleSession& session);

  SchemaRun Take() { return std::move(run_); }

 private:
  bool GoesOn(std::size_t rows);
  bool Begin(std::string_view verb, const SchemaItem& item, std::size_t total);
  void Log(std::string_view line, bool error);

  LogLines& log_;
  SchemaListener& listener_;
  SchemaRun run_;
  std::string what_;  // the item in hand, as the progress has it
  std::size_t total_ = 0;
  std::chrono::steady_clock::time_point next_told_{};
};

}  // namespace quillmere
