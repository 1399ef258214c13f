// SPDX-License-Identifier: MIT
#include "ui/jobs/picture_page.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStringList>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/jobs/history_charts.h"
#include "ui/jobs/scn_strip_view.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"

namespace quillmere {
namespace {

using std::chrono::hours;

constexpr std::size_t kParts = 300;
constexpr qsizetype kMostWords = 10;
constexpr qint64 kReadAgainMs = 10'000;
constexpr qint64 kReadMoreAgainMs = 60'000;  // of a long span

struct Asked {
  ScnStrip strip;   // what the files know is not in it
  std::string why;  // it could not be asked
};

LogOn SourceOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.source;
}

QString SummaryOf(const HistoryRead& read) {
  if (!read.error.empty()) return OneLine(read.error);
  const PicturePoint sum = read.picture.Sum();
  QString words = PicturePage::tr("Passes: %1, failed: %2. Applied: %3. Waiting at most: %4.")
                      .arg(Grouped(sum.passes), Grouped(sum.failed), Grouped(sum.applied),
                           Grouped(sum.waiting));
  if (sum.behind_s) {
    words += u' ' + PicturePage::tr("Behind by at most: %1.")
                        .arg(ToQt(AgeText(std::chrono::seconds{*sum.behind_s})));
  }
  return words;
}

}  // namespace

PicturePage::PicturePage(UiContext& context, QWidget* parent)
    : JobPage(parent), context_(context), reading_(context.databases) {
  setObjectName(QStringLiteral("PicturePage"));
  auto* inside = new QWidget;
  charts_ = new HistoryCharts(inside);
  strip_ = new ScnStripView(inside);
  marks_ = new QLabel(inside);
  marks_->setObjectName(QStringLiteral("StripWords"));
  marks_->setAccessibleName(tr("Where the job and its source stand, in words"));
  marks_->setTextFormat(Qt::PlainText);
  marks_->setWordWrap(true);
  marks_->setContentsMargins(kMargin, 0, kMargin, kSpacing / 2);
  marks_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* drawn = new QVBoxLayout(inside);
  drawn->setContentsMargins(0, 0, 0, 0);
  drawn->setSpacing(0);
  drawn->addWidget(charts_, 1);
  drawn->addWidget(strip_);
  drawn->addWidget(marks_);
  auto* area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setWidget(inside);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(MakeHead());
  column->addWidget(area, 1);
}

QWidget* PicturePage::MakeHead() {
  auto* head = new QWidget(this);
  auto* label = new QLabel(tr("Over the &last"), head);
  span_ = new QComboBox(head);
  span_->setObjectName(QStringLiteral("PictureSpan"));
  span_->setAccessibleName(tr("Over the last"));
  span_->addItem(tr("hour"), 1);
  span_->addItem(tr("day"), 24);
  span_->addItem(tr("week"), 7 * 24);
  span_->addItem(tr("30 days"), 30 * 24);
  label->setBuddy(span_);
  connect(span_, &QComboBox::currentIndexChanged, this, &PicturePage::Read);
  summary_ = new QLabel(head);
  summary_->setObjectName(QStringLiteral("PictureSummary"));
  summary_->setAccessibleName(tr("The picture in words"));
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  summary_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  ask_ = new QPushButton(tr("Ask the sour&ce"), head);
  ask_->setObjectName(QStringLiteral("AskSourceBtn"));
  ask_->setToolTip(
      tr("Reads where the source stands now, its oldest redo and its open transactions"));
  ask_->setAccessibleDescription(ask_->toolTip());
  connect(ask_, &QPushButton::clicked, this, &PicturePage::AskSource);
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(kMargin, kSpacing / 2, kMargin, kSpacing / 2);
  row->addWidget(label);
  row->addWidget(span_);
  row->addSpacing(kSpacing);
  row->addWidget(summary_, 1);
  row->addWidget(ask_);
  return head;
}

