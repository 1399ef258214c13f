// SPDX-License-Identifier: MIT
// What every operation asks of the client library, call by call, and what becomes of it when each
// of these calls fails in turn. The texts in calls/ are what the server gets: they change only when
// they are meant to.
#include "oracle/operations.h"
#include "support/stored_text.h"

namespace quillmere {
namespace {

using testing::ScriptedOci;

// Its name, and behind a blank the rows of each query that has no answer of its own.
struct Operation {
  explicit Operation(const std::string& given)
      : name(given.substr(0, given.find(' '))),
        run(Operations().at(name)),
        rows(given.substr(std::min(name.size() + 1, given.size()))) {}
  std::string name;
  Deed run;
  std::string rows;
};

struct Outcome {
  std::vector<std::string> calls;   // of the operation
  std::string told;                 // what it gave, or the error; and the warnings
  std::vector<std::string> at_end;  // calls of the session's end
};

// Runs an operation on a session of its own; the call of that number fails, where there is one.
using SetUp = std::function<void(ScriptedOci&)>;
Outcome RunOnce(const Operation& operation, std::size_t failing, const SetUp& set_up = {}) {
  ScriptedOci script;
  OciLibrary library(script.Api());
  script.Answer("owner ='SHOP' and constraint_name='PK'", {{"ID"}, {"PART"}});
  script.Answer("owner ='CRM' and constraint_name='FK1'", {{"ORDER_ID"}, {"ORDER_PART"}});
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
      if (set_up) set_up(script);
      if (!set_up) fail();
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
std::string Account(const std::string& given) {
  const Operation operation(given);
  const Outcome whole = RunOnce(operation, 1000);
  std::string text = Joined(whole.calls, 0, '\n') + "\n" + whole.told;
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

TEST(OracleCalls, AreAsWrittenDown) {
  for (const char* name : {"connection", "catalogue", "log_miner", "schema"}) {
    ExpectCases(std::filesystem::path(CALLS) / (std::string(name) + ".txt"), Account);
  }
}

// What the server answers now and then: names that do not fit, numbers that are none, redo in
// pieces. Nothing is lost without a word, and nothing is done on the strength of half an answer.
// Given are operations, after "answer", a part of a query, ":" and its rows, or "fail", how many
// executions go well before, and the message. Told is what was executed but queries, too.
TEST(OracleCalls, OddAnswersAreToldOrFail) {
  ExpectCases(CALLS "/odd_answers.txt", [](const std::string& given) {
    std::istringstream lines(given);
    std::map<std::string, std::string> answers;
    std::string text, failure;
    for (std::string word, line; std::getline(lines, line);) {
      std::istringstream words(line);
      words >> word;
      const std::size_t colon = line.find(" : ");
      if (word == "answer") answers[line.substr(7, colon - 7)] = line.substr(colon + 3);
      if (word == "fail") failure = line.substr(5);
      if (word == "answer" || word == "fail") continue;
      const Outcome outcome = RunOnce(Operation(line), 0, [&](ScriptedOci& script) {
        for (const auto& [part, rows] : answers) script.Answer(part, Rows(rows));
        if (failure.empty()) return;
        const int code = std::stoi(failure.substr(failure.find("ORA-") + 4));
        script.FailOn("StmtExecute", failure.substr(2), code, std::stoi(failure));
      });
      text += line + "\n" + outcome.told;
      for (const std::string& call : outcome.calls) {
        const bool changes = call.starts_with("StmtPrepare") && call.find("\"select") == call.npos;
        if (changes) text += "  " + call + "\n";
      }
    }
    return text;
  });
}

}  // namespace
}  // namespace quillmere
