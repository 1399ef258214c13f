// SPDX-License-Identifier: MIT
// Drives a Qt program in this process as a user does: real key and mouse events of the X display,
// made by a thread beside the user-interface thread, so that modal dialogs and menus can be worked
// with too. Nothing sleeps: each step is told on standard error and waits until the program has
// taken it. One that waits in vain ends the test (see main.cpp).
#pragma once

#include <QAbstractItemView>
#include <QAbstractNativeEventFilter>
#include <QWidget>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <string_view>
#include <vector>

#include "window/x_input.h"

namespace quillmere::window {

using Names = std::vector<std::string>;
using Row = Names;

class Driver {
 public:
  using Clock = std::chrono::steady_clock;

  // How long anything may take. Sanitizers and busy machines need it.
  static inline std::chrono::seconds limit{60};

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
    return static_cast<Widget*>(Await(std::string(name), [name](QWidget& widget) {
      return qobject_cast<Widget*>(&widget) != nullptr && HasName(widget, name);
    }));
  }
  bool IsShown(std::string_view name);

  // place: within the widget, asked once it is there to be clicked; its middle when there is none.
  void ClickAt(QWidget* widget, const std::function<QPoint()>& place, x::Button button = x::kLeft,
               int times = 1);
  void Click(QWidget* widget);
  void Click(std::string_view name) { Click(Find(name)); }
  void ClickAction(std::string_view name);  // by the button of a visible tool bar
  void ClickRow(std::string_view view, std::string_view first_cell, x::Button = x::kLeft,
                int times = 1);
  void SelectRows(std::string_view view, const Names& first_cells);
  void SelectNode(const Names& below_root);  // of the job explorer or the database manager

  // An entry of the menu bar and one of its menu; of the menu that is open.
  void ChooseInMenu(std::string_view menu, std::string_view entry);
  void ChooseInPopup(std::string_view text);
  void Choose(std::string_view combo, std::string_view text);

  void Press(std::string_view keys);
  void Type(std::string_view text);  // what no key is for comes by way of the clipboard
  void Enter(std::string_view field, std::string_view text);  // instead of what is there
  void MoveOver(QWidget* widget) { x::MoveTo(OnScreen(widget, {})); }

  // Waits for a message box with a text that begins so, and presses its button.
  void AnswerBox(std::string_view text, std::string_view button = "OK");
  void WaitForNoDialog();

  // What an operator reads.
  // Rows may be given by their first cells only.
  void WaitForRows(std::string_view view, const std::vector<Row>& expected);
  std::string SelectedRow(std::string_view view);  // its first cell; "(none)"
  std::string TextOf(std::string_view name);       // of a label or field
  std::string FocusName();

 private:
  using Fits = std::function<bool(QWidget&)>;
  struct Arrivals final : QAbstractNativeEventFilter {
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;
    std::atomic<int> released{0};  // keys and buttons
  };

  static bool HasName(const QWidget& widget, std::string_view name);
  static QWidget* Visible(const Fits& fits);
  void RunOnUi(std::function<void()> work);
  QWidget* Await(const std::string& what, const Fits& fits);
  QModelIndex RowOf(QAbstractItemView* view, std::string_view first_cell);
  QPoint OnScreen(QWidget* widget, const std::function<QPoint()>& place);
  void ClickIndex(QAbstractItemView* view, const QModelIndex& index, x::Button button, int times);
  template <typename Menu>
  void ClickEntry(Menu* menu, std::string_view text);
  void WaitForFocus();

  Arrivals arrivals_;
  Clock::time_point last_click_;
};

}  // namespace quillmere::window
