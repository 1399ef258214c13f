// SPDX-License-Identifier: MIT
#include "sandbox/session/session.h"

#include "sandbox/session/ddl.h"
#include "sandbox/session/dml.h"
#include "sandbox/sql/parser.h"
#include "sandbox/store/sql_runner.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {
namespace {

std::string FormatsTable(const Nls& nls) {
  std::string table;
  for (const auto& [name, value] : {std::pair("NLS_DATE_FORMAT", nls.date_format),
                                    {"NLS_TIMESTAMP_FORMAT", nls.timestamp_format},
                                    {"NLS_TIMESTAMP_TZ_FORMAT", nls.timestamp_tz_format},
                                    {"NLS_NUMERIC_CHARACTERS", std::string(".,")}}) {
    table += table.empty() ? "(" : " UNION ALL ";
    table += "SELECT " + QuoteLiteral(name) + " AS name, " + QuoteLiteral(value) + " AS value";
  }
  return table + ")";
}

}  // namespace

Status Session::Execute(const std::string& sql, StatementResult* result, bool query_only) {
  *result = {};
  context_.now = DateTime::Now();
  // Nobody waits for a lock to hear of a missing parenthesis.
  Statement statement;
  if (Status status = ParseStatement(sql, &statement); !status.ok()) return status;
  if (const auto* select = std::get_if<Select>(&statement)) return ExecuteSelect(*select, result);
  if (query_only) return Ora(24333);
  if (const ObjectName* target = TargetOf(statement)) return ExecuteDml(statement, *target, result);
  if (const auto* control = std::get_if<TransactionControl>(&statement)) {
    return ExecuteControl(*control);
  }
  if (const auto* call = std::get_if<ProcedureCall>(&statement)) return ExecuteProcedure(*call);
  return ExecuteDdl(statement);
}

// Tables are good as long as nobody changes the dictionary.
Status Session::CheckVersion(SqliteConnection* connection) {
  SqlRunner sql(connection);
  const auto version = sql.Int("SELECT dict_version FROM qm_meta WHERE id = 1");
  if (!sql.ok() || version.value_or(0) == version_) return sql.status();
  catalog_.Clear();
  version_ = version.value_or(0);
  return {};
}

// What the views take from the session and from the transaction that is open, its own or another's.
std::vector<std::pair<std::string, std::string>> Session::Placeholders() const {
  const OpenTransaction& open = link_->open_transaction();
  // As of before the transaction is looked for: a reader may take the two for one moment.
  const std::string last_scn = std::to_string(open.last_scn());
  TransactionRecord record;
  std::string where = open.Find(&record) ? "" : " WHERE 0";
  std::string transaction = "(SELECT " + std::to_string(record.start_scn) + " AS start_scn";
  transaction += ", " + std::to_string(record.process) + " AS process";
  for (const auto& [name, text] : {std::pair("started", &record.started),
                                   {"user", &record.user},
                                   {"machine", &record.machine},
                                   {"program", &record.program}}) {
    transaction += ", " + QuoteLiteral(*text) + " AS " + name;
  }
  return {
      {":record",
       "r.scn, r.operation, r.undo, r.row, r.data, r.shape, s.table_id, s.owner, s.name, "
       "s.columns"},
      {":start", std::to_string(miner_.start_scn())},
      {":end", std::to_string(miner_.end_scn())},
      {":log", QuoteLiteral(link_->path().file.string())},
      {":last_scn", last_scn},
      {":transaction", transaction + where + ")"},
      {":formats", FormatsTable(context_.nls)},
      {":dba", dba_ ? "1" : "0"},
  };
}

Status Session::ExecuteSelect(const Select& select, StatementResult* result) {
  if (select.for_update) {
    if (select.lock_wait) lock_wait_ = std::chrono::seconds(*select.lock_wait);
    Status status = BeginChange();
    lock_wait_.reset();
    if (status.code() == 54 && select.lock_wait.value_or(0) > 0) return Ora(30006);
    if (!status.ok()) return status;
  }
  Status status = OpenSelect(select, result);
  if (status.ok() && select.for_update) status = result->cursor->Detach();
  // What is locked stays so until the transaction ends.
  const bool locked = status.ok() && select.for_update && !result->cursor->empty();
  if (locked) status = transaction_->Start();
  if (select.for_update && transaction_) transaction_->LetGo();  // found nothing, or failed
  return status;
}

