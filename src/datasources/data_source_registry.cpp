// SPDX-License-Identifier: MIT
#include "datasources/data_source_registry.h"

#include <algorithm>
#include <array>
#include <utility>

#include "datasources/data_source_file.h"
#include "foundation/text.h"

namespace quillmere {

namespace fs = std::filesystem;

namespace {

// Files of their own in the same folder.
constexpr std::array<std::string_view, 2> kReservedNames = {"database", "settings"};

bool IsReserved(std::string_view name) {
  return std::any_of(kReservedNames.begin(), kReservedNames.end(),
                     [&](std::string_view reserved) { return SameFileName(name, reserved); });
}

}  // namespace

DataSourceRegistry::DataSourceRegistry(FileSystem& files, fs::path working_folder, MessageLog& log,
                                       const Settings& settings)
    : files_(files), working_folder_(std::move(working_folder)), log_(log), settings_(settings) {}

fs::path DataSourceRegistry::ListFile() const {
  return working_folder_ / "config" / "database.xml";
}

fs::path DataSourceRegistry::SourceFile(std::string_view name) const {
  return working_folder_ / "config" / (std::string(name) + ".xml");
}

std::size_t DataSourceRegistry::CountInUse() const {
  return static_cast<std::size_t>(std::count_if(
      sources_.begin(), sources_.end(),
      [](const DataSource& source) { return source.state != ConnectionState::Empty; }));
}

int DataSourceRegistry::IndexOf(std::string_view name) const {
  for (std::size_t index = 0; index < sources_.size(); ++index) {
    const DataSource& source = sources_[index];
    if (source.state != ConnectionState::Empty && source.name == name) {
      return static_cast<int>(index);
    }
  }
  return -1;
}

std::string DataSourceRegistry::WhyListNotRead() const {
  return unreadable_.WhyNotRead(ListFile());
}

std::string DataSourceRegistry::WhyNameRefused(std::string_view name) const {
  std::string refused = WhyNoFileName(name);
  if (refused.empty()) refused = unreadable_.WhyNotSaved(SourceFile(name));
  if (!refused.empty()) return refused;
  if (IsReserved(name)) {
    return "The name " + std::string(name) + " is taken by a file of the program";
  }
  if (IndexOf(name) >= 0) return "Database already exist, user another please";
  for (const DataSource& source : sources_) {
    if (source.state != ConnectionState::Empty && SameFileName(source.name, name)) {
      return "There is a data source " + source.name + " already";
    }
  }
  for (const std::string& listed : left_out_) {
    if (listed != name && SameFileName(listed, name)) {
      return "There is a data source " + listed + " already, whose file can not be read";
    }
  }
  if (CountInUse() >= kMostDataSources) {
    return "There are " + std::to_string(kMostDataSources) +
           " data sources already, which is the most that can be registered";
  }
  return {};
}

std::size_t DataSourceRegistry::Add(DataSource source) {
  if (source.state == ConnectionState::Empty) source.state = ConnectionState::Registered;
  source.needsave = true;
  std::erase(left_out_, source.name);
  const auto slot = std::find_if(sources_.begin(), sources_.end(), [](const DataSource& other) {
    return other.state == ConnectionState::Empty;
  });
  if (slot == sources_.end()) {
    sources_.push_back(std::move(source));
    return sources_.size() - 1;
  }
  *slot = std::move(source);
  return static_cast<std::size_t>(slot - sources_.begin());
}

bool DataSourceRegistry::Remove(std::size_t index, std::string& error) {
  if (sources_[index].state == ConnectionState::Empty) return true;
  const fs::path file = SourceFile(sources_[index].name);
  if (!RemoveEveryTrace(files_, file, error)) return false;
  unreadable_.Forget(file);
  sources_[index] = {};
  return true;
}

bool DataSourceRegistry::Save(std::string& error) {
  // Data sources that the list may name have files of their own that must stay, too.
  error = unreadable_.WhyNotSaved(ListFile());
  if (!error.empty() || !MakeFolders(files_, ListFile().parent_path(), error)) return false;
  std::string reason;
  if (!SaveList(reason)) KeepFirst(error, reason);
  for (DataSource& source : sources_) {
    if (source.state == ConnectionState::Empty || !source.needsave) continue;
    if (settings_.registry_messages) log_.Add(source.name + " need save before save.", false);
    if (!SaveSource(source, reason)) KeepFirst(error, reason);
  }
  return error.empty();
}

bool DataSourceRegistry::SaveList(std::string& error) {
  XmlDocument document;
  const auto append = [&](std::string_view name) {
    document.Root().AddChild("database").AddChild("dbname", name);
  };
  for (const DataSource& source : sources_) {
    if (source.state != ConnectionState::Empty) append(source.name);
  }
  // What could not be read today may be repaired tomorrow.
  for (const std::string& name : left_out_) append(name);
  return unreadable_.Keep(files_, ListFile(), error) &&
         ReplaceTextFile(files_, ListFile(), document.Text(), FileAccess::Everyone, error);
}

bool DataSourceRegistry::SaveSource(DataSource& source, std::string& error) {
  const fs::path file = SourceFile(source.name);
  if (source.password.size() > TeaCipher::kLongestPassword) {
    error = "Can not create " + PathText(file) + ": the password is longer than " +
            std::to_string(TeaCipher::kLongestPassword) + " bytes";
    return false;
  }
  XmlDocument document;
  AppendDataSource(document.Root(), source);
  std::string text;
  if (!document.WriteText(text)) {
    error = "Can not create " + PathText(file) + ": it would be too large";
    return false;
  }
  if (!unreadable_.Keep(files_, file, error) ||
      !ReplaceTextFile(files_, file, text, FileAccess::OwnerOnly, error)) {
    return false;
  }
  source.needsave = false;
  return true;
}

void DataSourceRegistry::Load() {
  sources_.clear();
  left_out_.clear();
  unreadable_.Clear();
  XmlDocument document;
  if (const FileStatus loaded = document.Load(files_, ListFile()); !loaded) {
    log_.Add("Can't not open database.xml", true);
    if (!loaded.Missing()) unreadable_.Add(ListFile(), loaded);
    const std::string lasting = unreadable_.WhyNotSaved(ListFile());
    if (!lasting.empty()) log_.Add(lasting, true);
    return;
  }
  std::vector<const XmlNode*> nodes;
  document.Root().Children("database", nodes);
  for (const XmlNode* node : nodes) LoadSource(node->ChildValue("dbname"));
}

void DataSourceRegistry::LoadSource(std::string_view name) {
  const std::string refused = WhyNameRefused(name);
  if (!refused.empty()) {
    LeaveOut(name, "Data source \"" + std::string(name) + "\" in " + PathText(ListFile()) +
                       " left out: " + refused);
    return;
  }
  const fs::path file = SourceFile(name);
  XmlDocument document;
  DataSource source;
  source.name = name;
  const FileStatus loaded = document.Load(files_, file);
  if (!loaded || !ReadDataSource(document.Root(), source)) {
    LeaveOut(name, "open" + PathText(file) + " failed");
    if (!loaded.Missing()) {
      unreadable_.Add(file, loaded ? FileStatus{FileCode::Damaged, {}} : loaded);
    }
    return;
  }
  sources_.push_back(std::move(source));
}

void DataSourceRegistry::LeaveOut(std::string_view name, std::string_view message) {
  log_.Add(message, true);
  const bool listed = name.empty() || IndexOf(name) >= 0 ||
                      std::find(left_out_.begin(), left_out_.end(), name) != left_out_.end();
  if (!listed) left_out_.emplace_back(name);
}

}  // namespace quillmere
