// SPDX-License-Identifier: MIT
// The walk over the items of one schema operation: what was done, told to the listener and the log.
// Internal to schemaops/.
#pragma once

#include "schemaops/schema_operations.h"

namespace quillmere {

class ItemRun {
 public:
  ItemRun(MessageLog& log, SchemaListener& listener) : log_(log), listener_(listener) {}

  // each(item): does one item and ends with Result. verb: "drop", for the progress.
  template <typename Each>
  void ForEach(std::string_view verb, const std::vector<SchemaItem>& items, Each each) {
    for (const SchemaItem& item : items) {
      if (!Begin(verb, item, items.size())) return;
      each(item);
    }
  }

  void Refuse(std::string reason) { run_.refused = std::move(reason); }

  // A result: one of the two texts.
  void Result(bool ok, const std::string& done, const std::string& failed);

  // Something else that belongs into the error log.
  void Detail(std::string_view line);
  // A step of an item that failed; the item's result repeats it.
  void Step(std::string_view line) { listener_.OnDetail(line); }
  void Warnings(OracleSession& session);

  SchemaRun Take() { return std::move(run_); }

 private:
  bool Begin(std::string_view verb, const SchemaItem& item, std::size_t total);
  void Log(std::string_view line, bool error);

  MessageLog& log_;
  SchemaListener& listener_;
  SchemaRun run_;
};

}  // namespace quillmere
