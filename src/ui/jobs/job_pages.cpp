// SPDX-License-Identifier: MIT
#include "ui/jobs/job_pages.h"

#include <QTabBar>
#include <utility>

#include "ui/jobs/doctor_page.h"
#include "ui/jobs/now_page.h"
#include "ui/jobs/picture_page.h"
#include "ui/jobs/preview_page.h"
#include "ui/jobs/problem_page.h"
#include "ui/toolkit/icons.h"

namespace quillmere {
namespace {

constexpr int kSecondMs = 1000;

}  // namespace

std::vector<JobPage*> MakeJobPages(UiContext& context, WayOutRunner& ways, QTabWidget* parent) {
  auto* const now = new NowPage(context, parent);
  auto* const doctor = new DoctorPage(context, parent);
  QObject::connect(now, &NowPage::DoctorAsked, doctor, [parent, doctor] {
    parent->setCurrentWidget(doctor);
    doctor->Examine();
  });
  return {now, new ProblemPage(context, ways, parent), new PreviewPage(context, ways, parent),
          new PicturePage(context, parent), doctor};
}

JobPages::JobPages(UiContext& context, WayOutRunner& ways, QWidget* parent)
    : QTabWidget(parent), watch_(context.workspace.Watch()) {
  tabBar()->setObjectName(QStringLiteral("JobPagesTabs"));  // the window's tabs have Qt's name
  setObjectName(QStringLiteral("JobPages"));
  setAccessibleName(tr("Pages of the job"));
  setDocumentMode(true);
  pages_ = MakeJobPages(context, ways, this);
  for (JobPage* const page : pages_) addTab(page, page->Title());
  hide();
  connect(this, &QTabWidget::currentChanged, this, &JobPages::Update);
  connect(&second_, &QTimer::timeout, this, &JobPages::Update);
}

void JobPages::ShowJob(std::size_t job) {
  const bool other = std::exchange(job_, job) != job;
  show();
  if (!second_.isActive()) second_.start(kSecondMs);
  if (other) {
    const WatchedJob watched = watch_.Look(job);
    for (JobPage* const page : pages_) {
      if (!page->Mark(watched).empty()) setCurrentWidget(page);
    }
  }
  Update();
}

void JobPages::ShowNone() {
  job_ = JobList::kNotFound;
  second_.stop();
  hide();
}

void JobPages::Update() {
  if (job_ == JobList::kNotFound) return;
  const WatchedJob watched = watch_.Look(job_);
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    setTabIcon(static_cast<int>(i), Icon(pages_[i]->Mark(watched)));
  }
  if (isVisible()) pages_[static_cast<std::size_t>(currentIndex())]->ShowJob(job_, watched);
}

}  // namespace quillmere
