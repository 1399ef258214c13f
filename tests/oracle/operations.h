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
