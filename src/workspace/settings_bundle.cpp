// SPDX-License-Identifier: MIT
#include "workspace/settings_bundle.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "foundation/file_names.h"
#include "jobs/job_folder.h"

namespace quillmere {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kBundle = "workspace";

// Of what can be read; a missing file holds nothing.
class BundleReader {
 public:
  BundleReader(FileSystem& files, const fs::path& folder, std::vector<std::string>& left_out)
      : files_(files), folder_(folder), left_out_(left_out) {}

  void ReadInto(XmlNode& bundle) {
    XmlDocument settings;
    if (Read(folder_ / "config" / "settings.xml", settings)) Copy(settings.Root(), bundle);
    ReadSources(bundle);
    XmlDocument jobs;
    if (!Read(folder_ / "jobs" / "jobs.xml", jobs)) return;
    for (const XmlNode* node : Children(jobs, "job")) ReadJob(*node, bundle);
  }

 private:
  static std::vector<const XmlNode*> Children(const XmlDocument& document, std::string_view name) {
    std::vector<const XmlNode*> nodes;
    document.Root().Children(name, nodes);
    return nodes;
  }

  static void Copy(const XmlNode& from, XmlNode& to) {
    for (const XmlNode* node = from.FirstChild(); node != nullptr; node = node->NextSibling()) {
      Copy(*node, to.AddChild(node->Name(), node->Data()));
    }
  }

  bool Read(const fs::path& file, XmlDocument& document) {
    const FileStatus read = document.Load(files_, file);
    if (!read && !read.Missing()) {
      left_out_.push_back("Can not read " + PathText(file) + ": " + document.Message());
    }
    return static_cast<bool>(read);
  }

  void ReadSources(XmlNode& bundle) {
    XmlDocument list;
    if (!Read(folder_ / "config" / "database.xml", list)) return;
    for (const XmlNode* listed : Children(list, "database")) {
      const std::string_view name = listed->ChildValue("dbname");
      XmlDocument document;
      if (!WhyNoFileName(name).empty() ||
          !Read(folder_ / "config" / (std::string(name) + ".xml"), document)) {
        continue;
      }
      const XmlNode* database = document.Root().Child("database");
      const XmlNode* login = database == nullptr ? nullptr : database->Child("login");
      if (login == nullptr) continue;
      XmlNode& source = bundle.AddChild("source");
      source.AddChild("name", name);
      source.AddChild("dbtype", database->ChildValue("dbtype"));
      source.AddChild("userid", login->ChildValue("userid"));
      source.AddChild("mode", login->ChildValue("mode"));
    }
  }

  void ReadJob(const XmlNode& job, XmlNode& bundle) {
    const std::string_view name = job.ChildValue("name");
    if (!WhyNoFileName(name).empty()) return;
    XmlNode& node = bundle.AddChild("job");
    Copy(job, node);
    XmlDocument document;
    if (!Read(JobFolder(folder_, name).File(JobFile::Tables), document)) return;
    for (const XmlNode* schema : Children(document, "schema")) {
      XmlNode& owner = node.AddChild("schema");
      owner.AddChild("schema_name", schema->ChildValue("schema_name"));
      std::vector<const XmlNode*> tables;
      schema->Children("table_list", tables);
      for (const XmlNode* table : tables) {
        XmlNode& kept = owner.AddChild("table_list");
        for (const std::string_view field : {"name", "desowner", "includeflag"}) {
          kept.AddChild(field, table->ChildValue(field));
        }
      }
    }
  }

  FileSystem& files_;
  const fs::path& folder_;
  std::vector<std::string>& left_out_;
};

}  // namespace

void ReadBundle(FileSystem& files, const fs::path& folder, LocalTime now, XmlDocument& bundle,
                std::vector<std::string>& left_out) {
  bundle.Clear();
  XmlNode& node = bundle.Root().AddChild(kBundle);
  node.AddChild("made", ReadableTime(now));
  BundleReader(files, folder, left_out).ReadInto(node);
}

const XmlNode* BundleIn(const XmlDocument& document) {
  return document.Root().Child(kBundle);
}

KeptSettings::KeptSettings(FileSystem& files, fs::path folder)
    : files_(files), folder_(std::move(folder)) {}

fs::path KeptSettings::FileOf(const std::string& day) const {
  return folder_ / "config" / "kept" / (day + ".xml");
}

std::vector<std::string> KeptSettings::Days() const {
  std::vector<fs::path> names;
  std::vector<std::string> days;
  if (!files_.List(folder_ / "config" / "kept", names)) return days;
  constexpr std::size_t kDayLength = 10;
  for (const fs::path& name : names) {
    const std::string day = name.stem().string();
    if (name.extension() == ".xml" && day.size() == kDayLength) days.push_back(day);
  }
  std::sort(days.begin(), days.end());
  return days;
}

std::string KeptSettings::BeforeChange(LocalTime now) {
  const std::string day = ReadableTime(now).substr(0, ReadableTime(now).find(' '));
  if (day == last_day_) return {};
  last_day_ = day;
  std::string error = Keep(day, now);
  if (!error.empty()) error = "The settings of before this change are not kept: " + error;
  return error;
}

std::string KeptSettings::Keep(const std::string& day, LocalTime now) {
  FileFacts facts;
  const FileStatus there = files_.Look(FileOf(day), facts);
  if (there) return {};
  if (!there.Missing()) return PathText(FileOf(day)) + ": " + there.reason;
  XmlDocument bundle;
  std::vector<std::string> left_out;
  ReadBundle(files_, folder_, now, bundle, left_out);
  const bool only_made = BundleIn(bundle)->FirstChild()->NextSibling() == nullptr;
  if (only_made && left_out.empty()) return {};  // a new folder
  std::string error;
  if (!MakeFolders(files_, FileOf(day).parent_path(), error) ||
      !ReplaceTextFile(files_, FileOf(day), bundle.Text(), FileAccess::OwnerOnly, error)) {
    return error;
  }
  return left_out.empty() ? ForgetOldest() : left_out.front();
}

std::string KeptSettings::ForgetOldest() {
  const std::vector<std::string> days = Days();
  for (std::size_t i = 0; i + kMostKept < days.size(); ++i) {
    const FileStatus removed = RemoveForGood(files_, FileOf(days[i]));
    if (!removed) return PathText(FileOf(days[i])) + ": " + removed.reason;
  }
  return {};
}

}  // namespace quillmere
