// SPDX-License-Identifier: MIT
// The models behind lists and trees: what they show, and what stays when that changes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QItemSelectionModel>
#include <QPersistentModelIndex>
#include <QSignalSpy>

#include "jobs/job_list.h"
#include "support/config_of.h"
#include "support/hand_clock.h"
#include "support/temp_folder.h"
#include "ui/databases/database_lists.h"
#include "ui/databases/database_tree.h"
#include "ui/jobs/job_actions.h"
#include "ui/jobs/job_rows.h"
#include "ui/jobs/job_tree_model.h"
#include "ui/jobs/table_rows.h"
#include "ui/main/message_list_model.h"

namespace quillmere {
namespace {

using testing::ElementsAre;

std::vector<std::string> Names(const RowModel& model) {
  std::vector<std::string> names;
  for (int row = 0; row < model.rowCount(); ++row) {
    names.push_back(model.index(row, 0).data().toString().toStdString());
  }
  return names;
}

TEST(RowModel, SortsByBytesAndByNumberAndFiltersTextsWhateverTheirCase) {
  constexpr auto kUp = Qt::AscendingOrder, kDown = Qt::DescendingOrder;
  const std::tuple<const char*, int, Qt::SortOrder, std::vector<std::string>> rows[] = {
      {"", 0, kUp, {"", "ORDERS", "ORDERS", "items", "Ärger"}},
      {"", 0, kDown, {"Ärger", "items", "ORDERS", "ORDERS", ""}},
      {"", 3, kUp, {"", "ORDERS", "ORDERS", "Ärger", "items"}},  // as numbers
      {"order", 0, kUp, {"ORDERS", "ORDERS"}},
      {"eAsT", 0, kUp, {"", "ORDERS"}},
      {"Ä", 0, kUp, {"Ärger"}},
      {"100", 0, kUp, {}},
  };
  DataSource source;
  source.tables = {{"HQ", "ORDERS", "", "", 9},
                   {"HQ", "items", "", "", 100},
                   {"EAST", "ORDERS", "", "", 20},
                   {"EAST", "", "", "", -1},
                   {"WEST", "Ärger", "", "", 20}};
  for (const auto& [filter, column, order, names] : rows) {
    TableList list;
    list.Show(&source);
    list.SetFilter(filter);
    list.sort(column, order);
    EXPECT_EQ(Names(list), names) << filter << column;
  }
}

// A letter for each action that shows, "FileNew" aside.
std::string Letters(const JobActions& a) {
  const std::pair<bool, char> actions[] = {{a.file_open, 'o'}, {a.file_delete, 'D'},
                                           {a.refresh, 'f'},   {a.run, 'r'},
                                           {a.pause, 'p'},     {a.stop, 's'},
                                           {a.include, 'i'},   {a.exclude, 'e'},
                                           {a.migrate, 'm'},   {a.change_remote_owner, 'c'}};
  std::string letters;
  for (const auto& [shows, letter] : actions) letters.append(shows ? 1 : 0, letter);
  return letters;
}

TEST(JobActions, ShowByNodeAndState) {
  constexpr JobState kStates[] = {JobState::Starting, JobState::Started, JobState::Stopping,
                                  JobState::Stopped,  JobState::Pausing, JobState::Paused};
  const std::pair<JobNode, std::array<std::string, 6>> rows[] = {
      {JobNode::None, {}},
      {JobNode::AllJobs, {}},
      {JobNode::Job, {"", "ps", "", "oDfr", "", "ofrs"}},
      {JobNode::Include, {"", "", "", "ec", "", "ec"}},
      {JobNode::Exclude, {"", "", "", "i", "", "i"}},
  };
  for (const auto& [node, letters] : rows) {
    for (std::size_t i = 0; i < std::size(kStates); ++i) {
      EXPECT_EQ(Letters(ActionsOfNode(node, kStates[i])), letters[i])
          << NodeTag(node) << " " << StateName(kStates[i]);
      EXPECT_EQ(RepaintsOnTimer(node, kStates[i]),
                node == JobNode::AllJobs || (node != JobNode::None && i == 1));
    }
  }
}

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

