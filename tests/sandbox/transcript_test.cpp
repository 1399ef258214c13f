// SPDX-License-Identifier: MIT
// The transcripts in the folder of that name, each on a fresh database: a statement a line, or more
// when the next ones stand further in, with its answer behind " -> " as Client::Expect knows it.
// "NAME> " before it tells which session, SYS as the first when it is left out. Besides statements:
//   @connect NAME DATABASE USER PASSWORD [sysdba]   another session
//   @drop                  detaches the session without its end
//   @around BEFORE | BEHIND    stands around all statements from here on
//   @env NAME VALUE        for sessions opened from here on
//   @set NAME QUERY        what {NAME} stands for from here on
//   @mine SCN              starts mining from there
//   @tool ARGUMENTS        runs the tool; the answer is its exit status and a part of what it says
//   @script DATABASE TEXT  runs a script by it, "\n" standing for the ends of its lines
//   @follow NAME VALUE...  a query of oracle/follow_queries.h
//   @mined STATEMENT       commits it; the answer is the redo of it
#include <fstream>
#include <map>
#include <sstream>

#include "oracle/follow_queries.h"
#include "sandbox/client.h"

namespace quillmere::sandbox_test {

namespace {

const std::map<std::string, std::string_view> kFollow = {
    {"OldestOpen", follow::kOldestOpen},
    {"OldestSession", follow::kOldestSession},
    {"Identity", follow::kIdentity},
    {"Threads", follow::kThreads},
    {"OnlineLogs", follow::kOnlineLogs},
    {"ArchivedLogs", follow::kArchivedLogs},
    {"LogsNow", follow::kLogsNow},
    {"Contents", follow::kContents},
    {"Savepoint", follow::kSavepoint},
    {"BackToSavepoint", follow::kBackToSavepoint},
    {"CreatePositions", follow::kCreatePositions},
    {"InsertPosition", follow::kInsertPosition},
    {"LockPosition", follow::kLockPosition},
    {"UpdatePosition", follow::kUpdatePosition},
    {"DeletePosition", follow::kDeletePosition},
};

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

class TranscriptTest : public SandboxTest,
                       public ::testing::WithParamInterface<std::filesystem::path> {
 protected:
  void Step(std::string step) {
    for (const auto& [name, value] : values_) step = Replaced(step, "{" + name + "}", value);
    Client* client = &client_;
    const std::size_t name_end = step.find_first_not_of("abcdefghijklmnopqrstuvwxyz");
    if (name_end > 0 && name_end != std::string::npos && step.substr(name_end, 2) == "> ") {
      client = clients_.at(step.substr(0, name_end)).get();
      step.erase(0, name_end + 2);
    }
    const std::size_t arrow = std::min(step.find(" ->"), step.size());
    const std::string answer = step.substr(std::min(arrow + 4, step.size()));
    step.resize(arrow);
    if (step[0] == '@') return Command(client, step, answer);
    client->Expect(before_ + step + behind_, answer);
  }

  void Command(Client* client, const std::string& step, const std::string& answer) {
    std::istringstream words(step);
    std::string command;
    words >> command >> std::ws;
    std::string rest;
    if (command == "@connect") {
      std::string name, database, user, password, mode;
      words >> name >> database >> user >> password >> mode;
      auto& made = clients_[name] = std::make_unique<Client>();
      const std::string got = made->Connect(database, user, password, mode == "sysdba");
      EXPECT_EQ(got.substr(0, answer.size()), answer) << step << ": " << got;
      EXPECT_EQ(got.empty(), answer.empty()) << step << ": " << got;
      return;
    }
    if (command == "@follow") {
      std::string name;
      words >> name;
      std::string_view left = kFollow.at(name);
      std::string sql;
      for (std::string value; words >> value; left.remove_prefix(left.find("{}") + 2)) {
        sql.append(left.substr(0, left.find("{}"))).append(value);
      }
      return client->Expect(sql.append(left), answer);
    }
    if (command == "@set") words >> command >> std::ws;
    std::getline(words, rest);
    if (step.starts_with("@set ")) {
      values_[command] = client->Ask(rest);
    } else if (command == "@around") {
      const std::size_t bar = std::min(rest.find(" | "), rest.size());
      before_ = rest.empty() ? "" : rest.substr(0, bar) + " ";
      behind_ = rest.empty() ? "" : rest.substr(bar + 2);
    } else if (command == "@env") {
      const std::size_t blank = rest.find(' ');
      setenv(rest.substr(0, blank).c_str(), rest.substr(blank + 1).c_str(), 1);
    } else if (command == "@drop") {
      client->Drop();
    } else if (command == "@mine") {
      client->StartMining(std::stoll(rest));
    } else if (command == "@tool" || command == "@script") {
      std::string said;
      const std::size_t blank = rest.find(' ');
      const int status =
          command == "@tool"
              ? Tool(rest, &said)
              : Script(rest.substr(0, blank), Replaced(rest.substr(blank + 1), "\\n", "\n"), &said);
      EXPECT_EQ(status, answer[0] - '0') << step << "\n" << said;
      EXPECT_NE(said.find(answer.substr(1)), std::string::npos) << step << "\n" << said;
    } else if (command == "@mined") {
      EXPECT_EQ(MinedOf(client, rest), answer) << rest;
    } else {
      ADD_FAILURE() << step;
    }
  }

  static std::string MinedOf(Client* client, const std::string& sql) {
    const long long scn = std::stoll(client->Ask(std::string(follow::kReadScn)));
    EXPECT_EQ(client->Execute(sql, oci::kCommitOnSuccess), "") << sql;
    std::string all;
    for (std::string text : client->Mine(scn + 1)) {
      if (const std::size_t at = text.rfind("ROWID = '"); at != std::string::npos) {
        EXPECT_EQ(text.size() - (at - 5), 34U) << "the tail must be 33 characters and ';'";
        text.replace(at + 9, 18, "X");
      }
      all += (all.empty() ? "" : " / ") + Replaced(text, "\n", "\\n");
    }
    return all;
  }

  std::map<std::string, std::unique_ptr<Client>> clients_;
  std::map<std::string, std::string> values_;
  std::string before_;
  std::string behind_;
};

TEST_P(TranscriptTest, IsAnsweredAsWritten) {
  std::ifstream file(GetParam());
  std::stringstream text;
  text << file.rdbuf();
  for (const std::string& step : Steps(text.str())) Step(step);
}

std::vector<std::filesystem::path> Transcripts() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(QUILLMERE_TRANSCRIPTS)) {
    files.push_back(entry.path());
  }
  return files;
}

INSTANTIATE_TEST_SUITE_P(Of, TranscriptTest, ::testing::ValuesIn(Transcripts()),
                         [](const auto& test) { return test.param.stem().string(); });

}  // namespace
}  // namespace quillmere::sandbox_test
