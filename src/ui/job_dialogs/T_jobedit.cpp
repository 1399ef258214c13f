// SPDX-License-Identifier: MIT
#include "ui/job_dialogs/T_jobedit.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <limits>

#include "ui/sources/Dbconnection.h"
#include "ui/toolkit/dialog_size.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

const QString kSizeName = QStringLiteral("TJobEditForm");
constexpr int kWidth = 860;
constexpr int kHeight = 500;
constexpr int kDescriptionLines = 4;
constexpr int kFollowLines = 3;

// The field's text; unlike toPlainText() with its non-breaking blanks.
QString TextOf(const QPlainTextEdit& field) {
  QString text = field.document()->toRawText();
  return text.replace(QChar::ParagraphSeparator, u'\n');
}

void Describe(QWidget& widget, const char* object, const QString& name, const QString& tip) {
  widget.setObjectName(QLatin1String(object));
  widget.setAccessibleName(name);
  widget.setToolTip(tip);
}

}  // namespace

TJobEditForm::TJobEditForm(UiContext& context, QWidget* parent)
    : QDialog(parent), context_(context) {
  setObjectName(QStringLiteral("TJobEditForm"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kMargin);
  auto* parts = new QHBoxLayout;
  parts->setSpacing(2 * kMargin);
  QWidget* const sources = MakeSourcePart();
  QWidget* const job = MakeJobPart();
  parts->addWidget(sources, 1);
  parts->addWidget(job, 1);
  layout->addLayout(parts, 1);
  auto* buttons = new QDialogButtonBox;
  auto* ok = buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole);
  ok->setObjectName(QStringLiteral("OkBtn"));
  auto* abort = buttons->addButton(tr("Abor&t"), QDialogButtonBox::RejectRole);
  abort->setObjectName(QStringLiteral("CancelBtn"));
  abort->setToolTip(tr("Close without a change (Esc)"));
  connect(ok, &QPushButton::clicked, this, &TJobEditForm::OkBtnClick);
  connect(abort, &QPushButton::clicked, this, &TJobEditForm::reject);
  layout->addWidget(buttons);
  setTabOrder(job, sources);
  for (QLineEdit* field : {name_, &interval_->Edit(), container_}) {
    connect(field, &QLineEdit::textChanged, this, &TJobEditForm::Judge);
  }
  for (QComboBox* field : std::initializer_list<QComboBox*>{source_, destination_}) {
    connect(field, &QComboBox::currentIndexChanged, this, &TJobEditForm::Judge);
  }
  RestoreSize(*this, context_.memory, kSizeName, kWidth, kHeight);
  // Only within the dialog it is the dialog's: before, the first button in reach would be.
  ok->setDefault(true);
}

TJobEditForm::~TJobEditForm() {
  KeepSize(*this, context_.memory, kSizeName);
}

QWidget* TJobEditForm::MakeSourcePart() {
  auto* part = new QWidget;
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kSpacing);
  auto* heading = new QLabel(tr("&All Data  Sources:"));
  layout->addWidget(heading);
  list_ = new RowTable(context_.memory);
  Describe(*list_, "DbConnLV", tr("All data sources"), {});
  list_->SetEmptyText(tr("A job takes two data sources, from one to the other. Add them first."));
  list_->ShowRows(model_, QStringLiteral("job sources"), false);
  // The rows stand as in the drop-down lists.
  list_->setSortingEnabled(false);
  list_->horizontalHeader()->setSectionsClickable(false);
  list_->horizontalHeader()->setSortIndicatorShown(false);
  list_->setMinimumSize(320, 160);
  heading->setBuddy(list_);
  layout->addWidget(list_, 1);
  layout->addWidget(AddJudgement(JobField::DataSources));
  auto* add = new QPushButton(Icon("source-new"), tr("New Data&base Connection"));
  Describe(*add, "NewConnBtn", tr("New Database Connection"), tr("Register another data source"));
  add->setAutoDefault(false);
  connect(add, &QPushButton::clicked, this, &TJobEditForm::NewConnBtnClick);
  new_source_ = add;
  layout->addWidget(add, 0, Qt::AlignLeft);
  return part;
}

QWidget* TJobEditForm::MakeJobPart() {
  auto* part = new QWidget;
  auto* form = new QFormLayout(part);
  form->setContentsMargins(0, 0, 0, 0);
  form->setSpacing(kSpacing);
  form->setRowWrapPolicy(QFormLayout::WrapAllRows);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  AddFields(*form);
  for (SourceChoice* choice : {source_, destination_}) {
    connect(choice, &QComboBox::currentIndexChanged, this, &TJobEditForm::HighlightRow);
  }
  return part;
}

