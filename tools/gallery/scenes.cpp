// SPDX-License-Identifier: MIT
#include "gallery/scenes.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QThread>
#include <QTreeView>
#include <chrono>
#include <utility>

#include "ui/databases/T_dropform.h"
#include "ui/databases/T_migrateform.h"
#include "ui/databases/T_renameform.h"
#include "ui/job_dialogs/T_jobedit.h"
#include "ui/job_dialogs/T_newownerform.h"
#include "ui/jobs/job_actions.h"
#include "ui/main/T_mainform.h"
#include "ui/main_dialogs/about.h"
#include "ui/main_dialogs/settings_form.h"
#include "ui/main_dialogs/splash.h"
#include "ui/sources/Dbconnection.h"
#include "ui/sources/T_dblogin.h"
#include "ui/toolkit/notice.h"
#include "ui/waiting/progress_window.h"

namespace quillmere {
namespace {

using std::chrono::hours;

constexpr QSize kMainSize(1000, 640);

// The worker rests all day: the jobs stay as the example has them.
class Scene {
 public:
  explicit Scene(UiContext& context) : context_(context), main_(context, hours(24)) {
    main_.resize(kMainSize);
    main_.show();
    Settle();
    for (const char* tree : {"JobMgrTV", "DbMgrTV"}) Part<QTreeView>(tree)->expandAll();
  }
  ~Scene() { main_.EndWorker(); }

  TMainForm& Main() { return main_; }

  template <typename Widget>
  Widget* Part(const char* name) {
    auto* part = main_.findChild<Widget*>(QLatin1String(name));
    if (part == nullptr) qFatal("The window has no %s", name);
    return part;
  }

  void TurnTo(int page) { Part<QTabWidget>("PageClient")->setCurrentIndex(page); }

  // path: the rows from the root's children down.
  void SelectNode(const char* tree, const std::vector<int>& path) {
    auto* view = Part<QTreeView>(tree);
    QModelIndex node = view->model()->index(0, 0);
    for (int row : path) node = view->model()->index(row, 0, node);
    view->setCurrentIndex(node);
    Settle();
  }