void PicturePage::ShowJob(std::size_t job, const WatchedJob& watched) {
  std::string name = NameOf(context_.workspace.Jobs().At(job));
  const bool other = job != job_ || name != name_;
  job_ = job;
  name_ = std::move(name);
  room_ = watched.room;
  if (other) {
    summary_->clear();
    charts_->Clear();
    known_ = {};
    live_.reset();
    ShowStrip();
  }
  const qint64 again = span_->currentIndex() == 0 ? kReadAgainMs : kReadMoreAgainMs;
  if (other || (read_.elapsed() > again && !reading_.Busy())) Read();
}

void PicturePage::Read() {
  if (job_ == JobList::kNotFound) return;
  read_.start();
  const JobFolder folder = context_.workspace.Catalogue().FolderOf(name_);
  const Follow follow = FollowOf(context_.workspace.Jobs().At(job_));
  const LocalTime end{context_.workspace.TimeSource().Now().ms + 1};
  const hours span(span_->currentData().toInt());
  reading_.Begin(
      [&files = context_.workspace.Files(), folder, follow, end, span, room = room_] {
        HistoryRead history =
            ReadHistoryPicture(files, folder.File(JobFile::History), end, span, kParts);
        ScnStrip strip = KnownStrip(files, folder, follow, history, room);
        return Found{std::move(history), std::move(strip)};
      },
      [this](Found found) { Show(std::move(found)); });
}

void PicturePage::Show(Found found) {
  summary_->setText(SummaryOf(found.history));
  charts_->Show(std::move(found.history.picture));
  known_ = std::move(found.strip);
  ShowStrip();
}

// What the source was asked for stays beside what the files have got to since.
void PicturePage::ShowStrip() {
  ScnStrip strip = known_;
  QStringList words;
  if (live_) {
    strip.live = true;
    strip.open = live_->open;
    strip.oldest_there = live_->oldest_there;
    strip.now = std::max(live_->now, known_.now);
    words << tr("The source was asked at %1").arg(asked_);
  }
  for (const StripMark& mark : MarksOf(strip)) words << mark.words;
  for (const OpenTransaction& open : strip.open) {
    if (words.size() < kMostWords) {
      words << tr("open from %1 on: %2").arg(Grouped(open.start_scn), OneLine(open.holder));
    }
  }
  marks_->setText(words.join(QStringLiteral("; ")));
  strip_->Show(std::move(strip));
}

void PicturePage::AskSource() {
  const std::size_t job = job_;
  const SyncJob& record = context_.workspace.Jobs().At(job);
  const LogOn source = SourceOf(record);
  Waiting waiting(context_, this, tr("Ask the source"));
  auto asked = RunFor(waiting, context_.workspace.Log(),
                      [&library = context_.workspace.Oci(), source, follow = FollowOf(record),
                       connect = ToBytes(tr("connect to %1").arg(ToQt(source.name))),
                       reading = ToBytes(tr("read where %1 stands").arg(ToQt(source.name)))](
                          SchemaListener& listener, LogLines&) -> std::optional<Asked> {
                        if (!listener.OnConnect(connect)) return std::nullopt;
                        OracleSession session(library);
                        bool goes_on = true;
                        ScnStrip strip;
                        const bool known = session.Connect(source) &&
                                           (goes_on = listener.OnProgress(reading, 0, 0)) &&
                                           quillmere::AskSource(session, follow, strip);
                        if (!goes_on) return std::nullopt;
                        return Asked{strip, known ? std::string() : session.LastError()};
                      });
  if (!asked || !*asked || job != job_) return;
  if ((*asked)->why.empty()) {
    live_ = std::move((*asked)->strip);
    asked_ = ToQt(ReadableTime(context_.workspace.TimeSource().Now()));
    ShowStrip();
  }
  if (!(*asked)->why.empty()) ShowFailure(this, (*asked)->why);
}

}  // namespace quillmere
