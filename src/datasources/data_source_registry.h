// SPDX-License-Identifier: MIT
// The registered Oracle connections (data sources) with their cached catalogue, and their files
// config/database.xml and config/<name>.xml.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "datasources/shared_text.h"
#include "foundation/H_tea.h"
#include "messages/message_log.h"
#include "oracle/log_on.h"

namespace quillmere {

struct KeyRecord {
  SharedText table_owner, table_name, key_name, status;
};

struct IndexRecord {
  SharedText table_owner, table_name, index_owner, index_name, type, status;
  std::int32_t level = 0;
};

struct TableRecord {
  SharedText table_owner, table_name, tablespace, type;
  std::int32_t rows = 0;
};

enum class ConnectionState : int { Empty = 0, Registered = 1, Connected = 2, Disconnected = 3 };

// A log-on, whose name is also the file name, and what was read with it.
struct DataSource : LogOn {
  ConnectionState state = ConnectionState::Empty;  // Empty marks a free slot
  bool needsave = false;                           // the record changed since its file was written
  std::string database_type = "ORACLE";
  std::string version;
  std::string description;
  std::vector<KeyRecord> primary_keys;
  std::vector<IndexRecord> indexes;
  std::vector<TableRecord> tables;
};

// Indices stay valid while the registry lives: a removed data source leaves an empty slot.
// User-interface thread only.
class DataSourceRegistry {
 public:
  static constexpr std::size_t kMostDataSources = 20;

  // All but the folder's path must outlive the registry.
  DataSourceRegistry(FileSystem& files, std::filesystem::path working_folder, MessageLog& log,
                     const Settings& settings);

  std::size_t Count() const { return sources_.size(); }  // slots, empty ones included
  std::size_t CountInUse() const;
  DataSource& At(std::size_t index) { return sources_[index]; }
  const DataSource& At(std::size_t index) const { return sources_[index]; }

  // Index of the first data source of that name (exact comparison), or -1.
  int IndexOf(std::string_view name) const;

  // Why the list is empty although it may hold some; empty when it was read, or there is none.
  std::string WhyListNotRead() const;

  // Why the name cannot be given to a new data source; empty when it can. A listed name whose file
  // is damaged may be given again: that is how the data source is repaired.
  std::string WhyNameRefused(std::string_view name) const;

  // Takes the first free slot, marks it needsave and returns its index. Saving is the caller's.
  std::size_t Add(DataSource source);

  // Removes the data source's file with its ".bad" copy and empties the slot: the password must not
  // stay behind. If a file can not be removed, the data source stays. Saving is the caller's.
  bool Remove(std::size_t index, std::string& error);

  // Writes database.xml and the file of each data source that needs it. Files that fail keep their
  // needsave flag; the first reason is left in error. The log gets the registry's own lines. Names
  // that Load had to leave out stay listed.
  bool Save(std::string& error);

  // Replaces the list by what the files say; what cannot be read is reported in the log.
  void Load();

 private:
  std::filesystem::path ListFile() const;
  std::filesystem::path SourceFile(std::string_view name) const;

  void LoadSource(std::string_view name);
  void LeaveOut(std::string_view name, std::string_view message);
  bool SaveList(std::string& error);
  bool SaveSource(DataSource& source, std::string& error);

  FileSystem& files_;
  const std::filesystem::path working_folder_;
  MessageLog& log_;
  const Settings& settings_;
  std::deque<DataSource> sources_;
  std::vector<std::string> left_out_;  // names in database.xml that were not loaded
  UnreadableFiles unreadable_;
};

}  // namespace quillmere
