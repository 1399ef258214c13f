// SPDX-License-Identifier: MIT
// What waits for a database: whichever of its exchanges is held, the window lives, says what it is
// doing, and lets nobody act on what lies behind; jobs go on.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <QWindow>
#include <thread>

#include "ui/waiting/progress_window.h"
#include "window_actions.h"

namespace quillmere::window {
namespace {

class Waiting : public ActionStage {
 protected:
  static const ProgressWindow* Dialog() {
    return dynamic_cast<ProgressWindow*>(QApplication::activeModalWidget());
  }
  bool IsHeld() {
    WaitFor("an exchange or the end", [this] { return gate_.Held() > 0 || Dialog() == nullptr; });
    return gate_.Held() > 0;
  }
  // A dialog on screen, and two turns of the event loop while the exchange goes on being held.
  void ExpectAlive() {
    WaitFor("the painted dialog", [] {
      return Dialog() != nullptr && Dialog()->Painted() && Dialog()->windowHandle()->isExposed();
    });
    std::atomic<int> turns = 0;
    const auto turn = [&turns] { ++turns; };
    Ui([&] { QTimer::singleShot(0, [&] { turn(), QTimer::singleShot(0, turn); }); });
    WaitFor("two turns", [&] { return turns == 2; });
    EXPECT_EQ(gate_.Held(), 1);
  }
  void ExpectJobsGoOn() {
    const auto passes = [this] { return Ui([this] { return Work().Log().Entries().size(); }); };
    const std::size_t before = passes();
    NextPass();
    WaitFor("a pass of J", [&] { return Work().Log().Entries().size() > before; });
  }
  void ActBehind() {
    Press("ctrl+n");
    x::MoveTo(Ui([this] {
      QWidget& form = Window().Form();
      auto* tabs = form.findChild<QTabBar*>("qt_tabwidget_tabbar");
      return tabs->mapToGlobal(tabs->tabRect(1 - tabs->currentIndex()).center());
    }));
    x::Click(x::kLeft, 1);
    // The click has come to the program when the pointer has: the wait may end then.
    const QWidget* const dialog = Ui([] { return Dialog(); });
    x::MoveTo(Ui([dialog] { return dialog->mapToGlobal(dialog->rect().center()); }));
    WaitFor("the pointer in the dialog", [dialog] { return dialog->underMouse(); });
  }
  int Page() {
    return Ui([this] {
      return Window().Form().findChild<QTabBar*>("qt_tabwidget_tabbar")->currentIndex();
    });
  }
};

TEST_F(Waiting, HoldsUpNothingButItself) {
  SetStage();
  gate_.Watch(Ui([] { return std::this_thread::get_id(); }));
  gate_.SpareKnownThreads();
  for (const Action& action : kActions) {
    for (const bool cancel : {true, false}) {
      if (cancel && action.step == nullptr) continue;
      SCOPED_TRACE(action.name);
      std::cerr << action.name << (cancel ? ", cancelled\n" : "\n");
      (this->*action.prepare)();
      const int page = Page();
      gate_.Hold();
      (this->*action.act)();
      if (action.step != nullptr) {
        WaitFor("its first exchange", [this] { return gate_.Held() == 1; });
        ExpectAlive();
        EXPECT_EQ(TextOf("ProgressWhat").find(action.step), 0U) << TextOf("ProgressWhat");
        ExpectJobsGoOn();
        ActBehind();
      }
      if (cancel) {
        Click("ProgressCancel");
        WaitFor("the dialog to go at once", [] { return Dialog() == nullptr; });
        EXPECT_EQ(gate_.Held(), 1);
        gate_.LetGo();
        CloseAll();
      }
      while (!cancel && action.step != nullptr && IsHeld()) {
        ExpectAlive();
        gate_.LetOnePass();
      }
      gate_.LetGo();
      if (!cancel && action.finish != nullptr) (this->*action.finish)();
      WaitForNoDialog();
      EXPECT_EQ(Page(), page) << "a click during the wait came through";
    }
  }
  EXPECT_EQ(gate_.OfWatched(), 0) << "exchanges of the user interface";
  Sql("A", "select * from SHOP.NOTE;", false);
  EXPECT_EQ(Ui([this] { return Work().Jobs().Count(); }), 4U) << "J, K, and two new ones";
}

TEST_F(Waiting, TheEndSaysWhatItWaitsFor) {
  SetStage();
  gate_.SpareKnownThreads();
  ManagerAtA();
  gate_.Hold();
  ClickTest();
  WaitFor("its first exchange", [this] { return gate_.Held() == 1; });
  Click("ProgressCancel");
  WaitFor("the dialog to go at once", [] { return Dialog() == nullptr; });
  std::thread end([this] { Quit(); });
  Find("Splash");
  gate_.LetGo();
  end.join();
}

}  // namespace
}  // namespace quillmere::window
