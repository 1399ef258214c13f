// SPDX-License-Identifier: MIT
#include "ui/job_dialogs/T_newownerform.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QStringListModel>
#include <QVBoxLayout>
#include <limits>

#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kListWidth = 420;
constexpr int kListHeight = 260;

QString TipOf(TableFilter mode) {
  switch (mode) {
    case TableFilter::Include:
      return TFilterForm::tr("Include table(s) to be synchronized");
    case TableFilter::Exclude:
      return TFilterForm::tr("Exclude table(s) to be synchronized");
    case TableFilter::ChangeOwner:
      break;
  }
  return TFilterForm::tr("Synchronize Table(s) to another Owner");
}

QString TitleOf(TableFilter mode) {
  switch (mode) {
    case TableFilter::Include:
      return TFilterForm::tr("Include Tables");
    case TableFilter::Exclude:
      return TFilterForm::tr("Exclude Tables");
    case TableFilter::ChangeOwner:
      break;
  }
  return TFilterForm::tr("Change Remote Owner");
}

}  // namespace

TFilterForm::TFilterForm(UiContext& context, QWidget* parent)
    : QDialog(parent), context_(context), names_(new QStringListModel(this)) {
  setObjectName(QStringLiteral("TFilterForm"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kSpacing);
  layout->addWidget(MakeTop());
  layout->addWidget(MakeMain());
  tips_ = new QLabel;
  tips_->setObjectName(QStringLiteral("LblTips"));
  tips_->setForegroundRole(QPalette::PlaceholderText);
  layout->addWidget(tips_);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* TFilterForm::MakeTop() {
  auto* top = new QWidget;
  top->setObjectName(QStringLiteral("PnlTop"));
  auto* grid = new QGridLayout(top);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(kSpacing);
  auto* current_label = new QLabel(tr("&Current Owner"));
  current_owner_ = new QLineEdit;
  current_owner_->setObjectName(QStringLiteral("EditCurOwner"));
  current_owner_->setAccessibleName(tr("Current Owner"));
  current_owner_->setToolTip(tr("The tables' owner on the source"));
  current_owner_->setReadOnly(true);
  current_label->setBuddy(current_owner_);
  new_owner_label_ = new QLabel(tr("&New Owner Name"));
  new_owner_label_->setObjectName(QStringLiteral("LblNewOwner"));
  new_owner_ = new QLineEdit;
  new_owner_->setObjectName(QStringLiteral("EditNewOwner"));
  new_owner_->setAccessibleName(tr("New Owner Name"));
  new_owner_->setPlaceholderText(tr("Empty: the same owner as on the source"));
  new_owner_->setToolTip(
      tr("The owner to write to on the destination, exactly as the database spells "
         "it. It has to exist there."));
  new_owner_->setMaxLength(std::numeric_limits<int>::max());
  new_owner_label_->setBuddy(new_owner_);
  grid->addWidget(current_label, 0, 0);
  grid->addWidget(current_owner_, 0, 1);
  grid->addWidget(new_owner_label_, 1, 0);
  grid->addWidget(new_owner_, 1, 1);
  return top;
}

QWidget* TFilterForm::MakeMain() {
  auto* main = new QWidget;
  main->setObjectName(QStringLiteral("PnlMain"));
  auto* grid = new QGridLayout(main);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(kSpacing);
  auto* label = new QLabel(tr("&TalbleList"));
  count_ = new QLabel;
  count_->setForegroundRole(QPalette::PlaceholderText);
  list_ = new QListView;
  list_->setObjectName(QStringLiteral("TableListBox"));
  list_->setAccessibleName(tr("Tables"));
  list_->setToolTip(tr("Execute changes all of these tables"));
  list_->setModel(names_);
  list_->setUniformItemSizes(true);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setSelectionMode(QAbstractItemView::NoSelection);  // all of them are meant
  list_->setFixedSize(kListWidth, kListHeight);
  label->setBuddy(list_);
  auto* buttons = new QDialogButtonBox;
  auto* submit = buttons->addButton(tr("E&xecute"), QDialogButtonBox::AcceptRole);
  submit->setObjectName(QStringLiteral("SubmitBtn"));
  submit->setDefault(true);
  auto* abort = buttons->addButton(tr("&Abort"), QDialogButtonBox::RejectRole);
  abort->setObjectName(QStringLiteral("CancelBtn"));
  abort->setToolTip(tr("Close without a change (Esc)"));
  connect(submit, &QPushButton::clicked, this, &TFilterForm::SubmitBtnClick);
  connect(abort, &QPushButton::clicked, this, &TFilterForm::reject);
  grid->addWidget(label, 0, 0);
  grid->addWidget(count_, 0, 1, Qt::AlignRight);
  grid->addWidget(list_, 1, 0, 1, 2);
  grid->addWidget(buttons, 2, 0, 1, 2);
  return main;
}

bool TFilterForm::Execute(std::size_t job, const TableChoice& choice) {
  job_ = job;
  choice_ = choice;
  Show();
  return exec() == Accepted;
}

void TFilterForm::Show() {
  setWindowTitle(TitleOf(choice_.filter));
  current_owner_->setText(ToQt(choice_.owner));
  current_owner_->setCursorPosition(0);
  QStringList names;
  names.reserve(static_cast<qsizetype>(choice_.tables.size()));
  for (const std::string& table : choice_.tables) names << OneLine(table);
  names_->setStringList(names);
  count_->setText(tr("%Ln table(s)", nullptr, Plural(choice_.tables.size())));
  new_owner_->clear();
  const bool redirects = choice_.filter != TableFilter::Exclude;
  new_owner_label_->setVisible(redirects);
  new_owner_->setVisible(redirects);
  tips_->setText(TipOf(choice_.filter));
  if (redirects) {
    new_owner_->setFocus();
  } else {
    list_->setFocus();
  }
}

void TFilterForm::SubmitBtnClick() {
  choice_.new_owner = ToBytes(new_owner_->text());
  const FilterResult result = FilterTables(context_.workspace, job_, choice_);
  if (!result.refused.empty()) return ShowNotice(this, result.refused);
  accept();
  if (!result.unsaved.empty()) ShowFailure(parentWidget(), result.unsaved);
}

}  // namespace quillmere