// What is wrong with what was typed into that field; not there while nothing is.
QLabel* TJobEditForm::AddJudgement(JobField field) {
  auto* words = new QLabel;
  words->setObjectName(QStringLiteral("LblJudgement"));
  words->setTextFormat(Qt::PlainText);
  words->setWordWrap(true);
  QPalette red = words->palette();
  red.setColor(QPalette::WindowText, FailureColor());
  words->setPalette(red);
  words->hide();
  return judgements_[field] = words;
}

void TJobEditForm::AddField(QFormLayout& form, const QString& caption, JobField which,
                            QWidget* field) {
  auto* label = new QLabel(caption);
  label->setBuddy(field);
  auto* part = new QWidget;
  auto* column = new QVBoxLayout(part);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(field);
  column->addWidget(AddJudgement(which));
  form.addRow(label, part);
}

void TJobEditForm::AddFields(QFormLayout& form) {
  name_ = new QLineEdit;
  Describe(*name_, "EditJobName", tr("Job Name"),
           tr("The job's folder and file bear this name, too"));
  name_->setMaxLength(std::numeric_limits<int>::max());
  AddField(form, tr("&Job Name"), JobField::Name, name_);

  description_ = new QPlainTextEdit;
  Describe(*description_, "EditJobDescription", tr("Description"),
           tr("What the job is for, and whom to ask"));
  description_->setTabChangesFocus(true);
  description_->setPlaceholderText(tr("What the job is for"));
  description_->setMinimumHeight(description_->fontMetrics().lineSpacing() * kDescriptionLines);
  AddField(form, tr("&Description"), JobField::Description, description_);

  source_ = new SourceChoice;
  Describe(*source_, "CBSrcDSN", tr("Source Data Source"),
           tr("Where changes are read. Reading them takes a SYSDBA log-on."));
  AddField(form, tr("&Source Data Source:"), JobField::Source, source_);
  destination_ = new SourceChoice;
  Describe(*destination_, "CBDesDSN", tr("Destination Data Source"),
           tr("Where changes are written"));
  AddField(form, tr("D&estination Data Source:"), JobField::Destination, destination_);

  interval_ = new IntervalField;
  const QString tip =
      tr("Minutes from one synchronization to the next. Longer than the longest transaction on the "
         "source stays open.");
  Describe(*interval_, "UpDownSyncInterval", tr("Synchronize Interval in minutes"), tip);
  Describe(interval_->Edit(), "EditSyncInterval", tr("Synchronize Interval in minutes"), tip);
  AddField(form, tr("Synchronize &Interval(minutes):"), JobField::Interval, interval_);
  form.addRow(MakeFollow());
}

// Under each of the two what it means.
QWidget* TJobEditForm::MakeFollow() {
  follow_ = new QGroupBox(tr("Follow"));
  Describe(*follow_, "GroupFollow", tr("What the job follows"), {});
  auto* column = new QVBoxLayout(follow_);
  column->setSpacing(kSpacing / 2);
  const auto add = [&](const char* object, const QString& caption, Follow follow) {
    const QString means = Translated(WhatFollowingMeans(follow));
    auto* choice = new QRadioButton(caption);
    Describe(*choice, object, caption, means);
    auto* words = new QLabel(means);
    words->setWordWrap(true);
    words->setForegroundRole(QPalette::PlaceholderText);
    words->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    words->setContentsMargins(2 * kMargin, 0, 0, 0);  // an indent would stand above, too
    // The form does not ask for the height that goes with a width.
    words->setMinimumHeight(words->fontMetrics().lineSpacing() * kFollowLines);
    column->addWidget(choice);
    column->addWidget(words);
    return choice;
  };
  commits_ = add("FollowCommits", tr("&Commits (recommended)"), Follow::Commits);
  container_ = new QLineEdit;
  Describe(*container_, "EditContainer", tr("Container"),
           tr("The pluggable database that the job follows, when its source is the root "
              "of a container database"));
  container_->setPlaceholderText(tr("When the source is a root"));
  auto* container_label = new QLabel(tr("Co&ntainer:"));
  container_label->setBuddy(container_);
  auto* container_row = new QHBoxLayout;
  container_row->setContentsMargins(2 * kMargin, 0, 0, 0);
  container_row->addWidget(container_label);
  container_row->addWidget(container_, 1);
  column->addLayout(container_row);
  column->addWidget(AddJudgement(JobField::Container));
  rows_ = add("FollowRows", tr("&Rows"), Follow::Rows);
  connect(commits_, &QRadioButton::toggled, container_, &QWidget::setEnabled);
  return follow_;
}

