#include <chrono>

#include "schemaops/item_run.h"

namespace quillmere {
namespace {

// Progress is told that often, whatever there is to read.
constexpr std::chrono::milliseconds kProgressInterval{50};

// One reading of a catalogue, into lists of its own.
class Reader {
 public:
  Reader(OracleSession& session, MessageLog& log, ProgressListener& listener)
      : session_(session), log_(log), listener_(listener) {}

  CatalogueRead Read(std::string& reason);
  void MoveInto(DataSource& source);

 private:
  // False when one of the queries failed, with its line.
  bool ReadKeyAndIndexes(const TableInfo& table, std::string& line);
  void LogWarnings();
  bool Cancelled();

  OracleSession& session_;
  MessageLog& log_;
  ProgressListener& listener_;
  std::vector<TableInfo> tables_;
  std::vector<IndexInfo> table_indexes_;
  std::vector<KeyRecord> keys_;
  std::vector<IndexRecord> indexes_;
  std::size_t done_ = 0;
  bool cancelled_ = false;
  std::chrono::steady_clock::time_point next_progress_{};
};

// Without its connection no table that follows can be read either.
bool ConnectionIsGone(const std::string& error) {
  for (const char* code : {"ORA-00028", "ORA-01012", "ORA-03113", "ORA-03114", "ORA-03135",
                           "ORA-12537", "ORA-12570", "ORA-12571"}) {
    if (error.find(code) != std::string::npos) return true;
  }
  return false;
}

bool Reader::Cancelled() {
  const auto now = std::chrono::steady_clock::now();
  if (now < next_progress_) return cancelled_;
  next_progress_ = now + kProgressInterval;
  std::string what = "read the list of tables";
  if (done_ < tables_.size()) {
    what = "read table " + tables_[done_].owner + "." + tables_[done_].table_name;
  }
  cancelled_ = cancelled_ || !listener_.OnProgress(what, done_, tables_.size());
  return cancelled_;
}

void Reader::LogWarnings() {
  for (const std::string& warning : session_.TakeWarnings()) log_.Add(warning, true);
}

bool Reader::ReadKeyAndIndexes(const TableInfo& table, std::string& line) {
  const std::string& name = table.table_name;
  std::int32_t count = 0;
  if (!session_.CountPrimaryKeys(table.owner, name, count)) {
    line = "check if has key of  " + name + " failed. Reason: " + session_.LastError();
    return false;
  }
  KeyInfo key;
  if (count > 0) {
    if (!session_.GetPrimaryKey(table.owner, name, key)) {
      line = "get key of table " + name + " failed. Reason: " + session_.LastError();
      return false;
    }
    keys_.push_back({std::move(key.owner), std::move(key.table_name),
                     std::move(key.constraint_name), std::move(key.status)});
  }
  if (Cancelled()) return true;
  if (!session_.ListIndexes(table.owner, name, table_indexes_)) {
    line = "get index of table " + name + " failed. Reason: " + session_.LastError();
    return false;
  }
  for (IndexInfo& index : table_indexes_) {
    indexes_.push_back({table.owner, name, table.owner, std::move(index.index_name),
                        std::move(index.index_type), std::move(index.status), 0});
  }
  return true;
}

CatalogueRead Reader::Read(std::string& reason) {
  if (Cancelled()) return CatalogueRead::Cancelled;
  const bool listed = session_.ListTables(tables_);
  LogWarnings();
  if (!listed) {
    reason = "Can't not get table info list,Reason: " + session_.LastError();
    log_.Add(reason, true);
    tables_.clear();
    return CatalogueRead::Failed;
  }
  for (; done_ < tables_.size(); ++done_) {
    if (Cancelled()) return CatalogueRead::Cancelled;
    std::string line;
    const bool read = ReadKeyAndIndexes(tables_[done_], line);
    LogWarnings();
    if (read) continue;
    log_.Add(line, true);
    if (!ConnectionIsGone(line)) continue;
    reason = line;
    return CatalogueRead::Failed;
  }
  return cancelled_ ? CatalogueRead::Cancelled : CatalogueRead::Read;
}

void Reader::MoveInto(DataSource& source) {
  source.tables.clear();
  source.tables.reserve(tables_.size());
  for (TableInfo& table : tables_) {
    source.tables.push_back({std::move(table.owner),
                             std::move(table.table_name),
                             std::move(table.tablespace_name),
                             {},
                             table.num_rows});
  }
  keys_.shrink_to_fit();
  source.primary_keys = std::move(keys_);
  indexes_.shrink_to_fit();
  source.indexes = std::move(indexes_);
}

bool IsRelease(std::string_view word) {
  return !word.empty() && word.front() >= '0' && word.front() <= '9' &&
         word.find('.') != std::string_view::npos &&
         word.find_first_not_of("0123456789.") == std::string_view::npos;
}

}  // namespace

std::string VersionFromBanner(const std::vector<std::string>& banner) {
  for (const std::string_view line : banner) {
    for (std::size_t begin = 0; begin < line.size();) {
      const std::size_t end = std::min(line.find(' ', begin), line.size());
      std::string_view word = line.substr(begin, end - begin);
      while (word.ends_with(',') || word.ends_with('.')) word.remove_suffix(1);
      if (IsRelease(word)) return std::string(word);
      begin = end + 1;
    }
  }
  return {};
}

std::string ReadVersion(OracleSession& session) {
  std::vector<std::string> banner;
  if (!session.GetVersionBanner(banner)) return {};
  return VersionFromBanner(banner);
}

CatalogueRead SchemaOperations::ReadCatalogue(OracleSession& session, DataSource& source,
                                              ProgressListener& listener, std::string& reason) {
  Reader reader(session, log_, listener);
  const CatalogueRead result = reader.Read(reason);
  if (result != CatalogueRead::Cancelled) reader.MoveInto(source);
  if (result == CatalogueRead::Read) source.needsave = true;
  return result;
}

CatalogueRead SchemaOperations::RefreshCatalogue(DataSource& source, ProgressListener& listener,
                                                 std::string& reason) {
  OracleSession session(library_);
  if (!ConnectTo(source, session)) {
    reason = "Can't not connect to database: " + source.name;
    log_.Add(reason, true);
    log_.Add(session.LastError(), true);
    reason += ". Reason: " + session.LastError();
    return CatalogueRead::Failed;
  }
  log_.Add("connect to database: " + source.name + " successed, when refresh.", false);
  return ReadCatalogue(session, source, listener, reason);
}

}  // namespace quillmere
