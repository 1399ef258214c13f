// SPDX-License-Identifier: MIT
#include "window/driver.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QStyleHints>
#include <QStyleOptionViewItem>
#include <QThread>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <cstring>
#include <iostream>
#include <thread>

namespace quillmere::window {
namespace {

constexpr std::chrono::milliseconds kPoll{2};

std::string Bytes(const QString& text) {
  return text.toStdString();
}

QString Text(std::string_view bytes) {
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

// "&New\tCtrl+N" reads as New.
std::string Read(QString caption) {
  return Bytes(caption.section(u'\t', 0, 0).remove(u'&').trimmed());
}

QAction* EntryOf(const QWidget* menu, std::string_view text) {
  for (QAction* action : menu->actions()) {
    if (action->isVisible() && Read(action->text()) == text) return action;
  }
  return nullptr;
}

QModelIndex NodeAt(const QAbstractItemModel& model, const Path& path) {
  QModelIndex node;
  for (const std::string& caption : path) {
    int row = 0;
    while (row < model.rowCount(node) &&
           Bytes(model.index(row, 0, node).data().toString()) != caption) {
      ++row;
    }
    if (row == model.rowCount(node)) return {};
    node = model.index(row, 0, node);
  }
  return node;
}

}  // namespace

bool Driver::Arrivals::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  // Of an event of X: its kind; of one of an extension also which extension and which of its kinds.
  const auto* event = static_cast<const unsigned char*>(message);
  constexpr int kKeyRelease = 3, kButtonRelease = 5, kExtension = 35;
  int kind = event[0] & 0x7f;
  if (kind == kExtension) {
    // A click comes from the mouse and once more from the pointer; the program heeds the pointer's.
    constexpr int kPointer = 2;
    std::uint16_t inner[2] = {};
    std::memcpy(inner, event + 8, sizeof inner);
    kind = event[1] == input_extension && inner[1] == kPointer ? inner[0] : 0;
  }
  if (kind == kKeyRelease) ++keys;
  if (kind == kButtonRelease) ++buttons;
  return false;
}

Driver::Driver() {
  if (!screen_.Open()) GiveUp("no X display: run the tests through tests/window/with-display");
  const Clock::time_point end = Clock::now() + kLimit;
  while (!screen_.WindowManagerAnswers()) {
    if (Clock::now() > end) GiveUp("no window manager on the display");
  }
  arrivals_.input_extension = screen_.InputExtension();
  Ui([this] { QCoreApplication::instance()->installNativeEventFilter(&arrivals_); });
}

Driver::~Driver() {
  Ui([this] { QCoreApplication::instance()->removeNativeEventFilter(&arrivals_); });
}

void Driver::RunOnUi(std::function<void()> work) {
  if (QThread::currentThread() == QCoreApplication::instance()->thread()) return work();
  // A lock on both sides, for the thread sanitizer: it does not see that Qt's event queue hands
  // over what this thread wrote before.
  static std::mutex handed_over;
  std::promise<void> done;
  std::future<void> finished = done.get_future();
  {
    const std::lock_guard lock(handed_over);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [&] {
          { const std::lock_guard mine(handed_over); }
          work();
          done.set_value();
        },
        Qt::QueuedConnection);
  }
  if (finished.wait_for(2 * kLimit) == std::future_status::ready) return;
  // What stands on this stack may still be used: there is no way on from here.
  screen_.Picture().save(QStringLiteral("hang.png"));
  std::cerr << "The window hangs; the picture is hang.png. Steps:\n";
  for (const std::string& step : steps_) std::cerr << "  " << step << "\n";
  std::_Exit(1);
}

void Driver::GiveUp(const std::string& reason) {
  std::string story;
  for (std::size_t i = steps_.size() > 15 ? steps_.size() - 15 : 0; i < steps_.size(); ++i) {
    story += "\n  " + steps_[i];
  }
  [&] { FAIL() << reason << "\nafter these steps:" << story; }();
  std::terminate();  // FAIL has thrown
}

void Driver::Note(std::string step) {
  steps_.push_back(std::move(step));
}

void Driver::WaitFor(const std::string& what, const std::function<bool()>& condition) {
  const Clock::time_point end = Clock::now() + kLimit;
  while (!Ui(condition)) {
    if (Clock::now() > end) GiveUp("waited in vain: " + what + "\nopen windows: " + OpenWindows());
    std::this_thread::sleep_for(kPoll);
  }
}