void TJobEditForm::ShowFollow(Follow follow) {
  (follow == Follow::Commits ? commits_ : rows_)->setChecked(true);
  container_->setEnabled(follow == Follow::Commits);
  const JobList& jobs = context_.workspace.Jobs();
  const bool free = index_ == JobList::kNotFound || jobs.State(index_) == JobState::Stopped;
  follow_->setEnabled(free);
  follow_->setToolTip(free ? QString() : tr("Can be changed while the job is stopped only"));
}

bool TJobEditForm::Edit(JobProperties& properties, std::size_t index) {
  index_ = index;
  Show(properties);
  if (exec() != Accepted) return false;
  properties = properties_;
  return true;
}

void TJobEditForm::Show(const JobProperties& properties) {
  properties_ = properties;
  setWindowTitle(tr("Properties of %1").arg(OneLine(properties.name)));
  name_->setText(ToQt(properties.name));
  ShowSources(properties.source, properties.destination);
  description_->setPlainText(ToQt(properties.description));
  shown_description_ = TextOf(*description_);
  interval_->Edit().setText(QString::number(properties.interval));
  ShowFollow(properties.follow);
  container_->setText(ToQt(properties.container));
  for (const auto& [field, words] : judgements_) words->hide();
  name_->setFocus();
  name_->selectAll();
}

void TJobEditForm::ShowSources(std::string_view source, std::string_view destination) {
  const DataSourceRegistry& registry = context_.workspace.Registry();
  model_.Show(registry);
  source_->Show(registry, source);
  destination_->Show(registry, destination);
}

std::string TJobEditForm::EnteredDescription() const {
  const QString text = TextOf(*description_);
  return text == shown_description_ ? properties_.description : ToBytes(text);
}

JobProperties TJobEditForm::Entered() const {
  JobProperties entered;
  entered.name = EditedText(*name_, properties_.name);
  entered.description = EnteredDescription();
  entered.source = source_->Chosen();
  entered.destination = destination_->Chosen();
  entered.follow = commits_->isChecked() ? Follow::Commits : Follow::Rows;
  if (commits_->isChecked()) entered.container = ToBytes(container_->text());
  entered.interval = ParseInterval(ToBytes(interval_->Edit().text()));
  return Trimmed(std::move(entered));
}

QWidget* TJobEditForm::Widget(JobField field) const {
  switch (field) {
    case JobField::Name:
      return name_;
    case JobField::Description:
      return description_;
    case JobField::Source:
      return source_;
    case JobField::Destination:
      return destination_;
    case JobField::Interval:
      return interval_;
    case JobField::Container:
      return container_;
    case JobField::DataSources:
      break;
  }
  return new_source_;
}

void TJobEditForm::Judge() {
  const JobRefusal refused =
      WhyJobRefused(context_.workspace, Entered(), index_, Entry::BeingTyped);
  for (const auto& [field, words] : judgements_) {
    const bool wrong = refused && field == refused.field;
    if (wrong) words->setText(Translated(refused.reason));
    words->setVisible(wrong);
  }
}

void TJobEditForm::OkBtnClick() {
  JobProperties entered = Entered();
  const JobRefusal refused = WhyJobRefused(context_.workspace, entered, index_);
  if (refused) return ShowNotice(this, refused.reason, Widget(refused.field));
  if (!AgreesToDescription(entered.description)) return description_->setFocus();
  properties_ = std::move(entered);
  accept();
}

// Asked only about what was typed here: what came from the file stays as it is in it.
bool TJobEditForm::AgreesToDescription(std::string& description) {
  if (TextOf(*description_) == shown_description_) return true;
  std::string kept = DescriptionAsKept(description);
  if (kept == description) return true;
  if (kept.empty()) {
    ShowNotice(this, tr("Obligatory field can not be empty"));
    return false;
  }
  if (!Confirm(
          this,
          tr("The description cannot be kept exactly so: its file breaks very long lines, drops "
             "empty lines and blanks around lines, and makes tabs blanks.\n\nKeep it like "
             "that?"))) {
    return false;
  }
  description = std::move(kept);
  return true;
}

// The first entry highlights nothing.
void TJobEditForm::HighlightRow(int choice) {
  if (choice <= 0 || static_cast<std::size_t>(choice) >= model_.SourceRowCount()) return;
  list_->selectRow(model_.ModelRowOf(static_cast<std::size_t>(choice)));
}

void TJobEditForm::NewConnBtnClick() {
  TDbConnForm sources(context_, this);
  sources.StartNew();
  sources.exec();
  if (sources.Changed()) ShowSources(source_->Chosen(), destination_->Chosen());
}

}  // namespace quillmere
