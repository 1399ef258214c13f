// SPDX-License-Identifier: MIT
#include "schemaops/item_run.h"

namespace quillmere {

bool ItemRun::Begin(std::string_view verb, const SchemaItem& item, std::size_t total) {
  const std::string what = std::string(verb) + " " + item.owner + "." + item.name;
  if (listener_.OnProgress(what, run_.succeeded + run_.failed, total)) return true;
  run_.cancelled = true;
  return false;
}

void ItemRun::Log(std::string_view line, bool error) {
  if (!log_.Add(line, error)) run_.logged = false;
}

void ItemRun::Result(bool ok, const std::string& done, const std::string& failed) {
  ++(ok ? run_.succeeded : run_.failed);
  const std::string& line = ok ? done : failed;
  if (!ok && run_.first_failure.empty()) run_.first_failure = line;
  Log(line, !ok);
  listener_.OnResult(line, !ok);
}

void ItemRun::Detail(std::string_view line) {
  Log(line, true);
  listener_.OnDetail(line);
}

void ItemRun::Warnings(OracleSession& session) {
  for (const std::string& warning : session.TakeWarnings()) Detail(warning);
}

SchemaItem ItemOf(const KeyRecord& key) {
  return {key.table_owner.String(), key.table_name.String(), key.key_name.String()};
}

SchemaItem ItemOf(const IndexRecord& index) {
  return {index.table_owner.String(), index.table_name.String(), index.index_name.String()};
}

SchemaItem ItemOf(const TableRecord& table) {
  return {table.table_owner.String(), table.table_name.String(), table.table_name.String()};
}

}  // namespace quillmere
