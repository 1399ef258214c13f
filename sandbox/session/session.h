// SPDX-License-Identifier: MIT
// A logged-on session of a database: runs statements, owns the one transaction. Calls may come on
// any thread but must not overlap; the OCI layer locks. Destroying a session rolls back what is not
// committed and closes its cursors.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/redo/log_miner.h"
#include "sandbox/session/link.h"
#include "sandbox/session/select.h"
#include "sandbox/store/catalog.h"
#include "sandbox/store/transaction.h"

namespace quillmere::sandbox {

struct LogOn {
  std::string user;  // any case
  std::string password;
  bool sysdba = false;
  bool trusted = false;  // the owner of the file, at the tool: no password asked
};

struct StatementResult {
  std::shared_ptr<Cursor> cursor;  // of a query
  std::int64_t rows = 0;           // changed
};

class Session {
 public:
  // ORA-01017, 28009, 01031 as a server refuses a log-on.
  static Status Open(std::shared_ptr<Link> link, const LogOn& log_on,
                     std::unique_ptr<Session>* out);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // A statement that fails leaves the transaction as it was; DDL commits first, also when it fails.
  // With `query_only` anything but a query is refused with ORA-24333.
  Status Execute(const std::string& sql, StatementResult* result, bool query_only = false);
  // After a failure the transaction is rolled back.
  Status Commit();
  void Rollback();
  bool InTransaction() const { return transaction_ && transaction_->active(); }
  Link& link() { return *link_; }

 private:
  explicit Session(std::shared_ptr<Link> link);

  // Opening (session_open.cpp)
  Status OpenConnection(std::unique_ptr<SqliteConnection>* out);
  Status Authenticate(const LogOn& log_on);
  Status OpenWriter();

  // Statements
  std::vector<std::pair<std::string, std::string>> Placeholders() const;
  Status ExecuteSelect(const Select& select, StatementResult* result);
  Status OpenSelect(const Select& select, StatementResult* result);
  Status ExecuteDml(const Statement& statement, const ObjectName& target, StatementResult* result);
  Status ExecuteDdl(const Statement& statement);
  Status ExecuteProcedure(const ProcedureCall& call);
  Status ExecuteControl(const TransactionControl& control);
  Status BeginChange();
  Status CheckVersion(SqliteConnection* connection);
  Status OpenCursor(const SelectPlan& plan, SqliteConnection* connection, StatementResult* result);
  static void DetachCursors(std::vector<std::weak_ptr<Cursor>>* cursors);

  // Names and rights. ORA-00942 for another's table, too, unless the session may do everything.
  Status FindTable(SqliteConnection* connection, ObjectName name, TablePtr* out);
  Status CheckView(const DictionaryView& view) const;

  std::shared_ptr<Link> link_;
  EvalContext context_;
  LogMiner miner_;
  std::unique_ptr<SqliteConnection> reader_;
  std::unique_ptr<SqliteConnection> writer_;
  std::unique_ptr<Transaction> transaction_;
  Catalog catalog_;
  std::int64_t version_ = -1;  // of the dictionary that the catalog is of
  bool sysdba_ = false;
  bool dba_ = false;                                    // may do everything: SYS and SYSTEM
  std::optional<std::chrono::milliseconds> lock_wait_;  // of the statement, when it says one
  // Open ones, by the connection that they are on.
  std::vector<std::weak_ptr<Cursor>> cursors_;
  std::vector<std::weak_ptr<Cursor>> writer_cursors_;
  std::vector<std::weak_ptr<Cursor>> redo_cursors_;
};

}  // namespace quillmere::sandbox
