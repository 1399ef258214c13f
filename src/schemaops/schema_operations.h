// SPDX-License-Identifier: MIT
// What is done with whole schemas: reading a data source's catalogue, and dropping, renaming and
// migrating its keys, indexes and tables. What running jobs forbid is decided above, in workspace/.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "datasources/data_source_registry.h"
#include "foundation/H_tea.h"
#include "messages/message_log.h"
#include "oracle/H_oracle.h"

namespace quillmere {

enum class ObjectKind { PrimaryKey, Index, Table };

// One object to work on. An index is taken to belong to the owner of its table.
struct SchemaItem {
  std::string owner;
  std::string table;
  std::string name;  // of the key or index; of a table its own name again
};

SchemaItem ItemOf(const KeyRecord& key);
SchemaItem ItemOf(const IndexRecord& index);
SchemaItem ItemOf(const TableRecord& table);

// Hears of a long operation, on the thread that runs it.
class ProgressListener {
 public:
  virtual ~ProgressListener() = default;
  // What comes next, and how much of the whole is done; total is 0 while it is not known. False
  // cancels: what is done stays done, nothing more is begun.
  virtual bool OnProgress(std::string_view what, std::size_t done, std::size_t total) = 0;
  // A connection is tried next; it is done when anything else is heard. False as above.
  virtual bool OnConnect(std::string_view) { return true; }
};

class SchemaListener : public ProgressListener {
 public:
  // The result line of an item, as it stands in the error log.
  virtual void OnResult(std::string_view line, bool failed) = 0;
  // What went wrong within an item, ahead of its result line.
  virtual void OnDetail(std::string_view line) = 0;
};

struct SchemaRun {
  // Why nothing was begun, for a message box: the connection that failed with its error. Else
  // empty.
  std::string refused;
  std::size_t succeeded = 0;
  std::size_t failed = 0;
  bool cancelled = false;
  bool logged = true;         // false when a line could not be written to the error log
  std::string first_failure;  // the result line of the first item that failed
  std::string unsaved;        // why the cached lists could not be saved; filled by who saves them
};

struct MigrateOptions {
  bool drop_target = false;          // drop an object of the same name on the target first
  bool include_primary_key = false;  // of a table
  bool include_index = false;        // of a table; they are created only along with its key
};

// Read: all of it, but for what the log names. Failed: the record holds what was read before.
// Cancelled: the record is as it was.
enum class CatalogueRead { Read, Failed, Cancelled };

// The release number in a server's banner, such as "9.2.0.1.0"; empty when there is none.
std::string VersionFromBanner(const std::vector<std::string>& banner);

// The thread that may use the log and the records given. Each operation works on connections of its
// own and closes them; result lines and errors go to the log. One failing item does not keep the
// others from being done.
class SchemaOperations {
 public:
  // All must outlive the object.
  SchemaOperations(OciLibrary& library, LogLines& log, const Settings& settings)
      : library_(library), log_(log), settings_(settings) {}

  // What was dropped or renamed, is so in the record's lists, too, which then needs to be saved.

  // cascade: tables go although foreign keys reference them. A primary key always takes the foreign
  // keys that reference it along, whosever they are.
  SchemaRun DropItems(DataSource& source, ObjectKind kind, const std::vector<SchemaItem>& items,
                      bool cascade, SchemaListener& listener);

  // The new name is judged by the server. A primary key is dropped and created again, with the
  // foreign keys that reference it; after a failure half-way, detail lines tell how to bring back
  // those that are gone.
  SchemaRun RenameItem(DataSource& source, ObjectKind kind, const SchemaItem& item,
                       std::string_view new_name, SchemaListener& listener);

  // Definitions only: a migrated table is empty. The target's lists are as they were. Refused when
  // the target is the source itself, whose tables would be dropped.
  SchemaRun MigrateItems(const LogOn& source, const LogOn& target, ObjectKind kind,
                         const std::vector<SchemaItem>& items, const MigrateOptions& options,
                         SchemaListener& listener);

  // Connects and reads the tables, primary keys and indexes into the record, which then needs to be
  // saved. reason: of a failure; it is in the log, too.
  CatalogueRead RefreshCatalogue(DataSource& source, ProgressListener& listener,
                                 std::string& reason);

  // The same on a connection that is there already; the second adds no line that there is one.
  CatalogueRead RefreshCatalogue(OracleSession& session, DataSource& source,
                                 ProgressListener& listener, std::string& reason);
  CatalogueRead ReadCatalogue(OracleSession& session, DataSource& source,
                              ProgressListener& listener, std::string& reason);

 private:
  LineSink StatementTrace() const;

  OciLibrary& library_;
  LogLines& log_;
  const Settings& settings_;
};

// Takes over the lists of a copy that an operation worked on.
void TakeLists(DataSource& source, DataSource&& copy);

// Tells the listener how much the session's next lists have read so far, and ends them when it
// wants no more. what: their name in the progress. The listener must outlive the session.
void WatchLists(OracleSession& session, ProgressListener& listener, std::string what);

// The server's release number; empty when it does not tell.
std::string ReadVersion(OracleSession& session);

}  // namespace quillmere
