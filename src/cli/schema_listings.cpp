#include "cli/schema_listings.h"

#include <algorithm>

#include "cli/json_text.h"
#include "cli/text_table.h"

namespace quillmere::cli {
namespace {

using Json = nlohmann::ordered_json;

struct Listing {
  std::vector<std::vector<std::string>> rows;  // the first one is the heading
  Json json = Json::array();
};

std::string Text(std::string_view text) {
  return std::string(text);
}

void AddRow(Listing& listing, const TableRecord& t) {
  listing.rows.push_back({Text(t.table_name), Text(t.table_owner), Text(t.tablespace),
                          std::to_string(t.rows), Text(t.type)});
  listing.json.push_back({{"owner", Text(t.table_owner)},
                          {"table", Text(t.table_name)},
                          {"tablespace", Text(t.tablespace)},
                          {"rows", t.rows},
                          {"type", Text(t.type)}});
}

void AddRow(Listing& listing, const KeyRecord& k) {
  listing.rows.push_back(
      {Text(k.key_name), Text(k.table_owner), Text(k.table_name), Text(k.status)});
  listing.json.push_back({{"owner", Text(k.table_owner)},
                          {"table", Text(k.table_name)},
                          {"key", Text(k.key_name)},
                          {"status", Text(k.status)}});
}

void AddRow(Listing& listing, const IndexRecord& i) {
  listing.rows.push_back({Text(i.index_name), Text(i.type), Text(i.index_owner),
                          Text(i.table_owner), Text(i.table_name), Text(i.status)});
  listing.json.push_back({{"owner", Text(i.table_owner)},
                          {"table", Text(i.table_name)},
                          {"index_owner", Text(i.index_owner)},
                          {"index", Text(i.index_name)},
                          {"type", Text(i.type)},
                          {"status", Text(i.status)}});
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
