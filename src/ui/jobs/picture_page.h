// SPDX-License-Identifier: MIT
// The page with what a job did over an hour, a day, a week or a month, out of its history, and with
// where it and its source stand.
#pragma once

#include <QElapsedTimer>
#include <optional>
#include <string>

#include "ui/jobs/job_page.h"
#include "ui/waiting/quiet_work.h"
#include "watch/scn_strip.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace quillmere {

class HistoryCharts;
class ScnStripView;

class PicturePage final : public JobPage {
  Q_OBJECT

 public:
  PicturePage(UiContext& context, QWidget* parent);

  QString Title() const override { return tr("Pict&ure"); }
  // Reads the files anew when another job is shown, and every some seconds.
  void ShowJob(std::size_t job, const WatchedJob& watched) override;

 private:
  struct Found {
    HistoryRead history;
    ScnStrip strip;
  };

  QWidget* MakeHead();
  void Read();
  void Show(Found found);
  void ShowStrip();
  void AskSource();

  UiContext& context_;
  QComboBox* span_ = nullptr;
  QLabel* summary_ = nullptr;
  QLabel* marks_ = nullptr;
  QPushButton* ask_ = nullptr;
  HistoryCharts* charts_ = nullptr;
  ScnStripView* strip_ = nullptr;
  QuietWork reading_;
  QElapsedTimer read_;            // since the files were read
  ScnStrip known_;                // of the files
  std::optional<ScnStrip> live_;  // what the source said when it was asked
  QString asked_;                 // when
  std::size_t job_ = JobList::kNotFound;
  std::string name_;
  std::optional<RedoRoom> room_;
};

}  // namespace quillmere
