#include "sandbox/session/session.h"

#include <charconv>
#include <limits>

#include "sandbox/session/ddl.h"
#include "sandbox/sql/parser.h"
#include "sandbox/store/run_sql.h"

namespace quillmere::sandbox {

namespace {

constexpr std::size_t kMaxPlans = 300;

// What a plan is kept under; plans of long statements are not worth their memory.
std::string PlanKey(const std::vector<Token>& tokens) {
  constexpr std::size_t kMaxTokens = 4000;
  return tokens.size() > kMaxTokens ? std::string() : ShapeOf(tokens);
}

}  // namespace

Status Session::Execute(const std::string& sql, StatementResult* result) {
  *result = {};
  context_.now = DateTime::Now();
  if (Status status = Tokenise(sql, &tokens_); !status.ok()) return status;
  const std::string& first = tokens_.front().text;
  if (tokens_.front().kind == TokenKind::Word) {
    if (first == "SELECT") return ExecuteSelect(sql, result);
    if (first == "INSERT" || first == "UPDATE" || first == "DELETE") return ExecuteDml(sql, result);
  }
  return ExecuteOther(sql, result);
}

void Session::ClearPlans() {
  dml_plans_.clear();
  select_plans_.clear();
}

// Plans and tables are good as long as nobody changes the dictionary.
Status Session::CheckVersion(SqliteConnection* connection) {
  std::optional<std::int64_t> version;
  Status status = QueryInt(connection, &version, "SELECT dict_version FROM qm_meta WHERE id = 1");
  if (!status.ok() || version.value_or(0) == version_) return status;
  ClearPlans();
  catalog_.Clear();
  version_ = version.value_or(0);
  return LoadPrivileges(connection);
}

// A session sees its own uncommitted changes; otherwise it reads where no writer is in the way.
SqliteConnection* Session::ReadConnection() {
  return InTransaction() ? writer_.get() : reader_.get();
}

Status Session::ExecuteSelect(const std::string& sql, StatementResult* result) {
  SqliteConnection* connection = ReadConnection();
  // A query that is still open would hold its connection to what it saw at its beginning.
  if (connection == reader_.get()) DetachCursors(&cursors_);
  if (Status status = CheckVersion(connection); !status.ok()) return status;
  const std::string key = PlanKey(tokens_);
  std::unique_ptr<SelectPlan> fresh;
  const SelectPlan* plan = nullptr;
  if (const auto found = select_plans_.find(key); found != select_plans_.end()) {
    plan = found->second.get();
  } else {
    auto statement = std::make_unique<Statement>();
    if (Status status = ParseStatement(sql, tokens_, statement.get()); !status.ok()) return status;
    SelectEnvironment environment;
    environment.find_table = [this, connection](const ObjectName& name, TablePtr* out) {
      Status status = FindTable(connection, name, out);
      if (!status.ok() || MayChange((*out)->owner, (*out)->name, "SELECT")) return status;
      return Ora(942);
    };
    environment.check_view = [this](const DictionaryView& view) { return CheckView(view); };
    environment.log_file = link_->path().file.string();
    environment.user = context_.user;
    Status status = SelectPlan::Make(std::move(statement), environment, &fresh);
    if (!status.ok()) return status;
    plan = fresh.get();
  }
  if (plan->reads_redo() && !miner_.started()) return Ora(1306);
  if (Status status = OpenCursor(*plan, connection, result); !status.ok()) return status;
  if (fresh && fresh->reusable() && !key.empty()) {
    if (select_plans_.size() >= kMaxPlans) select_plans_.clear();
    select_plans_.emplace(key, std::move(fresh));
  }
  return {};
}

// Redo is read on a connection of its own: it may be long, and holds committed changes only, also
// while the session has open ones.
Status Session::OpenCursor(const SelectPlan& plan, SqliteConnection* connection,
                           StatementResult* result) {
  std::unique_ptr<SqliteConnection> own;
  Status status;
  if (plan.reads_redo()) {
    status = OpenConnection(&own);
    if (status.ok()) status = miner_.Register(own.get());
    if (!status.ok()) return status;
    connection = own.get();
  }
  std::unique_ptr<SqliteStatement> prepared;
  status = connection->Prepare(plan.sql(), &prepared);
  if (status.ok()) {
    status = BindParameters(plan.parameters(), tokens_, context_, prepared.get());
  }
  if (!status.ok()) return status;
  auto& list = own ? redo_cursors_ : connection == writer_.get() ? writer_cursors_ : cursors_;
  std::erase_if(list, [](const std::weak_ptr<Cursor>& cursor) { return cursor.expired(); });
  result->cursor =
      std::make_shared<Cursor>(plan.columns(), std::move(prepared), &context_, std::move(own));
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
  if (Status status = Writer(); !status.ok()) return status;
  if (transaction_->active()) return {};
  Status status = transaction_->Begin();
  if (!status.ok()) return link_->IsCut() ? link_->RoundTrip() : status;
  return CheckVersion(writer_.get());
}

Status Session::ExecuteDml(const std::string& sql, StatementResult* result) {
  const std::string key = PlanKey(tokens_);
  std::unique_ptr<Statement> statement;
  if (!dml_plans_.contains(key)) {
    // Nobody waits for a lock to hear of a missing parenthesis.
    statement = std::make_unique<Statement>();
    if (Status status = ParseStatement(sql, tokens_, statement.get()); !status.ok()) return status;
  }
  const bool began = !InTransaction();
  if (Status status = BeginChange(); !status.ok()) return status;
  Status status;
  if (const auto found = dml_plans_.find(key); found != dml_plans_.end()) {
    status = RunDml(*found->second, result);
  } else {
    if (!statement) {
      statement = std::make_unique<Statement>();
      status = ParseStatement(sql, tokens_, statement.get());
    }
    std::unique_ptr<DmlPlan> plan;
    if (status.ok()) status = MakePlan(std::move(statement), &plan);
    if (status.ok()) status = RunDml(*plan, result);
    if (plan && !key.empty()) {
      if (dml_plans_.size() >= kMaxPlans) dml_plans_.clear();
      dml_plans_.emplace(key, std::move(plan));
    }
  }
  // A statement that changed nothing leaves no transaction, and no lock, behind.
  if (began && InTransaction() && !transaction_->changed()) transaction_->Rollback();
  return status;
}

Status Session::MakePlan(std::unique_ptr<Statement> statement, std::unique_ptr<DmlPlan>* out) {
  const ObjectName* name = nullptr;
  const char* privilege = "INSERT";
  if (const auto* insert = std::get_if<Insert>(statement.get())) {
    name = &insert->table;
  } else if (const auto* update = std::get_if<Update>(statement.get())) {
    name = &update->table;
    privilege = "UPDATE";
  } else {
    name = &std::get<Delete>(*statement).table;
    privilege = "DELETE";
  }
  TablePtr table;
  if (Status status = FindTable(writer_.get(), *name, &table); !status.ok()) return status;
  if (!MayChange(table->owner, table->name, privilege)) {
    return MayChange(table->owner, table->name, "SELECT") ? Ora(1031) : Ora(942);
  }
  return DmlPlan::Make(std::move(statement), std::move(table), out);
}

Status Session::RunDml(const DmlPlan& plan, StatementResult* result) {
  if (Status status = transaction_->MarkStatement(); !status.ok()) return status;
  const bool had_changes = transaction_->changed();
  RowChanger changer(writer_.get(), &catalog_, transaction_.get());
  Status status = plan.Execute(tokens_, context_, writer_.get(), &changer, &result->rows);
  if (status.ok()) status = transaction_->KeepStatement();
  if (status.ok()) return {};
  transaction_->UndoStatement();
  if (!had_changes) transaction_->ForgetChanges();
  result->rows = 0;
  return status;
}

Status Session::ExecuteOther(const std::string& sql, StatementResult*) {
  Statement statement;
  if (Status status = ParseStatement(sql, tokens_, &statement); !status.ok()) return status;
  if (const auto* control = std::get_if<TransactionControl>(&statement)) return Control(*control);
  if (const auto* call = std::get_if<ProcedureCall>(&statement)) return ExecuteProcedure(*call);
  if (const auto* alter = std::get_if<AlterSession>(&statement)) return AlterFormats(*alter);
  return ExecuteDdl(statement);
}

Status Session::ExecuteDdl(const Statement& statement) {
  if (Status status = Commit(); !status.ok()) return status;
  if (Status status = BeginChange(); !status.ok()) return status;
  DdlExecutor executor(
      writer_.get(), &catalog_, &context_,
      [this](const std::string& owner, const std::string& object, const std::string& privilege) {
        return MayChange(owner, object, privilege);
      });
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

Status Session::Control(const TransactionControl& control) {
  switch (control.kind) {
    case TransactionControl::Kind::Commit:
      return Commit();
    case TransactionControl::Kind::Rollback:
      Rollback();
      return {};
    case TransactionControl::Kind::Savepoint: {
      Status status = Writer();
      return status.ok() ? transaction_->SetSavepoint(control.savepoint) : status;
    }
    case TransactionControl::Kind::RollbackTo: {
      DetachCursors(&writer_cursors_);
      Status status = Writer();
      return status.ok() ? transaction_->RollbackTo(control.savepoint) : status;
    }
  }
  return {};
}

Status Session::AlterFormats(const AlterSession& alter) {
  // Plans hold no formats, so nothing has to be forgotten.
  if (alter.parameter == "NLS_DATE_FORMAT") {
    context_.nls.date_format = alter.value;
  } else if (alter.parameter == "NLS_TIMESTAMP_FORMAT") {
    context_.nls.timestamp_format = alter.value;
  } else if (alter.parameter == "NLS_TIMESTAMP_TZ_FORMAT") {
    context_.nls.timestamp_tz_format = alter.value;
  } else {
    return {2248, "invalid option for ALTER SESSION: " + alter.parameter};
  }
  return {};
}

}  // namespace quillmere::sandbox
