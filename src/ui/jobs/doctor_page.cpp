// SPDX-License-Identifier: MIT
#include "ui/jobs/doctor_page.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "foundation/files.h"
#include "ui/jobs/doctor_words.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/icons.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/row_table.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"

namespace quillmere {
namespace {

constexpr int kFindingLines = 5;

QString GradeWord(Grade grade) {
  switch (grade) {
    case Grade::Ok:
      return DoctorPage::tr("OK");
    case Grade::Warning:
      return DoctorPage::tr("warning");
    case Grade::Failure:
      return DoctorPage::tr("failure");
  }
  return {};
}

std::int64_t NumberOf(const FindingRow& row) {
  return row.finding.number;
}
std::string_view CheckOf(const FindingRow& row) {
  return row.finding.check;
}
std::string_view SubjectOf(const FindingRow& row) {
  return row.finding.subject;
}
std::string_view WhyOf(const FindingRow& row) {
  return row.finding.text;
}
std::string_view CureOf(const FindingRow& row) {
  return row.finding.cure;
}

QVariant GradeExtra(const FindingRow& row, int role) {
  constexpr std::string_view kIcons[] = {"up-to-date", "warning", "error"};
  if (role != Qt::DecorationRole) return {};
  return Icon(kIcons[static_cast<std::size_t>(row.finding.grade)]);
}

QVariant WhyExtra(const FindingRow& row, int role) {
  return role == Qt::ToolTipRole ? ToQt(row.finding.text) : QVariant();
}

QVariant CureExtra(const FindingRow& row, int role) {
  return role == Qt::ToolTipRole ? ToQt(row.finding.cure) : QVariant();
}

// A check counts once, with the worst that it found.
QString SummaryOf(const std::vector<Finding>& findings) {
  std::size_t checks[3] = {};
  for (std::size_t i = 0; i < findings.size();) {
    Grade worst = Grade::Ok;
    const int number = findings[i].number;
    for (; i < findings.size() && findings[i].number == number; ++i) {
      worst = std::max(worst, findings[i].grade);
    }
    ++checks[static_cast<std::size_t>(worst)];
  }
  return DoctorPage::tr("Checks with a failure: %1, with a warning: %2, OK: %3.")
      .arg(checks[2])
      .arg(checks[1])
      .arg(checks[0]);
}

}  // namespace

FindingRows::FindingRows(QObject* parent)
    : RowList(
          {Number<NumberOf>(DoctorPage::tr("No."), 56), Text<CheckOf>(DoctorPage::tr("Check"), 150),
           Text<&FindingRow::grade>(DoctorPage::tr("Result"), 80, GradeExtra),
           Text<SubjectOf>(DoctorPage::tr("Where"), 110),
           Text<WhyOf>(DoctorPage::tr("Why"), 300, WhyExtra),
           Text<CureOf>(DoctorPage::tr("Cure"), 300, CureExtra)},
          parent) {}

void FindingRows::Show(const std::vector<Finding>& findings) {
  std::vector<FindingRow> rows;
  rows.reserve(findings.size());
  for (const Finding& finding : findings) {
    rows.push_back({AsShown(finding), ToBytes(GradeWord(finding.grade))});
  }
  Take(std::move(rows), false);
}

DoctorPage::DoctorPage(UiContext& context, QWidget* parent) : JobPage(parent), context_(context) {
  setObjectName(QStringLiteral("DoctorPage"));
  list_ = new RowTable(context_.memory, this);
  list_->setObjectName(QStringLiteral("DoctorList"));
  list_->setAccessibleName(tr("Findings"));
  list_->ShowRows(rows_, QStringLiteral("doctor"), true);
  connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &DoctorPage::ShowFinding);
  // Less than it asks for by itself: the smallest window has to hold the page.
  list_->setMinimumHeight(5 * list_->fontMetrics().height());
  list_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  finding_ = new QPlainTextEdit(this);
  finding_->setObjectName(QStringLiteral("DoctorFinding"));
  finding_->setAccessibleName(tr("The selected finding and its cure"));
  finding_->setPlaceholderText(tr("The selected finding and its cure"));
  finding_->setReadOnly(true);
  finding_->setTabChangesFocus(true);
  finding_->setMinimumHeight(2 * finding_->fontMetrics().height());
  finding_->setMaximumHeight(finding_->fontMetrics().height() * kFindingLines);
  finding_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(MakeHead());
  column->addWidget(list_, 3);
  column->addWidget(finding_, 1);
}

QPushButton* DoctorPage::AddButton(QHBoxLayout& row, const char* name, const QString& caption,
                                   const QString& tip) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(QLatin1StringView(name));
  button->setToolTip(tip);
  button->setAccessibleDescription(tip);
  row.addWidget(button, 0, Qt::AlignTop);
  return button;
}