  void AddTable(std::size_t job, const std::string& name, bool included) {
    JobTable table;
    table.name = name;
    table.desowner = "ARCHIVE";
    table.includeflag = included;
    table.beginrows = 1;
    table.rows = 2;
    table.totalsynced = 3;
    table.RecordsBlocked = 4;
    table.compare = !included;
    ConfigOf(jobs.At(job)).schemas["SHOP"].Append(std::move(table));
  }

  JobList jobs;
};

TEST_F(Jobs, KeepTheirRowsWhileOnlyNumbersMove) {
  const std::size_t shop = Add("shop", JobState::Started, {300, 100});
  const std::size_t crm = Add("crm", JobState::Stopped);
  JobRows rows;
  rows.Fill(jobs);
  rows.sort(2, Qt::AscendingOrder);
  QItemSelectionModel selection(&rows);
  selection.select(rows.index(rows.ModelRowOf(shop), 0), QItemSelectionModel::Select);
  const QSignalSpy resets(&rows, &QAbstractItemModel::modelReset);
  jobs.At(shop).run.blocked_count = 7;
  for (const int count : {5000, -1}) {  // the last, then the first
    jobs.At(shop).run.applied_count = count;
    rows.Fill(jobs);
    ASSERT_EQ(selection.selectedIndexes().size(), 1);
    const QModelIndex selected = selection.selectedIndexes().front();
    EXPECT_EQ(selected.row(), count > 0 ? 1 : 0);
    EXPECT_THAT(Cells(rows, selected.row()),
                ElementsAre("shop", "Started", std::to_string(count), "100", "300", "7",
                            "up to date", "", "", "", ""));
    EXPECT_EQ(rows.index(selected.row(), 4).data(JobRows::kBatchRole).toInt(), 750);
  }
  EXPECT_EQ(resets.count(), 0);
  rows.SetFilter("shop");
  rows.Fill(jobs, crm);
  EXPECT_EQ(resets.count(), 2) << "the filter's, and that of the rows";
  EXPECT_EQ(rows.rowCount(), 0);
  EXPECT_EQ(rows.ModelRowOf(0), -1);
  EXPECT_EQ(rows.JobOf(0), crm);
}

TEST_F(Jobs, TablesAreListedByTheirFlagAndOutliveTheJobsOwn) {
  const std::size_t first = Add("first", JobState::Paused);
  const std::size_t second = Add("second", JobState::Paused);
  for (const std::size_t job : {first, second}) AddTable(job, "CLIENT", true);
  AddTable(first, "LOG", false);
  IncludedTables included;
  included.Fill(jobs.At(first));
  const QSignalSpy resets(&included, &QAbstractItemModel::modelReset);
  included.Fill(jobs.At(first));
  EXPECT_EQ(resets.count(), 0);
  ExcludedTables excluded;
  excluded.Fill(jobs.At(first));
  ConfigOf(jobs.At(first)).schemas.clear();
  EXPECT_THAT(Cells(included, 0), ElementsAre("CLIENT", "SHOP", "ARCHIVE", "1", "2", "3", ""));
  EXPECT_THAT(Cells(excluded, 0), ElementsAre("LOG", "SHOP", "2", "4", "compare"));
  included.Fill(jobs.At(second));
  EXPECT_EQ(resets.count(), 1) << "another job's";
}

TEST_F(Jobs, StandInTheTreeInTheOrderOfTheirSlots) {
  const std::size_t shop = Add("shop", JobState::Starting);
  const std::size_t crm = Add("crm", JobState::Started);
  JobTreeModel tree;
  EXPECT_TRUE(tree.Update(jobs));
  const QSignalSpy changed(&tree, &QAbstractItemModel::dataChanged);
  jobs.SetState(shop, JobState::Started);
  tree.UpdateStates(jobs, {shop, 1, 99});
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex(), tree.IndexOf({JobNode::Job, shop}));
  const QModelIndex exclude = tree.IndexOf({JobNode::Exclude, crm});
  EXPECT_EQ(exclude.data(JobTreeModel::kTagRole).toString(), QStringLiteral("ExcludeTable"));
  EXPECT_EQ(tree.NodeOf(exclude), (JobNodeRef{JobNode::Exclude, crm}));
  jobs.Remove(shop);
  EXPECT_TRUE(tree.Update(jobs));
  EXPECT_FALSE(tree.IndexOf({JobNode::Include, shop}).isValid());
  EXPECT_EQ(tree.IndexOf({JobNode::Job, crm}).row(), 0);
}

