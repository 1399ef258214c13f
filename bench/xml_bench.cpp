// SPDX-License-Identifier: MIT
// A job's own file with 20,000 tables: loaded into records and saved from them by the catalogue,
// against pugixml with the same content as real XML, the same records and the same way of replacing
// the file. And the parsers alone.
#include <benchmark/benchmark.h>

#include <memory>
#include <pugixml.hpp>

#include "benches.h"
#include "foundation/xml_document.h"
#include "jobs/job_list.h"
#include "support/temp_folder.h"

namespace quillmere::bench {

namespace {

constexpr int kTables = 20'000;
constexpr int kOwners = 4;

SchemaMap MakeSchemas() {
  SchemaMap schemas;
  for (int i = 0; i < kTables; ++i) {
    const std::string owner = "OWNER_" + std::to_string(i % kOwners);
    JobTable table;
    table.name = "CUSTOMER_ORDERS_" + std::to_string(i);
    table.desowner = owner;
    table.beginrows = i * 100;
    table.rows = i * 101;
    table.totalsynced = i * 7;
    table.RecordsBlocked = i % 3;
    table.synced = i % 1000;
    table.includeflag = i % 10 != 0;
    schemas[owner].Append(table);
  }
  return schemas;
}

class CatalogueFile {
 public:
  CatalogueFile() {
    const std::size_t index = jobs_.Claim();
    SyncJob& job = jobs_.At(index);
    {
      const MutexLock lock(job.config_mutex);
      job.config.name = "big";
      job.config.schemas = MakeSchemas();
    }
    jobs_.SetState(index, JobState::Stopped);
    Save();
  }

  void Save() {
    std::string error;
    SyncJob& job = jobs_.At(0);
    {
      const MutexLock lock(job.config_mutex);
      ++job.config.tables_revision;
    }
    if (!catalogue_.SaveAll(error)) std::abort();
  }

  void Load() {
    catalogue_.Load(nullptr, nullptr);
    SyncJob& job = jobs_.At(0);
    const MutexLock lock(job.config_mutex);
    if (job.config.schemas.size() != kOwners) std::abort();
  }

  std::filesystem::path File() const { return catalogue_.FolderOf("big").File(JobFile::Tables); }
  FileSystem& Files() const { return folder_.Files(); }

 private:
  TempFolder folder_;
  SystemClock clock_;
  Settings settings_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  JobList jobs_;
  JobCatalogue catalogue_{folder_.Files(), folder_.Path(), jobs_, log_};
};

struct StringWriter final : pugi::xml_writer {
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  std::string text;
};

class PugixmlFile {
 public:
  PugixmlFile() { Save(); }

  void Save() {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("job");
    for (const auto& [owner, schema] : schemas_) {
      pugi::xml_node node = root.append_child("schema");
      node.append_child("schema_name").text().set(owner.c_str());
      for (const JobTable& table : schema.Tables()) AppendTable(node, table);
    }
    Write(document, File());
  }

  static void Write(const pugi::xml_document& document, const std::filesystem::path& file) {
    StringWriter writer;
    writer.text.reserve(8 << 20);
    document.save(writer, "   ", pugi::format_indent | pugi::format_no_declaration);
    std::string error;
    SystemFiles files;
    if (!ReplaceFile(files, file, writer.text, FileAccess::Everyone, error)) std::abort();
  }

  void Load() {
    pugi::xml_document document;
    if (!document.load_file(File().c_str())) std::abort();
    SchemaMap schemas;
    for (pugi::xml_node node : document.child("job").children("schema")) {
      JobSchema& schema = schemas[node.child_value("schema_name")];
      for (pugi::xml_node table : node.children("table_list")) schema.Append(ReadTable(table));
    }
    if (schemas.size() != kOwners) std::abort();
    schemas_ = std::move(schemas);
  }

  std::filesystem::path File() const { return folder_.Path() / "big.xml"; }

 private:
  static void AppendTable(pugi::xml_node& schema, const JobTable& table) {
    pugi::xml_node node = schema.append_child("table_list");
    node.append_child("name").text().set(table.name.c_str());
    node.append_child("desowner").text().set(table.desowner.c_str());
    node.append_child("beginrows").text().set(table.beginrows.Get());
    node.append_child("rows").text().set(table.rows.Get());
    node.append_child("totalsynced").text().set(table.totalsynced.Get());
    node.append_child("RecordsBlocked").text().set(table.RecordsBlocked.Get());
    node.append_child("synced").text().set(table.synced.Get());
    node.append_child("includeflag").text().set(table.includeflag ? "true" : "false");
  }

  static JobTable ReadTable(const pugi::xml_node& node) {
    JobTable table;
    table.name = node.child_value("name");
    table.desowner = node.child_value("desowner");
    table.beginrows = node.child("beginrows").text().as_int();
    table.rows = node.child("rows").text().as_int();
    table.totalsynced = node.child("totalsynced").text().as_int();
    table.RecordsBlocked = node.child("RecordsBlocked").text().as_int();
    table.synced = node.child("synced").text().as_int();
    table.includeflag = std::string_view(node.child_value("includeflag")) != "false";
    return table;
  }

  TempFolder folder_;
  SchemaMap schemas_ = MakeSchemas();
};

void ParseText(benchmark::State& state) {
  const CatalogueFile file;
  XmlDocument document;
  if (!document.Load(file.Files(), file.File())) std::abort();
  const std::string text = document.Text();
  for (auto _ : state) {
    if (!document.Parse(text)) std::abort();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(ParseText)->Unit(benchmark::kMillisecond);

}  // namespace

void AddXmlBenches(RatioTable& table) {
  const auto ours = std::make_shared<CatalogueFile>();
  const auto theirs = std::make_shared<PugixmlFile>();
  table.Add({"xml load and save, 20000 tables / pugixml", 1.0,
             [theirs] {
               pugi::xml_document document;
               if (!document.load_file(theirs->File().c_str())) std::abort();
               PugixmlFile::Write(document, theirs->File());
             },
             [ours] {
               XmlDocument document;
               if (!document.Load(ours->Files(), ours->File()) ||
                   !document.Save(ours->Files(), ours->File())) {
                 std::abort();
               }
             }});
  table.Add({"job file load, 20000 tables / pugixml", 1.0, [theirs] { theirs->Load(); },
             [ours] { ours->Load(); }});
  table.Add({"job file save, 20000 tables / pugixml", 1.0, [theirs] { theirs->Save(); },
             [ours] { ours->Save(); }});
}

}  // namespace quillmere::bench
