// SPDX-License-Identifier: MIT
#include "oracle/source_facts.h"

#include <vector>

#include "foundation/text.h"
#include "oracle/follow_queries.h"
#include "oracle/text_query.h"

namespace quillmere {
namespace {

constexpr oci::sb4 kWordBytes = 40;
constexpr oci::sb4 kNameBytes = 512;

bool IsYes(std::string_view text) {
  return text == "YES" || text == "IMPLICIT";
}

template <typename TakeRow>
bool ReadAll(TextQuery& query, const TakeRow& take_row) {
  TextQuery::Row row{};
  while ((row = query.Fetch()) == TextQuery::Row::Fetched) take_row();
  return row == TextQuery::Row::End;
}

}  // namespace

bool SourceFacts::ReadBanner(std::string& banner) {
  std::vector<std::string> lines;
  if (!session_.GetVersionBanner(lines)) return false;
  banner = lines.empty() ? std::string() : lines.front();
  return true;
}

bool SourceFacts::ReadContainer(std::string& container) {
  TextQuery query(session_, kSingleLabels);
  if (!query.OpenWithRow(follow::kContainer, {kNameBytes})) return false;
  container = query.Text(0);
  return true;
}

bool SourceFacts::ReadOpenMode(std::string_view container, std::string& mode) {
  mode.clear();
  TextQuery query(session_, kListLabels);
  return query.Open(follow::FillIn(follow::kOpenMode, {container}), {kWordBytes}) &&
         ReadAll(query, [&] { mode = query.Text(0); });
}

bool SourceFacts::Enter(std::string_view container) {
  if (container.empty()) return true;
  std::string here;
  if (!ReadContainer(here)) return session_.LastErrorCode() == kNoSuchParameter;
  return here != kRoot || session_.Execute(follow::FillIn(follow::kEnterContainer, {container}));
}

bool SourceFacts::ReadSupplemental(SupplementalLogging& logging) {
  TextQuery query(session_, kSingleLabels);
  if (!query.OpenWithRow(follow::kSupplemental, {kWordBytes, kWordBytes, kWordBytes})) return false;
  logging = {IsYes(query.Text(0)), IsYes(query.Text(1)), IsYes(query.Text(2))};
  return true;
}

bool SourceFacts::ReadTableLogging(std::map<TableName, SupplementalLogging>& tables) {
  TextQuery query(session_, kListLabels);
  return query.Open(follow::kLogGroups, {kNameBytes, kNameBytes, kNameBytes}) &&
         ReadAll(query, [&] {
           SupplementalLogging& logging =
               tables[{std::string(query.Text(0)), std::string(query.Text(1))}];
           logging.key = logging.key || query.Text(2).starts_with("PRIMARY");
           logging.all = logging.all || query.Text(2).starts_with("ALL");
         });
}

bool SourceFacts::ReadKeyedTables(std::map<TableName, bool>& tables) {
  TextQuery query(session_, kListLabels);
  return query.Open(follow::kKeyedTables, {kNameBytes, kNameBytes}) && ReadAll(query, [&] {
           tables[{std::string(query.Text(0)), std::string(query.Text(1))}] = true;
         });
}

bool SourceFacts::ReadOnlineReach(RedoReach& reach) {
  return ReadReach(follow::kOnlineReach, reach);
}

bool SourceFacts::ReadArchivedReach(RedoReach& reach) {
  return ReadReach(follow::kArchivedReach, reach);
}

bool SourceFacts::ReadReach(std::string_view sql, RedoReach& reach) {
  TextQuery query(session_, kSingleLabels);
  if (!query.OpenWithRow(sql, {kWordBytes, kWordBytes, kWordBytes})) return false;
  const auto number = [&](std::size_t column, const char* what, std::int64_t& value) {
    if (ParseNumber(query.Text(column), value)) return true;
    return query.Refuse(std::string(what) + " is not a number: '" +
                        std::string(query.Text(column)) + "'");
  };
  return number(0, "COUNT", reach.logs) && number(1, "FIRST_CHANGE#", reach.from_scn) &&
         number(2, "FIRST_TIME", reach.minutes);
}

}  // namespace quillmere