DataSource Source(const std::string& name) {
  DataSource source;
  source.name = name;
  source.state = ConnectionState::Disconnected;
  return source;
}

TEST(DatabaseTree, NodesThatStayKeepTheirIndexes) {
  const TempFolder folder;
  const Settings settings;
  const SystemClock clock;
  MessageLog log(folder.Files(), folder.Path(), clock, settings);
  DataSourceRegistry registry(folder.Files(), folder.Path(), log, settings);
  for (const char* name : {"A", "B", "C"}) registry.Add(Source(name));
  DatabaseTree tree;
  tree.Show(registry);
  const QPersistentModelIndex table_of_c = tree.IndexOf({NodeKind::Table, "C"});
  const QPersistentModelIndex key_of_a = tree.IndexOf({NodeKind::PrimaryKey, "A"});
  const QSignalSpy resets(&tree, &QAbstractItemModel::modelReset);
  std::string error;
  ASSERT_TRUE(registry.Remove(0, error));
  registry.Add(Source("D"));  // takes A's slot, ahead of the others
  tree.Show(registry);
  EXPECT_EQ(tree.index(0, 0, tree.Root()).data().toString(), "D");
  EXPECT_EQ(tree.NodeAt(table_of_c), (DatabaseNode{NodeKind::Table, "C"}));
  EXPECT_EQ(QModelIndex(table_of_c), tree.IndexOf({NodeKind::Table, "C"}));
  EXPECT_FALSE(key_of_a.isValid());
  EXPECT_EQ(resets.count(), 0);
  ASSERT_TRUE(registry.Remove(1, error) && registry.Remove(2, error));
  registry.Add(Source("C"));  // now ahead of where it stood
  tree.Show(registry);
  EXPECT_EQ(tree.IndexOf({NodeKind::DataSource, "C"}).row(), 1);
  EXPECT_EQ(tree.rowCount(tree.Root()), 2);
}

TEST(Messages, GoAlongWithTheLogInAFloodTogether) {
  int argc = 1;
  char name[] = "test", *argv = name;
  const QCoreApplication application(argc, &argv);
  const TempFolder folder;
  const HandClock clock;
  Settings settings;
  settings.message_limit = 100;
  MessageLog log(folder.Files(), folder.Path(), clock, settings);
  log.Add("before the list", false);
  {
    MessageListModel model(log);
    const QAbstractItemModelTester tester(&model);
    const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    const auto text = [&](int row) { return model.index(row, 0).data().toString().toStdString(); };
    log.Add("two\nlines", true);
    EXPECT_EQ(text(1), "20260131 23:59:07 two lines");
    EXPECT_EQ(model.FullText(1).toStdString(), "20260131 23:59:07 two\nlines");
    for (int i = 2; i < 101; ++i) log.Add(std::to_string(i), false);
    while (model.rowCount() < 101) QCoreApplication::processEvents();
    EXPECT_LT(inserted.count(), 100);
    EXPECT_EQ(text(100), "20260131 23:59:07 100");
    EXPECT_EQ(resets.count(), 0);
    log.Add("one too many", false);
    EXPECT_EQ(resets.count(), 1);
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(text(1), "20260131 23:59:07 one too many");
  }
  EXPECT_TRUE(log.Add("nobody looks", false));
  MessageListModel model(log);
  log.AddOf("nightly", "Something wrong", true);
  for (int i = 0; i < 2; ++i) {
    log.AddOf("nightly", "ORA-1: x", true);
    log.Add("ORA-1: x", true);
  }
  const auto shown = [&](bool errors_only, const std::string& text) {
    model.SetFilter(errors_only, text);
    std::string lines;
    for (int row = 0; row < model.rowCount(); ++row) {
      const std::vector<std::string> cells = Cells(model, row);
      lines += cells[0].substr(18) + "|" + cells[1] + "|" + cells[2] + "\n";
    }
    return lines;
  };
  EXPECT_EQ(shown(true, ""),
            "two lines||error\nSomething wrong|nightly|error\n"
            "ORA-1: x  (2 times)|nightly|error\nORA-1: x  (2 times)||error\n");
  EXPECT_EQ(shown(false, "NOBODY"), "nobody looks||information\n");
  EXPECT_EQ(shown(true, "NIGHTLY").size(), 64u);
}

}  // namespace
}  // namespace quillmere
