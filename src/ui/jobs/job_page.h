// SPDX-License-Identifier: MIT
// A page below the one row of a job. A new one is a class of its own and a line in MakeJobPages.
#pragma once

#include <QWidget>
#include <cstddef>
#include <vector>

#include "ui/H_global.h"
#include "watch/job_watch.h"

class QTabWidget;

namespace quillmere {

class WayOutRunner;

// User-interface thread.
class JobPage : public QWidget {
 public:
  using QWidget::QWidget;

  // On the page's tab, with a mnemonic.
  virtual QString Title() const = 0;

  // While the page is seen: whenever something of the job may have changed, and every second. Only
  // for what is there at once.
  virtual void ShowJob(std::size_t job, const WatchedJob& watched) = 0;

  // What is drawn on the tab, whichever page is seen; the name of a drawing, or empty.
  virtual std::string_view Mark(const WatchedJob&) const { return {}; }
};

// All pages in their order, children of parent, with an object name each.
std::vector<JobPage*> MakeJobPages(UiContext& context, WayOutRunner& ways, QTabWidget* parent);

}  // namespace quillmere
