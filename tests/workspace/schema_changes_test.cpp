// SPDX-License-Identifier: MIT
#include "workspace/schema_changes.h"

#include "workspace/scripted_workspace.h"

namespace quillmere {
namespace {

const SchemaItem kOrders{"SHOP", "ORDERS", "ORDERS"};
const SchemaItem kClient{"SHOP", "CLIENT", "CLIENT"};

// Data sources A, B and C; what is migrated goes from A to B.
struct SchemaChanges : ScriptedWorkspace {
  SchemaChanges() { AddSources(); }

  SchemaRun Run(SchemaAction action, std::vector<SchemaItem> items, bool busy_agreed = false) {
    const SchemaSelection selection{0, ObjectKind::Table, std::move(items)};
    if (action == SchemaAction::Drop) return DropObjects(*workspace, selection, false, progress);
    if (action == SchemaAction::Rename) return RenameObject(*workspace, selection, "NEW", progress);
    return MigrateObjects(*workspace, selection, {1, {}, busy_agreed}, progress);
  }
};

TEST_F(SchemaChanges, WaitUntilNoRunningJobUsesTheDatabase) {
  std::size_t job = 0;
  ASSERT_TRUE(AddJob(*workspace, {"J", "text", "C", "A", 5}, job, progress).done);
  for (const std::string used : {"A", "B"}) {  // by the job, beside C
    ConfigOf(Job(job)).des_database_name = used;
    for (const JobState state : {JobState::Stopped, JobState::Paused, JobState::Started,
                                 JobState::Starting, JobState::Pausing}) {
      workspace->Jobs().SetState(job, state);
      account << "= " << used << " " << StateName(state) << "\n";
      for (const auto& [what, action, agreed] : {std::tuple("drop", SchemaAction::Drop, false),
                                                 {"rename", SchemaAction::Rename, false},
                                                 {"migrate", SchemaAction::Migrate, false},
                                                 {"agreed", SchemaAction::Migrate, true}}) {
        script.TakeTranscript();
        account << what << ": " << Run(action, {kOrders}, agreed).refused;
        account << (script.TakeTranscript().empty() ? " (nothing is connected)\n" : "\n");
      }
    }
  }
  workspace->Jobs().SetState(job, JobState::Stopped);
  account << Run(SchemaAction::Drop, {}).refused << "\n"
          << Run(SchemaAction::Rename, {kOrders, kClient}).refused << "\n";
}

TEST_F(SchemaChanges, ReachTheRegistrysFiles) {
  const auto tell = [&](const std::string& what, const SchemaRun& run) {
    Tell(what + " " + std::to_string(run.succeeded) + " done, " + run.first_failure,
         {run.refused.empty(), run.refused + run.unsaved});
  };
  tell("drop", Run(SchemaAction::Drop, {kOrders}));
  tell("rename", Run(SchemaAction::Rename, {kClient}));
  // Those that fail are told by the first; what can not be saved is done all the same.
  script.FailOn("drop table SHOP.CLIENT", "ORA-00054: resource busy", 54);
  Refuse("append", "A.xml");
  tell("drop", Run(SchemaAction::Drop, {kClient, {"SHOP", "NEW", "NEW"}}));
  script.FailOn("ServerAttach", "ORA-12541: TNS:no listener", 12541);
  tell("drop", Run(SchemaAction::Drop, {kClient}));
}

}  // namespace
}  // namespace quillmere
