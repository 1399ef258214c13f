// SPDX-License-Identifier: MIT
// A client library made of a script: it answers the 13 functions from tables, fails where it is
// told to and writes down every call with its arguments.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "oracle/oci_abi.h"

namespace quillmere::testing {

// One at a time: the table's functions serve the script made last.
class ScriptedOci {
 public:
  using Cell = std::optional<std::string>;  // no value is NULL
  using Rows = std::vector<std::vector<Cell>>;

  ScriptedOci();
  ~ScriptedOci();
  ScriptedOci(const ScriptedOci&) = delete;
  ScriptedOci& operator=(const ScriptedOci&) = delete;

  OciApi Api() const;

  // What queries that contain this text answer from now on; of several texts the longest counts.
  void Answer(const std::string& part, Rows rows) { answers_[part] = std::move(rows); }

  // What all other queries answer.
  void AnswerAll(Rows rows) { answer_ = std::move(rows); }

  // After letting skip of them pass, the next call whose line contains the text fails once.
  void FailOn(std::string part_of_line, std::string message, int code = 1, int skip = 0,
              oci::sword status = oci::kError);

  void ForgetFailures() { failures_.clear(); }

  // The line that failed last since the last taking, a statement's text behind its execution.
  std::string TakeFailed() { return std::exchange(failed_, {}); }

  // Called before every call is served, with its line, a statement's text behind the execution. A
  // text that is not empty fails the call with it; what the call would have done is not done.
  std::function<std::string(const std::string& line)> on_call;

  // Called for every executed statement, after it succeeded.
  std::function<void(const std::string& sql)> on_executed;

  // Calls since the last taking, one a line: "StmtExecute(svc1, stm1, err1, 1, 0, 0)".
  std::vector<std::string> TakeTranscript();
  // Puts a line of somebody else's between the calls.
  void Note(std::string line) { transcript_.push_back(std::move(line)); }
  // Texts executed since the last taking.
  std::vector<std::string> TakeExecuted();

  // Handles that were allocated and not freed, without environments and sessions.
  std::size_t LiveHandles() const;

  std::string Name(const void* handle) const;  // "svc1"

 private:
  struct Handle;
  struct Failure {
    std::string part;
    std::string message;
    int code;
    int skip;
    oci::sword status;
  };
  void* New(oci::ub4 type);
  // Writes the call down; the status it shall return.
  oci::sword Call(const std::string& line);
  oci::sword Execute(const std::string& line, Handle& statement, oci::ub4 iterations);
  oci::sword NextRow(Handle& statement);

  std::map<std::string, Rows> answers_;
  Rows answer_;
  std::vector<Failure> failures_;
  std::vector<std::string> transcript_;
  std::vector<std::string> executed_;
  std::vector<std::unique_ptr<Handle>> handles_;  // kept after being freed: names stay known
  std::map<oci::ub4, int> counts_;
  std::string failed_;
  std::string message_;
  int code_ = 0;
};

}  // namespace quillmere::testing
