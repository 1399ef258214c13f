// SPDX-License-Identifier: MIT
// What the server answers now and then: names that do not fit, numbers that are none, redo in
// pieces. Nothing is lost without a word, and nothing is done on the strength of half an answer.
#include "oracle/operations.h"

namespace quillmere {
namespace {

using S = OracleSession;
using Names = std::vector<std::string>;
using ::testing::_;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

struct OddAnswers : ::testing::Test, Connected {};

TEST_F(OddAnswers, ARowWithANameTooLongIsLeftOutAndTold) {
  const std::tuple<Deed, std::size_t, std::string> cases[] = {
      {Reads<Names>(&S::ListUsers), 120, ""},
      {Reads<std::vector<TableInfo>>(&S::ListTables), 120, "|T|TS|1"},
      {Reads<std::vector<IndexInfo>>(&S::ListIndexes, "O", "T"), 120, "|NORMAL|VALID"},
      {Reads<Names>(&S::ListIndexColumns, "T", "O", "IX"), 200, ""},
      {Reads<Names>(&S::ListConstraintColumns, "O", "PK"), 200, ""},
      {Reads<std::vector<ColumnInfo>>(&S::ListColumns, "T", "O"), 120, "|DATE|7|0|0|Y"},
      {Reads<std::vector<KeyInfo>>(&S::ListReferencingForeignKeys, "PK"), 120, "|FK|T"}};
  for (const auto& [run, room, rest] : cases) {
    const std::string name(room, 'X');
    script.AnswerAll(Rows(name + "!" + rest + ";" + name + rest + ";"));
    std::string records;
    EXPECT_TRUE(run(session, records)) << session.LastError();
    EXPECT_EQ(std::count(records.begin(), records.end(), ';'), 1);
    EXPECT_THAT(records, HasSubstr(name));
    EXPECT_THAT(session.TakeWarnings(),
                ElementsAre(AllOf(HasSubstr(" beginning with " + name),
                                  HasSubstr("left out: a name in it is longer than "))));
  }
}

TEST_F(OddAnswers, WhatIsNoNumberFails) {
  const std::tuple<Deed, std::string, std::string> cases[] = {
      {Reads<std::vector<TableInfo>>(&S::ListTables), "O|T|TS|#;", "OCIStmtFetch2 : "},
      {Reads<std::vector<ColumnInfo>>(&S::ListColumns, "T", "O"), "C|NUMBER|22|0|#|Y;",
       "OCIStmtFetch2 : "},
      {Reads<std::int32_t>(&S::CountTables, "O", "T"), "#;", "OCIStmtExecute : "},
      {Reads<std::int64_t>(&S::ReadCurrentScn), "#;", "OCIStmtExecute : "},
      {Mines(), "#|text;", "OCIStmtFetch2 : "}};
  for (const auto& [run, row, label] : cases) {
    for (const std::string text : {"", "12x", "1.5", "nan", "--1", "9.3E+18x"}) {
      std::string answer = row;
      answer.replace(answer.find('#'), 1, text);
      script.AnswerAll(Rows(answer));
      std::string result;
      EXPECT_FALSE(run(session, result)) << answer;
      EXPECT_THAT(session.LastError(), StartsWith(label));
      EXPECT_THAT(session.LastError(), HasSubstr("not a number: '" + text + "'"));
    }
  }
  std::int64_t scn = 0;
  script.AnswerAll(Rows("9223372036854775808;"));
  EXPECT_FALSE(session.ReadCurrentScn(scn)) << "one more than there can be";
}

TEST_F(OddAnswers, ABannerTooLongIsCutAndAKeyTooLongFails) {
  script.AnswerAll(Rows("Oracle Database 19c Enterprise Edition Release 19.0.0.0.0 - Production;"));
  Names banner;
  ASSERT_TRUE(session.GetVersionBanner(banner));
  EXPECT_EQ(Text(banner), "Oracle Database 19c Enterprise Edition Release 19.0.0.0.0 - Prod;");
  script.AnswerAll(Rows(std::string(121, 'K') + "|ENABLED;"));
  KeyInfo key;
  EXPECT_FALSE(session.GetPrimaryKey("S", "T", key));
  EXPECT_THAT(session.LastError(), StartsWith("OCIStmtExecute : the primary key of S.T"));
  script.AnswerAll({});
  std::int64_t scn = 0;
  for (const bool done : {session.GetPrimaryKey("S", "T", key), session.ReadCurrentScn(scn)}) {
    EXPECT_FALSE(done);
    EXPECT_EQ(session.LastError(), "OCIStmtExecute : ORA-01403: no data found");
  }
}

TEST_F(OddAnswers, RedoComesByteForByteOrNotAtAll) {
  const std::string piece(16000, ' ');
  const std::tuple<std::string, std::size_t, std::string> cases[] = {
      {"10|" + piece + ";", 9, ""},
      {"10|" + piece + "x;", 9, "a row of the redo is longer than 16000 bytes"},
      {"1|a;2|b;", 2, "the sink is full"}};
  for (const auto& [rows, most, reason] : cases) {
    script.AnswerAll(Rows(rows));
    std::string result;
    EXPECT_EQ(Mines(most)(session, result), reason.empty());
    EXPECT_EQ(reason.empty() ? result : session.LastError(),
              reason.empty() ? "10=" + piece + ";end" : "OCIStmtFetch2 : " + reason);
    EXPECT_EQ(script.TakeExecuted().size(), reason.empty() ? 2u : 1u)
        << "the mining session is ended only when all has been read";
  }
}

// A mirrored log's second member is the same log again.
TEST_F(OddAnswers, ALogThatTheServerHasAlreadyIsSkipped) {
  script.AnswerAll(Rows("a1;a2;b1;"));
  script.FailOn("StmtExecute", "ORA-01289: le fichier est deja la\n", 1289, 2);
  EXPECT_TRUE(session.SetLogs(7)) << session.LastError();
  EXPECT_THAT(script.TakeExecuted(), ElementsAre(_, HasSubstr("'a1', options=>DBMS_LOGMNR.NEW"),
                                                 HasSubstr("'b1', options=>DBMS_LOGMNR.ADDFILE"),
                                                 HasSubstr("startscn=>7")));
  script.FailOn("StmtExecute", "ORA-01284: file b1 (see ORA-01289)\n", 1284, 3);
  EXPECT_FALSE(session.SetLogs(7));
  EXPECT_EQ(session.LastErrorCode(), 1284);
}

TEST_F(OddAnswers, NoKeyIsDroppedOnTheStrengthOfAnIncompleteList) {
  const KeyInfo key{"SHOP", "ORDERS", "PK", "ENABLED"};
  const Deed rename = Does(&S::RenamePrimaryKey, key, "NEW_PK");
  const Deed drop = [key](OracleSession& s, std::string&) {
    return s.DropPrimaryKey(key, [](std::string_view) {});
  };
  const auto columns_of = [](const std::string& owner, const std::string& name) {
    return "select substr(column_name,0, 50) from dba_cons_columns where owner ='" + owner +
           "' and constraint_name='" + name + "'";
  };
  const std::string cut(50, 'P');  // by the server, perhaps
  const std::string long_table = "CRM|FK|" + std::string(121, 'T') + ";";
  // Columns of the key, foreign keys, columns of those.
  const std::tuple<Deed, std::string, std::string, std::string> cases[] = {
      {rename, "ID;", "CRM|FK|VISITS;", cut + ";"},
      {rename, "ID;" + cut + "P;", "CRM|FK|VISITS;", "O;P;"},
      {rename, "ID;", long_table, "O;"},
      {drop, "ID;", long_table, "O;"}};
  for (const auto& [run, columns, foreign_keys, their_columns] : cases) {
    script.Answer(columns_of("SHOP", "PK"), Rows(columns));
    script.Answer(columns_of("CRM", "FK"), Rows(their_columns));
    script.AnswerAll(Rows(foreign_keys));
    std::string ignored;
    EXPECT_FALSE(run(session, ignored));
    EXPECT_THAT(session.LastError(), HasSubstr("longer"));
    for (const std::string& sql : script.TakeExecuted()) EXPECT_THAT(sql, StartsWith("select"));
    session.TakeWarnings();
  }
}

}  // namespace
}  // namespace quillmere
