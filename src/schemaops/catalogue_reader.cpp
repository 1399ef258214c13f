// SPDX-License-Identifier: MIT
#include <chrono>

#include "foundation/text.h"
#include "schemaops/item_run.h"

namespace quillmere {
namespace {

// Progress is told that often, whatever there is to read.
constexpr std::chrono::milliseconds kProgressInterval{50};

// A column whose texts mostly repeat the row before.
class RepeatingColumn {
 public:
  explicit RepeatingColumn(TextPool& pool) : pool_(pool) {}

  const SharedText& Share(std::string_view text) {
    if (last_ != text) last_ = pool_.Share(text);
    return last_;
  }

 private:
  TextPool& pool_;
  SharedText last_;
};

std::string NameOf(const TableRecord& table) {
  return table.table_owner.String() + "." + table.table_name.String();
}

// One reading of a catalogue, into lists of its own.
class Reader {
 public:
  Reader(std::string source, OracleSession& session, LogLines& log, ProgressListener& listener)
      : source_(std::move(source)), session_(session), log_(log), listener_(listener) {}

  CatalogueRead Read(std::string& reason);
  void MoveInto(DataSource& source);

 private:
  // False when one of the queries failed, with its line.
  bool ReadKeyAndIndexes(const TableRecord& table, std::string& line);
  bool ListTables();
  void LogWarnings();
  bool Cancelled();
  bool ListCancelled(std::size_t rows);
  bool Tell(const std::string& what);
  CatalogueRead ReadAll(std::string& reason);

  const std::string source_;  // its name
  OracleSession& session_;
  LogLines& log_;
  ProgressListener& listener_;
  TextPool pool_;
  RepeatingColumn key_status_{pool_};
  RepeatingColumn index_type_{pool_};
  RepeatingColumn index_status_{pool_};
  std::vector<IndexInfo> table_indexes_;
  std::vector<TableRecord> tables_;
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
    what = "read table " + NameOf(tables_[done_]);
  }
  return Tell(what);
}

// Between two rows of a list.
bool Reader::ListCancelled(std::size_t rows) {
  const auto now = std::chrono::steady_clock::now();
  if (now < next_progress_) return cancelled_;
  next_progress_ = now + kProgressInterval;
  std::string what = "read the list of tables: " + std::to_string(rows) + " so far";
  if (done_ < tables_.size()) what = "read table " + NameOf(tables_[done_]);
  return Tell(what);
}

bool Reader::Tell(const std::string& what) {
  cancelled_ = cancelled_ || !listener_.OnProgress(what, done_, tables_.size());
  return cancelled_;
}

void Reader::LogWarnings() {
  for (const std::string& warning : session_.TakeWarnings())
    log_.Add(source_ + ": " + warning, true);
}

bool Reader::ListTables() {
  std::vector<TableInfo> tables;
  const bool listed = session_.ListTables(tables);
  LogWarnings();
  if (!listed) return false;
  RepeatingColumn owner(pool_);
  RepeatingColumn tablespace(pool_);
  tables_.reserve(tables.size());
  for (const TableInfo& table : tables) {
    tables_.push_back({owner.Share(table.owner),
                       table.table_name,
                       tablespace.Share(table.tablespace_name),
                       {},
                       table.num_rows});
  }
  return true;
}

bool Reader::ReadKeyAndIndexes(const TableRecord& table, std::string& line) {
  const SharedText& owner = table.table_owner;
  const SharedText& name = table.table_name;
  std::int32_t count = 0;
  if (!session_.CountPrimaryKeys(owner, name, count)) {
    line = "check if has key of  " + name.String() + " failed. Reason: " + session_.LastError();
    return false;
  }
  KeyInfo key;
  if (count > 0) {
    if (!session_.GetPrimaryKey(owner, name, key)) {
      line = "get key of table " + name.String() + " failed. Reason: " + session_.LastError();
      return false;
    }
    keys_.push_back({owner, name, key.constraint_name, key_status_.Share(key.status)});
  }
  if (Cancelled()) return true;
  if (!session_.ListIndexes(owner, name, table_indexes_)) {
    line = "get index of table " + name.String() + " failed. Reason: " + session_.LastError();
    return false;
  }
  for (const IndexInfo& index : table_indexes_) {
    indexes_.push_back({owner, name, owner, index.index_name, index_type_.Share(index.index_type),
                        index_status_.Share(index.status), 0});
  }
  return true;
}

CatalogueRead Reader::Read(std::string& reason) {
  if (Cancelled()) return CatalogueRead::Cancelled;
  session_.WatchRows([this](std::size_t rows) { return !ListCancelled(rows); });
  const CatalogueRead result = ReadAll(reason);
  session_.WatchRows({});
  return result;
}

CatalogueRead Reader::ReadAll(std::string& reason) {
  if (!ListTables()) {
    if (cancelled_) return CatalogueRead::Cancelled;
    reason = "Can't not get table info list,Reason: " + session_.LastError();
    log_.Add(reason, true);
    return CatalogueRead::Failed;
  }
  for (; done_ < tables_.size(); ++done_) {
    if (Cancelled()) return CatalogueRead::Cancelled;
    std::string line;
    const bool read = ReadKeyAndIndexes(tables_[done_], line);
    LogWarnings();
    if (cancelled_) return CatalogueRead::Cancelled;
    if (read) continue;
    log_.Add(line, true);
    if (!ConnectionIsGone(line)) continue;
    reason = line;
    return CatalogueRead::Failed;
  }
  return cancelled_ ? CatalogueRead::Cancelled : CatalogueRead::Read;
}

void Reader::MoveInto(DataSource& source) {
  source.tables = std::move(tables_);
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
      const std::string_view word = TrimRight(line.substr(begin, end - begin), ",.");
      if (IsRelease(word)) return std::string(word);
      begin = end + 1;
    }
  }
  return {};
}

