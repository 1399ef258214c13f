// SPDX-License-Identifier: MIT
#include "ui/toolkit/row_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QItemSelectionModel>
#include <QSignalSpy>

namespace quillmere {
namespace {

using testing::ElementsAre;

struct Row {
  std::string name, owner;
  std::int64_t rows = 0;
};

class Rows final : public RowList<Row> {
 public:
  Rows()
      : RowList({Text<&Row::name>("Name", 100), Text<&Row::owner>("Owner", 100),
                 Number<&Row::rows>("Rows", 100)}) {}

  void Show(std::vector<Row> rows, bool same_rows = false) { Take(std::move(rows), same_rows); }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (int row = 0; row < rowCount(); ++row) {
      names.push_back(index(row, 0).data().toString().toStdString());
    }
    return names;
  }
};

std::vector<Row> FiveTables() {
  return {{"ORDERS", "HQ", 9},
          {"items", "HQ", 100},
          {"ORDERS", "EAST", 20},
          {"", "EAST", -1},
          {"Ärger", "WEST", 20}};
}

TEST(RowModel, SortsByBytesAndByNumber) {
  struct Case {
    const char* name;
    int column;
    Qt::SortOrder order;
    std::vector<std::string> names;
  };
  const std::vector<Case> cases = {
      {"by name", 0, Qt::AscendingOrder, {"", "ORDERS", "ORDERS", "items", "Ärger"}},
      {"by name, downwards", 0, Qt::DescendingOrder, {"Ärger", "items", "ORDERS", "ORDERS", ""}},
      {"numbers are no texts", 2, Qt::AscendingOrder, {"", "ORDERS", "ORDERS", "Ärger", "items"}},
      {"alike keep their order", 1, Qt::AscendingOrder, {"", "ORDERS", "ORDERS", "items", "Ärger"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    Rows model;
    model.Show(FiveTables());
    model.sort(row.column, row.order);
    EXPECT_EQ(model.Names(), row.names);
  }
}

TEST(RowModel, SortsManyShortRunsLikeOneLongOne) {
  Rows model;
  std::vector<Row> rows;
  std::vector<std::string> sorted;
  for (int i = 0; i < 3000; ++i) rows.push_back({"T" + std::to_string((i * 7919) % 3000), "A", i});
  for (const Row& row : rows) sorted.push_back(row.name);
  std::sort(sorted.begin(), sorted.end());
  model.Show(rows);
  EXPECT_EQ(model.Names(), sorted);
}

TEST(RowModel, FiltersTextColumnsWhateverTheirCase) {
  struct Case {
    const char* filter;
    std::vector<std::string> names;
  };
  for (const Case& row : std::vector<Case>{{"order", {"ORDERS", "ORDERS"}},
                                           {"eAsT", {"", "ORDERS"}},
                                           {"ITEM", {"items"}},
                                           {"Ä", {"Ärger"}},
                                           {"100", {}},
                                           {"", {"", "ORDERS", "ORDERS", "items", "Ärger"}}}) {
    SCOPED_TRACE(row.filter);
    Rows model;
    model.Show(FiveTables());
    model.SetFilter(row.filter);
    EXPECT_EQ(model.Names(), row.names);
  }
}

TEST(RowModel, FreshNumbersKeepTheSelectionOnItsRow) {
  Rows model;
  model.Show(FiveTables());
  model.sort(2, Qt::AscendingOrder);
  QItemSelectionModel selection(&model);
  selection.select(model.index(4, 0),
                   QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
  std::vector<Row> fresh = FiveTables();
  fresh[1].rows = -5;  // from the last place to the first
  model.Show(fresh, true);
  EXPECT_EQ(reset.count(), 0);
  ASSERT_EQ(selection.selectedRows().size(), 1);
  EXPECT_EQ(selection.selectedRows().front().row(), 0);
  EXPECT_EQ(model.SourceRow(selection.selectedRows().front()), 1U);
}

TEST(RowModel, OtherRowsStartAnew) {
  Rows model;
  model.Show(FiveTables());
  model.SetFilter("orders");
  QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
  model.Show({{"ORDERS", "NORTH", 1}, {"BILLS", "NORTH", 1}});
  EXPECT_EQ(reset.count(), 1);
  EXPECT_THAT(model.Names(), ElementsAre("ORDERS"));
  EXPECT_EQ(model.ModelRowOf(1), -1);
  EXPECT_EQ(model.ModelRowOf(0), 0);
}

}  // namespace
}  // namespace quillmere
