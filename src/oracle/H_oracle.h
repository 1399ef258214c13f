// SPDX-License-Identifier: MIT
// The only road to a database: OracleSession, one connection over the Oracle Call Interface, and
// the client library that all sessions share (oci_library.h).
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "oracle/log_on.h"
#include "oracle/oci_library.h"
#include "oracle/oracle_records.h"

namespace quillmere {

// True for the 28 owners that belong to the database itself (exact, case-sensitive match). Any
// thread.
bool IsSystemOwner(std::string_view owner);

// Takes a line for a log, during the call only.
using LineSink = std::function<void(std::string_view line)>;

// Takes the rows of a mining run as they arrive, on the thread of the session.
class RedoSink {
 public:
  virtual ~RedoSink() = default;
  // One piece of redo text and its SCN; text is valid during the call only. False ends the run
  // with failure and the reason.
  virtual bool OnRedo(std::int64_t scn, std::string_view text, std::string& reason) = 0;
  // After the last row, before the mining session is ended. False as above.
  virtual bool OnEnd(std::string& reason) = 0;
};

// Made for one task and destroyed at its end; used by the thread that made it, whose OCI
// environment it works with. No operation throws for what the server or the client library refuses:
// each returns false and leaves "<step label> : <Oracle's message>" in LastError(). A session that
// failed is still connected as far as it knows and may be asked again; what its transaction holds
// stands.
class OracleSession {
 public:
  // library must outlive the session.
  explicit OracleSession(OciLibrary& library);
  ~OracleSession();  // Disconnect
  OracleSession(const OracleSession&) = delete;
  OracleSession& operator=(const OracleSession&) = delete;

  // Allocates the handles, attaches and logs on; one that is connected is disconnected first. A
  // failed connect leaves the session as constructed, with its error text; it may be tried again.
  bool Connect(const LogOn& log_on);

  // Ends the session, which commits its open transaction on the server; only Disconnect is left to
  // do then. False when that failed, so that the fate of the transaction is not known. True when
  // there was no session.
  bool EndSession();

  // Ends the session unless that was done, which commits, and detaches. LastError() stays.
  void Disconnect();

  // Detaches and leaves the session without its end: the server takes the open transaction back.
  void Abandon();

  bool Connected() const { return connected_; }
  const std::string& LastError() const { return last_error_; }
  // The server's number of that error, as 1289 of ORA-01289; 0 when it was not the server's.
  oci::sb4 LastErrorCode() const { return last_error_code_; }

  // One statement without result rows. One that is refused leaves the transaction as it was.
  bool Execute(std::string_view statement);

  // What the operator is to know besides success or failure, a line each: rows that a list left out
  // (a name too long for its column), keys that a failed rename dropped. Empties the list.
  std::vector<std::string> TakeWarnings();

  // Called for every row of a list below with how many there are by now; false ends the list with
  // failure. Nobody watches when it is empty. Lists that a change of the schema reads for itself
  // come before its first statement, so that ending them changes nothing.
  using RowWatch = std::function<bool(std::size_t rows)>;
  void WatchRows(RowWatch watch) { row_watch_ = std::move(watch); }
  // Whether the last list that failed was ended so.
  bool ListEnded() const { return list_ended_; }

  // Asked before each exchange with the server, and before each row that is fetched: true makes the
  // operation fail, without the exchange. Ending the session is not asked about.
  using StopCondition = std::function<bool()>;
  void StopWhen(StopCondition condition) { stop_condition_ = std::move(condition); }
  bool Stopped() const { return stopped_; }  // an operation failed so

  // --- LogMiner -------------------------------------------------------------------------------

  // The SCN of the database as it stands.
  bool ReadCurrentScn(std::int64_t& scn);

  // Gives LogMiner the online logs and starts mining at start_scn.
  bool SetLogs(std::int64_t start_scn);

  // Hands the committed changes of all but the system's own owners to the sink, in commit order,
  // and ends the mining session. After a failure, the sink's included, the mining session goes with
  // this session.
  bool MineRedo(RedoSink& sink);

  // --- Catalogue ------------------------------------------------------------------------------

  // A list is emptied first; rows read before a failure stay in it. Rows come in the server's
  // order. Names are compared as they stand: the dictionary has them in upper case.

  bool GetVersionBanner(std::vector<std::string>& banner);

  // Without those of system owners.
  bool ListUsers(std::vector<std::string>& users);
  bool ListTables(std::vector<TableInfo>& tables);

  // How many there are: above 0 means that it exists.
  bool CountTables(std::string_view owner, std::string_view table, std::int32_t& count);
  bool CountPrimaryKeys(std::string_view owner, std::string_view table, std::int32_t& count);
  bool CountPrimaryKeysNamed(std::string_view owner, std::string_view table, std::string_view key,
                             std::int32_t& count);
  // Without those behind a primary or unique key; the named count has them too.
  bool CountIndexes(std::string_view owner, std::string_view table, std::int32_t& count);
  bool CountIndexesNamed(std::string_view owner, std::string_view table, std::string_view index,
                         std::int32_t& count);

