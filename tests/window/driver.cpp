// SPDX-License-Identifier: MIT
#include "window/driver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QStyleHints>
#include <QThread>
#include <QToolButton>
#include <QTreeView>
#include <algorithm>
#include <iostream>
#include <thread>

namespace quillmere::window {
namespace {

constexpr std::chrono::milliseconds kPoll{2};

QString Text(std::string_view bytes) {
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

// "&New\tCtrl+N" reads as New.
QString Read(const QString& caption) {
  return caption.section(u'\t', 0, 0).remove(u'&').trimmed();
}

QModelIndex NodeAt(const QAbstractItemModel& model, QModelIndex node, const Names& path) {
  for (const std::string& caption : path) {
    int row = 0;
    while (row < model.rowCount(node) && model.index(row, 0, node).data() != Text(caption)) ++row;
    node = model.index(row, 0, node);
    if (!node.isValid()) break;
  }
  return node;
}

}  // namespace

// Of an event of X: its kind; of one of an extension, whose number is 35, that comes from the
// pointer and not from the mouse again, its kind there.
bool Driver::Arrivals::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const unsigned char*>(message);
  constexpr int kKeyRelease = 3, kButtonRelease = 5, kExtension = 35, kPointer = 2;
  int kind = event[0] & 0x7f;
  if (kind == kExtension) kind = event[10] == kPointer ? event[8] : 0;
  if (kind == kKeyRelease || kind == kButtonRelease) ++released;
  return false;
}

Driver::Driver() {
  Ui([this] { qApp->installNativeEventFilter(&arrivals_); });
}

Driver::~Driver() {
  Ui([this] { qApp->removeNativeEventFilter(&arrivals_); });
}

void Driver::RunOnUi(std::function<void()> work) {
  if (QThread::currentThread() == qApp->thread()) return work();
  // A lock on both sides, for the thread sanitizer: it does not see that Qt's event queue hands
  // over what this thread wrote before.
  static std::mutex handed_over;
  std::promise<void> done;
  std::future<void> finished = done.get_future();
  const auto run = [&] {
    { const std::lock_guard mine(handed_over); }
    work();
    done.set_value();
  };
  {
    const std::lock_guard lock(handed_over);
    QMetaObject::invokeMethod(qApp, run, Qt::QueuedConnection);
  }
  if (finished.wait_for(2 * limit) == std::future_status::ready) return;
  // What stands on this stack may still be used: there is no way on from here.
  std::cerr << "the window hangs\n";
  std::_Exit(1);
}

void Driver::WaitFor(const std::string& what, const std::function<bool()>& condition) {
  const Clock::time_point end = Clock::now() + limit;
  while (!Ui(condition)) {
    ASSERT_LT(Clock::now(), end) << "waited in vain: " << what;
    std::this_thread::sleep_for(kPoll);
  }
}

bool Driver::HasName(const QWidget& widget, std::string_view name) {
  return widget.objectName() == Text(name);
}

QWidget* Driver::Visible(const Fits& fits) {
  const QWidget* modal = QApplication::activeModalWidget();
  for (QWidget* widget : QApplication::allWidgets()) {
    const bool reachable = modal == nullptr || widget->window() == modal;
    if (reachable && widget->isVisible() && fits(*widget)) return widget;
  }
  return nullptr;
}

QWidget* Driver::Await(const std::string& what, const Fits& fits) {
  QWidget* found = nullptr;
  WaitFor("the widget " + what, [&] { return (found = Visible(fits)) != nullptr; });
  return found;
}

bool Driver::IsShown(std::string_view name) {
  const auto named = [name](QWidget& widget) { return HasName(widget, name); };
  return Ui([&] { return Visible(named) != nullptr; });
}

// The place may only be trusted once the window manager has put the window somewhere, Qt knows
// where, the widget has come to rest, and nothing lies over it.
QPoint Driver::OnScreen(QWidget* widget, const std::function<QPoint()>& place) {
  QPoint screen;
  const QPointer<QWidget> alive(widget);
  WaitFor("a place to click", [&] {
    if (alive.isNull() || !alive->isVisible() || !alive->isEnabled()) return false;
    const QWidget* window = alive->window();
    if (x::PositionOf(window->effectiveWinId()) != window->mapToGlobal(QPoint(0, 0))) return false;
    const QPoint before =
        std::exchange(screen, alive->mapToGlobal(place ? place() : alive->rect().center()));
    const QWidget* there = QApplication::widgetAt(screen);
    return before == screen && (there == alive.data() || alive->isAncestorOf(there));
  });
  return screen;
}

void Driver::ClickAt(QWidget* widget, const std::function<QPoint()>& place, x::Button button,
                     int times) {
  const QPoint screen = OnScreen(widget, place);
  std::cerr << "click " << Ui([&] { return widget->objectName().toStdString(); }) << "\n";
  // Two clicks are a double click, or not, however fast this machine is. What opens at a press
  // waits for the same time before it takes a click.
  constexpr auto kInterval = std::chrono::milliseconds(30);
  const int interval = times == 2 ? 60'000 : static_cast<int>(kInterval.count());
  Ui([=] { QGuiApplication::styleHints()->setMouseDoubleClickInterval(interval); });
  while (Clock::now() - last_click_ < 2 * kInterval) std::this_thread::yield();
  const int before = arrivals_.released;
  x::MoveTo(screen);
  x::Click(button, times);
  WaitFor("the click to arrive", [&] { return arrivals_.released >= before + times; });
  last_click_ = Clock::now();
}

// A check box takes clicks on what is drawn of it only.
void Driver::Click(QWidget* widget) {
  const bool box = qobject_cast<QCheckBox*>(widget) != nullptr;
  ClickAt(widget, [=] { return box ? QPoint(10, widget->height() / 2) : widget->rect().center(); });
}

void Driver::ClickAction(std::string_view name) {
  Click(Await("of the action " + std::string(name), [name](QWidget& widget) {
    const auto* tool = qobject_cast<QToolButton*>(&widget);
    return tool != nullptr && tool->defaultAction() != nullptr &&
           tool->defaultAction()->objectName() == Text(name);
  }));
}

void Driver::ClickIndex(QAbstractItemView* view, const QModelIndex& index, x::Button button,
                        int times) {
  const QPersistentModelIndex stays(index);
  Ui([&] { view->scrollTo(stays); });
  const auto place = [=] {
    const QRect cell = view->visualRect(stays);
    return QPoint(cell.left() + std::min(cell.width(), 60) / 2, cell.center().y());
  };
  ClickAt(view->viewport(), place, button, times);
}

QModelIndex Driver::RowOf(QAbstractItemView* view, std::string_view first_cell) {
  QModelIndex index;
  WaitFor("a row " + std::string(first_cell), [&] {
    if (view->model() != nullptr) index = NodeAt(*view->model(), {}, {std::string(first_cell)});
    return index.isValid();
  });
  return index;
}

void Driver::ClickRow(std::string_view name, std::string_view first_cell, x::Button button,
                      int times) {
  auto* view = Find<QAbstractItemView>(name);
  ClickIndex(view, RowOf(view, first_cell), button, times);
}

void Driver::SelectRows(std::string_view name, const Names& first_cells) {
  for (const std::string& cell : first_cells) {
    const bool more = cell != first_cells.front();
    if (more) x::Hold("ctrl", true);
    ClickRow(name, cell);
    if (more) x::Hold("ctrl", false);
  }
}

void Driver::SelectNode(const Names& below_root) {
  const auto is_tree = [](QWidget& widget) { return widget.objectName().endsWith("MgrTV"); };
  auto* tree = static_cast<QTreeView*>(Await("a tree", is_tree));
  QModelIndex index;
  WaitFor("the node " + testing::PrintToString(below_root), [&] {
    const QAbstractItemModel& model = *tree->model();
    index = NodeAt(model, model.index(0, 0), below_root);
    return index.isValid();
  });
  ClickIndex(tree, index, x::kLeft, 1);
}

template <typename Menu>
void Driver::ClickEntry(Menu* menu, std::string_view text) {
  QAction* entry = nullptr;
  WaitFor("the entry " + std::string(text), [&] {
    for (QAction* action : menu->actions()) {
      if (action->isVisible() && Read(action->text()) == Text(text)) entry = action;
    }
    return entry != nullptr;
  });
  ClickAt(menu, [=] { return menu->actionGeometry(entry).center(); });
}

void Driver::ChooseInMenu(std::string_view menu, std::string_view entry) {
  ClickEntry(Find<QMenuBar>("MainMenu1"), menu);
  ChooseInPopup(entry);
}

void Driver::ChooseInPopup(std::string_view text) {
  QMenu* menu = nullptr;
  WaitFor("a menu", [&] {
    menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    return menu != nullptr;
  });
  ClickEntry(menu, text);
}

void Driver::Choose(std::string_view name, std::string_view text) {
  auto* combo = Find<QComboBox>(name);
  Click(combo);
  QAbstractItemView* list = combo->view();
  WaitFor("its list", [=] { return list->isVisible(); });
  ClickIndex(list, RowOf(list, text), x::kLeft, 1);
  WaitFor("the list to close", [=] { return !list->isVisible(); });
}

void Driver::WaitForFocus() {
  // The window manager at times gives the focus to a window that is just going, and then to none.
  Clock::time_point again = Clock::now() + std::chrono::seconds(5);
  WaitFor("a window with the keyboard's focus", [&again] {
    QWidget* const active = QApplication::activeWindow();
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal != nullptr && active == nullptr && Clock::now() > again) {
      modal->activateWindow();
      again = Clock::now() + std::chrono::seconds(5);
    }
    return active != nullptr && (modal == nullptr || active == modal);
  });
}

