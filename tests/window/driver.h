// SPDX-License-Identifier: MIT
// Drives a Qt program in this process as a user does: real key and mouse events of the X display,
// made by a thread beside the user-interface thread, so that modal dialogs and menus can be worked
// with too. Nothing sleeps: each step waits until the program has taken it. A step that waits in
// vain ends the test (see main.cpp), with the steps so far.
#pragma once

#include <QAbstractItemView>
#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <string_view>
#include <vector>

#include "window/x_display.h"

class QComboBox;
class QMessageBox;

namespace quillmere::window {

using Row = std::vector<std::string>;
using Path = std::vector<std::string>;  // of a tree node, from the root

class Driver {
 public:
  using Clock = std::chrono::steady_clock;

  // How long anything may take. Sanitizers and busy machines need it.
  static constexpr std::chrono::seconds kLimit{60};

  Driver();
  ~Driver();

  // Runs it on the user-interface thread, inside of modal dialogs too, and returns what it returns.
  template <typename Work>
  auto Ui(Work work) {
    std::packaged_task<std::invoke_result_t<Work>()> task(std::move(work));
    auto result = task.get_future();
    RunOnUi([&task] { task(); });
    return result.get();
  }

  // Until the condition, asked on the user-interface thread, is true.
  void WaitFor(const std::string& what, const std::function<bool()>& condition);

  // A visible widget by its object name: in the modal dialog if there is one, else in any window.
  template <typename Widget = QWidget>
  Widget* Find(std::string_view name) {
    return static_cast<Widget*>(FindWidget(name, Widget::staticMetaObject));
  }
  bool IsShown(std::string_view name);

  // place: within the widget, asked once it is there to be clicked; its middle when there is none.
  void ClickAt(QWidget* widget, const std::function<QPoint()>& place,
               XDisplay::Button button = XDisplay::kLeft, int times = 1);
  void Click(QWidget* widget);
  void Click(std::string_view name) { Click(Find(name)); }
  void ClickAction(std::string_view name);  // by the button of a visible tool bar
  void ClickCell(std::string_view view, int row, int column,
                 XDisplay::Button button = XDisplay::kLeft, int times = 1);
  void DoubleClickCell(std::string_view view, int row, int column) {
    ClickCell(view, row, column, XDisplay::kLeft, 2);
  }
  void ClickNode(std::string_view tree, const Path& path, XDisplay::Button = XDisplay::kLeft);
  void SelectRows(std::string_view view, const std::vector<std::string>& first_cells);
  void TickRow(std::string_view view, std::string_view text);  // its check box

  // An entry of the menu bar and what is below it; of the menu that is open.
  void ChooseInMenu(const std::vector<std::string>& path);
  void ChooseInPopup(std::string_view text);
  std::vector<std::string> PopupEntries();
  void Choose(std::string_view combo, std::string_view text);

  // arrives: not when the window manager takes the keys.
  void Press(std::string_view keys, bool arrives = true);
  void Type(std::string_view text);  // what no key is for comes by way of the clipboard
  void Enter(std::string_view field, std::string_view text);  // instead of what is there
  void MoveOver(QWidget* widget);

  // Waits for a message box with exactly this text and presses its button.
  void AnswerBox(std::string_view text, std::string_view button = "OK");
  std::string BoxText();  // of the message box that comes

  // What an operator reads.
  std::vector<Row> Rows(std::string_view view);
  void WaitForRows(std::string_view view, const std::vector<Row>& expected);
  std::string SelectedRow(std::string_view view);  // its first cell; "(none)"
  std::string TextOf(std::string_view name);       // of a label, field or combo box
  std::string FocusName();
  std::string OpenWindows();

  // Closes what a test left open.
  void CloseDialogs();

  XDisplay& Screen() { return screen_; }

 private:
  struct Arrivals final : QAbstractNativeEventFilter {
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;
    int input_extension = 0;
    std::atomic<int> keys{0}, buttons{0};  // released
  };

  void RunOnUi(std::function<void()> work);
  QWidget* FindWidget(std::string_view name, const QMetaObject& type);
  int RowOf(QAbstractItemView* view, std::string_view first_cell);
  QPoint OnScreen(QWidget* widget, const std::function<QPoint()>& place);
  void WaitForFocus();
  [[noreturn]] void GiveUp(const std::string& reason);
  void Note(std::string step);

  XDisplay screen_;
  Arrivals arrivals_;
  Clock::time_point last_click_;
  std::vector<std::string> steps_;
};

}  // namespace quillmere::window
