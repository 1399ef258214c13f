// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QPersistentModelIndex>
#include <QSignalSpy>

#include "support/temp_folder.h"
#include "ui/databases/database_lists.h"
#include "ui/databases/database_tree.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

DataSource Source(const std::string& name, ConnectionState state = ConnectionState::Disconnected) {
  DataSource source;
  source.name = name;
  source.state = state;
  source.version = "9.2.0.1.0";
  source.user_id = "SYSTEM";
  return source;
}

class DatabaseModels : public testing::Test {
 protected:
  void Add(const std::string& name) { registry_.Add(Source(name)); }
  void Remove(const std::string& name) {
    std::string error;
    ASSERT_TRUE(registry_.Remove(static_cast<std::size_t>(registry_.IndexOf(name)), error));
  }

  TempFolder folder_;
  Settings settings_;
  SystemClock clock_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  DataSourceRegistry registry_{folder_.Files(), folder_.Path(), log_, settings_};
};

// "NAME(Primary Key Index Table)" of each child of the root.
std::vector<std::string> Captions(const DatabaseTree& tree) {
  std::vector<std::string> captions;
  for (int row = 0; row < tree.rowCount(tree.Root()); ++row) {
    const QModelIndex source = tree.index(row, 0, tree.Root());
    std::string text = source.data().toString().toStdString();
    for (int child = 0; child < tree.rowCount(source); ++child) {
      text += "/" + tree.index(child, 0, source).data().toString().toStdString();
    }
    captions.push_back(text);
  }
  return captions;
}

TEST_F(DatabaseModels, TreeHasTheRegistryInItsOrder) {
  DatabaseTree tree;
  tree.Show(registry_);
  EXPECT_EQ(tree.Root().data().toString(), "ORACLE");
  EXPECT_THAT(Captions(tree), IsEmpty());
  Add("B");
  Add("A");
  tree.Show(registry_);
  EXPECT_THAT(Captions(tree),
              ElementsAre("B/Primary Key/Index/Table", "A/Primary Key/Index/Table"));
  const QModelIndex index = tree.IndexOf({NodeKind::Index, "A"});
  EXPECT_EQ(index.data().toString(), "Index");
  EXPECT_EQ(index.data(DatabaseTree::kKindTagRole).toString(), "INDEX");
  EXPECT_EQ(tree.NodeAt(index), (DatabaseNode{NodeKind::Index, "A"}));
  EXPECT_EQ(tree.NodeAt(index.parent()), (DatabaseNode{NodeKind::DataSource, "A"}));
  EXPECT_FALSE(tree.IndexOf({NodeKind::Table, "C"}).isValid());
}

TEST_F(DatabaseModels, NodesThatStayKeepTheirIndexes) {
  for (const char* name : {"A", "B", "C"}) Add(name);
  DatabaseTree tree;
  tree.Show(registry_);
  const QPersistentModelIndex table_of_c = tree.IndexOf({NodeKind::Table, "C"});
  const QPersistentModelIndex key_of_a = tree.IndexOf({NodeKind::PrimaryKey, "A"});
  QSignalSpy resets(&tree, &QAbstractItemModel::modelReset);

  Remove("A");
  Add("D");  // takes A's slot, ahead of the others
  tree.Show(registry_);
  EXPECT_EQ(tree.index(0, 0, tree.Root()).data().toString(), "D");
  EXPECT_EQ(tree.NodeAt(table_of_c), (DatabaseNode{NodeKind::Table, "C"}));
  EXPECT_EQ(QModelIndex(table_of_c), tree.IndexOf({NodeKind::Table, "C"}));
  EXPECT_FALSE(key_of_a.isValid());
  EXPECT_EQ(resets.count(), 0);

  Remove("B");
  Remove("C");
  Add("C");  // now ahead of where it stood
  tree.Show(registry_);
  EXPECT_THAT(Captions(tree),
              ElementsAre("D/Primary Key/Index/Table", "C/Primary Key/Index/Table"));
}

std::vector<std::string> Cells(const RowModel& list, int row) {
  std::vector<std::string> cells;
  for (int column = 0; column < list.columnCount(); ++column) {
    cells.push_back(list.index(row, column).data().toString().toStdString());
  }
  return cells;
}

TEST_F(DatabaseModels, AListDoesNotReachIntoTheRegistry) {
  DataSource source = Source("A");
  source.tables = {{"SHOP", "ORDERS", "USERS", "", 9}, {"CRM", "ITEMS", "USERS", "", 100}};
  TableList tables;
  tables.Show(&source);
  source.tables.clear();
  EXPECT_THAT(Cells(tables, 0), ElementsAre("ITEMS", "CRM", "USERS", "100", ""));
  tables.sort(3, Qt::AscendingOrder);
  tables.SetFilter("shop");
  EXPECT_EQ(tables.rowCount(), 1);
  EXPECT_EQ(tables.ItemAt(tables.SourceRow(0)).table, "ORDERS");
  tables.Show(&source);
  EXPECT_EQ(tables.SourceRowCount(), 0U);
}

}  // namespace
}  // namespace quillmere
