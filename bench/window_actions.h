// SPDX-License-Identifier: MIT
// Every action of both pages of the window, as an operator drives it with key and mouse: for the
// test that holds each of their exchanges, and for the program that measures them on slow
// databases.
#pragma once

#include <vector>

#include "gated_oci.h"
#include "window/program_fixture.h"
#include "workspace/program_folder.h"

namespace quillmere::window {

// Jobs K and J, of which J is to run while K's databases are worked with.
class ActionStage : public ProgramTest {
 public:
  struct Action {
    const char* name;
    // What the dialog that waits begins its first step with; null: nothing waits for a database.
    const char* step;
    void (ActionStage::*prepare)();  // all but the last key or click
    void (ActionStage::*act)();
    void (ActionStage::*finish)();  // what is asked or told behind it; null: nothing
  };
  static const std::vector<Action> kActions;

  // Opens the program with its gate open, J running.
  void SetStage();

 protected:
  GatedOci gate_{ProgramFolder()};

  void Jobs();
  void SelectK();
  void EnterNewJob();
  void OpenWithOtherSource();
  void ClickOk() { Click("OkBtn"); }
  void Refresh() { ClickAction("Refresh"); }
  void AskRun() { Ask("RunRun"); }
  void AskPause() { Ask("RunPause"); }
  void AskStop() { Ask("RunStop"); }
  void AskDelete() { Ask("FileDelete"); }
  void Yes();
  void KRuns() { AwaitK(JobState::Started); }
  void KPauses() { AwaitK(JobState::Paused); }
  void KStops() { AwaitK(JobState::Stopped); }
  void ChooseIncluded();
  void ChooseExcluded();
  void ChooseOwner();
  void ClickSubmit() { Click("SubmitBtn"); }
  void CollapseAndExpand();

  void Manager();
  void ManagerAtA();
  void OpenManager() { ChooseInMenu("Database", "OpenDbMgr"); }
  void ClickTest() { Click("TestDSN"); }
  void TestWentWell();
  void EnterD();
  void ClickAdd() { Click("AddBtn"); }
  void EditA();
  void ClickSave() { Click("SaveBtn"); }
  void DeleteD();
  void CloseAll();

  void Disconnected();
  void Connected();
  void ClickConnect() { ClickAction("ConnectDS"); }
  void ClickDisconnect() { ClickAction("DisConnectDS"); }
  void AskLogOn();
  void ClickLogin() { Click("LoginBtn"); }
  void ForgetStale();
  void PressRefresh() { Press("F5"); }
  void EnterNewName();
  void ChooseTarget();
  void ChooseToDrop();
  void ClickDrop() { Click("DropBtn"); }
  void BrowseKeys();

 private:
  void Ask(const char* action);
  void AwaitK(JobState state);
  void TablesOfA(const Names& rows);
  bool HasTable(const std::string& name);
};

}  // namespace quillmere::window