QWidget* Driver::FindWidget(std::string_view name, const QMetaObject& type) {
  QWidget* found = nullptr;
  WaitFor("widget " + std::string(name) + " of class " + type.className(), [&] {
    const QWidget* modal = QApplication::activeModalWidget();
    for (QWidget* widget : QApplication::allWidgets()) {
      if (widget->isVisible() && widget->objectName() == Text(name) &&
          type.cast(widget) != nullptr && (modal == nullptr || widget->window() == modal)) {
        found = widget;
      }
    }
    return found != nullptr;
  });
  return found;
}

bool Driver::IsShown(std::string_view name) {
  return Ui([&] {
    for (const QWidget* widget : QApplication::allWidgets()) {
      if (widget->isVisible() && widget->objectName() == Text(name)) return true;
    }
    return false;
  });
}

// The place may only be trusted once the window manager has put the window somewhere, Qt knows
// where, and nothing lies over it.
QPoint Driver::OnScreen(QWidget* widget, const std::function<QPoint()>& place) {
  QPoint screen;
  const QPointer<QWidget> alive(widget);
  WaitFor("a place to click", [&] {
    if (alive.isNull() || !alive->isVisible() || !alive->isEnabled()) return false;
    const QWidget* window = alive->window();
    if (screen_.PositionOf(window->effectiveWinId()) != window->mapToGlobal(QPoint(0, 0))) {
      return false;
    }
    screen = alive->mapToGlobal(place ? place() : alive->rect().center());
    const QWidget* there = QApplication::widgetAt(screen);
    return there == alive.data() || alive->isAncestorOf(there);
  });
  return screen;
}

void Driver::ClickAt(QWidget* widget, const std::function<QPoint()>& place, XDisplay::Button button,
                     int times) {
  const QPoint screen = OnScreen(widget, place);
  Note((times == 2 ? "double click " : "click ") + std::to_string(button) + " on " + Ui([&] {
         return std::string(widget->metaObject()->className()) + " " + Bytes(widget->objectName());
       }));
  // Two clicks are a double click, or not, however fast this machine is. What opens at a press
  // waits for the same time before it takes a click.
  constexpr auto kInterval = std::chrono::milliseconds(30);
  Ui([=] {
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(
        times == 2 ? 60000 : static_cast<int>(kInterval.count()));
  });
  while (Clock::now() - last_click_ < 2 * kInterval) std::this_thread::yield();
  const int before = arrivals_.buttons;
  screen_.Move(screen);
  screen_.Click(button, times);
  WaitFor("the click to arrive", [&] { return arrivals_.buttons >= before + times; });
  last_click_ = Clock::now();
}

// A check box takes clicks on what is drawn of it only.
void Driver::Click(QWidget* widget) {
  const bool box = qobject_cast<QCheckBox*>(widget) != nullptr;
  ClickAt(widget, [=] { return box ? QPoint(10, widget->height() / 2) : widget->rect().center(); });
}

void Driver::MoveOver(QWidget* widget) {
  screen_.Move(OnScreen(widget, {}));
}

void Driver::ClickAction(std::string_view name) {
  QToolButton* button = nullptr;
  WaitFor("a tool button of " + std::string(name), [&] {
    for (QWidget* widget : QApplication::allWidgets()) {
      auto* tool = qobject_cast<QToolButton*>(widget);
      if (tool != nullptr && tool->isVisible() && tool->defaultAction() != nullptr &&
          tool->defaultAction()->objectName() == Text(name)) {
        button = tool;
      }
    }
    return button != nullptr;
  });
  Click(button);
}

void Driver::ClickCell(std::string_view name, int row, int column, XDisplay::Button button,
                       int times) {
  auto* view = Find<QAbstractItemView>(name);
  QPersistentModelIndex index;
  WaitFor("row " + std::to_string(row), [&] {
    index = view->model() == nullptr ? QModelIndex() : view->model()->index(row, column);
    if (index.isValid()) view->scrollTo(index);
    return index.isValid();
  });
  ClickAt(
      view->viewport(), [=] { return view->visualRect(index).center(); }, button, times);
}

void Driver::ClickNode(std::string_view name, const Path& path, XDisplay::Button button) {
  auto* tree = Find<QTreeView>(name);
  QPersistentModelIndex index;
  WaitFor("node " + path.back(), [&] {
    index = NodeAt(*tree->model(), path);
    if (index.isValid()) tree->scrollTo(index);
    return index.isValid();
  });
  ClickAt(
      tree->viewport(),
      [=] {
        QRect text = tree->visualRect(index);
        text.setWidth(std::min(text.width(), 60));
        return text.center();
      },
      button, 1);
}

