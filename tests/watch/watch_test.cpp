// SPDX-License-Identifier: MIT
#include "watch/job_watch.h"

#include "support/account.h"
#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/memory_files.h"
#include "watch/advice.h"
#include "watch/history_picture.h"
#include "watch/refused_row.h"
#include "watch/statement_values.h"

namespace quillmere {
namespace {

using std::chrono::seconds;

std::string Text(const std::optional<seconds>& age) {
  return age ? AgeText(*age) : "?";
}

// What a file of thousands of passes is put together to; the times are seconds of the span.
TEST(HistoryPicture, PutsPassesTogether) {
  testing::MemoryFiles files;
  const LocalTime end{1'769'903'940'000};
  std::string text;
  const auto pass = [&](std::int64_t second, std::int64_t captured, std::int64_t applied,
                        std::optional<std::int64_t> behind, const std::string& error = {}) {
    HistoryLine line;
    line.time = {end.ms + (second - 60) * 1000};
    line.captured = captured;
    line.applied = applied;
    line.behind_s = behind;
    line.error = error;
    line.source_scn = second == 35 ? 0 : 1000 + second;
    line.reached_scn = 900 + second;
    text += HistoryText(line);
  };
  for (std::int64_t i = 3000; i > 0; --i) pass(-i * 600, 2, 1, 1);  // days before the span
  pass(-5, 10, 4, 50);
  pass(5, 0, 2, 40);
  pass(15, 0, 0, 60, "ORA-00001");
  pass(16, 0, 1, {}, std::string(kInterrupted));
  pass(12, 0, 1, 70);  // the clock was set back
  pass(35, 3, 3, 0);
  files.Put("/h.csv", text);
  const auto seen = [&](std::chrono::seconds span, std::size_t parts) {
    const HistoryRead read = ReadHistoryPicture(files, "/h.csv", end, span, parts);
    std::string words = std::to_string(read.source_scn) + " " + std::to_string(read.reached_scn);
    for (const PicturePoint& point : read.picture.Points()) {
      words += "; " + std::to_string(point.part) + ": " + std::to_string(point.passes) + "-" +
               std::to_string(point.failed) + " " + std::to_string(point.applied) + " w" +
               std::to_string(point.waiting) + " b" + std::to_string(point.behind_s.value_or(-1));
    }
    return words + read.error;
  };
  EXPECT_EQ(seen(seconds{60}, 6), "1012 935; 0: 1-0 2 w4 b40; 1: 3-1 2 w4 b70; 3: 1-0 3 w0 b0");
  EXPECT_EQ(seen(seconds{30 * 86'400}, 2), "1012 935; 0: 841-0 841 w1 b1; 1: 2165-1 2170 w6 b70");
  EXPECT_DOUBLE_EQ(HistoryPicture(end, seconds{60}, 6).AppliedPerSecond({.applied = 5}), 0.5);
}

// "Started [held] [failing] interval=5 behind=901 good=3", what is left out is not known.
TEST(Health, OfPlainFacts) {
  ExpectCases(std::string(TABLES) + "/health.txt", [](const std::string& given) {
    std::istringstream lines(given);
    std::string found;
    for (std::string line; std::getline(lines, line);) {
      HealthFacts facts;
      std::istringstream words(line);
      for (std::string word; words >> word;) {
        const std::size_t is = word.find('=');
        const seconds value{is == std::string::npos ? 0 : std::stoll(word.substr(is + 1))};
        if (word == "held") facts.held = true;
        if (word == "failing") facts.failing = true;
        if (word.starts_with("interval")) facts.interval_minutes = static_cast<int>(value.count());
        if (word.starts_with("behind")) facts.behind = value;
        if (word.starts_with("good")) facts.since_good = value;
        for (int state = 0; state <= 6; ++state) {
          if (word == StateName(static_cast<JobState>(state)))
            facts.state = static_cast<JobState>(state);
        }
      }
      found += std::string(HealthName(HealthOf(facts))) + "; " + Text(facts.behind) + "\n";
    }
    return found;
  });
}

TEST(TimeToLoss, OfPlainFacts) {
  using std::chrono::minutes;
  const auto left = [](auto... facts) { return Text(RoomOf(facts...).left); };
  EXPECT_EQ(left(150, 100, minutes(120), 200), "1 h") << "half of what is kept";
  EXPECT_EQ(left(200, 100, minutes(120), 200), "2 h") << "it needs nothing yet";
  EXPECT_EQ(left(100, 100, minutes(120), 200), "0 s") << "the last log that has it";
  EXPECT_EQ(left(99, 100, minutes(120), 200), "0 s") << "gone";
  EXPECT_EQ(left(100, 0, minutes(120), 200), "?") << "there is no log";
  EXPECT_EQ(left(100, 200, minutes(120), 200), "?") << "a log that has just begun";
  EXPECT_EQ(left(INT64_MAX / 2, 1, minutes(525'600), INT64_MAX), "182 d 12 h");
}

TEST(History, LinesThatAreWholeReadBackTheSame) {
  ExpectCases(std::string(TABLES) + "/history.txt", [](const std::string& given) {
    const auto line = ReadHistoryLine(given);
    return line ? HistoryText(*line) : "damaged";
  });
}

TEST(RefusedRow, IsReadFromItsStatement) {
  ExpectCases(std::string(TABLES) + "/row.txt", [](const std::string& given) {
    return std::string(OperationOf(given)) + ": " + RowOf(given);
  });
}

// A value that is not as it stands comes behind "=".
TEST(StatementValues, WhatAStatementGivesAndExpects) {
  ExpectCases(std::string(TABLES) + "/values.txt", [](const std::string& given) {
    const auto values = ReadStatementValues(given);
    if (!values) return std::string("not read");
    std::string text = values->owner + "|" + values->table + "\n";
    for (const auto* list : {&values->before, &values->given}) {
      for (const ColumnValue& value : *list) {
        const auto plain = PlainValue(value.expression);
        text += (list == &values->given ? "given " : "before ") + value.column + ": " +
                value.expression;
        if (plain != value.expression) text += " = " + plain.value_or("nothing");
        text += "\n";
      }
    }
    return text;
  });
}

struct WatchTest : AccountTest {
  WatchTest() {
    jobs.Claim();
    ConfigOf(jobs.At(0)).name = "J";
    ConfigOf(jobs.At(0)).sync_interval = 5;
    jobs.SetState(0, JobState::Started);
  }

  // A pass that ended now; error empty: it was good.
  void Pass(std::int64_t source_scn, std::int64_t reached_scn, const std::string& error = {},
            std::size_t number = 0) {
    PassReport report;
    report.outcome = error.empty() ? PassReport::Outcome::WorkedOff : PassReport::Outcome::Failed;
    report.captured = 3;
    report.begin = report.end = clock.Now();
    report.took = SteadyTime{1234};
    report.source_scn = source_scn;
    report.reached_scn = reached_scn;
    if (source_scn == 200) report.room = RedoRoom{reached_scn, 50, seconds{7200}};
    if (source_scn == 300) report.room = RedoRoom{reached_scn, 0, {}};
    report.problem = {PassProblem::Where::Source, error, "", "", 0, 0, ""};
    if (number != 0) {
      report.problem = {PassProblem::Where::Statement, error, "SHOP", "ITEM", number, 9, statement};
    }
    jobs.At(0).run.next_due = AddMinutes(clock.Now(), 5);
    jobs.SetProgress(0, {0, error.empty() ? 0U : 7U});
    for (const WatchMessage& told : watch->TakePass(0, report)) {
      account << (told.error ? "E " : "I ") << told.text << "\n";
    }
  }
  void Tell(const std::string& what) {
    const WatchedJob job = watch->Look(0);
    account << "= " << what << "\n"
            << HealthName(job.health) << ", good " << Text(job.since_good) << " ago, behind "
            << Text(job.behind) << ", next in " << Text(job.next_pass) << ", waiting "
            << job.waiting << ", loss in " << Text(job.time_to_loss) << "\n";
    if (job.problem) {
      const JobProblem& problem = *job.problem;
      account << problem.tries << " tries, " << FormatTimeStamp(problem.first) << " to "
              << FormatTimeStamp(problem.last) << ", ORA " << problem.ora << ", "
              << (problem.what.statement == statement ? "statement whole" : "no statement") << "\n"
              << AdviceFor(problem) << "\n";
    }
  }
  void Restart() {
    watch.emplace(files, "/work", jobs, catalogue, clock);
    watch->Load(0);
  }

  HandClock clock;
  Settings settings;
  MessageLog log{files, "/work", clock, settings};
  JobList jobs;
  JobCatalogue catalogue{files, "/work", jobs, log};
  std::optional<JobWatch> watch{std::in_place, files, "/work", jobs, catalogue, clock};
  const std::string statement = " insert into T values ('100 %\n\x01 <\\b> " +
                                std::string(3000, ' ') + std::string(700, '\x01') + "') ";
};

TEST_F(WatchTest, ALifeOfAJob) {
  Pass(100, 90);
  Tell("the first pass: nobody knows yet how old 90 is");
  clock.TurnMinutes(5);
  Pass(200, 100);
  clock.TurnMinutes(4);
  Tell("four minutes later: 100 was the source's five minutes before the last pass");
  clock.TurnMinutes(1);
  Pass(200, 200);
  clock.TurnMinutes(2);
  Tell("an idle source");
  clock.TurnMinutes(3);
  Pass(300, 200, "Execute sql fail : ORA-00001: unique\nconstraint", 2);
  for (int i = 0; i < 3; ++i) {
    clock.TurnMinutes(5);
    Pass(0, 200, "Execute sql fail : ORA-00001: unique\nconstraint", 2);
  }
  Tell("refused four times, told once");
  TellFiles();
  Restart();
  Tell("after a restart");
  clock.TurnMinutes(5);
  Pass(0, 200, "Connect source fail : ORA-12541: nobody");
  clock.TurnMinutes(5);
  Pass(0, 200, "Execute sql fail : ORA-00942: no table", 3);
  jobs.SetState(0, JobState::Paused);
  Tell("two other problems; paused");
  jobs.SetState(0, JobState::Started);
  clock.TurnMinutes(5);
  Pass(400, 300);
  Tell("good again");
  TellFiles();
}

TEST_F(WatchTest, WhatGoesWrongWithItStopsNothing) {
  Refuse("write", "/work/jobs");
  Pass(100, 90, "Execute sql fail : ORA-00001: x", 2);
  Pass(0, 90, "Execute sql fail : ORA-00001: x", 2);
  Tell("the disk is full, told once");
  Refuse();
  Pass(0, 90, "Execute sql fail : ORA-00001: x", 2);
  files.Put("/work/jobs/J/problem.xml", "<problem><where>moon</where></problem>");
  files.Put("/work/jobs/J/history.csv", files.Content("/work/jobs/J/history.csv") + "2026-02");
  Restart();
  Tell("damaged files: what is left of the history counts");
  ForgetFiles();
  Pass(100, 100);
  clock.TurnMinutes(20 * 24 * 60);
  Pass(100, 100);
  clock.TurnMinutes(20 * 24 * 60);
  Pass(200, 200);
  Tell("after more than thirty days");
  clock.now = LocalTime{0};
  Tell("the clock was set back by years");
  TellFiles();
  jobs.At(0).run.applied_count = 12;
  Pass(0, 200, "Connect \"x\" fail");
  jobs.SetState(0, JobState::Stopped);
  Tell("stopped: it has no problem");
  watch->BeginAnew(0);
  jobs.SetState(0, JobState::Starting);
  Tell("started anew");
  TellFiles();
}

}  // namespace
}  // namespace quillmere
