#include "workspace/source_catalogue.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillmere {
namespace {

// "10.2.0.1.0", but not "10g".
bool IsReleaseNumber(std::string_view word) {
  return word.find_first_not_of("0123456789.") == std::string_view::npos &&
         word.find('.') != std::string_view::npos && word.front() != '.' && word.back() != '.';
}

}  // namespace

std::string FindReleaseNumber(std::string_view banner) {
  while (!banner.empty()) {
    const std::string_view word = banner.substr(0, banner.find(' '));
    if (!word.empty() && IsReleaseNumber(word)) return std::string(word);
    banner.remove_prefix(std::min(word.size() + 1, banner.size()));
  }
  return {};
}

std::string ReadVersion(OracleSession& session) {
  std::vector<std::string> banner;
  if (!session.GetVersionBanner(banner)) return {};
  for (const std::string& line : banner) {
    std::string version = FindReleaseNumber(line);
    if (!version.empty()) return version;
  }
  return {};
}

bool ReadSourceCatalogue(OracleSession& session, DataSource& source, MessageLog& log,
                         std::string& reason) {
  source.tables.clear();
  source.primary_keys.clear();
  source.indexes.clear();
  std::vector<TableInfo> tables;
  const bool read = session.ListTables(tables);
  for (const std::string& warning : session.TakeWarnings()) log.Add(warning, true);
  if (!read) {
    reason = "Can't not get table info list,Reason: " + session.LastError();
    log.Add(reason, true);
    return false;
  }
  source.tables.reserve(tables.size());
  for (TableInfo& info : tables) {
    source.tables.push_back({std::move(info.owner), std::move(info.table_name),
                             std::move(info.tablespace_name), std::move(info.spare),
                             info.num_rows});
  }
  return true;
}

}  // namespace quillmere
