// SPDX-License-Identifier: MIT
#include "jobs/job_files.h"

#include "foundation/text.h"
#include "foundation/xml_fields.h"

namespace quillmere {

namespace {

constexpr std::string_view kCommits = "commits";

void WriteTable(XmlWriter& writer, const JobTable& table) {
  writer.Open("table_list");
  writer.Leaf("name", table.name);
  writer.Leaf("desowner", table.desowner);
  writer.Number("beginrows", table.beginrows);
  writer.Number("rows", table.rows);
  writer.Number("totalsynced", table.totalsynced);
  writer.Number("RecordsBlocked", table.RecordsBlocked);
  writer.Number("synced", table.synced);
  writer.Leaf("includeflag", BoolText(table.includeflag));
  if (table.compare) writer.Leaf("compare", BoolText(true));
  writer.Close();
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
  table.compare = fields.Text("compare") == "true";
  return table;
}

}  // namespace

void AppendJobElement(XmlNode& root, const JobConfig& job) {
  XmlNode& node = root.AddChild("job");
  node.AddChild("name", job.name);
  node.AddChild("database_type", job.database_type);
  node.AddChild("description", FoldForXml(job.description));
  node.AddNumber("sync_interval", job.sync_interval);
  node.AddChild("src_database_name", job.src_database_name);
  node.AddChild("des_database_name", job.des_database_name);
  node.AddChild("has_runned", BoolText(job.has_runned));
  if (job.follow == Follow::Commits) node.AddChild("follow", kCommits);
  if (!job.position_owner.empty()) node.AddChild("position_owner", job.position_owner);
  if (!job.container.empty()) node.AddChild("container", job.container);
}

void ReadJobElement(const XmlNode& node, JobConfig& job) {
  XmlFields fields(node);
  job.name = fields.Text("name");
  job.database_type = fields.Text("database_type");
  job.description = fields.Text("description");
  job.sync_interval = fields.Number("sync_interval");
  job.src_database_name = fields.Text("src_database_name");
  job.des_database_name = fields.Text("des_database_name");
  job.has_runned = fields.Text("has_runned") == "true";
  job.follow = fields.Text("follow") == kCommits ? Follow::Commits : Follow::Rows;
  job.position_owner = fields.Text("position_owner");
  job.container = fields.Text("container");
}

void WriteSchemas(XmlWriter& writer, const SchemaMap& schemas) {
  for (const auto& [owner, schema] : schemas) {
    if (owner.empty() && schema.Tables().empty()) continue;
    writer.Open("schema");
    writer.Leaf("schema_name", owner);
    for (const JobTable& table : schema.Tables()) WriteTable(writer, table);
    writer.Close();
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