Status Session::OpenSelect(const Select& select, StatementResult* result) {
  // A session sees its own uncommitted changes; otherwise it reads where no writer is in the way.
  SqliteConnection* connection = InTransaction() ? writer_.get() : reader_.get();
  // A query that is still open would hold its connection to what it saw at its beginning.
  if (connection == reader_.get()) DetachCursors(&cursors_);
  if (Status status = CheckVersion(connection); !status.ok()) return status;
  SelectEnvironment environment;
  environment.find_table = [this, connection](const ObjectName& name, TablePtr* out) {
    return FindTable(connection, name, out);
  };
  environment.check_view = [this](const DictionaryView& view) { return CheckView(view); };
  environment.placeholders = [this] { return Placeholders(); };
  environment.context = &context_;
  SelectPlan plan;
  Status status = CompileSelect(select, environment, &plan);
  return status.ok() ? OpenCursor(plan, connection, result) : status;
}

// Redo is read on a connection of its own: it may be long, and holds committed changes only, also
// while the session has open ones.
Status Session::OpenCursor(const SelectPlan& plan, SqliteConnection* connection,
                           StatementResult* result) {
  std::unique_ptr<SqliteConnection> own;
  Status status;
  if (plan.reads_redo) {
    status = OpenConnection(&own);
    if (status.ok()) status = RegisterRedoFunctions(own.get(), &context_);
    connection = own.get();
  }
  std::unique_ptr<SqliteStatement> statement;
  if (status.ok()) status = connection->Prepare(plan.sql, &statement);
  if (!status.ok()) return status;
  int index = 0;
  for (const std::string& parameter : plan.parameters) statement->BindText(++index, parameter);
  auto& list = own ? redo_cursors_ : connection == writer_.get() ? writer_cursors_ : cursors_;
  std::erase_if(list, [](const std::weak_ptr<Cursor>& cursor) { return cursor.expired(); });
  result->cursor =
      std::make_shared<Cursor>(plan.columns, std::move(statement), &context_, std::move(own));
  list.push_back(result->cursor);
  return {};
}

// Queries opened inside the transaction must not outlive it: their connection has to let go.
void Session::DetachCursors(std::vector<std::weak_ptr<Cursor>>* cursors) {
  for (const auto& weak : *cursors) {
    if (const auto cursor = weak.lock()) (void)cursor->Detach();
  }
  cursors->clear();
}

Status Session::BeginChange() {
  if (Status status = OpenWriter(); !status.ok()) return status;
  if (transaction_->active()) return {};
  Status status = transaction_->Begin();
  return status.ok() ? CheckVersion(writer_.get()) : status;
}

Status Session::ExecuteDml(const Statement& statement, const ObjectName& target,
                           StatementResult* result) {
  const bool had_changes = InTransaction() && transaction_->changed();
  Status status = BeginChange();
  TablePtr table;
  if (status.ok()) status = FindTable(writer_.get(), target, &table);
  if (status.ok()) status = transaction_->MarkStatement();
  if (status.ok()) {
    RowChanger changer(writer_.get(), transaction_.get());
    status = RunDml(statement, table, context_, writer_.get(), &changer, &result->rows);
    if (status.ok()) status = transaction_->KeepStatement();
    if (!status.ok()) {
      transaction_->UndoStatement();
      if (!had_changes) transaction_->ForgetChanges();
      result->rows = 0;
    }
  }
  // A statement that changed nothing leaves no transaction, and no lock, behind.
  if (transaction_) transaction_->LetGo();
  return status;
}

Status Session::ExecuteDdl(const Statement& statement) {
  if (Status status = Commit(); !status.ok()) return status;
  if (Status status = BeginChange(); !status.ok()) return status;
  DdlExecutor executor(writer_.get(), &catalog_, &context_, transaction_->last_scn(), dba_);
  Status status = executor.Execute(statement);
  if (status.ok()) status = transaction_->BumpDictionary();
  if (status.ok()) status = Commit();
  if (!status.ok()) Rollback();
  // What was read while the change was under way may be of a dictionary that never came to be.
  version_ = -1;
  return status;
}

Status Session::Commit() {
  DetachCursors(&writer_cursors_);
  return transaction_ ? transaction_->Commit() : Status();
}

void Session::Rollback() {
  DetachCursors(&writer_cursors_);
  if (transaction_) transaction_->Rollback();
}

Status Session::ExecuteControl(const TransactionControl& control) {
  using Control = TransactionControl::Kind;
  if (control.kind == Control::Commit) return Commit();
  if (Status status = OpenWriter(); !status.ok()) return status;
  if (control.kind == Control::Savepoint) return transaction_->SetSavepoint(control.savepoint);
  if (control.kind == Control::Rollback) {
    Rollback();
    return {};
  }
  DetachCursors(&writer_cursors_);
  return transaction_->RollbackTo(control.savepoint);
}

}  // namespace quillmere::sandbox
