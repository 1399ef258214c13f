// SPDX-License-Identifier: MIT
// The frame that both explorers share: a tree under a head with a menu button on the left; a filter
// line and a list on the right; a tool bar above. The form fills it and gives the parts their
// object names. User-interface thread.
#pragma once

#include <QWidget>

#include "ui/toolkit/filter_line.h"
#include "ui/toolkit/row_table.h"
#include "ui/toolkit/window_memory.h"

class QLabel;
class QSplitter;
class QToolBar;
class QToolButton;
class QTreeView;
class QVBoxLayout;

namespace quillmere {

class ExplorerFrame : public QWidget {
  Q_OBJECT

 public:
  // name: under which the splitter's place is remembered. memory must outlive the frame.
  ExplorerFrame(WindowMemory& memory, const QString& name, const QString& heading,
                QWidget* parent = nullptr);
  ~ExplorerFrame() override;

  // The frame's own, for as long as it lives.
  QToolBar& Tools() { return *tools_; }
  QTreeView& Tree() const { return *tree_; }  // right presses do nothing at all in it
  QWidget& Head() { return *head_; }
  QToolButton& HeadMenuButton() { return *menu_button_; }
  RowTable& List() { return *list_; }
  FilterLine& Filter() { return *filter_; }

  // Above and below the list; the frame's from then on. Whoever made them shows and hides them.
  void AddAbove(QWidget* widget);
  void AddBelow(QWidget* widget);

  // Stands where the list does while there is nothing to list and it is asked for; the frame's from
  // then on.
  void SetFirst(QWidget* widget);
  void ShowFirst(bool shown);

  // The list is as high as one row needs, or as there is room.
  void SetOneRow(bool one);

  // A line beside the filter: how many rows there are, "21 tables", with ", 1 shown, 3 selected"
  // behind it as it comes; or something else.
  void SetCountText(const QString& all, bool of_rows = true);

  // A button above the list that leads back to what it belongs to; none when the text is empty.
  void SetBack(const QString& text);

  // Lines above the list that say something of what it shows; none when the text is empty.
  void SetNote(const QString& text);

 Q_SIGNALS:
  void Back();

 private:
  void ShowCounts();

  WindowMemory& memory_;
  const QString name_;
  QToolBar* tools_ = nullptr;
  QSplitter* splitter_ = nullptr;
  QWidget* head_ = nullptr;
  QToolButton* menu_button_ = nullptr;
  QTreeView* tree_ = nullptr;
  QToolButton* back_ = nullptr;
  FilterLine* filter_ = nullptr;
  QLabel* count_ = nullptr;
  QString count_text_;
  bool counts_rows_ = true;
  QLabel* note_ = nullptr;
  RowTable* list_ = nullptr;
  QWidget* first_ = nullptr;
  QVBoxLayout* right_ = nullptr;
};

}  // namespace quillmere