void WatchLists(OracleSession& session, ProgressListener& listener, std::string what) {
  session.WatchRows(
      [&listener, what = std::move(what),
       next = std::chrono::steady_clock::now() + kProgressInterval](std::size_t rows) mutable {
        const auto now = std::chrono::steady_clock::now();
        if (now < next) return true;
        next = now + kProgressInterval;
        return listener.OnProgress(what + ": " + std::to_string(rows) + " rows read", 0, 0);
      });
}

std::string ReadVersion(OracleSession& session) {
  std::vector<std::string> banner;
  if (!session.GetVersionBanner(banner)) return {};
  return VersionFromBanner(banner);
}

CatalogueRead SchemaOperations::ReadCatalogue(OracleSession& session, DataSource& source,
                                              ProgressListener& listener, std::string& reason) {
  Reader reader(source.name, session, log_, listener);
  const CatalogueRead result = reader.Read(reason);
  if (result != CatalogueRead::Cancelled) reader.MoveInto(source);
  if (result == CatalogueRead::Read) source.needsave = true;
  return result;
}

CatalogueRead SchemaOperations::RefreshCatalogue(DataSource& source, ProgressListener& listener,
                                                 std::string& reason) {
  OracleSession session(library_);
  if (!listener.OnConnect("connect to " + source.name)) return CatalogueRead::Cancelled;
  if (!session.Connect(source)) {
    reason = "Can't not connect to database: " + source.name;
    log_.Add(reason, true);
    log_.Add(source.name + ": " + session.LastError(), true);
    reason += ". Reason: " + session.LastError();
    return CatalogueRead::Failed;
  }
  return RefreshCatalogue(session, source, listener, reason);
}

CatalogueRead SchemaOperations::RefreshCatalogue(OracleSession& session, DataSource& source,
                                                 ProgressListener& listener, std::string& reason) {
  log_.Add("connect to database: " + source.name + " successed, when refresh.", false);
  return ReadCatalogue(session, source, listener, reason);
}

}  // namespace quillmere
