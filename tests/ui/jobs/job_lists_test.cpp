// SPDX-License-Identifier: MIT
// The models of the job explorer: what they show of the jobs, and what stays when it changes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>

#include "jobs/job_list.h"
#include "support/config_of.h"
#include "ui/jobs/job_rows.h"
#include "ui/jobs/job_tree_model.h"
#include "ui/jobs/table_rows.h"

namespace quillmere {
namespace {

using testing::ElementsAre;

std::vector<std::string> Cells(const QAbstractItemModel& model, int row) {
  std::vector<std::string> cells;
  for (int column = 0; column < model.columnCount(); ++column) {
    cells.push_back(model.index(row, column).data().toString().toStdString());
  }
  return cells;
}

struct Jobs : ::testing::Test {
  std::size_t Add(const std::string& name, JobState state, JobList::Progress progress = {}) {
    const std::size_t index = jobs.Claim();
    ConfigOf(jobs.At(index)).name = name;
    jobs.SetState(index, state, progress);
    return index;
  }

  JobTable& AddTable(std::size_t job, const std::string& owner, const std::string& name,
                     bool included) {
    JobTable table;
    table.name = name;
    table.desowner = owner;
    table.includeflag = included;
    return ConfigOf(jobs.At(job)).schemas[owner].Append(std::move(table));
  }

  JobList jobs;
};

TEST_F(Jobs, AreListedWithStateAndCounters) {
  const std::size_t shop = Add("shop", JobState::Started, {300, 100});
  const std::size_t crm = Add("crm", JobState::Stopped);
  jobs.At(shop).run.applied_count = 5000;
  jobs.At(shop).run.blocked_count = 7;
  JobRows rows;
  rows.Fill(jobs);
  EXPECT_THAT(Cells(rows, 0), ElementsAre("crm", "Stopped", "0", "0", "0", "0"));
  EXPECT_THAT(Cells(rows, 1), ElementsAre("shop", "Started", "5000", "100", "300", "7"));
  EXPECT_EQ(rows.index(1, 4).data(JobRows::kBatchRole).toInt(), 750);
  EXPECT_FALSE(rows.index(0, 4).data(JobRows::kBatchRole).isValid());
  rows.Fill(jobs, crm);
  ASSERT_EQ(rows.rowCount(), 1);
  EXPECT_EQ(rows.JobOf(rows.SourceRow(0)), crm);
}

TEST_F(Jobs, KeepTheirRowsWhileOnlyNumbersMove) {
  const std::size_t job = Add("shop", JobState::Started);
  JobRows rows;
  rows.Fill(jobs);
  const QSignalSpy resets(&rows, &QAbstractItemModel::modelReset);
  const QPersistentModelIndex selected(rows.index(0, 0));
  jobs.At(job).run.applied_count = 1;
  rows.Fill(jobs);
  EXPECT_EQ(resets.count(), 0);
  EXPECT_TRUE(selected.isValid());
  ConfigOf(jobs.At(job)).name = "stock";
  rows.Fill(jobs);
  EXPECT_EQ(resets.count(), 1);
}

TEST_F(Jobs, TablesAreListedByTheirFlag) {
  const std::size_t job = Add("shop", JobState::Paused);
  JobTable& client = AddTable(job, "SHOP", "CLIENT", true);
  client.desowner = "ARCHIVE";
  client.beginrows = 1;
  client.rows = 2;
  client.totalsynced = 3;
  client.compare = true;
  AddTable(job, "CRM", "LETTER", true);
  JobTable& log = AddTable(job, "SHOP", "LOG", false);
  log.rows = 10;
  log.RecordsBlocked = 4;
  IncludedTables included;
  included.Fill(jobs.At(job));
  ASSERT_EQ(included.rowCount(), 2);
  EXPECT_THAT(Cells(included, 0),
              ElementsAre("CLIENT", "SHOP", "ARCHIVE", "1", "2", "3", "compare"));
  EXPECT_THAT(Cells(included, 1), ElementsAre("LETTER", "CRM", "CRM", "0", "0", "0", ""));
  ExcludedTables excluded;
  excluded.Fill(jobs.At(job));
  ASSERT_EQ(excluded.rowCount(), 1);
  EXPECT_THAT(Cells(excluded, 0), ElementsAre("LOG", "SHOP", "10", "4", ""));
}

TEST_F(Jobs, TableListOutlivesTheTablesAndStaysOnlyForItsJob) {
  const std::size_t first = Add("first", JobState::Started);
  const std::size_t second = Add("second", JobState::Started);
  const std::string name(200, 'T');
  AddTable(second, "SHOP", name, true);
  JobTable& table = AddTable(first, "SHOP", name, true);
  IncludedTables rows;
  rows.Fill(jobs.At(first));
  const QSignalSpy resets(&rows, &QAbstractItemModel::modelReset);
  table.totalsynced = 9;
  rows.Fill(jobs.At(first));
  EXPECT_EQ(resets.count(), 0);
  ConfigOf(jobs.At(first)).schemas.clear();
  EXPECT_THAT(Cells(rows, 0), ElementsAre(name, "SHOP", "SHOP", "0", "0", "9", ""));
  rows.Fill(jobs.At(second));
  EXPECT_EQ(resets.count(), 1);
}

TEST_F(Jobs, StandInTheTreeInTheOrderOfTheirSlots) {
  const std::size_t shop = Add("shop", JobState::Stopped);
  const std::size_t crm = Add("crm", JobState::Started);
  JobTreeModel tree;
  EXPECT_TRUE(tree.Update(jobs));
  const QModelIndex root = tree.Root();
  ASSERT_EQ(tree.rowCount(root), 2);
  const QModelIndex second = tree.index(1, 0, root);
  EXPECT_EQ(second.data().toString(), QStringLiteral("crm"));
  EXPECT_EQ(tree.NodeOf(second), (JobNodeRef{JobNode::Job, crm}));
  const QModelIndex exclude = tree.index(1, 0, second);
  EXPECT_EQ(exclude.data().toString(), QStringLiteral("Exclude"));
  EXPECT_EQ(exclude.data(JobTreeModel::kTagRole).toString(), QStringLiteral("ExcludeTable"));
  EXPECT_EQ(tree.NodeOf(exclude), (JobNodeRef{JobNode::Exclude, crm}));
  EXPECT_EQ(tree.IndexOf({JobNode::Exclude, crm}), exclude);
  EXPECT_EQ(tree.parent(exclude), second);
  EXPECT_EQ(tree.parent(second), root);

  EXPECT_FALSE(tree.Update(jobs));
  ConfigOf(jobs.At(crm)).name = "clients";
  EXPECT_TRUE(tree.Update(jobs));
  EXPECT_EQ(tree.IndexOf({JobNode::Job, crm}).data().toString(), QStringLiteral("clients"));
  jobs.Remove(shop);
  EXPECT_TRUE(tree.Update(jobs));
  EXPECT_FALSE(tree.IndexOf({JobNode::Include, shop}).isValid());
  EXPECT_EQ(tree.IndexOf({JobNode::Job, crm}).row(), 0);
}

TEST_F(Jobs, TreeTellsOfStatesThatChanged) {
  const std::size_t shop = Add("shop", JobState::Starting);
  Add("crm", JobState::Stopped);
  JobTreeModel tree;
  tree.Update(jobs);
  const QSignalSpy changed(&tree, &QAbstractItemModel::dataChanged);
  jobs.SetState(shop, JobState::Started);
  tree.UpdateStates(jobs, {shop, 1, 99});
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex(), tree.IndexOf({JobNode::Job, shop}));
}

}  // namespace
}  // namespace quillmere
