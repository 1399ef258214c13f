// SPDX-License-Identifier: MIT
#include "ui/jobs/problem_page.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>
#include <utility>

#include "foundation/text.h"
#include "ui/job_dialogs/skip_form.h"
#include "ui/jobs/job_health.h"
#include "ui/jobs/job_state_icon.h"
#include "ui/jobs/way_out_runner.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"
#include "watch/advice.h"
#include "watch/health_text.h"
#include "watch/refused_row.h"
#include "workspace/job_tables.h"
#include "workspace/way_out.h"

namespace quillmere {
namespace {

constexpr std::size_t kLongestShown = 4000;  // bytes of a statement; the rest is in problem.xml

QString Shown(std::string_view text) {
  const QString shown = ToQt(text.substr(0, kLongestShown));
  return text.size() > kLongestShown ? shown + QStringLiteral(" ...") : shown;
}

QString WhereText(const PassProblem& what) {
  QString text = PlaceWords(what);
  const std::string_view operation = OperationOf(what.statement);
  if (!operation.empty()) text += QStringLiteral(", ") + ToQt(operation);
  if (!what.table.empty()) text = ProblemPage::tr("%1 on %2").arg(text, OneLine(TableText(what)));
  return text;
}

QString TriesText(const JobProblem& problem) {
  const QString tries =
      ProblemPage::tr("%Ln time(s)", nullptr, Plural(static_cast<std::size_t>(problem.tries)));
  const QString first = Dated(ReadableTime(problem.first));
  if (problem.tries == 1) return tries + QStringLiteral(", ") + first;
  return ProblemPage::tr("%1, first %2, last %3")
      .arg(tries, first, Dated(ReadableTime(problem.last)));
}

QString ValueText(const std::optional<std::string>& value) {
  return value ? QStringLiteral("'") + Shown(OnOneLine(*value)) + QStringLiteral("'")
               : QStringLiteral("NULL");
}

// "NAME: there 'a', expected 'b', given 'c', differs", a line for each column.
QString BesideText(const RowBeside& row) {
  QString text = Translated(RowSummary(row));
  for (const RowBeside::Column& column : row.columns) {
    QStringList facts;
    if (row.rows > 0) facts << ProblemPage::tr("there %1").arg(ValueText(column.there));
    if (column.expected) facts << ProblemPage::tr("expected %1").arg(ValueText(column.before));
    if (column.given) facts << ProblemPage::tr("given %1").arg(ValueText(column.after));
    if (column.differs) facts << ProblemPage::tr("differs");
    text += u'\n' + OneLine(column.name) + QStringLiteral(": ") + facts.join(QStringLiteral(", "));
  }
  return text;
}

}  // namespace

ProblemPage::ProblemPage(UiContext& context, WayOutRunner& ways, QWidget* parent)
    : JobPage(parent), context_(context), ways_(ways), facts_(QStringLiteral("Problem"), this) {
  setObjectName(QStringLiteral("ProblemPage"));
  facts_.Add("State", tr("Problem"));
  facts_.Add("Where", tr("Failed at"));
  facts_.Add("Error", tr("Error"));
  facts_.Add("Advice", tr("What helps"));
  facts_.Add("Tries", tr("Tried"));
  facts_.Add("Row", tr("Row"));
  facts_.Add("Statement", tr("Statement"));
  facts_.Add("Beside", tr("On the destination"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(&facts_, 1);
  column->addWidget(MakeButtons());
}

QPushButton* ProblemPage::AddButton(const char* name, const QString& caption, const QString& tip) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(QLatin1StringView(name));
  button->setToolTip(tip);
  button->setAccessibleDescription(tip);
  return button;
}

QWidget* ProblemPage::MakeButtons() {
  auto* line = new QWidget(this);
  retry_ = AddButton("RetryBtn", tr("Re&try now"), tr("Makes a pass at once"));
  skip_ = AddButton("SkipBtn", tr("S&kip ..."),
                    tr("Leaves the statement out, with a reason that is kept in skipped.sql"));
  look_ = AddButton("LookBtn", tr("Sho&w the row"),
                    tr("Asks the destination for the row that the statement is about"));
  exclude_ = AddButton("ExcludeBtn", tr("E&xclude the table"),
                       tr("The job does without the table from now on"));
  stop_ = AddButton("StopBtn", tr("Stop the jo&b"), tr("Gives up what waits to be applied"));
  connect(retry_, &QPushButton::clicked, this, [this] { ways_.Retry(job_); });
  connect(skip_, &QPushButton::clicked, this, &ProblemPage::Skip);
  connect(look_, &QPushButton::clicked, this, &ProblemPage::Look);
  connect(exclude_, &QPushButton::clicked, this, &ProblemPage::Exclude);
  connect(stop_, &QPushButton::clicked, &ways_, &WayOutRunner::StopAsked);
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(kMargin, kSpacing / 2, kMargin, kSpacing / 2);
  for (QPushButton* const button : {retry_, skip_, look_, exclude_, stop_}) row->addWidget(button);
  row->addStretch();
  return line;
}

std::string_view ProblemPage::Mark(const WatchedJob& watched) const {
  if (watched.problem) return HealthMark(Health::Failing);
  return watched.held.empty() ? std::string_view() : HealthMark(Health::Held);
}

void ProblemPage::ShowJob(std::size_t job, const WatchedJob& watched) {
  const bool same = job_ == job && problem_ && watched.problem &&
                    SameProblem(*problem_, *watched.problem) &&
                    problem_->reached_scn == watched.problem->reached_scn;
  if (!same) beside_.reset();
  job_ = job;
  problem_ = watched.problem;
  look_->setEnabled(problem_ && problem_->what.where == PassProblem::Where::Statement);
  const WaysOut ways = ways_.Waits(job) ? WaysOut{} : WaysOutOf(watched);
  retry_->setEnabled(ways.retry);
  skip_->setEnabled(ways.skip);
  exclude_->setEnabled(ways.exclude);
  stop_->setEnabled(ways.stop);
  if (problem_) return ShowProblem(*problem_);
  const QString none = watched.state == JobState::Stopped ? tr("None: the job is stopped")
                                                          : tr("None: the last pass did not fail");
  facts_.Show({watched.held.empty() ? none : HeldText(watched.held), {}, {}, {}, {}, {}, {}, {}});
}

void ProblemPage::ShowProblem(const JobProblem& problem) {
  const PassProblem& what = problem.what;
  facts_.Show({ways_.Waits(job_) ? tr("Waits for the end of the pass in hand ...") : QString(),
               WhereText(what), Shown(what.error), Translated(AdviceFor(problem)),
               TriesText(problem), Shown(RowOf(what.statement)), Shown(what.statement),
               beside_ ? BesideText(*beside_) : QString()});
}

// What is shown may be another problem when the destination has answered.
void ProblemPage::Look() {
  const JobProblem seen = *problem_;
  const std::size_t job = job_;
  Waiting waiting(context_, window(), tr("The destination's row"));
  std::optional<RowBeside> row = ReadRowBeside(context_.workspace, job, seen, waiting);
  if (!row || job_ != job || !problem_ || !SameProblem(*problem_, seen)) return;
  beside_ = std::move(row);
  ShowProblem(*problem_);
}

void ProblemPage::Skip() {
  const JobProblem seen = *problem_;
  const std::size_t job = job_;
  const SyncJob& record = context_.workspace.Jobs().At(job);
  SkipForm form(NameOf(record), seen, FollowOf(record), this);
  std::string reason;
  if (!form.Ask(reason)) return;
  ways_.WhileItRests(job, [&workspace = context_.workspace, job, seen, reason] {
    return SkipProblem(workspace, job, seen, reason);
  });
}

void ProblemPage::Exclude() {
  const std::size_t job = job_;
  const PassProblem what = problem_->what;
  const std::string name = NameOf(context_.workspace.Jobs().At(job));
  if (!Confirm(this,
               tr("Exclude %1 from %2?\n\nIts changes count as blocked from then on, those that "
                  "wait among them, and are missing on the destination.")
                   .arg(ToQt(what.owner + "." + what.table), ToQt(name)))) {
    return;
  }
  ways_.WhileItRests(job, [&workspace = context_.workspace, job, what] {
    const TableChoice choice{TableFilter::Exclude, what.owner, {what.table}};
    FilterResult result = FilterTables(workspace, job, choice);
    if (!result.refused.empty()) return Outcome::Refused(std::move(result.refused));
    if (!result.unsaved.empty()) return Outcome::Refused(std::move(result.unsaved));
    return Outcome::Done();
  });
}

}  // namespace quillmere
