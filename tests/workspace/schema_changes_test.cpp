// SPDX-License-Identifier: MIT
#include "workspace/schema_changes.h"

#include <gmock/gmock.h>

#include "support/config_of.h"
#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

using ::testing::Contains;
using ::testing::StartsWith;

const SchemaItem kOrders{"SHOP", "ORDERS", "ORDERS"};
const SchemaItem kClient{"SHOP", "CLIENT", "CLIENT"};

struct Silent final : SchemaListener {
  bool OnProgress(std::string_view, std::size_t, std::size_t) override { return true; }
  void OnResult(std::string_view, bool) override {}
  void OnDetail(std::string_view) override {}
};

// Data sources A, B and C; what is migrated goes from A to B.
struct SchemaChanges : ScriptedWorkspace {
  SchemaChanges() { AddSources(); }

  SchemaRun Run(SchemaAction action, std::vector<SchemaItem> items, bool busy_agreed = false) {
    const SchemaSelection selection{0, ObjectKind::Table, std::move(items)};
    if (action == SchemaAction::Drop) return DropObjects(*workspace, selection, false, silent);
    if (action == SchemaAction::Rename) return RenameObject(*workspace, selection, "NEW", silent);
    return MigrateObjects(*workspace, selection, {1, {}, busy_agreed}, silent);
  }

  Silent silent;
};

TEST_F(SchemaChanges, WaitUntilNoRunningJobUsesTheDatabase) {
  std::size_t job = 0;
  ASSERT_TRUE(AddJob(*workspace, {"J", "text", "C", "A", 5}, job).done);
  const std::string busy = "Database is used in a running job";
  const std::string target_busy = "B is used in a running job";
  struct Row {
    const char* what;
    std::string used;  // by the job, beside C
    JobState state;
    std::string drop_and_rename, migrate;
  };
  for (const Row& row :
       std::vector<Row>{{"stopped", "A", JobState::Stopped, "", ""},
                        {"paused", "A", JobState::Paused, "", ""},
                        {"started", "A", JobState::Started, busy, busy},
                        {"about to start", "A", JobState::Starting, busy, busy},
                        {"about to pause", "A", JobState::Pausing, busy, busy},
                        {"the target of a migration", "B", JobState::Started, "", target_busy}}) {
    SCOPED_TRACE(row.what);
    ConfigOf(Job(job)).des_database_name = row.used;
    workspace->Jobs().SetState(job, row.state);
    script.TakeTranscript();
    EXPECT_EQ(Run(SchemaAction::Drop, {kOrders}).refused, row.drop_and_rename);
    EXPECT_EQ(Run(SchemaAction::Rename, {kOrders}).refused, row.drop_and_rename);
    EXPECT_EQ(Run(SchemaAction::Migrate, {kOrders}).refused, row.migrate);
    EXPECT_EQ(script.TakeTranscript().empty(), row.migrate == busy) << "nothing is connected";
    const bool agreed = row.migrate == target_busy;
    if (agreed) {
      EXPECT_EQ(Run(SchemaAction::Migrate, {kOrders}, true).refused, "");
    }
  }
  workspace->Jobs().SetState(job, JobState::Stopped);
  EXPECT_EQ(Run(SchemaAction::Drop, {}).refused, "Please select at least one item to operate");
  EXPECT_EQ(Run(SchemaAction::Rename, {kOrders, kClient}).refused,
            "Can only select one item to change.");
}

TEST_F(SchemaChanges, ReachTheRegistrysFiles) {
  EXPECT_EQ(Run(SchemaAction::Drop, {kOrders}).succeeded, 1U);
  Restart();
  ASSERT_EQ(workspace->Registry().At(0).tables.size(), 1U);
  EXPECT_EQ(Run(SchemaAction::Rename, {kClient}).succeeded, 1U);
  Restart();
  EXPECT_EQ(workspace->Registry().At(0).tables[0].table_name, "NEW");
  // Those that fail are told by the first; what cannot be saved is done all the same.
  script.FailOn("drop table SHOP.CLIENT", "ORA-00054: resource busy", 54);
  std::filesystem::remove(folder / "config/A.xml");
  std::filesystem::create_directories(folder / "config/A.xml/in the way");
  const SchemaRun run = Run(SchemaAction::Drop, {kClient, {"SHOP", "NEW", "NEW"}});
  EXPECT_EQ(run.succeeded, 1U);
  EXPECT_THAT(run.first_failure, StartsWith("Drop Table CLIENT failed, reason: "));
  EXPECT_NE(run.unsaved, "");
  EXPECT_THAT(TakeMessages(), Contains("E " + run.unsaved));
  script.FailOn("ServerAttach", "ORA-12541: TNS:no listener", 12541);
  EXPECT_THAT(Run(SchemaAction::Drop, {kClient}).refused, StartsWith("connect Database failed."));
}

}  // namespace
}  // namespace quillmere
