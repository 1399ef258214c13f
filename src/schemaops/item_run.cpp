// SPDX-License-Identifier: MIT
#include "schemaops/item_run.h"

namespace quillmere {
namespace {

constexpr std::chrono::milliseconds kBetweenRows{50};

}  // namespace

bool ItemRun::Begin(std::string_view verb, const SchemaItem& item, std::size_t total) {
  what_ = std::string(verb) + " " + item.owner + "." + item.name;
  total_ = total;
  next_told_ = std::chrono::steady_clock::now() + kBetweenRows;
  if (listener_.OnProgress(what_, run_.succeeded + run_.failed, total)) return true;
  run_.cancelled = true;
  return false;
}

bool ItemRun::Connect(OracleSession& session, const LogOn& log_on, std::string_view failed) {
  if (!listener_.OnConnect("connect to " + log_on.name)) {
    run_.cancelled = true;
    return false;
  }
  if (!session.Connect(log_on)) {
    Refuse(std::string(failed) + session.LastError());
    return false;
  }
  session.WatchRows([this](std::size_t rows) { return GoesOn(rows); });
  return true;
}

// Between two rows of a list that the item in hand takes.
bool ItemRun::GoesOn(std::size_t rows) {
  const auto now = std::chrono::steady_clock::now();
  if (now < next_told_) return true;
  next_told_ = now + kBetweenRows;
  return listener_.OnProgress(what_ + ": " + std::to_string(rows) + " rows read",
                              run_.succeeded + run_.failed, total_);
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

void ItemRun::Sum(std::size_t items, const std::string& source, const std::string& target) {
  Log(std::to_string(run_.succeeded) + " of " + std::to_string(items) + " objects of " + source +
          " were created on " + target,
      run_.failed > 0);
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
