// SPDX-License-Identifier: MIT
// The driver against a window made for it: keys, mouse, menus, drop-downs and modal dialogs arrive
// as a user makes them.
#include "window/driver.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace quillmere::window {
namespace {

struct SampleWindow : QMainWindow {
  SampleWindow() {
    auto* centre = new QWidget(this);
    auto* column = new QVBoxLayout(centre);
    setCentralWidget(centre);
    field.setObjectName("Field");
    combo.setObjectName("Combo");
    combo.addItems({"one", "two", "three"});
    table.setObjectName("Table");
    table.setContextMenuPolicy(Qt::ActionsContextMenu);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.addAction("Note", [this] { said += "noted;"; });
    for (int row = 0; row < 300; ++row) {
      rows.appendRow({new QStandardItem("r" + QString::number(row)), new QStandardItem("c")});
    }
    table.setModel(&rows);
    connect(&table, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
      said += "row " + std::to_string(index.row()) + ";";
    });
    column->addWidget(&field);
    column->addWidget(&combo);
    column->addWidget(&table);
    QAction* ask = menuBar()->addMenu("&File")->addMenu("&More")->addAction("&Ask", this, [this] {
      QMessageBox box(QMessageBox::Question, "Sample", "Sure?", QMessageBox::Yes | QMessageBox::No,
                      this);
      said += box.exec() == QMessageBox::Yes ? "yes;" : "no;";
    });
    ask->setShortcut(QKeySequence("Ctrl+Q"));
    show();
  }

  std::string said;
  QLineEdit field;
  QComboBox combo;
  QTableView table;
  QStandardItemModel rows;
};

class DriverTest : public testing::Test, protected Driver {
 protected:
  ~DriverTest() override {
    CloseDialogs();
    Ui([this] { window_.reset(); });
  }
  std::string Said() {
    return Ui([this] { return std::exchange(window_->said, {}); });
  }
  std::unique_ptr<SampleWindow> window_ = Ui([] { return std::make_unique<SampleWindow>(); });
};

TEST_F(DriverTest, KeysAndTextsArrive) {
  const std::string ascii =
      "The quick (brown) FOX_jumps! \"over\" {the} ~lazy~ dog\\'s | #1@%^&*+=;:,.<>?/`[]$-";
  Enter("Field", ascii);
  EXPECT_EQ(TextOf("Field"), ascii);
  Enter("Field", "Прaga 東京 €𝄞");
  EXPECT_EQ(TextOf("Field"), "Прaga 東京 €𝄞");
  EXPECT_EQ(FocusName(), "Field");
  Press("ctrl+q");
  AnswerBox("Sure?", "Yes");
  Press("ctrl+q");
  AnswerBox("Sure?", "No");
  Press("ctrl+q");
  EXPECT_EQ(BoxText(), "Sure?");
  Press("Escape");
  WaitFor("three answers", [this] { return window_->said == "yes;no;no;"; });
}

TEST_F(DriverTest, MenusAndDropDownsTakeClicks) {
  Choose("Combo", "three");
  Choose("Combo", "three");
  Choose("Combo", "two");
  EXPECT_EQ(TextOf("Combo"), "two");
  ChooseInMenu({"File", "More", "Ask"});
  AnswerBox("Sure?", "Yes");
  RightClickCell("Table", 2, 1);
  EXPECT_EQ(PopupEntries(), std::vector<std::string>{"Note"});
  ChooseInPopup("Note");
  WaitFor("both", [this] { return window_->said == "yes;noted;"; });
}

TEST_F(DriverTest, RowsAreReachedWhereverTheyAre) {
  ClickCell("Table", 299, 0);
  ClickCell("Table", 299, 0);
  EXPECT_EQ(Said(), "") << "two clicks are no double click";
  DoubleClickCell("Table", 7, 1);
  EXPECT_EQ(Said(), "row 7;");
  SelectRows("Table", {"r3", "r250", "r299"});
  EXPECT_EQ(Ui([this] { return window_->table.selectionModel()->selectedRows().size(); }), 3);
}

}  // namespace
}  // namespace quillmere::window