  // Fails with the server's no-data message when the table has none.
  bool GetPrimaryKey(std::string_view owner, std::string_view table, KeyInfo& key);

  // Without those behind a primary or unique key.
  bool ListIndexes(std::string_view owner, std::string_view table, std::vector<IndexInfo>& indexes);

  bool ListIndexColumns(std::string_view table, std::string_view owner, std::string_view index,
                        std::vector<std::string>& columns);
  bool ListConstraintColumns(std::string_view owner, std::string_view constraint,
                             std::vector<std::string>& columns);
  bool ListColumns(std::string_view table, std::string_view owner,
                   std::vector<ColumnInfo>& columns);

  // Foreign keys of any owner. The server is asked by the name alone, so those that reference
  // another owner's key of the same name are among them.
  bool ListReferencingForeignKeys(std::string_view constraint, std::vector<KeyInfo>& keys);

  // --- Schema ---------------------------------------------------------------------------------

  // Names go into the statements as they stand. The server commits each statement: what was done
  // before a failure stays done.

  bool DropConstraint(const KeyInfo& key);
  // With the foreign keys that reference it, which go first; error_line gets which step failed.
  bool DropPrimaryKey(const KeyInfo& key, const LineSink& error_line);
  bool DropTable(std::string_view owner, std::string_view table, bool cascade);
  bool DropIndex(const IndexRef& index);

  bool AddPrimaryKey(const KeyInfo& key, const std::vector<std::string>& columns);
  bool AddForeignKey(const std::vector<std::string>& columns,
                     const std::vector<std::string>& referenced_columns, const KeyInfo& key,
                     std::string_view referenced_owner, std::string_view referenced_table);
  bool CreateIndex(const IndexRef& index, const std::vector<std::string>& columns);
  // Names, types, sizes and nullability only. trace, where given, gets the statement before it
  // runs, as "/n<statement>/n".
  bool CreateTable(const TableInfo& table, const std::vector<ColumnInfo>& columns,
                   bool with_tablespace, const LineSink& trace = nullptr);

  bool RenameTable(std::string_view owner, std::string_view table, std::string_view new_name);
  bool RenameIndex(std::string_view owner, std::string_view index, std::string_view new_name);
  // Drops the key and the foreign keys that reference it and creates them again. When that ends
  // half-way, TakeWarnings has a statement for each key that is gone.
  bool RenamePrimaryKey(const KeyInfo& key, std::string_view new_name);

 private:
  friend class TextQuery;
  enum class ErrorSource { Error, Environment };
  struct KeyRebuild;

  static bool Succeeded(oci::sword status) {
    return status == oci::kSuccess || status == oci::kSuccessWithInfo;
  }
  const OciApi& Api() const { return *environment_.api; }

  // False, with a reason: the operation is to stop.
  bool MayGoOn();
  bool AllocateHandles();
  void ReleaseHandles();
  bool Attach(std::string_view connect_name);
  bool BeginSession(const LogOn& log_on);
  bool SetHandleAttribute(oci::ub4 attribute, void* handle, std::string_view label);
  bool SetLoginText(oci::ub4 attribute, std::string_view text);
  bool ExecuteOn(oci::OCIStmt* statement, std::string_view text, std::string_view prepare_label,
                 std::string_view execute_label);

  // Nothing may be rebuilt from a list that left out a row: false, with that row's warning as the
  // error, when there is one behind the first warnings_before.
  bool ReadWhole(std::size_t warnings_before);
  bool ReadKeyColumns(const KeyInfo& key, std::vector<std::string>& columns);
  bool ReadRebuild(KeyRebuild& rebuild);
  bool RunRebuild(const KeyRebuild& rebuild, std::string_view new_name,
                  std::deque<std::string>& gone);

  // Fills LastError with the label and the server's message. status tells whether there is any
  // message to ask for.
  void SetError(std::string_view label, ErrorSource source, oci::sword status);
  // Fills LastError with a reason of our own. Always false.
  bool Refuse(std::string reason);

  OciLibrary& library_;
  OciLibrary::Environment environment_;
  // Not allocated is a value of its own, not null (see oracle_session.cpp).
  oci::OCIError* error_;
  oci::OCIServer* server_;
  oci::OCISvcCtx* service_;
  oci::OCISession* session_;
  StopCondition stop_condition_;
  bool stopped_ = false;
  std::string last_error_;
  oci::sb4 last_error_code_ = 0;
  std::vector<std::string> warnings_;
  RowWatch row_watch_;
  bool list_ended_ = false;
  bool connected_ = false;
  bool session_open_ = false;
};

}  // namespace quillmere
