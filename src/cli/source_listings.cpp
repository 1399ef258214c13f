// SPDX-License-Identifier: MIT
#include "cli/source_listings.h"

#include <algorithm>

#include "cli/text_table.h"
#include "watch/health_json.h"

namespace quillmere::cli {
namespace {

using Json = nlohmann::ordered_json;

struct Listing {
  std::vector<std::vector<std::string>> rows;  // the first one is the heading
  Json json = Json::array();
};

void AddRow(Listing& listing, const TableRecord& t) {
  listing.rows.push_back({t.table_name.String(), t.table_owner.String(), t.tablespace.String(),
                          std::to_string(t.rows), t.type.String()});
  listing.json.push_back({{"owner", t.table_owner.String()},
                          {"table", t.table_name.String()},
                          {"tablespace", t.tablespace.String()},
                          {"rows", t.rows},
                          {"type", t.type.String()}});
}

void AddRow(Listing& listing, const KeyRecord& k) {
  listing.rows.push_back(
      {k.key_name.String(), k.table_owner.String(), k.table_name.String(), k.status.String()});
  listing.json.push_back({{"owner", k.table_owner.String()},
                          {"table", k.table_name.String()},
                          {"key", k.key_name.String()},
                          {"status", k.status.String()}});
}

void AddRow(Listing& listing, const IndexRecord& i) {
  listing.rows.push_back({i.index_name.String(), i.type.String(), i.index_owner.String(),
                          i.table_owner.String(), i.table_name.String(), i.status.String()});
  listing.json.push_back({{"owner", i.table_owner.String()},
                          {"table", i.table_name.String()},
                          {"index_owner", i.index_owner.String()},
                          {"index", i.index_name.String()},
                          {"type", i.type.String()},
                          {"status", i.status.String()}});
}

// take(record) for each record of the kind's list.
template <typename Take>
void ForEachRecord(const DataSource& source, ObjectKind kind, Take take) {
  switch (kind) {
    case ObjectKind::PrimaryKey:
      for (const KeyRecord& key : source.primary_keys) take(key);
      break;
    case ObjectKind::Index:
      for (const IndexRecord& index : source.indexes) take(index);
      break;
    case ObjectKind::Table:
      for (const TableRecord& table : source.tables) take(table);
  }
}

std::vector<std::string> HeadingOf(ObjectKind kind) {
  switch (kind) {
    case ObjectKind::PrimaryKey:
      return {"Key Name", "Table Owner", "Table Name", "Status"};
    case ObjectKind::Index:
      return {"Index Name", "Index Type", "Index Owner", "Table Owner", "Table Name", "Status"};
    case ObjectKind::Table:
      break;
  }
  return {"Table Name", "Table Owner", "Table Space", "Rows", "Type"};
}

std::vector<std::string> Parts(const std::string& name) {
  std::vector<std::string> parts(1);
  for (const char c : name) {
    if (c == '.') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

}  // namespace

std::string SourceListing(const DataSourceRegistry& registry, bool json) {
  Listing listing;
  listing.rows.push_back({"Data Source", "Version", "UserName", "Mode", "Tables"});
  for (std::size_t i = 0; i < registry.Count(); ++i) {
    const DataSource& source = registry.At(i);
    if (source.state == ConnectionState::Empty) continue;
    listing.rows.push_back({source.name, source.version, source.user_id, source.Mode(),
                            std::to_string(source.tables.size())});
    listing.json.push_back({{"name", source.name},
                            {"type", source.database_type},
                            {"version", source.version},
                            {"user", source.user_id},
                            {"mode", source.Mode()},
                            {"tables", source.tables.size()},
                            {"primary_keys", source.primary_keys.size()},
                            {"indexes", source.indexes.size()}});
  }
  return json ? JsonText(listing.json) : TextTable(listing.rows);
}

std::string SchemaListing(const DataSource& source, ObjectKind kind, const std::string& owner,
                          bool json) {
  Listing listing;
  listing.rows.push_back(HeadingOf(kind));
  ForEachRecord(source, kind, [&](const auto& record) {
    if (owner.empty() || record.table_owner == owner) AddRow(listing, record);
  });
  return json ? JsonText(listing.json) : TextTable(listing.rows);
}

std::vector<SchemaItem> ItemsOfOwner(const DataSource& source, ObjectKind kind,
                                     const std::string& owner) {
  std::vector<SchemaItem> items;
  ForEachRecord(source, kind, [&](const auto& record) {
    if (record.table_owner == owner) items.push_back(ItemOf(record));
  });
  return items;
}

bool FindItem(const DataSource& source, ObjectKind kind, const std::string& name, SchemaItem& item,
              std::string& reason) {
  const std::vector<std::string> parts = Parts(name);
  const bool is_table = kind == ObjectKind::Table;
  const bool empty_part = std::find(parts.begin(), parts.end(), "") != parts.end();
  if (empty_part || parts.size() < 2 || parts.size() > (is_table ? 2U : 3U)) {
    reason = name + ": write " + (is_table ? "OWNER.TABLE" : "OWNER.TABLE.NAME or OWNER.NAME");
    return false;
  }
  item = {parts[0], parts[1], parts.back()};
  if (is_table || parts.size() == 3) return true;
  bool found = false;
  ForEachRecord(source, kind, [&](const auto& record) {
    const SchemaItem listed = ItemOf(record);
    if (listed.owner != parts[0] || listed.name != parts[1]) return;
    item = listed;
    found = true;
  });
  if (!found) {
    reason = name + " is not in the lists of " + source.name +
             "; 'source refresh' reads them anew, or write OWNER.TABLE.NAME";
  }
  return found;
}

}  // namespace quillmere::cli
