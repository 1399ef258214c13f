// SPDX-License-Identifier: MIT
#include "cli/sql_command.h"

#include <algorithm>
#include <fstream>
#include <iostream>

#include "foundation/statement_splitter.h"
#include "foundation/text.h"

namespace quillmere::cli {
namespace {

constexpr std::size_t kShownBytes = 70;

// The beginning of a statement, for a message; a password in it is left out.
std::string Shortened(const std::string& statement) {
  const std::size_t secret = LowerCase(statement).find("identified");
  std::size_t end = std::min({statement.size(), secret, kShownBytes});
  while (end > 0 && end < statement.size() && ContinuesCharacter(statement[end])) --end;
  return OneLine(statement.substr(0, end)) + (end < statement.size() ? " ..." : "");
}

bool IsQuery(const std::string& statement) {
  const std::string word = LowerCase(statement.substr(0, 6));
  return word == "select" || word.substr(0, 5) == "with ";
}

class Script {
 public:
  Script(OracleSession& session, std::istream& input, std::string name)
      : session_(session), input_(input), name_(std::move(name)) {}

  // False: reason says where the script broke off.
  bool Run(std::string& reason) {
    std::string line;
    while (std::getline(input_, line)) {
      if (!Execute(splitter_.Feed(line), reason)) return false;
    }
    if (input_.bad()) {
      reason = name_ + " cannot be read";
      return false;
    }
    if (const std::string open = splitter_.Unfinished(); !open.empty()) {
      reason = name_ + " ends inside " + open;
      return false;
    }
    return Execute(splitter_.Finish(), reason);
  }

  std::size_t Executed() const { return executed_; }

 private:
  bool Execute(const std::optional<ScriptStatement>& statement, std::string& reason) {
    if (!statement) return true;
    const std::string where =
        name_ + " line " + std::to_string(statement->line) + ": " + Shortened(statement->text);
    if (IsQuery(statement->text)) {
      reason = where + ": this command runs statements, it shows no rows";
      return false;
    }
    if (!session_.Execute(statement->text)) {
      reason = where + ": " + session_.LastError();
      return false;
    }
    ++executed_;
    return true;
  }

  OracleSession& session_;
  std::istream& input_;
  const std::string name_;
  StatementSplitter splitter_;
  std::size_t executed_ = 0;
};

// The end of a session commits, so a script that broke off is taken back first.
int FailTakenBack(std::unique_ptr<OracleSession>& session, const std::string& reason) {
  if (session->Execute("rollback")) {
    return Fail(reason + ". What the script had not committed was rolled back");
  }
  const std::string failure = session->LastError();
  // A connection that ends without its session's end is rolled back by the server.
  (void)session.release();
  return Fail(reason + ". The rollback failed, too (" + failure +
              "): the connection was dropped, which makes the server roll back");
}

int RunScript(Workspace& workspace, const std::string& name, std::istream& input,
              const std::string& input_name) {
  const LogOn login = workspace.LogOnOf(name).value_or(LogOn{.name = name});
  auto session = std::make_unique<OracleSession>(workspace.Oci());
  if (!session->Connect(login)) {
    return Fail("connect Database failed. Error: " + session->LastError());
  }
  Script script(*session, input, input_name);
  std::string reason;
  if (!script.Run(reason)) return FailTakenBack(session, reason);
  if (!session->EndSession()) {
    return Fail("The end of the session failed, whether its changes are committed is not known: " +
                session->LastError());
  }
  return Print(std::to_string(script.Executed()) + " statements executed on " + name + "\n");
}

}  // namespace

int Sql(const CommandLine& line, const std::string& name, const std::string& file) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr || FindSource(*workspace, name) < 0) return kFailed;
  if (file.empty()) return RunScript(*workspace, name, std::cin, "standard input");
  std::ifstream input(file, std::ios::binary);
  if (!input) return Fail("Can not open " + file);
  return RunScript(*workspace, name, input, file);
}

}  // namespace quillmere::cli
