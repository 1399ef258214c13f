// SPDX-License-Identifier: MIT
#include "datasources/data_source_file.h"

#include "foundation/tea_cipher.h"
#include "foundation/xml_fields.h"

namespace quillmere {

namespace {

// No connection outlives the program, so a data source that was connected comes back disconnected,
// and so does one whose state makes no sense.
ConnectionState StateFrom(int number) {
  return number == static_cast<int>(ConnectionState::Registered) ? ConnectionState::Registered
                                                                 : ConnectionState::Disconnected;
}

void AppendKey(XmlNode& schema, const KeyRecord& key) {
  XmlNode& node = schema.AddChild("primarykey");
  node.AddChild("tableowner", key.table_owner);
  node.AddChild("tablename", key.table_name);
  node.AddChild("keyname", key.key_name);
  node.AddChild("status", key.status);
}

void AppendIndex(XmlNode& schema, const IndexRecord& index) {
  XmlNode& node = schema.AddChild("index");
  node.AddChild("tableowner", index.table_owner);
  node.AddChild("tablename", index.table_name);
  node.AddChild("indexowner", index.index_owner);
  node.AddChild("indexname", index.index_name);
  node.AddChild("type", index.type);
  node.AddChild("status", index.status);
  node.AddNumber("level", index.level);
}

void AppendTable(XmlNode& schema, const TableRecord& table) {
  XmlNode& node = schema.AddChild("tables");
  node.AddChild("tableowner", table.table_owner);
  node.AddChild("tablename", table.table_name);
  node.AddChild("tablespace", table.tablespace);
  node.AddChild("type", table.type);
  node.AddNumber("rows", table.rows);
}

// Few owners, states and types stand beside each table's name, and the names come in the order of
// the tables in each of the three lists.
struct Texts {
  TextPool few;
  TextRounds tables;
};

void ReadKey(const XmlNode& node, Texts& texts, KeyRecord& key) {
  XmlFields fields(node);
  key.table_owner = texts.few.Share(fields.Text("tableowner"));
  key.table_name = texts.tables.Share(fields.Text("tablename"));
  key.key_name = fields.Text("keyname");
  key.status = texts.few.Share(fields.Text("status", "undef"));
}

void ReadIndex(const XmlNode& node, Texts& texts, IndexRecord& index) {
  XmlFields fields(node);
  index.table_owner = texts.few.Share(fields.Text("tableowner"));
  index.table_name = texts.tables.Share(fields.Text("tablename"));
  index.index_owner = texts.few.Share(fields.Text("indexowner"));
  index.index_name = fields.Text("indexname");
  index.type = texts.few.Share(fields.Text("type"));
  index.status = texts.few.Share(fields.Text("status"));
  index.level = fields.Number("level");
}

void ReadTable(const XmlNode& node, Texts& texts, TableRecord& table) {
  XmlFields fields(node);
  table.table_owner = texts.few.Share(fields.Text("tableowner"));
  table.table_name = texts.tables.Share(fields.Text("tablename"));
  table.tablespace = texts.few.Share(fields.Text("tablespace"));
  table.type = texts.few.Share(fields.Text("type"));
  table.rows = fields.Number("rows");
}

void ReadSchema(const XmlNode& schema, DataSource& source) {
  Texts texts;
  std::string_view list;
  for (const XmlNode* node = schema.FirstChild(); node != nullptr; node = node->NextSibling()) {
    if (node->Name() != list) texts.tables.StartRound();
    list = node->Name();
    if (list == "primarykey") ReadKey(*node, texts, source.primary_keys.emplace_back());
    if (list == "index") ReadIndex(*node, texts, source.indexes.emplace_back());
    if (list == "tables") ReadTable(*node, texts, source.tables.emplace_back());
  }
}

}  // namespace

void AppendDataSource(XmlNode& root, const DataSource& source) {
  XmlNode& node = root.AddChild("database");
  node.AddChild("dbtype", source.database_type);
  node.AddChild("name", source.name);
  node.AddChild("version", FoldForXml(source.version));
  node.AddNumber("dbstatus", static_cast<int>(source.state));
  node.AddChild("needsave", "false");
  XmlNode& login = node.AddChild("login");
  login.AddChild("userid", source.user_id);
  login.AddChild("password", EncipherPassword(source.password));
  login.AddChild("mode", source.Mode());
  XmlNode& schema = node.AddChild("schema");
  for (const KeyRecord& key : source.primary_keys) AppendKey(schema, key);
  for (const IndexRecord& index : source.indexes) AppendIndex(schema, index);
  for (const TableRecord& table : source.tables) AppendTable(schema, table);
}

bool ReadDataSource(const XmlNode& root, DataSource& source) {
  const XmlNode* node = root.Child("database");
  if (node == nullptr) return false;
  source.database_type = node->ChildValue("dbtype");
  source.version = node->ChildValue("version");
  source.description = node->ChildValue("description");
  source.state = StateFrom(node->ChildNumber("dbstatus"));
  if (const XmlNode* login = node->Child("login")) {
    source.user_id = login->ChildValue("userid");
    source.password = DecipherPassword(login->ChildValue("password"));
    source.sysdba = login->ChildValue("mode") == "SYSDBA";
  }
  if (const XmlNode* schema = node->Child("schema")) ReadSchema(*schema, source);
  return true;
}

}  // namespace quillmere