int Driver::RowOf(QAbstractItemView* view, std::string_view first_cell) {
  int row = -1;
  WaitFor("a row " + std::string(first_cell), [&] {
    const QAbstractItemModel* model = view->model();
    for (int i = 0; model != nullptr && i < model->rowCount(); ++i) {
      if (model->index(i, 0).data().toString() == Text(first_cell)) row = i;
    }
    return row >= 0;
  });
  return row;
}

void Driver::SelectRows(std::string_view name, const std::vector<std::string>& first_cells) {
  Note("select rows");
  bool first = true;
  for (const std::string& cell : first_cells) {
    const int row = RowOf(Find<QAbstractItemView>(name), cell);
    if (!first) screen_.Hold("ctrl", true);
    ClickCell(name, row, 0);
    if (!first) screen_.Hold("ctrl", false);
    first = false;
  }
}

void Driver::TickRow(std::string_view name, std::string_view text) {
  auto* view = Find<QAbstractItemView>(name);
  const int row = RowOf(view, text);
  ClickAt(view->viewport(), [=] {
    QStyleOptionViewItem option;
    option.initFrom(view);
    option.rect = view->visualRect(view->model()->index(row, 0));
    option.features = QStyleOptionViewItem::HasCheckIndicator;
    return view->style()
        ->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, view)
        .center();
  });
}

void Driver::ChooseInMenu(const std::vector<std::string>& path) {
  QMenuBar* bar = nullptr;
  QAction* entry = nullptr;
  WaitFor("menu " + path.front(), [&] {
    for (QWidget* widget : QApplication::allWidgets()) {
      auto* candidate = qobject_cast<QMenuBar*>(widget);
      if (candidate == nullptr || !candidate->isVisible()) continue;
      bar = candidate;
      entry = EntryOf(bar, path.front());
    }
    return entry != nullptr;
  });
  ClickAt(
      bar, [=] { return bar->actionGeometry(entry).center(); }, XDisplay::kLeft, 1);
  for (std::size_t i = 1; i < path.size(); ++i) ChooseInPopup(path[i]);
}

void Driver::ChooseInPopup(std::string_view text) {
  QMenu* menu = nullptr;
  QAction* entry = nullptr;
  WaitFor("menu entry " + std::string(text), [&] {
    menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    entry = menu == nullptr ? nullptr : EntryOf(menu, text);
    return entry != nullptr;
  });
  Note("choose " + std::string(text));
  ClickAt(
      menu, [=] { return menu->actionGeometry(entry).center(); }, XDisplay::kLeft, 1);
}

std::vector<std::string> Driver::PopupEntries() {
  std::vector<std::string> entries;
  WaitFor("a menu", [&] {
    entries.clear();
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) return false;
    for (const QAction* action : menu->actions()) {
      if (action->isVisible() && !action->isSeparator()) entries.push_back(Read(action->text()));
    }
    return true;
  });
  return entries;
}

void Driver::Choose(std::string_view name, std::string_view text) {
  auto* combo = Find<QComboBox>(name);
  int row = -1;
  WaitFor(std::string(text) + " in " + std::string(name), [&] {
    row = combo->findText(Text(text));
    return row >= 0;
  });
  ClickAt(
      combo, [=] { return QPoint(combo->width() - 8, combo->height() / 2); }, XDisplay::kLeft, 1);
  auto* list = combo->view();
  WaitFor("the list of " + std::string(name), [&] { return list->isVisible(); });
  ClickAt(
      list->viewport(),
      [=] {
        const QModelIndex index = list->model()->index(row, 0);
        list->scrollTo(index);
        return list->visualRect(index).center();
      },
      XDisplay::kLeft, 1);
  WaitFor("the list to close", [&] { return !list->isVisible(); });
}

void Driver::WaitForFocus() {
  WaitFor("a window with the keyboard's focus", [] {
    const QWidget* active = QApplication::activeWindow();
    const QWidget* modal = QApplication::activeModalWidget();
    return active != nullptr && (modal == nullptr || active == modal);
  });
}

void Driver::Press(std::string_view keys, bool arrives) {
  Note("press " + std::string(keys));
  WaitForFocus();
  const int before = arrivals_.keys;
  if (!screen_.Press(keys)) GiveUp("no such keys: " + std::string(keys));
  if (!arrives) return;
  const int strokes = static_cast<int>(std::count(keys.begin(), keys.end(), '+')) + 1;
  WaitFor("the keys to arrive", [&] { return arrivals_.keys >= before + strokes; });
}

