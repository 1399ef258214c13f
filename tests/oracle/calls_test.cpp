// SPDX-License-Identifier: MIT
// What every operation asks of the client library, call by call, and what becomes of it when each
// of these calls fails in turn. The texts in calls/ are what the server gets: they change only when
// they are meant to.
#include "oracle/operations.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

using testing::ScriptedOci;

struct Operation {
  std::string name;
  Deed run;
  std::string rows{};  // of each query that has no answer of its own
};

struct Outcome {
  std::vector<std::string> calls;   // of the operation
  std::string told;                 // what it gave, or the error; and the warnings
  std::vector<std::string> at_end;  // calls of the session's end
};

// Runs an operation on a session of its own; the call of that number fails, where there is one.
Outcome RunOnce(const Operation& operation, std::size_t failing) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  const std::string columns_of =
      "select substr(column_name,0, 50) from dba_cons_columns where owner ='";
  script.Answer(columns_of + "SHOP' and constraint_name='PK'", {{"ID"}, {"PART"}});
  script.Answer(columns_of + "CRM' and constraint_name='FK1'", {{"ORDER_ID"}, {"ORDER_PART"}});
  script.AnswerAll(Rows(operation.rows));
  const auto fail = [&] {
    script.FailOn("", "ORA-00600: it broke  \r\n\n", 600, static_cast<int>(failing));
  };
  const bool connects = operation.name == "Connect";
  Outcome outcome;
  {
    if (connects) fail();
    OracleSession session(library);
    if (!connects) {
      EXPECT_TRUE(session.Connect({"SHOP", "scott", "tiger", true}));
      script.TakeTranscript();
      fail();
    }
    const std::size_t live = script.LiveHandles();
    std::string result;
    const bool done = operation.run(session, result);
    outcome.calls = script.TakeTranscript();
    outcome.told =
        (done ? "done" : session.LastError()) + (result.empty() ? "" : " ") + result + "\n";
    for (const std::string& line : session.TakeWarnings()) outcome.told += "  " + line + "\n";
    EXPECT_TRUE(script.LiveHandles() == live || (connects && done)) << operation.name << failing;
    script.ForgetFailures();
    if (connects && !done && failing > 0) {
      EXPECT_TRUE(session.Connect({"DB", "u", "p", false})) << "may be tried again";
    }
    script.TakeTranscript();
  }
  outcome.at_end = script.TakeTranscript();
  return outcome;
}

std::string Joined(const std::vector<std::string>& lines, std::size_t from, char between) {
  std::string text;
  for (std::size_t i = from; i < lines.size(); ++i)
    text += (i == from ? "" : std::string(1, between)) + lines[i];
  return text;
}

// The calls of an operation and what it gives; for each call, should it fail, those behind it and
// what is told then.
std::string Account(const Operation& operation) {
  const Outcome whole = RunOnce(operation, 1000);
  std::string text =
      "=== " + operation.name + "\n" + Joined(whole.calls, 0, '\n') + "\n" + whole.told;
  if (operation.name == "Connect") text += "at the end\n" + Joined(whole.at_end, 0, '\n') + "\n";
  for (std::size_t n = 0; n < whole.calls.size(); ++n) {
    const Outcome broken = RunOnce(operation, n);
    std::string rest = Joined(broken.calls, n + 1, ' ');
    if (rest == Joined(whole.calls, n + 1, ' ')) rest = "and it goes on";
    text += whole.calls[n].substr(0, whole.calls[n].find('(')) + " fails: " + rest + "\n  " +
            broken.told;
  }
  return text;
}

void ExpectCalls(const std::string& name, const std::vector<Operation>& operations) {
  std::string text;
  for (const Operation& operation : operations) text += Account(operation);
  ExpectStored(text, std::filesystem::path(CALLS) / (name + ".txt"));
}

TEST(OracleCalls, Connection) {
  ExpectCalls("connection",
              {{"Connect", Does(&OracleSession::Connect, LogOn{"SHOP", "scott", "", true})},
               {"EndSession", Does(&OracleSession::EndSession)},
               {"Execute", Does(&OracleSession::Execute, "drop table A.B")}});
}

