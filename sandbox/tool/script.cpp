// SPDX-License-Identifier: MIT
#include "sandbox/tool/script.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "foundation/statement_splitter.h"
#include "sandbox/session/session.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

void PrintRows(Cursor* cursor, std::ostream& out, Status* status) {
  for (std::size_t i = 0; i < cursor->columns().size(); ++i) {
    out << (i == 0 ? "" : "\t") << cursor->columns()[i].name;
  }
  out << '\n';
  DisplayRow row;
  bool found = false;
  std::size_t count = 0;
  while ((*status = cursor->Next(&row, &found)).ok() && found) {
    ++count;
    for (std::size_t i = 0; i < row.size(); ++i) {
      out << (i == 0 ? "" : "\t") << row[i].value_or("(null)");
    }
    out << '\n';
  }
  if (status->ok()) out << count << (count == 1 ? " row\n" : " rows\n");
}

// The session of one script.
class Runner {
 public:
  Runner(std::string name, std::ostream& out, std::ostream& err)
      : name_(std::move(name)), out_(out), err_(err) {}

  Status Open(const DatabasePath& path) {
    Status status = Link::AttachFile(path, &link_);
    LogOn log_on;
    log_on.user = "SYS";
    log_on.sysdba = true;
    log_on.trusted = true;
    return status.ok() ? Session::Open(link_, log_on, &session_) : status;
  }

  bool Execute(const std::optional<ScriptStatement>& statement) {
    if (!statement) return true;
    // The semicolon that ends a block is part of it.
    const std::size_t begin =
        std::min(statement->text.find_first_not_of(" \t\r\n"), statement->text.size());
    const bool block = Upper(statement->text.substr(begin, 6)) == "BEGIN ";
    StatementResult result;
    link_->RoundTrip();
    Status status = session_->Execute(statement->text + (block ? ";" : ""), &result);
    if (status.ok() && result.cursor) PrintRows(result.cursor.get(), out_, &status);
    changed_ += result.rows;
    ++done_;
    if (status.ok()) return true;
    return Fail("line " + std::to_string(statement->line) + ": " + status.Text(),
                "  " + Shortened(statement->text, 200) + "\n");
  }

  bool Fail(const std::string& reason, const std::string& more) {
    err_ << name_ << ": " << reason << '\n' << more;
    if (session_->InTransaction()) err_ << "  The open transaction was rolled back.\n";
    session_->Rollback();
    return false;
  }

  bool Commit() {
    if (Status status = session_->Commit(); !status.ok()) {
      return Fail("commit: " + status.Text(), "");
    }
    out_ << done_ << " statements, " << changed_ << " rows changed, committed\n";
    return true;
  }

 private:
  std::string name_;
  std::ostream& out_;
  std::ostream& err_;
  std::shared_ptr<Link> link_;
  std::unique_ptr<Session> session_;
  std::int64_t changed_ = 0;
  std::size_t done_ = 0;
};

}  // namespace

bool RunScript(const std::string& directory, const std::string& name, std::istream& script,
               std::ostream& out, std::ostream& err) {
  DatabasePath path;
  Runner runner(name, out, err);
  Status status = FindDatabasePath(directory, name, &path) ? runner.Open(path) : Ora(12154);
  if (!status.ok()) {
    err << name << ": " << status.Text() << '\n';
    return false;
  }
  StatementSplitter splitter;
  for (std::string line; std::getline(script, line);) {
    if (!runner.Execute(splitter.Feed(line))) return false;
  }
  if (const std::string open = splitter.Unfinished(); !open.empty()) {
    return runner.Fail("the script ends inside " + open, "");
  }
  return runner.Execute(splitter.Finish()) && runner.Commit();
}

}  // namespace quillmere::sandbox
