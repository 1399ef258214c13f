// SPDX-License-Identifier: MIT
// The program's window: the banner, the two managers on their pages, the message list, the hint
// line, and the menus.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include "engine/work_thread.h"
#include "ui/H_global.h"
#include "workspace/trial_workload.h"

class QAction;
class QLabel;
class QMenu;
class QSplitter;
class QTabWidget;

namespace quillmere {

struct HealthCounts;
class MessagePanel;
class Tray;
class TDbMgrForm;
class TJobMgrForm;

class TMainForm : public QMainWindow {
  Q_OBJECT

 public:
  explicit TMainForm(UiContext& context,
                     std::chrono::milliseconds sweep_pause = HWorkThread::kSweepPause);
  ~TMainForm() override;

  // Nothing runs afterwards; the window is to be hidden before.
  // turn: called again and again while that is waited for.
  void EndWorker(const std::function<void()>& turn = {});

  // In the hint line, until the mouse goes elsewhere.
  void ShowTip(const QString& text);

 protected:
  void closeEvent(QCloseEvent* event) override;

 Q_SIGNALS:
  void WorkloadSaid(const std::string& why, bool error);  // on its thread

 private:
  void TellOfWorkload(const std::string& why, bool error);
  // --- the window's parts
  QWidget* MakePages(std::chrono::milliseconds sweep_pause);
  QWidget* MakeMessages();
  QWidget* MakeHintLine();
  void AddPage(QWidget* form, const char* name, const QString& caption, const QString& hint);
  void AddPageKeys();
  void OnPageChanged();
  void ShowHealth(const HealthCounts& counts);
  void OnJobsSeen();
  void ShowUnread(const QString& words);
  void PlaceWindow();
  void KeepPlace();
  void SayLost(const QString& text);

  // --- the first minute (T_mainform_first.cpp)
  QWidget* MakeFirst();
  void RegisterSource();
  void TrySandbox();

  // --- the menus (T_mainform_menus.cpp)
  void MakeMenus();
  QMenu* MakeJobMenu();
  QMenu* MakeDatabaseMenu();
  QMenu* MakeOptionsMenu();
  void AddSwitches(QMenu& menu);
  QMenu* MakeAppearanceMenu();
  QMenu* MakeSkinMenu();
  QAction* MakeHide(QMenu& menu);
  QAction* MakeAction(const char* name, const QString& caption, const char* icon);
  void LoadBasicSkin();
  void LoadOtherSkin();
  void LoadSkin(const std::filesystem::path& file);
  void OpenHelp();
  void ExplainMessage(const QString& message);
  std::filesystem::path FindPage(const char* name);
  void Open(const QUrl& url);
  void SaveProgramSettings();

  UiContext& context_;
  QTabWidget* pages_ = nullptr;
  QStringList page_hints_;
  TJobMgrForm* job_manager_ = nullptr;
  TDbMgrForm* database_manager_ = nullptr;
  QSplitter* splitter_ = nullptr;
  MessagePanel* messages_ = nullptr;
  Tray* tray_ = nullptr;
  QLabel* tips_ = nullptr;
  QAction* show_log_ = nullptr;
  QTimer clear_timer_{this};
  bool loss_told_ = false;
  std::unique_ptr<TrialWorkload> workload_;  // after a trial was made
};

}  // namespace quillmere
