// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "support/config_of.h"
#include "support/temp_folder.h"
#include "ui/job_dialogs/interval_field.h"
#include "ui/sources/login_advice.h"

namespace quillmere {
namespace {

TEST(DialogAdvice, ARefusedLogOnLeadsToTheFieldThatIsWrong) {
  struct Row {
    const char* what;
    LogOn login;
    std::string refusal;
    LoginField field;
  };
  const LogOn entered = {"A", "u", "p"};
  const std::string failed = "connect Database failed. Error: OCISessionBegin : ";
  const std::vector<Row> rows = {
      {"nothing entered", {}, "Obligatory field can not be empty", LoginField::Name},
      {"no user", {"A", "", ""}, "Obligatory field can not be empty", LoginField::UserId},
      {"long", entered, "A password must not be longer than 31 bytes", LoginField::Password},
      {"password", entered, failed + "ORA-01017: no", LoginField::Password},
      {"sysdba", entered, failed + "ORA-01031: insufficient privileges", LoginField::Mode},
      {"locked", entered, failed + "ORA-28000: the account is locked", LoginField::UserId},
      {"no such name", entered, "ORA-12154: TNS", LoginField::Name},
      {"taken", entered, "Database already exist, user another please", LoginField::Name},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FieldToCorrect(row.login, row.refusal), row.field) << row.what;
  }
}

TEST(DialogAdvice, SaveSaysWhoseLogOnItChanges) {
  TempFolder folder;
  Settings settings;
  SystemClock clock;
  MessageLog log(folder.Files(), folder.Path(), clock, settings);
  DataSourceRegistry registry(folder.Files(), folder.Path(), log, settings);
  for (const char* name : {"A", "B"}) {
    DataSource source;
    source.name = name;
    registry.Add(std::move(source));
  }
  EXPECT_THAT(SaveAdvice(registry, "A", "A"), ::testing::StartsWith("Save tries the log-on"));
  EXPECT_EQ(SaveAdvice(registry, "A", "B"), "Save will change the log-on of B, not that of A.");
  EXPECT_THAT(SaveAdvice(registry, "A", "a"), ::testing::HasSubstr("use New"));
}

TEST(DialogAdvice, DeletingADataSourceSaysWhichJobsItStops) {
  JobList jobs;
  const auto add = [&](const char* name, const char* source, const char* destination) {
    const std::size_t slot = jobs.Claim();
    ConfigOf(jobs.At(slot)).name = name;
    ConfigOf(jobs.At(slot)).src_database_name = source;
    ConfigOf(jobs.At(slot)).des_database_name = destination;
    jobs.SetState(slot, JobState::Stopped);
  };
  using ::testing::EndsWith;
  EXPECT_THAT(DeleteQuestion(jobs, "A"), EndsWith("stays as it is."));
  add("J1", "A", "B");
  add("J2", "B", "C");
  add("J3", "C", "B");
  EXPECT_THAT(DeleteQuestion(jobs, "A"), EndsWith("Job J1 can not run without it."));
  EXPECT_THAT(DeleteQuestion(jobs, "B"), EndsWith("J1 and 2 other jobs can not run without it."));
}

TEST(DialogAdvice, TheIntervalStopsAtBothEnds) {
  EXPECT_EQ(SteppedInterval(0, -1), 0);
  EXPECT_EQ(SteppedInterval(9995, 10), 10000);
  EXPECT_EQ(SteppedInterval(2147483647, 1), 10000) << "typed";
  EXPECT_EQ(SteppedInterval(-2147483647 - 1, -10), 0) << "typed";
  EXPECT_EQ(SteppedInterval(7, 1), 8);
}

}  // namespace
}  // namespace quillmere