void Driver::Press(std::string_view keys) {
  std::cerr << "press " << keys << "\n";
  WaitForFocus();
  const int before = arrivals_.released;
  const int released = x::Press(keys);
  WaitFor("the keys to arrive", [&] { return arrivals_.released >= before + released; });
}

void Driver::Type(std::string_view text) {
  const auto has_key = [](char c) { return c >= ' ' && c <= '~'; };
  if (text.size() > 200 || !std::all_of(text.begin(), text.end(), has_key)) {
    Ui([&] { QGuiApplication::clipboard()->setText(Text(text)); });
    return Press("ctrl+v");
  }
  std::cerr << "type " << text << "\n";
  WaitForFocus();
  const int before = arrivals_.released;
  const int released = x::Type(text);
  WaitFor("what was typed", [&] { return arrivals_.released >= before + released; });
}

void Driver::Enter(std::string_view field, std::string_view text) {
  Click(field);
  Press("ctrl+a");
  Press("Delete");
  Type(text);
}

void Driver::AnswerBox(std::string_view text, std::string_view button) {
  QPointer<QMessageBox> box;
  WaitFor("the message box " + std::string(text), [&] {
    box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return !box.isNull();
  });
  EXPECT_EQ(Ui([&] { return box->text().toStdString(); }).substr(0, text.size()), text);
  Click(Await("button", [&](QWidget& widget) {
    const auto* found = qobject_cast<QAbstractButton*>(&widget);
    return found != nullptr && found->window() == box && Read(found->text()) == Text(button);
  }));
  WaitFor("the message box to go", [&] { return box.isNull() || !box->isVisible(); });
}

