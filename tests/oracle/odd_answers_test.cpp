// SPDX-License-Identifier: MIT
// Answers of the server that do not fit together: nothing is done on the strength of half of one.
#include "oracle/operations.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

struct OddAnswers : ::testing::Test, Connected {
  // What an operation makes of the rows that its queries answer; what it executed but queries.
  void Tell(const std::string& operation, const std::string& rows) {
    script.AnswerAll(Rows(rows));
    script.TakeExecuted();
    std::string result;
    const bool done = Operations().at(operation)(session, result);
    text += operation + " " + rows + "\n  " + (done ? "done" : session.LastError()) + " " + result +
            "\n";
    for (const std::string& line : session.TakeWarnings()) text += "  " + line + "\n";
    for (const std::string& sql : script.TakeExecuted()) {
      if (!sql.starts_with("select")) text += "  executed " + sql + "\n";
    }
  }
  void TearDown() override {
    const auto& test = *::testing::UnitTest::GetInstance()->current_test_info();
    ExpectStored(Shown(text), std::filesystem::path(CALLS) / (test.name() + std::string(".txt")));
  }
  std::string text;
};

// A mirrored log's second member is the same log again.
TEST_F(OddAnswers, ALogThatTheServerHasAlreadyIsSkipped) {
  script.FailOn("StmtExecute", "ORA-01289: le fichier est deja la\n", 1289, 2);
  Tell("SetLogs", "a1;a2;b1;");
  script.FailOn("StmtExecute", "ORA-01284: file b1 (see ORA-01289)\n", 1284, 3);
  Tell("SetLogs", "a1;a2;b1;");
}

TEST_F(OddAnswers, NoKeyIsDroppedOnTheStrengthOfAnIncompleteList) {
  const auto columns_of = [](const std::string& owner, const std::string& name) {
    return "select substr(column_name,0, 50) from dba_cons_columns where owner ='" + owner +
           "' and constraint_name='" + name + "'";
  };
  const std::string cut(50, 'P');  // by the server, perhaps
  const std::string long_table = "CRM|FK|" + std::string(121, 'T') + ";";
  // Columns of the key, foreign keys, columns of those.
  const std::string rename = "RenamePrimaryKey";
  const std::tuple<std::string, std::string, std::string, std::string> rows[] = {
      {rename, "ID;", "CRM|FK|VISITS;", cut + ";"},
      {rename, "ID;" + cut + "P;", "CRM|FK|VISITS;", "O;P;"},
      {rename, "ID;", long_table, "O;"},
      {"DropPrimaryKey", "ID;", long_table, "O;"}};
  for (const auto& [run, columns, foreign_keys, their_columns] : rows) {
    script.Answer(columns_of("SHOP", "PK"), Rows(columns));
    script.Answer(columns_of("CRM", "FK"), Rows(their_columns));
    text += "key of " + columns + " foreign key of " + their_columns + " ";
    Tell(run, foreign_keys);
  }
}

}  // namespace
}  // namespace quillmere
