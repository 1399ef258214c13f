// SPDX-License-Identifier: MIT
#include "ui/jobs/job_head.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>

#include "ui/jobs/job_state_icon.h"
#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kPicture = 24;

QString IntervalText(std::int32_t minutes) {
  if (minutes == 0) return JobHead::tr("without a pause");
  return JobHead::tr("every %1 min").arg(Grouped(minutes));
}

QString Strong(const QString& text) {
  return QStringLiteral("<b>") + text.toHtmlEscaped() + QStringLiteral("</b>");
}

QLabel* MakeLabel(const char* name, const QString& what, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1StringView(name));
  label->setAccessibleName(what);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

JobHead::JobHead(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("JobHead"));
  picture_ = new QLabel(this);
  facts_ = MakeLabel("JobHeadFacts", tr("The job"), this);
  facts_->setTextFormat(Qt::RichText);
  description_ = MakeLabel("JobHeadDescription", tr("Description"), this);
  description_->setTextFormat(Qt::PlainText);
  description_->setForegroundRole(QPalette::PlaceholderText);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(kSpacing, 0, kSpacing, kSpacing / 2);
  grid->setHorizontalSpacing(kSpacing);
  grid->setVerticalSpacing(0);
  grid->setColumnStretch(1, 1);
  grid->addWidget(picture_, 0, 0, 2, 1, Qt::AlignTop);
  grid->addWidget(facts_, 0, 1);
  grid->addWidget(description_, 1, 1);
  hide();
}

void JobHead::ShowJob(const SyncJob& job, const WatchedJob& watched, int loss_hours) {
  QString facts, description;
  {
    const MutexLock lock(job.config_mutex);
    const JobConfig& config = job.config;
    facts = tr("From %1 to %2, %3, by %4. ")
                .arg(Strong(OneLine(config.src_database_name)),
                     Strong(OneLine(config.des_database_name)),
                     Strong(IntervalText(config.sync_interval)),
                     Strong(Translated(FollowName(config.follow))));
    description = OneLine(config.description);
  }
  QString state = Translated(StateName(watched.state));
  const QString health = Translated(HealthName(watched.health));
  if (state.compare(health, Qt::CaseInsensitive) != 0) state += QStringLiteral(", ") + health;
  facts += Strong(state);
  if (watched.time_to_loss && *watched.time_to_loss < std::chrono::hours{loss_hours}) {
    facts += tr(". The redo it needs next is gone in %1")
                 .arg(Strong(ToQt(AgeText(*watched.time_to_loss))));
  }
  if (facts_->text() != facts) facts_->setText(facts);
  if (description_->text() != description) description_->setText(description);
  description_->setVisible(!description.isEmpty());
  picture_->setPixmap(JobStateIcon(watched.state, watched.health)
                          .pixmap(QSize(kPicture, kPicture), devicePixelRatioF()));
}

}  // namespace quillmere