void Driver::WaitForNoDialog() {
  WaitFor("the dialogs to close", [] { return QApplication::activeModalWidget() == nullptr; });
}

void Driver::WaitForRows(std::string_view name, const std::vector<Row>& expected) {
  const auto* view = Find<QAbstractItemView>(name);
  WaitFor(std::string(name) + " with " + testing::PrintToString(expected), [&] {
    const QAbstractItemModel& model = *view->model();
    bool same = model.rowCount() == static_cast<int>(expected.size());
    for (int row = 0; same && row < model.rowCount(); ++row) {
      int column = 0;
      for (const std::string& cell : expected[static_cast<std::size_t>(row)]) {
        same = same && model.index(row, column++).data().toString() == Text(cell);
      }
    }
    return same;
  });
}

std::string Driver::SelectedRow(std::string_view name) {
  auto* view = Find<QAbstractItemView>(name);
  return Ui([view] {
           const QModelIndexList rows = view->selectionModel()->selectedIndexes();
           return rows.empty() ? QString("(none)")
                               : rows.front().siblingAtColumn(0).data().toString();
         })
      .toStdString();
}

std::string Driver::TextOf(std::string_view name) {
  const QWidget* widget = Find(name);
  return Ui([widget] { return widget->property("text").toString().toStdString(); });
}

std::string Driver::FocusName() {
  WaitForFocus();
  WaitFor("a widget with the focus", [] { return QApplication::focusWidget() != nullptr; });
  return Ui([] { return QApplication::focusWidget()->objectName().toStdString(); });
}

}  // namespace quillmere::window
