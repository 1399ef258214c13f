// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <thread>

#include "sandbox/session/session.h"
#include "sandbox/store/platform.h"
#include "sandbox/store/sql_runner.h"
#include "sandbox/store/sqlite_functions.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

// What is reported as committed survives a power cut too. Who fills a database to try something
// out may trade that for speed; a killed program loses nothing either way.
const char* Durability() {
  const char* sync = std::getenv("QUILLMERE_SANDBOX_SYNC");
  const bool off = sync != nullptr && std::string_view(sync) == "off";
  return off ? "PRAGMA synchronous = OFF" : "PRAGMA synchronous = FULL";
}

}  // namespace

Session::Session(std::shared_ptr<Link> link)
    : link_(std::move(link)), miner_(link_->path().file.string()) {
  context_.nls = Nls::FromEnvironment();
  context_.now = DateTime::Now();
}

Session::~Session() {
  for (const auto* list : {&cursors_, &writer_cursors_, &redo_cursors_}) {
    for (const auto& weak : *list) {
      if (const auto cursor = weak.lock()) cursor->Close();
    }
  }
  if (transaction_) transaction_->Rollback();
}

Status Session::Open(std::shared_ptr<Link> link, const LogOn& log_on,
                     std::unique_ptr<Session>* out) {
  std::unique_ptr<Session> session(new Session(std::move(link)));
  Status status = session->OpenConnection(&session->reader_);
  if (status.ok()) status = session->Authenticate(log_on);
  if (status.ok()) *out = std::move(session);
  return status;
}

Status Session::OpenConnection(std::unique_ptr<SqliteConnection>* out) {
  std::unique_ptr<SqliteConnection> connection;
  Status status = OpenDatabase(link_->path(), &connection);
  if (status.ok()) status = RegisterFunctions(connection.get(), &context_);
  if (status.ok()) status = connection->Exec(Durability());
  if (status.ok()) *out = std::move(connection);
  return status;
}

Status Session::Authenticate(const LogOn& log_on) {
  context_.user = Upper(log_on.user);
  sysdba_ = log_on.sysdba;
  dba_ = sysdba_ || context_.user == "SYSTEM";
  if (log_on.trusted) return {};
  std::string hash;
  SqlRunner sql(reader_.get());
  sql.Each(
      "SELECT password FROM qm_user WHERE name = ?",
      [&hash](const SqliteStatement& row) { hash = row.Text(0); }, context_.user);
  if (!sql.ok()) return sql.status();
  if (!PasswordMatches(log_on.password, hash)) return Ora(1017);
  if (sysdba_ == (context_.user == "SYS")) return {};
  return Ora(sysdba_ ? 1031 : 28009);
}

// The connection that writes is opened by the first change: most sessions only read.
Status Session::OpenWriter() {
  if (writer_) return {};
  std::unique_ptr<SqliteConnection> connection;
  if (Status status = OpenConnection(&connection); !status.ok()) return status;
  writer_ = std::move(connection);
  writer_->SetBusyHandler([this, since = std::chrono::steady_clock::time_point(),
                           last = std::chrono::steady_clock::time_point()]() mutable {
    const auto now = std::chrono::steady_clock::now();
    // A pause between two calls means that a new wait has begun.
    if (now - last > std::chrono::milliseconds(200)) since = now;
    last = now;
    if (now - since >= lock_wait_.value_or(link_->lock_wait())) {
      last = {};
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return true;
  });
  transaction_ =
      std::make_unique<Transaction>(writer_.get(), &link_->open_transaction(), context_.user);
  return {};
}

Status Session::CheckView(const DictionaryView& view) const {
  const bool hidden = (view.access == ViewAccess::SysdbaOnly && !sysdba_) ||
                      (view.access == ViewAccess::Dictionary && !dba_);
  if (hidden) return Ora(942);
  return view.name == "V$LOGMNR_CONTENTS" && !miner_.started() ? Ora(1306) : Status();
}

Status Session::FindTable(SqliteConnection* connection, ObjectName name, TablePtr* out) {
  if (name.owner.empty()) name.owner = context_.user;
  Status status = catalog_.FindTable(connection, name.owner, name.name, out);
  return dba_ || name.owner == context_.user ? status : Ora(942);
}

}  // namespace quillmere::sandbox
