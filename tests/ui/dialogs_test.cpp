// SPDX-License-Identifier: MIT
// What the dialogs decide, without them.
#include <gmock/gmock.h>

#include "support/config_of.h"
#include "support/temp_folder.h"
#include "ui/databases/schema_texts.h"
#include "ui/main_dialogs/settings_values.h"
#include "ui/sources/login_advice.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

TEST(DialogAdvice, ARefusedLogOnLeadsToTheFieldThatIsWrong) {
  const LogOn entered = {"A", "u", "p"};
  const std::tuple<LogOn, const char*, LoginField> rows[] = {
      {{}, "Obligatory field can not be empty", LoginField::Name},
      {{"A", "", ""}, "Obligatory field can not be empty", LoginField::UserId},
      {entered, "connect Database failed. Error: OCI : ORA-01017: no", LoginField::Password},
      {entered, "connect Database failed. Error: OCI : ORA-01031: no", LoginField::Mode},
      {entered, "connect Database failed. Error: OCI : ORA-28000: no", LoginField::UserId},
      {entered, "ORA-12154: TNS", LoginField::Name},
  };
  for (const auto& [login, refusal, field] : rows) {
    EXPECT_EQ(FieldToCorrect(login, refusal), field) << refusal;
  }
}

TEST(DialogAdvice, DeletingADataSourceSaysWhichJobsItStops) {
  JobList jobs;
  EXPECT_THAT(ToBytes(DeleteQuestion(jobs, "B")), EndsWith("stays as it is."));
  for (const char* name : {"J1", "J2", "J3"}) {
    JobConfig& job = ConfigOf(jobs.At(jobs.Claim()));
    job.name = name;
    job.src_database_name = name == std::string("J2") ? "A" : "C";
    job.des_database_name = "B";
    jobs.SetState(jobs.Count() - 1, JobState::Stopped);
  }
  EXPECT_THAT(ToBytes(DeleteQuestion(jobs, "A")),
              HasSubstr("This job uses it and is held: J2. It can not"));
  EXPECT_THAT(ToBytes(DeleteQuestion(jobs, "B")), HasSubstr("are held: J1, J2, J3. They can not"));
}

TEST(SettingsForm, AClientLibraryWithAPathMustBeThere) {
  const TempFolder folder;
  folder.Write("libfound.so", "x");
  EXPECT_EQ(WhyClientFileRefused(folder.Files(), (folder / "libfound.so").string()), "");
  EXPECT_EQ(WhyClientFileRefused(folder.Files(), "libclntsh.so.19.1"), "") << "the system looks";
  EXPECT_NE(WhyClientFileRefused(folder.Files(), (folder / "libgone.so").string()), "");
  EXPECT_NE(WhyClientFileRefused(folder.Files(), folder.Path().string()), "") << "a folder";
}

TEST(SchemaDialogs, ARunIsSummedUpUnlessAllWasDone) {
  const auto sum = [](std::size_t succeeded, std::size_t failed, std::size_t total, bool logged) {
    SchemaRun run;
    run.succeeded = succeeded;
    run.failed = failed;
    run.cancelled = succeeded + failed < total;
    run.logged = logged;
    run.first_failure = "Drop Table T failed, reason: no";
    return ToBytes(RunSummary(run, total));
  };
  EXPECT_EQ(sum(3, 0, 3, true), "");
  EXPECT_THAT(sum(0, 1, 1, true), StartsWith("Drop Table T failed, reason: no\n"));
  EXPECT_THAT(sum(3, 1, 9, true),
              AllOf(StartsWith("1 of 9 failed, the first one with:\nDrop Table T"),
                    HasSubstr("3 of 9 were done and stay done, 5 were")));
  EXPECT_EQ(sum(0, 0, 9, true), "Cancelled, nothing was changed");
  EXPECT_THAT(sum(3, 0, 3, false), HasSubstr("error.log cannot be written"));
}

}  // namespace
}  // namespace quillmere
