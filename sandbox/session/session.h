// A logged-on session of a database: runs statements, owns the one transaction. Calls must not
// overlap; the OCI layer locks. Destroying a session rolls back what is not committed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sandbox/redo/log_miner.h"
#include "sandbox/session/dml.h"
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
  std::shared_ptr<Cursor> cursor;  // of a query; must not outlive the session's next end
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

  Status Execute(const std::string& sql, StatementResult* result);
  Status Commit();
  void Rollback();
  bool InTransaction() const { return transaction_ && transaction_->active(); }
  Link& link() { return *link_; }

 private:
  explicit Session(std::shared_ptr<Link> link);

  // Opening (session_open.cpp)
  Status OpenConnection(std::unique_ptr<SqliteConnection>* out);
  Status Authenticate(const LogOn& log_on);
  Status LoadPrivileges(SqliteConnection* connection);
  Status Writer();

  // Statements
  Status ExecuteSelect(const std::string& sql, StatementResult* result);
  Status ExecuteDml(const std::string& sql, StatementResult* result);
  Status MakePlan(std::unique_ptr<Statement> statement, std::unique_ptr<DmlPlan>* out);
  Status RunDml(const DmlPlan& plan, StatementResult* result);
  Status ExecuteOther(const std::string& sql, StatementResult* result);
  Status ExecuteDdl(const Statement& statement);
  Status ExecuteProcedure(const ProcedureCall& call);
  Status Control(const TransactionControl& control);
  Status AlterFormats(const AlterSession& alter);
  Status BeginChange();
  Status CheckVersion(SqliteConnection* connection);
  void ClearPlans();
  Status OpenCursor(const SelectPlan& plan, SqliteConnection* connection, StatementResult* result);
  static void DetachCursors(std::vector<std::weak_ptr<Cursor>>* cursors);

  // Names and rights
  SqliteConnection* ReadConnection();
  Status FindTable(SqliteConnection* connection, ObjectName name, TablePtr* out);
  bool HasPrivilege(const std::string& privilege) const;
  bool MayChange(const std::string& owner, const std::string& object,
                 const std::string& privilege) const;
  bool SeesDictionary() const;
  Status CheckView(const DictionaryView& view) const;

  struct Grant {
    std::string privilege;
    std::string owner;
    std::string object;
  };

  std::shared_ptr<Link> link_;
  EvalContext context_;
  LogMiner miner_;
  std::unique_ptr<SqliteConnection> reader_;
  std::unique_ptr<SqliteConnection> writer_;
  std::unique_ptr<Transaction> transaction_;
  Catalog catalog_;
  std::int64_t version_ = -1;
  std::vector<Token> tokens_;
  std::unordered_map<std::string, std::unique_ptr<DmlPlan>> dml_plans_;
  std::unordered_map<std::string, std::unique_ptr<SelectPlan>> select_plans_;
  std::vector<std::weak_ptr<Cursor>> cursors_;
  std::vector<std::weak_ptr<Cursor>> writer_cursors_;
  std::vector<std::weak_ptr<Cursor>> redo_cursors_;
  std::vector<Grant> grants_;
  bool sysdba_ = false;
};

}  // namespace quillmere::sandbox