  void SelectRows(const char* list, const std::vector<int>& rows) {
    auto* view = Part<QTableView>(list);
    view->clearSelection();
    for (int row : rows) {
      view->selectionModel()->select(view->model()->index(row, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    Settle();
  }

 private:
  UiContext& context_;
  TMainForm main_;
};

void TakeJobExplorer(Scene& scene, Studio& studio) {
  scene.TurnTo(0);
  scene.SelectNode("JobMgrTV", {});
  scene.SelectRows("JobMgrLV", {0});
  studio.Take(scene.Main(), "main-jobs");
  scene.SelectNode("JobMgrTV", {1});
  studio.Take(scene.Main(), "main-job");
  scene.SelectNode("JobMgrTV", {1, 0});
  scene.SelectRows("JobMgrLV", {2, 3});
  studio.Take(scene.Main(), "main-include");
  scene.SelectNode("JobMgrTV", {1, 1});
  scene.SelectRows("JobMgrLV", {0});
  studio.Take(scene.Main(), "main-exclude");
}

// The doctor asks the example's databases.
void TakeDoctor(Scene& scene, Studio& studio) {
  scene.TurnTo(0);
  scene.SelectNode("JobMgrTV", {1});
  auto* pages = scene.Part<QTabWidget>("JobPages");
  pages->setCurrentWidget(scene.Part<QWidget>("DoctorPage"));
  scene.Part<QPushButton>("ExamineBtn")->click();
  auto* list = scene.Part<QAbstractItemView>("DoctorList");
  const auto found =
      list->model()->match(list->model()->index(0, 2), Qt::DisplayRole, "failure", 1);
  if (!found.empty()) list->setCurrentIndex(found.front());
  scene.Main().resize(kMainSize.width(), 800);
  Settle();
  list->scrollTo(list->currentIndex());
  Settle();
  studio.Take(scene.Main(), "job-doctor");
  scene.Main().resize(kMainSize);
  pages->setCurrentIndex(0);
}

void TakeDatabaseManager(Scene& scene, Studio& studio) {
  scene.TurnTo(1);
  scene.SelectNode("DbMgrTV", {});
  studio.Take(scene.Main(), "main-database");
  scene.SelectNode("DbMgrTV", {0});
  studio.Take(scene.Main(), "database-source");
  scene.SelectNode("DbMgrTV", {0, 0});
  scene.SelectRows("DbMgrLV", {4});
  studio.Take(scene.Main(), "database-keys");
  scene.SelectNode("DbMgrTV", {0, 1});
  studio.Take(scene.Main(), "database-indexes");
  scene.SelectNode("DbMgrTV", {0, 2});
  scene.SelectRows("DbMgrLV", {1, 2});
  studio.Take(scene.Main(), "database-tables");
}

void TakeMessages(Scene& scene, Studio& studio) {
  auto* splitter = scene.Part<QSplitter>("SplitMain");
  const QList<int> before = splitter->sizes();
  const int whole = before.value(0) + before.value(1);
  splitter->setSizes({whole / 2, whole / 2});
  studio.TakePart(*scene.Part<QWidget>("PnlLog"), "messages");
  splitter->setSizes(before);
}

void TakeMenus(Scene& scene, Studio& studio) {
  scene.TurnTo(0);
  scene.SelectNode("JobMgrTV", {1});
  for (const auto& [menu, name] :
       {std::pair{"JobMenu", "menu-job"}, std::pair{"PMOptions", "menu-options"},
        std::pair{"AppearanceMenu", "menu-appearance"}, std::pair{"SkinMenu", "menu-skin"}}) {
    auto* popup = scene.Part<QMenu>(menu);
    popup->popup(scene.Main().mapToGlobal(QPoint(20, 40)));
    studio.Take(*popup, name);
    popup->hide();
  }
}

void TakeSourceDialogs(UiContext& context, Scene& scene, Studio& studio) {
  {
    TDbConnForm form(context, &scene.Main());
    form.show();
    form.findChild<QTableView*>("DbConnLV")->selectRow(0);
    studio.Take(form, "data-sources");
    form.StartNew();
    form.findChild<QLineEdit*>("EditDbName")->setText("WAREHOUSE");
    form.findChild<QLineEdit*>("EditUserId")->setText("REPLICATOR");
    form.findChild<QLineEdit*>("EditPassword")->setText("correct horse");
    studio.Take(form, "data-sources-new");
  }
  const std::string why = "ORA-01017: invalid username/password; logon denied";
  TDbLoginForm login(context, {"REPORTING", "SYS", "", true}, why, &scene.Main());
  studio.Take(login, "log-on");
}

void TakeJobDialogs(UiContext& context, Scene& scene, Studio& studio) {
  JobProperties properties = PropertiesOf(context.workspace.Jobs().At(3));
  properties.follow = Follow::Commits;
  TJobEditForm edit(context, &scene.Main());
  studio.TakeModal("job-properties", [&] { edit.Edit(properties, 3); });
  const auto filter = [&](const QString& name, TableFilter mode,
                          const std::vector<std::string>& tables, const char* owner) {
    TFilterForm form(context, &scene.Main());
    studio.TakeModal(
        name,
        [&] {
          form.Execute(1, {mode, "SHOP", tables});
        },
        [owner](QWidget& dialog) {
          auto* field = dialog.findChild<QLineEdit*>("EditNewOwner");
          if (field != nullptr && field->isVisible()) field->setText(owner);
        });
  };
  filter("filter-include", TableFilter::Include, {"CARTS", "SESSIONS"}, "");
  filter("filter-exclude", TableFilter::Exclude, {"INVOICES", "PRICE_HISTORY"}, "");
  filter("filter-owner", TableFilter::ChangeOwner, {"ORDERS", "ORDER_LINES"}, "ARCHIVE");
}

SchemaSelection TablesOf(UiContext& context, std::initializer_list<const char*> names) {
  SchemaSelection selection;
  for (const TableRecord& table : context.workspace.Registry().At(0).tables) {
    for (const char* name : names) {
      if (table.table_name.String() == name) selection.items.push_back(ItemOf(table));
    }
  }
  return selection;
}

void TakeSchemaDialogs(UiContext& context, Scene& scene, Studio& studio) {
  TDropForm drop(context, TablesOf(context, {"CARTS", "SESSIONS"}), &scene.Main());
  studio.Take(drop, "drop");
  TMigrateForm migrate(context, TablesOf(context, {"CUSTOMERS", "ORDERS", "ORDER_LINES"}),
                       &scene.Main());
  studio.Take(migrate, "migrate");
  SchemaSelection key;
  key.kind = ObjectKind::PrimaryKey;
  key.items = {ItemOf(context.workspace.Registry().At(0).primary_keys.front())};
  TRenameForm rename(context, key, &scene.Main());
  rename.findChild<QLineEdit*>("EditNewName")->setText("PK_CAMPAIGNS");
  studio.Take(rename, "rename");
}

void TakeOthers(UiContext& context, Scene& scene, Studio& studio) {
  SettingsForm settings(context, &scene.Main());
  studio.Take(settings, "settings");
  AboutBox about(context, &scene.Main());
  studio.Take(about, "about");
  {
    ProgressWindow progress(&scene.Main(), "Refresh HEADOFFICE", [] {});
    progress.ShowStep("read table SHOP.ORDER_LINES", 412, 1180);
    studio.Take(progress, "progress");
  }
  studio.TakeModal("box-question", [&] {
    Confirm(&scene.Main(), RequestQuestion(JobRequest::Stop, JobState::Started, "orders"));
  });
  studio.TakeModal("box-notice", [&] {
    ShowNotice(&scene.Main(),
               std::string_view("You can't change data source after a job is runned, Stop the job "
                                "first please."));
  });
  studio.TakeModal("box-failure", [&] {
    ShowFailure(
        &scene.Main(),
        std::string_view("connect Database failed. Error: OCISessionBegin : ORA-01017: invalid "
                         "username/password; logon denied"));
  });
  studio.TakeModal("box-information",
                   [&] { ShowInformation(&scene.Main(), "connect to HEADOFFICE successed"); });
}

}  // namespace

void TakeAll(UiContext& context, Studio& studio) {
  {
    Splash splash;
    splash.Tell("Making the windows");
    studio.Take(splash, "splash");
  }
  Scene scene(context);
  TakeJobExplorer(scene, studio);
  TakeDoctor(scene, studio);
  TakeDatabaseManager(scene, studio);
  TakeMessages(scene, studio);
  TakeMenus(scene, studio);
  TakeSourceDialogs(context, scene, studio);
  TakeJobDialogs(context, scene, studio);
  TakeSchemaDialogs(context, scene, studio);
  TakeOthers(context, scene, studio);
}

void TakeEmpty(UiContext& context, Studio& studio) {
  Scene scene(context);
  scene.TurnTo(0);
  studio.Take(scene.Main(), "main-empty");
  scene.TurnTo(1);
  studio.Take(scene.Main(), "database-empty");
}

void TakeStuck(UiContext& context, Studio& studio) {
  Scene scene(context);
  scene.TurnTo(0);
  scene.SelectNode("JobMgrTV", {0});
  scene.Main().resize(kMainSize.width(), 800);
  auto* pages = scene.Part<QTabWidget>("JobPages");
  const auto open = [&](const char* page, const char* button) {
    pages->setCurrentWidget(scene.Part<QWidget>(page));
    scene.Part<QPushButton>(button)->click();
    Settle();
  };
  open("ProblemPage", "LookBtn");
  studio.Take(scene.Main(), "job-problem");
  open("PreviewPage", "PreviewBtn");
  studio.Take(scene.Main(), "job-preview");
  scene.Part<QComboBox>("PictureSpan")->setCurrentIndex(2);
  open("PicturePage", "AskSourceBtn");
  // The file is read by another thread.
  const auto* summary = scene.Part<QLabel>("PictureSummary");
  for (int turn = 0; turn < 500 && summary->text().isEmpty(); ++turn) {
    QThread::msleep(10);
    Settle();
  }
  studio.Take(scene.Main(), "job-picture");
}

void TakeSkin(UiContext& context, Studio& studio, const std::filesystem::path& skin) {
  std::string reason;
  if (!context.appearance.LoadSkin(skin, reason)) qFatal("%s", reason.c_str());
  {
    Scene scene(context);
    scene.TurnTo(0);
    scene.SelectNode("JobMgrTV", {});
    scene.SelectRows("JobMgrLV", {1});
    studio.Take(scene.Main(), "skin-redfox");
    TMigrateForm migrate(context, TablesOf(context, {"CUSTOMERS", "ORDERS"}), &scene.Main());
    studio.Take(migrate, "skin-redfox-dialog");
  }
  context.appearance.RemoveSkin();
}

}  // namespace quillmere
