// SPDX-License-Identifier: MIT
// A data source with 100,000 cached tables and their keys: loaded by the registry, against pugixml
// with the same content as real XML and the same records, whose equal texts share their memory.
#include <memory>
#include <pugixml.hpp>

#include "benches.h"
#include "datasources/data_source_registry.h"
#include "foundation/clock.h"
#include "support/temp_folder.h"

namespace quillmere::bench {

namespace {

constexpr std::size_t kTables = 100'000;

DataSource BigDataSource() {
  DataSource source;
  source.state = ConnectionState::Disconnected;
  source.name = "WAREHOUSE";
  source.user_id = "SYS";
  source.sysdba = true;
  TextPool pool;
  for (std::size_t i = 0; i < kTables; ++i) {
    TableRecord table;
    table.table_owner = pool.Share("OWNER_" + std::to_string(i % 4));
    table.table_name = "SHIPMENT_" + std::to_string(i);
    table.tablespace = pool.Share("WAREHOUSE_DATA");
    table.rows = static_cast<std::int32_t>(i * 7);
    KeyRecord key;
    key.table_owner = table.table_owner;
    key.table_name = table.table_name;
    key.key_name = "SHIPMENT_PK_" + std::to_string(i);
    key.status = pool.Share("ENABLED");
    source.tables.push_back(std::move(table));
    source.primary_keys.push_back(std::move(key));
  }
  return source;
}

class RegistryFiles {
 public:
  RegistryFiles() {
    registry_.Add(BigDataSource());
    std::string error;
    if (!registry_.Save(error)) std::abort();
  }

  void Load() {
    registry_.Load();
    if (registry_.At(0).tables.size() != kTables) std::abort();
  }

 private:
  TempFolder folder_;
  SystemClock clock_;
  Settings settings_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  DataSourceRegistry registry_{folder_.Files(), folder_.Path(), log_, settings_};
};

class PugixmlRegistry {
 public:
  PugixmlRegistry() {
    pugi::xml_document document;
    pugi::xml_node schema = document.append_child("schema");
    const DataSource source = BigDataSource();
    for (const KeyRecord& key : source.primary_keys) {
      pugi::xml_node node = schema.append_child("primarykey");
      Append(node, "tableowner", key.table_owner);
      Append(node, "tablename", key.table_name);
      Append(node, "keyname", key.key_name);
      Append(node, "status", key.status);
    }
    for (const TableRecord& table : source.tables) {
      pugi::xml_node node = schema.append_child("tables");
      Append(node, "tableowner", table.table_owner);
      Append(node, "tablename", table.table_name);
      Append(node, "tablespace", table.tablespace);
      node.append_child("rows").text().set(table.rows);
    }
    if (!document.save_file(File().c_str(), "   ")) std::abort();
  }

  void Load() {
    pugi::xml_document document;
    if (!document.load_file(File().c_str())) std::abort();
    DataSource source;
    TextPool pool;
    const pugi::xml_node schema = document.child("schema");
    for (const pugi::xml_node& node : schema.children("primarykey")) {
      KeyRecord& key = source.primary_keys.emplace_back();
      key.table_owner = pool.Share(node.child_value("tableowner"));
      key.table_name = pool.Share(node.child_value("tablename"));
      key.key_name = node.child_value("keyname");
      key.status = pool.Share(node.child_value("status"));
    }
    for (const pugi::xml_node& node : schema.children("tables")) {
      TableRecord& table = source.tables.emplace_back();
      table.table_owner = pool.Share(node.child_value("tableowner"));
      table.table_name = pool.Share(node.child_value("tablename"));
      table.tablespace = pool.Share(node.child_value("tablespace"));
      table.rows = node.child("rows").text().as_int();
    }
    if (source.tables.size() != kTables) std::abort();
    source_ = std::move(source);
  }

 private:
  static void Append(pugi::xml_node& node, const char* name, const SharedText& text) {
    node.append_child(name).text().set(text.String().c_str());
  }
  std::filesystem::path File() const { return folder_.Path() / "registry.xml"; }

  TempFolder folder_;
  DataSource source_;
};

}  // namespace

void AddRegistryBenches(RatioTable& table) {
  const auto ours = std::make_shared<RegistryFiles>();
  const auto theirs = std::make_shared<PugixmlRegistry>();
  table.Add({"registry load, 100000 tables / pugixml", 1.0, [theirs] { theirs->Load(); },
             [ours] { ours->Load(); }});
}

}  // namespace quillmere::bench
