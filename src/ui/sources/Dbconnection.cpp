// SPDX-License-Identifier: MIT
#include "ui/sources/Dbconnection.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

#include "ui/sources/secret.h"
#include "ui/toolkit/dialog_size.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"

namespace quillmere {
namespace {

const QString kSizeName = QStringLiteral("TDbConnForm");
constexpr int kWidth = 560;
constexpr int kHeight = 560;
constexpr qsizetype kLongestTitle = 40;  // characters of a name that do not widen the dialog

QString ElidedName(std::string_view name) {
  const QString line = OneLine(name);
  return line.size() > kLongestTitle ? line.left(kLongestTitle) + QStringLiteral("...") : line;
}

}  // namespace

TDbConnForm::TDbConnForm(UiContext& context, QWidget* parent)
    : QDialog(parent), context_(context), list_(new RowTable(context.memory, this)) {
  setObjectName(QStringLiteral("TDbConnForm"));
  setWindowTitle(tr("Data Sources"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kSpacing);
  layout->addWidget(MakeTools());
  list_->setObjectName(QStringLiteral("DbConnLV"));
  list_->setAccessibleName(tr("Registered data sources"));
  list_->SetEmptyText(tr("No data source is registered yet. Choose New to add one."));
  list_->ShowRows(model_, QStringLiteral("sources"), false);
  list_->setMinimumHeight(120);
  layout->addWidget(list_, 1);
  layout->addWidget(MakePanel());
  auto* close = new QDialogButtonBox(QDialogButtonBox::Close);
  QPushButton* close_button = close->button(QDialogButtonBox::Close);
  close_button->setObjectName(QStringLiteral("CloseBtn"));
  close_button->setText(tr("&Close"));
  close_button->setAutoDefault(false);
  connect(close, &QDialogButtonBox::rejected, this, &TDbConnForm::reject);
  layout->addWidget(close);

  connect(list_, &QTableView::doubleClicked, this, [this] { EditDSNClick(); });
  auto* erase = new QShortcut(QKeySequence::Delete, list_, nullptr, nullptr, Qt::WidgetShortcut);
  connect(erase, &QShortcut::activated, this, &TDbConnForm::DelDSNClick);
  RestoreSize(*this, context_.memory, kSizeName, kWidth, kHeight);
  OpenPanel(Panel::Looking, {});
  ShowRegistry(std::nullopt);
  list_->setFocus();
}

TDbConnForm::~TDbConnForm() {
  fields_->WipePassword();
  KeepSize(*this, context_.memory, kSizeName);
}

QWidget* TDbConnForm::MakeButton(const char* object, const QString& caption, const char* icon,
                                 const QString& tip, void (TDbConnForm::*clicked)()) {
  auto* button = new QToolButton;
  button->setObjectName(QLatin1String(object));
  button->setText(caption);
  button->setIcon(Icon(icon));
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setToolTip(tip);
  connect(button, &QToolButton::clicked, this, clicked);
  return button;
}

QWidget* TDbConnForm::MakeTools() {
  auto* tools = new QWidget;
  tools->setObjectName(QStringLiteral("ToolBar"));
  auto* layout = new QHBoxLayout(tools);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(MakeButton("NewDSN", tr("&New"), "source-new",
                               tr("Register another data source"), &TDbConnForm::NewDSNClick));
  layout->addWidget(MakeButton("DelDSN", tr("&Delete"), "source-delete",
                               tr("Delete the selected data source from the registry, "
                                  "with its password (Del)"),
                               &TDbConnForm::DelDSNClick));
  layout->addWidget(MakeButton("EditDSN", tr("&Edit"), "source-edit",
                               tr("Change the log-on of the selected data source"),
                               &TDbConnForm::EditDSNClick));
  layout->addWidget(MakeButton("TestDSN", tr("&Test"), "source-test",
                               tr("Try to connect to the selected data source"),
                               &TDbConnForm::TestDSNClick));
  layout->addStretch();
  return tools;
}

QWidget* TDbConnForm::MakePanel() {
  panel_box_ = new QGroupBox;
  panel_box_->setObjectName(QStringLiteral("PnlDbPara"));
  auto* layout = new QVBoxLayout(panel_box_);
  layout->setSpacing(kSpacing);
  auto* form = new QFormLayout;
  form->setSpacing(kSpacing);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  fields_ = std::make_unique<LoginFields>(*form, "EditDbName");
  layout->addLayout(form);
  advice_ = new QLabel;
  advice_->setObjectName(QStringLiteral("LblAdvice"));
  advice_->setTextFormat(Qt::PlainText);
  advice_->setWordWrap(true);
  advice_->setForegroundRole(QPalette::PlaceholderText);
  advice_->setMinimumHeight(2 * advice_->fontMetrics().lineSpacing());
  advice_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  // A long name must not widen the dialog.
  advice_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  layout->addWidget(advice_);
  MakePanelButtons();
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  for (QPushButton* button : {add_, save_, abort_}) {
    button->setAutoDefault(false);
    buttons->addWidget(button);
  }
  layout->addLayout(buttons);
  connect(&fields_->Name(), &QLineEdit::textChanged, this, &TDbConnForm::ShowAdvice);
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &TDbConnForm::DbConnLVChange);
  return panel_box_;
}

void TDbConnForm::MakePanelButtons() {
  add_ = new QPushButton(tr("&Add"));
  add_->setObjectName(QStringLiteral("AddBtn"));
  add_->setToolTip(tr("Connect, read the catalogue and register the data source"));
  connect(add_, &QPushButton::clicked, this, &TDbConnForm::AddBtnClick);
  save_ = new QPushButton(tr("&Save"));
  save_->setObjectName(QStringLiteral("SaveBtn"));
  save_->setToolTip(tr("Try the log-on and keep it"));
  connect(save_, &QPushButton::clicked, this, &TDbConnForm::SaveBtnClick);
  abort_ = new QPushButton(tr("Ab&ort"));
  abort_->setObjectName(QStringLiteral("CancelBtn"));
  abort_->setToolTip(tr("Leave the fields without a change (Esc)"));
  connect(abort_, &QPushButton::clicked, this, &TDbConnForm::CancelBtnClick);
}

void TDbConnForm::StartNew() {
  NewDSNClick();
}

void TDbConnForm::NewDSNClick() {
  LogOn login;
  login.sysdba = true;
  OpenPanel(Panel::Adding, login);
}

void TDbConnForm::EditDSNClick() {
  const std::optional<std::size_t> selected = Selected();
  if (!selected) return ShowNotice(this, tr("You must choose a data source to edit"), list_);
  const DataSource& source = context_.workspace.Registry().At(*selected);
  const std::string busy = WhySourceBusy(context_.workspace, source.name);
  if (!busy.empty()) return ShowNotice(this, busy, list_);
  edited_ = *selected;
  LogOn login = source;
  OpenPanel(Panel::Editing, login);
  WipeText(login.password);
}

void TDbConnForm::DelDSNClick() {
  const std::optional<std::size_t> selected = Selected();
  if (!selected) return ShowNotice(this, tr("You must select an Database to delete"), list_);
  const std::string name = context_.workspace.Registry().At(*selected).name;
  const std::string busy = WhySourceBusy(context_.workspace, name);
  if (!busy.empty()) return ShowNotice(this, busy, list_);
  if (!Confirm(this, DeleteQuestion(context_.workspace.Jobs(), name))) return;
  const Outcome removed = RemoveDataSource(context_.workspace, *selected);
  changed_ = true;
  if (panel_ == Panel::Editing && edited_ == *selected) OpenPanel(Panel::Looking, {});
  ShowRegistry(std::nullopt);
  if (!removed) ShowFailure(this, removed.text, list_);
}

void TDbConnForm::TestDSNClick() {
  const std::optional<std::size_t> selected = Selected();
  if (!selected) return ShowNotice(this, tr("You must choose a data source to test"), list_);
  Waiting waiting(context_, this, tr("Test Data Source"));
  const Outcome tested = TestDataSource(context_.workspace, *selected, waiting);
  if (tested.cancelled) return;
  if (tested) return ShowInformation(this, tested.text, list_);
  const std::string& name = context_.workspace.Registry().At(*selected).name;
  ShowFailure(this, tr("%1\n\nData source: %2").arg(Translated(tested.text), ToQt(name)), list_);
}

void TDbConnForm::AddBtnClick() {
  LogOn login = fields_->Entered({});
  const std::string refused = WhyNewSourceRefused(context_.workspace, login);
  if (!refused.empty()) return TellRefusal(login, refused);
  Waiting waiting(context_, this, tr("Add Data Source"));
  const Outcome added = AddDataSource(context_.workspace, login, waiting);
  WipeText(login.password);
  if (added.cancelled) return;
  const int index = context_.workspace.Registry().IndexOf(login.name);
  if (!added && index < 0) return TellRefusal(login, added.text);
  changed_ = true;
  OpenPanel(Panel::Looking, {});
  ShowRegistry(static_cast<std::size_t>(index));
  list_->setFocus();
  if (!added) return ShowFailure(this, added.text);  // registered, but not in the files
  if (!added.text.empty()) {
    ShowNotice(this, tr("%1 is registered, but its catalogue could not be read:\n\n%2")
                         .arg(ToQt(login.name), Translated(added.text)));
  }
}

void TDbConnForm::SaveBtnClick() {
  LogOn original = EditedLogin();
  LogOn login = fields_->Entered(original);
  WipeText(original.password);
  const std::string refused = WhyLoginRefused(login);
  if (!refused.empty()) return TellRefusal(login, refused);
  Waiting waiting(context_, this, tr("Save Data Source"));
  const Outcome saved = SaveDataSource(context_.workspace, login, waiting);
  WipeText(login.password);
  if (saved.cancelled) return;
  changed_ = true;  // also when the files could not be written
  if (!saved) return TellRefusal(login, saved.text);
  OpenPanel(Panel::Looking, {});
  ShowRegistry(static_cast<std::size_t>(context_.workspace.Registry().IndexOf(login.name)));
  list_->setFocus();
}

void TDbConnForm::CancelBtnClick() {
  OpenPanel(Panel::Looking, {});
  DbConnLVChange();
  list_->setFocus();
}

void TDbConnForm::DbConnLVChange() {
  if (panel_ != Panel::Looking) return;
  const std::optional<std::size_t> selected = Selected();
  LogOn login;
  login.sysdba = true;
  if (selected) {
    const DataSource& source = context_.workspace.Registry().At(*selected);
    login = {source.name, source.user_id, {}, source.sysdba};
  }
  fields_->Show(login);
  if (selected) fields_->Password().setPlaceholderText(tr("Stored, not shown"));
  ShowAdvice();
}

std::optional<std::size_t> TDbConnForm::Selected() const {
  const std::vector<std::size_t> rows = list_->SelectedRows();
  if (rows.empty()) return std::nullopt;
  return model_.IndexOf(rows.front());
}

void TDbConnForm::ShowRegistry(std::optional<std::size_t> select) {
  model_.Show(context_.workspace.Registry());
  if (select) {
    const int row = model_.RowOf(*select);
    if (row >= 0) list_->selectRow(model_.ModelRowOf(static_cast<std::size_t>(row)));
  }
  DbConnLVChange();
}

void TDbConnForm::OpenPanel(Panel panel, const LogOn& login) {
  panel_ = panel;
  fields_->Show(login);
  fields_->Password().setPlaceholderText({});
  fields_->SetEnabled(panel != Panel::Looking);
  add_->setVisible(panel != Panel::Editing);
  add_->setEnabled(panel == Panel::Adding);
  save_->setVisible(panel == Panel::Editing);
  abort_->setEnabled(panel != Panel::Looking);
  add_->setDefault(panel == Panel::Adding);
  save_->setDefault(panel == Panel::Editing);
  ShowAdvice();
  if (panel == Panel::Adding) fields_->Name().setFocus();
  if (panel == Panel::Editing) {
    fields_->Password().setFocus();
    fields_->Password().selectAll();
  }
}

void TDbConnForm::ShowAdvice() {
  switch (panel_) {
    case Panel::Looking:
      panel_box_->setTitle(tr("Log-on"));
      advice_->setText(
          tr("New registers a data source; Edit changes the log-on of the "
             "selected one."));
      break;
    case Panel::Adding:
      panel_box_->setTitle(tr("New data source"));
      advice_->setText(AddAdvice(context_.workspace.Registry(), ToBytes(fields_->Name().text())));
      break;
    case Panel::Editing: {
      const DataSourceRegistry& registry = context_.workspace.Registry();
      const std::string& name = registry.At(edited_).name;
      panel_box_->setTitle(
          tr("Change the log-on of %1").arg(ElidedName(name).replace(u'&', QStringLiteral("&&"))));
      advice_->setText(SaveAdvice(registry, name, EditedText(fields_->Name(), name)));
      break;
    }
  }
}

LogOn TDbConnForm::EditedLogin() const {
  return context_.workspace.Registry().At(edited_);
}

void TDbConnForm::TellRefusal(LogOn& login, const std::string& text) {
  WipeText(login.password);
  ShowNotice(this, text, fields_->Widget(FieldToCorrect(login, text)));
}

void TDbConnForm::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && panel_ != Panel::Looking) {
    CancelBtnClick();
    return;
  }
  QDialog::keyPressEvent(event);
}

}  // namespace quillmere
