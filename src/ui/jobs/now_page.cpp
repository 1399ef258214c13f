// SPDX-License-Identifier: MIT
#include "ui/jobs/now_page.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"
#include "watch/health_text.h"

namespace quillmere {
namespace {

QString Meaning(const WatchedJob& job) {
  switch (job.health) {
    case Health::UpToDate:
      return NowPage::tr("the last pass brought over what there was");
    case Health::Behind:
      return NowPage::tr("more is missing on the destination than two intervals explain");
    case Health::Failing:
      return NowPage::tr("the last pass failed, see Problem");
    case Health::Held:
      return ToQt(job.held);
    case Health::Paused:
      return NowPage::tr("rests where it is. Run continues it");
    case Health::Stopped:
      return NowPage::tr("Run begins with the changes made from then on");
  }
  return {};
}

QString BehindText(const WatchedJob& job) {
  if (job.state == JobState::Stopped) return {};
  if (!job.behind) return NowPage::tr("not known yet");
  if (job.behind->count() == 0) return NowPage::tr("nothing that the last pass could see");
  return NowPage::tr("%1 of the source's time").arg(ToQt(AgeText(*job.behind)));
}

QString GoodText(const WatchedJob& job) {
  return job.since_good ? NowPage::tr("%1 ago").arg(ToQt(AgeText(*job.since_good)))
                        : NowPage::tr("none yet");
}

QString NextText(const WatchedJob& job) {
  if (!job.next_pass) return {};
  if (job.next_pass->count() == 0) return NowPage::tr("now");
  return NowPage::tr("in %1").arg(ToQt(AgeText(*job.next_pass)));
}

QString LossText(const WatchedJob& job) {
  if (!job.time_to_loss) return {};
  if (job.time_to_loss->count() == 0) return NowPage::tr("now: the redo it needs next is going");
  return NowPage::tr("in %1, unless the job goes on").arg(ToQt(AgeText(*job.time_to_loss)));
}

// A line for each, up to some.
QString DefinitionsText(const WatchedJob& job) {
  constexpr std::size_t kMostLines = 50;
  if (!job.definitions) return {};
  const std::size_t count = job.definitions->size();
  QStringList lines;
  for (std::size_t i = 0; i < std::min(count, kMostLines); ++i) {
    lines << OneLine(DefinitionText((*job.definitions)[i]));
  }
  if (count > kMostLines) lines << NowPage::tr("%Ln more", nullptr, Plural(count - kMostLines));
  return lines.join(u'\n');
}

QString Changes(std::int64_t count) {
  return NowPage::tr("%Ln change(s)", nullptr,
                     Plural(static_cast<std::size_t>(std::max<std::int64_t>(count, 0))));
}

}  // namespace

NowPage::NowPage(UiContext& context, QWidget* parent)
    : JobPage(parent), jobs_(context.workspace.Jobs()), facts_(QStringLiteral("Now"), this) {
  setObjectName(QStringLiteral("NowPage"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(&facts_);
  facts_.Add("Health", tr("Health"));
  facts_.Add("Behind", tr("Behind by"));
  facts_.Add("Good", tr("Last good pass"));
  facts_.Add("Next", tr("Next pass"));
  facts_.Add("Loss", tr("Redo is gone"));
  facts_.Add("Waiting", tr("Waiting"));
  facts_.Add("Done", tr("Since its start"));
  facts_.Add("Definitions", tr("Does not fit"));
  column->addWidget(offer_ = MakeOffer());
}

QWidget* NowPage::MakeOffer() {
  auto* offer = new QWidget(this);
  auto* words = new QLabel(
      tr("This job has never run. The doctor looks at what could keep it from running well."));
  words->setWordWrap(true);
  words->setForegroundRole(QPalette::PlaceholderText);
  auto* ask = new QPushButton(tr("Ask the doc&tor"));
  ask->setObjectName(QStringLiteral("AskDoctorBtn"));
  ask->setFlat(true);
  connect(ask, &QPushButton::clicked, this, &NowPage::DoctorAsked);
  auto* row = new QHBoxLayout(offer);
  row->setContentsMargins(kMargin, kSpacing / 2, kMargin, kSpacing / 2);
  row->addWidget(words, 1);
  row->addWidget(ask);
  return offer;
}

void NowPage::ShowJob(std::size_t job, const WatchedJob& watched) {
  const SyncJob& record = jobs_.At(job);
  const JobRun& run = record.run;
  {
    const MutexLock lock(record.config_mutex);
    offer_->setHidden(record.config.has_runned);
  }
  facts_.Show(
      {Translated(HealthName(watched.health)) + QStringLiteral(": ") + Meaning(watched),
       BehindText(watched), GoodText(watched), NextText(watched), LossText(watched),
       tr("%1 of the batch in hand").arg(Changes(watched.waiting)),
       tr("%1 applied, %2 blocked").arg(Changes(run.applied_count), Changes(run.blocked_count)),
       DefinitionsText(watched)});
}

}  // namespace quillmere
