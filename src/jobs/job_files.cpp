#include "jobs/job_files.h"

#include "foundation/xml_fields.h"

namespace quillmere {

namespace {

std::string_view BoolText(bool value) {
  return value ? "true" : "false";
}

void AppendTable(XmlNode& schema, const JobTable& table) {
  XmlNode& node = schema.AddChild("table_list");
  node.AddChild("name", table.name);
  node.AddChild("desowner", table.desowner);
  node.AddNumber("beginrows", table.beginrows);
  node.AddNumber("rows", table.rows);
  node.AddNumber("totalsynced", table.totalsynced);
  node.AddNumber("RecordsBlocked", table.RecordsBlocked);
  node.AddNumber("synced", table.synced);
  node.AddChild("includeflag", BoolText(table.includeflag));
}

JobTable ReadTable(const XmlNode& node) {
  XmlFields fields(node);
  JobTable table;
  table.name = fields.Text("name");
  table.desowner = fields.Text("desowner");
  table.beginrows = fields.Number("beginrows");
  table.rows = fields.Number("rows");
  table.totalsynced = fields.Number("totalsynced");
  table.RecordsBlocked = fields.Number("RecordsBlocked");
  table.synced = fields.Number("synced");
  table.includeflag = fields.Text("includeflag") != "false";
  return table;
}

}  // namespace

void AppendJobElement(XmlNode& root, const SyncJob& job) {
  XmlNode& node = root.AddChild("job");
  node.AddChild("name", job.name);
  node.AddChild("database_type", job.database_type);
  node.AddChild("description", FoldForXml(job.description));
  node.AddNumber("sync_interval", job.sync_interval);
  node.AddChild("src_database_name", job.src_database_name);
  node.AddChild("des_database_name", job.des_database_name);
  node.AddChild("has_runned", BoolText(job.has_runned));
}

void ReadJobElement(const XmlNode& node, SyncJob& job) {
  XmlFields fields(node);
  job.name = fields.Text("name");
  job.database_type = fields.Text("database_type");
  job.description = fields.Text("description");
  job.sync_interval = fields.Number("sync_interval");
  job.src_database_name = fields.Text("src_database_name");
  job.des_database_name = fields.Text("des_database_name");
  job.has_runned = fields.Text("has_runned") == "true";
}

void AppendSchemas(XmlNode& root, const SchemaMap& schemas) {
  for (const auto& [owner, schema] : schemas) {
    XmlNode& node = root.AddChild("schema");
    node.AddChild("schema_name", owner);
    for (const JobTable& table : schema.Tables()) AppendTable(node, table);
  }
}

SchemaMap ReadSchemas(const XmlNode& root) {
  SchemaMap schemas;
  for (const XmlNode* node = root.FirstChild(); node != nullptr; node = node->NextSibling()) {
    if (node->Name() != "schema") continue;
    // An owner that stands there twice keeps the tables of both.
    JobSchema& schema = schemas[std::string(node->ChildValue("schema_name"))];
    const XmlNode* child = node->FirstChild();
    for (; child != nullptr; child = child->NextSibling()) {
      if (child->Name() == "table_list") schema.Append(ReadTable(*child));
    }
  }
  return schemas;
}

}  // namespace quillmere