void Driver::Type(std::string_view text) {
  Note("type " + std::string(text.substr(0, 60)));
  WaitForFocus();
  const int before = arrivals_.keys;
  if (text.size() <= 200 && screen_.Type(text)) {
    WaitFor("what was typed",
            [&] { return arrivals_.keys >= before + static_cast<int>(text.size()); });
    return;
  }
  Ui([&] { QGuiApplication::clipboard()->setText(Text(text)); });
  Press("ctrl+v");
}

void Driver::Enter(std::string_view field, std::string_view text) {
  Click(field);
  Press("ctrl+a");
  Press("Delete");
  Type(text);
}

std::string Driver::BoxText() {
  std::string text;
  WaitFor("a message box", [&] {
    const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box != nullptr) text = Bytes(box->text());
    return box != nullptr;
  });
  return text;
}

void Driver::AnswerBox(std::string_view text, std::string_view button) {
  EXPECT_EQ(BoxText(), text);
  QAbstractButton* found = nullptr;
  QPointer<QMessageBox> box;
  WaitFor("a button " + std::string(button), [&] {
    box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box.isNull()) return false;
    for (QAbstractButton* candidate : box->buttons()) {
      if (Read(candidate->text()) == button) found = candidate;
    }
    return found != nullptr;
  });
  Click(found);
  WaitFor("the message box to go", [&] { return box.isNull() || !box->isVisible(); });
}

std::vector<Row> Driver::Rows(std::string_view name) {
  const auto* view = Find<QAbstractItemView>(name);
  return Ui([view] {
    std::vector<Row> rows;
    const QAbstractItemModel* model = view->model();
    for (int row = 0; model != nullptr && row < model->rowCount(); ++row) {
      Row& cells = rows.emplace_back();
      for (int column = 0; column < model->columnCount(); ++column) {
        cells.push_back(Bytes(model->index(row, column).data().toString()));
      }
    }
    return rows;
  });
}

void Driver::WaitForRows(std::string_view name, const std::vector<Row>& expected) {
  const Clock::time_point end = Clock::now() + kLimit;
  std::vector<Row> rows = Rows(name);
  while (rows != expected && Clock::now() < end) {
    std::this_thread::sleep_for(kPoll);
    rows = Rows(name);
  }
  if (rows == expected) return Note("see the rows of " + std::string(name));
  GiveUp("rows of " + std::string(name) + ": " + testing::PrintToString(rows) + "\ninstead of " +
         testing::PrintToString(expected));
}

std::string Driver::SelectedRow(std::string_view name) {
  const auto* view = Find<QAbstractItemView>(name);
  return Ui([view] {
    const QModelIndexList rows = view->selectionModel()->selectedIndexes();
    return rows.empty() ? "(none)" : Bytes(rows.front().siblingAtColumn(0).data().toString());
  });
}

std::string Driver::TextOf(std::string_view name) {
  const QWidget* widget = Find(name);
  return Ui([widget]() -> std::string {
    for (const char* property : {"text", "currentText", "plainText"}) {
      const QVariant text = widget->property(property);
      if (text.isValid()) return Bytes(text.toString());
    }
    return "(none)";
  });
}

std::string Driver::FocusName() {
  WaitForFocus();
  std::string name;
  WaitFor("a widget with the focus", [&] {
    const QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr) name = Bytes(focus->objectName());
    return focus != nullptr;
  });
  return name;
}

std::string Driver::OpenWindows() {
  return Ui([] {
    std::string names;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      names += std::string(names.empty() ? "" : ", ") + window->metaObject()->className() + " '" +
               Bytes(window->windowTitle()) + "'";
      const auto* box = qobject_cast<const QMessageBox*>(window);
      if (box != nullptr) names += " saying '" + Bytes(box->text()) + "'";
    }
    return names;
  });
}

void Driver::CloseDialogs() {
  WaitFor("the dialogs to close", [] {
    QWidget* open = QApplication::activePopupWidget();
    if (open == nullptr) open = QApplication::activeModalWidget();
    if (auto* dialog = qobject_cast<QDialog*>(open); dialog != nullptr) {
      dialog->reject();
    } else if (open != nullptr) {
      open->close();
    }
    return open == nullptr;
  });
}

}  // namespace quillmere::window