QWidget* DoctorPage::MakeHead() {
  auto* head = new QWidget(this);
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(kMargin, kSpacing / 2, kMargin, kSpacing / 2);
  examine_ = AddButton(*row, "ExamineBtn", tr("Exa&mine"),
                       tr("Asks both databases; neither of them is changed"));
  copy_ = AddButton(*row, "CopyCuresBtn", tr("&Copy cures"),
                    tr("Copies all cures, to be pasted where they are run"));
  save_ = AddButton(*row, "SaveCuresBtn", tr("S&ave cures ..."),
                    tr("Writes all cures to a file for the administrator"));
  connect(examine_, &QPushButton::clicked, this, &DoctorPage::Examine);
  connect(copy_, &QPushButton::clicked, this, &DoctorPage::CopyCures);
  connect(save_, &QPushButton::clicked, this, &DoctorPage::SaveCures);
  summary_ = new QLabel(head);
  summary_->setObjectName(QStringLiteral("DoctorSummary"));
  summary_->setAccessibleName(tr("Result of the examination"));
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  summary_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  row->addSpacing(kSpacing);
  row->addWidget(summary_, 1);
  return head;
}

void DoctorPage::ShowJob(std::size_t job, const WatchedJob&) {
  std::string name = NameOf(context_.workspace.Jobs().At(job));
  const bool other = job != job_ || name != name_;
  job_ = job;
  name_ = std::move(name);
  if (!other) return;
  Show({}, {});
  summary_->setText(
      tr("Looks at what could keep the job from running well, and says what cures it."));
}

void DoctorPage::Examine() {
  const std::size_t job = job_;
  const Patient patient = PatientOf(context_.workspace.Jobs(), job);
  Waiting waiting(context_, this, tr("Doctor"));
  auto visit =
      RunFor(waiting, context_.workspace.Log(),
             [patient, &library = context_.workspace.Oci(),
              &clock = context_.workspace.TimeSource()](SchemaListener& listener, LogLines&) {
               Visit made{{}, true};
               made.findings = quillmere::Examine(
                   patient, library, clock, [&](int number, std::string_view check) {
                     // The first one logs on, which nobody has to wait for.
                     const auto place = static_cast<std::size_t>(number);
                     const std::string what = CheckAsShown(check);
                     made.whole = number == 1 ? listener.OnConnect(what)
                                              : listener.OnProgress(what, place, kDoctorChecks);
                     return made.whole;
                   });
               return made;
             });
  if (!visit || job != job_) return;
  Show(patient, std::move(*visit));
}

void DoctorPage::Show(Patient patient, Visit visit) {
  patient_ = std::move(patient);
  findings_ = std::move(visit.findings);
  rows_.Show(findings_);
  finding_->clear();
  const bool cures = std::any_of(findings_.begin(), findings_.end(),
                                 [](const Finding& finding) { return !finding.cure.empty(); });
  copy_->setEnabled(cures);
  save_->setEnabled(cures);
  const QString when = Dated(ReadableTime(context_.workspace.TimeSource().Now()));
  QString words = tr("Examined at %1. %2").arg(when, SummaryOf(findings_));
  if (!visit.whole) words += u' ' + tr("It was ended before all checks were made.");
  summary_->setText(words);
}

void DoctorPage::ShowFinding(const QModelIndex& row) {
  if (!row.isValid()) return finding_->clear();
  const Finding& finding = rows_.RowAt(rows_.SourceRow(row)).finding;
  QString text = ToQt(finding.text);
  if (!finding.cure.empty()) {
    text += u'\n' + (finding.database.empty() ? tr("Cure:")
                                              : tr("Cure, on %1:").arg(ToQt(finding.database)));
    text += u'\n' + ToQt(finding.cure);
  }
  finding_->setPlainText(text);
}

void DoctorPage::CopyCures() {
  QGuiApplication::clipboard()->setText(ToQt(CuresText(patient_, findings_)));
}

void DoctorPage::SaveCures() {
  const QString chosen = QFileDialog::getSaveFileName(
      this, tr("Save cures"), ToQt(PathText(context_.workspace.Folder() / "cures.sql")),
      tr("SQL files (*.sql);;All files (*)"));
  if (chosen.isEmpty()) return;
  std::string error;
  const std::filesystem::path path = chosen.toStdU16String();
  if (!ReplaceFile(context_.workspace.Files(), path, CuresText(patient_, findings_),
                   FileAccess::OwnerOnly, error)) {
    ShowFailure(this, error);
  }
}

}  // namespace quillmere
