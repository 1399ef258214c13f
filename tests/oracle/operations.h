// SPDX-License-Identifier: MIT
// The session's operations in one form, with what they give as a line of text.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "oracle/H_oracle.h"
#include "support/scripted_oci.h"

namespace quillmere {

// Cells stand between |, rows end with a semicolon; ~ is NULL and @ a zero byte.
inline testing::ScriptedOci::Rows Rows(std::string_view text) {
  testing::ScriptedOci::Rows rows(1);
  std::string cell;
  for (const char c : text) {
    if (c != '|' && c != ';') {
      cell += c == '@' ? '\0' : c;
      continue;
    }
    rows.back().push_back(cell == "~" ? testing::ScriptedOci::Cell() : cell);
    cell.clear();
    if (c == ';') rows.emplace_back();
  }
  rows.pop_back();
  return rows;
}

inline std::string Text(const std::string& text) {
  return text;
}
inline std::string Text(std::int64_t number) {
  return std::to_string(number);
}
inline std::string Text(const TableInfo& t) {
  return t.owner + "|" + t.table_name + "|" + t.tablespace_name + "|" + Text(t.num_rows);
}
inline std::string Text(const KeyInfo& k) {
  return k.owner + "|" + k.table_name + "|" + k.constraint_name + "|" + k.status;
}
inline std::string Text(const IndexInfo& i) {
  return i.index_name + "|" + i.index_type + "|" + i.status;
}
inline std::string Text(const ColumnInfo& c) {
  return c.column_name + "|" + c.data_type + "|" + Text(c.data_length) + "|" +
         Text(c.data_precision) + "|" + Text(c.data_scale) + "|" + c.nullable;
}
template <typename Record>
std::string Text(const std::vector<Record>& records) {
  std::string text;
  for (const Record& record : records) text += Text(record) + ";";
  return text;
}

// result: what it gave, besides success or failure.
using Deed = std::function<bool(OracleSession&, std::string& result)>;

// An operation whose last parameter takes what it reads. A list holds a record before.
template <typename Out, typename Method, typename... Given>
Deed Reads(Method method, Given... given) {
  return [=](OracleSession& session, std::string& result) {
    Out out{};
    if constexpr (requires { out.resize(1); }) out.resize(1);
    const bool done = (session.*method)(given..., out);
    if (done || requires { out.resize(1); }) result = Text(out);
    return done;
  };
}

template <typename Method, typename... Given>
Deed Does(Method method, Given... given) {
  return [=](OracleSession& session, std::string&) { return (session.*method)(given...); };
}

// Gives the rows, and "end" behind them.
inline Deed Mines(std::size_t most = 1000) {
  struct Sink final : RedoSink {
    bool OnRedo(std::int64_t scn, std::string_view text, std::string& reason) override {
      rows += std::to_string(scn) + "=" + std::string(text) + ";";
      reason = "the sink is full";
      return --left > 0;
    }
    bool OnEnd(std::string&) override {
      rows += "end";
      return true;
    }
    std::string rows;
    std::size_t left = 0;
  };
  return [most](OracleSession& session, std::string& result) {
    Sink sink;
    sink.left = most;
    const bool done = session.MineRedo(sink);
    result = sink.rows;
    return done;
  };
}

// Of columns of all types, and without any.
inline bool CreatesTables(OracleSession& session, std::string& result) {
  // Name, type, length, precision, scale, nullable.
  constexpr std::string_view kTypes =
      "A|CHAR|3|0|0|Y;B|NCHAR|4|0|0|N;C|NVARCHAR|5|0|0|Y;D|NVARCHAR2|6|0|0|Y;E|VARCHAR2|4000|0|0|;"
      "F|NUMBER|22|12|2|Y;G|NUMBER|22|10|0|Y;H|NUMBER|22|0|0|Y;I|NUMBER|22|0|3|Y;"
      "J|NUMBER|22|5|-2|Y;K|TIMESTAMP(6)|11|0|6|Y;L|TIMESTAMP(0)|7|0|0|Y;M|DATE|7|0|0|Y;"
      "N|FLOAT|22|126|0|N;O|RAW|16|0|0|N;";
  std::vector<ColumnInfo> columns;
  for (const auto& row : Rows(kTypes)) {
    const auto number = [&](std::size_t cell) { return std::stoi(*row[cell]); };
    columns.push_back({*row[0], *row[1], number(2), number(3), number(4), *row[5], ""});
  }
  const LineSink trace = [&](std::string_view line) { result += line; };
  return session.CreateTable({"S", "T", "TS", 0, ""}, columns, true, trace) &&
         session.CreateTable({"S", "T", "", 0, ""}, {}, false);
}

// All of them, by their names; of those with more than one form the second is named after it.
inline const std::map<std::string, Deed>& Operations() {
  using S = OracleSession;
  using Names = std::vector<std::string>;
  using Keys = std::vector<KeyInfo>;
  using Number = std::int32_t;
  static const IndexRef kIndex{"SHOP", "ORDERS", "IDX", "IX"};
  static const KeyInfo kKey{"SHOP", "ORDERS", "PK", "ENABLED"};
  static const std::map<std::string, Deed> kAll = {{"Connect",
                                                    Does(&S::Connect,
                                                         LogOn{"SHOP", "scott", "", true})},
                                                   {"EndSession", Does(&S::EndSession)},
                                                   {"Execute", Does(&S::Execute, "drop table A.B")},
                                                   {"GetVersionBanner",
                                                    Reads<Names>(&S::GetVersionBanner)},
                                                   {"ListUsers", Reads<Names>(&S::ListUsers)},
                                                   {"ListTables",
                                                    Reads<std::vector<TableInfo>>(&S::ListTables)},
                                                   {"CountTables", Reads<Number>(&S::CountTables,
                                                                                 "SHOP", "ORDERS")},
                                                   {"CountPrimaryKeys",
                                                    Reads<Number>(&S::CountPrimaryKeys, "SHOP",
                                                                  "ORDERS")},
                                                   {"CountPrimaryKeysNamed",
                                                    Reads<Number>(&S::CountPrimaryKeysNamed, "SHOP",
                                                                  "ORDERS", "PK")},
                                                   {"CountIndexes",
                                                    Reads<Number>(&S::CountIndexes, "SHOP",
                                                                  "ORDERS")},
                                                   {"CountIndexesNamed",
                                                    Reads<Number>(&S::CountIndexesNamed, "SHOP",
                                                                  "O'HARA", "IX")},
                                                   {"GetPrimaryKey",
                                                    Reads<KeyInfo>(&S::GetPrimaryKey, "SHOP",
                                                                   "ORDERS")},
                                                   {"ListIndexes",
                                                    Reads<std::vector<IndexInfo>>(
                                                        &S::ListIndexes, "SHOP", "ORDERS")},
                                                   {"ListIndexColumns",
                                                    Reads<Names>(&S::ListIndexColumns, "ORDERS",
                                                                 "SHOP", "IX")},
                                                   {"ListConstraintColumns",
                                                    Reads<Names>(&S::ListConstraintColumns, "SHOP",
                                                                 "PK2")},
                                                   {"ListColumns",
                                                    Reads<std::vector<ColumnInfo>>(
                                                        &S::ListColumns, "ORDERS", "SHOP")},
                                                   {"ListReferencingForeignKeys",
                                                    Reads<Keys>(&S::ListReferencingForeignKeys,
                                                                "PK")},
                                                   {"ReadCurrentScn",
                                                    Reads<std::int64_t>(&S::ReadCurrentScn)},
                                                   {"SetLogs", Does(&S::SetLogs, 4711)},
                                                   {"MineRedo", Mines()},
                                                   {"MineRedo2", Mines(2)},
                                                   {"DropConstraint",
                                                    Does(&S::DropConstraint, kKey)},
                                                   {"DropPrimaryKey",
                                                    [](S& session, std::string& result) {
                                                      return session.DropPrimaryKey(
                                                          kKey, [&](std::string_view line) {
                                                            result += line;
                                                          });
                                                    }},
                                                   {"DropTable",
                                                    Does(&S::DropTable, "SHOP", "ORDERS", false)},
                                                   {"DropTable2",
                                                    Does(&S::DropTable, "SHOP", "ORDERS", true)},
                                                   {"DropIndex", Does(&S::DropIndex, kIndex)},
                                                   {"AddPrimaryKey",
                                                    Does(&S::AddPrimaryKey, kKey, Names{"A", "B"})},
                                                   {"AddForeignKey",
                                                    Does(&S::AddForeignKey, Names{"X", "Y"},
                                                         Names{"A", "B"},
                                                         KeyInfo{"CRM", "VISITS", "FK", ""}, "SHOP",
                                                         "ORDERS")},
                                                   {"CreateIndex",
                                                    Does(&S::CreateIndex, kIndex, Names{"A", "B"})},
                                                   {"CreateTable", CreatesTables},
                                                   {"RenameTable", Does(&S::RenameTable, "SHOP",
                                                                        "ORDERS", "SALES")},
                                                   {"RenameIndex",
                                                    Does(&S::RenameIndex, "SHOP", "IX", "")},
                                                   {"RenamePrimaryKey",
                                                    Does(&S::RenamePrimaryKey, kKey, "NEW_PK")}};
  return kAll;
}

// A session that is connected, on a client that has written nothing down yet.
struct Connected {
  Connected() {
    EXPECT_TRUE(session.Connect({"SHOP", "scott", "tiger", true})) << session.LastError();
    script.TakeTranscript();
  }
  testing::ScriptedOci script;
  OciLibrary library{script.Api()};
  OracleSession session{library};
};

}  // namespace quillmere