TEST(OracleCalls, Catalogue) {
  using S = OracleSession;
  using Names = std::vector<std::string>;
  using Number = std::int32_t;
  ExpectCalls(
      "catalogue",
      {{"GetVersionBanner", Reads<Names>(&S::GetVersionBanner), "Oracle9i Release 9.2.0.1.0  ;~;"},
       {"ListUsers", Reads<Names>(&S::ListUsers), "A_LONG_USER_NAME;XDB;BOB ;SYS;sys;"},
       {"ListTables", Reads<std::vector<TableInfo>>(&S::ListTables),
        "SHOP |ORDERS|USERS|12;OUTLN|OL$|SYSTEM|0;SHOP|T|@|4294967296;SHOP|V|~|1.235E+10 ;"},
       {"CountTables", Reads<Number>(&S::CountTables, "SHOP", "ORDERS"), "1 ;"},
       {"CountPrimaryKeys", Reads<Number>(&S::CountPrimaryKeys, "SHOP", "ORDERS"), "0;"},
       {"CountPrimaryKeysNamed", Reads<Number>(&S::CountPrimaryKeysNamed, "SHOP", "ORDERS", "PK"),
        "1;"},
       {"CountIndexes", Reads<Number>(&S::CountIndexes, "SHOP", "ORDERS"), "99999999999;"},
       {"CountIndexesNamed", Reads<Number>(&S::CountIndexesNamed, "SHOP", "O'HARA", "IX"), "3;"},
       {"GetPrimaryKey", Reads<KeyInfo>(&S::GetPrimaryKey, "SHOP", "ORDERS"),
        "PK_ORDERS  |DISABLED;NEVER|READ;"},
       {"ListIndexes", Reads<std::vector<IndexInfo>>(&S::ListIndexes, "SHOP", "ORDERS"),
        "IX_LONGER|FUNCTION-BASED NORMAL|UNUSABLE;IX|NORMAL|VALID;"},
       {"ListIndexColumns", Reads<Names>(&S::ListIndexColumns, "ORDERS", "SHOP", "IX"),
        "SYS_NC00012$;ID;"},
       {"ListConstraintColumns", Reads<Names>(&S::ListConstraintColumns, "SHOP", "PK2"),
        "SECOND;ID;"},
       {"ListColumns", Reads<std::vector<ColumnInfo>>(&S::ListColumns, "ORDERS", "SHOP"),
        "AMOUNT|NUMBER|22|12|-2|N;AT|DATE|7|0|0|Y;"},
       {"ListReferencingForeignKeys",
        Reads<std::vector<KeyInfo>>(&S::ListReferencingForeignKeys, "PK"), "CRM|FK_1|VISITS;"}});
}

TEST(OracleCalls, LogMiner) {
  ExpectCalls("log_miner", {{"ReadCurrentScn", Reads<std::int64_t>(&OracleSession::ReadCurrentScn),
                             "9223372036854775807 ;"},
                            {"SetLogs", Does(&OracleSession::SetLogs, 4711),
                             "/u01/redo01.log   ;/u01/o'hara.log;"},
                            {"MineRedo", Mines(), "10|a  ;12|~;"}});
}

// Name, type, length, precision, scale, nullable.
constexpr std::string_view kColumnTypes =
    "A|CHAR|3|0|0|Y;B|NCHAR|4|0|0|N;C|NVARCHAR|5|0|0|Y;D|NVARCHAR2|6|0|0|Y;E|VARCHAR2|4000|0|0|;"
    "F|NUMBER|22|12|2|Y;G|NUMBER|22|10|0|Y;H|NUMBER|22|0|0|Y;I|NUMBER|22|0|3|Y;J|NUMBER|22|5|-2|Y;"
    "K|TIMESTAMP(6)|11|0|6|Y;L|TIMESTAMP(0)|7|0|0|Y;M|DATE|7|0|0|Y;N|FLOAT|22|126|0|N;"
    "O|RAW|16|0|0|N;";

TEST(OracleCalls, Schema) {
  using S = OracleSession;
  using Names = std::vector<std::string>;
  const IndexRef index{"SHOP", "ORDERS", "IDX", "IX"};
  const KeyInfo key{"SHOP", "ORDERS", "PK", "ENABLED"};
  const auto drop_key = [key](OracleSession& session, std::string& result) {
    return session.DropPrimaryKey(key, [&](std::string_view line) { result += line; });
  };
  const auto create = [](OracleSession& session, std::string& result) {
    const LineSink trace = [&](std::string_view line) { result += line; };
    std::vector<ColumnInfo> columns;
    for (const auto& row : Rows(kColumnTypes)) {
      const auto number = [&](std::size_t cell) { return std::stoi(*row[cell]); };
      columns.push_back({*row[0], *row[1], number(2), number(3), number(4), *row[5], ""});
    }
    return session.CreateTable({"S", "T", "TS", 0, ""}, columns, true, trace) &&
           session.CreateTable({"S", "T", "", 0, ""}, {}, false);
  };
  ExpectCalls("schema",
              {{"DropConstraint", Does(&S::DropConstraint, key)},
               {"DropPrimaryKey", drop_key, "CRM|FK1|VISITS;LAB|FK2|TESTS;"},
               {"DropTable", Does(&S::DropTable, "SHOP", "ORDERS", false)},
               {"DropTable with its keys", Does(&S::DropTable, "SHOP", "ORDERS", true)},
               {"DropIndex", Does(&S::DropIndex, index)},
               {"AddPrimaryKey", Does(&S::AddPrimaryKey, key, Names{"A", "B"})},
               {"AddForeignKey", Does(&S::AddForeignKey, Names{"X", "Y"}, Names{"A", "B"},
                                      KeyInfo{"CRM", "VISITS", "FK", ""}, "SHOP", "ORDERS")},
               {"CreateIndex", Does(&S::CreateIndex, index, Names{"A", "B"})},
               {"CreateTable", create},
               {"RenameTable", Does(&S::RenameTable, "SHOP", "ORDERS", "SALES")},
               {"RenameIndex", Does(&S::RenameIndex, "SHOP", "IX", "")},
               {"RenamePrimaryKey", Does(&S::RenamePrimaryKey, key, "NEW_PK"),
                "CRM|FK1|VISITS;LAB|FK2|TESTS;"}});
}

}  // namespace
}  // namespace quillmere
