// SPDX-License-Identifier: MIT
// Draws where a job and its source stand: the redo that is there as a band, what is needed of it,
// and open transactions as bars. User-interface thread.
#pragma once

#include <QWidget>

#include "watch/scn_strip.h"

namespace quillmere {

// One mark in words: "oldest needed 12,345".
struct StripMark {
  QString words;
  std::int64_t scn = 0;
};
// Those that are known, in the order in which they are read.
std::vector<StripMark> MarksOf(const ScnStrip& strip);

class ScnStripView final : public QWidget {
  Q_OBJECT

 public:
  explicit ScnStripView(QWidget* parent);

  void Show(ScnStrip strip);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double PlaceOf(std::int64_t scn) const;
  int DrawMarks(QPainter& painter, int top) const;
  void DrawBand(QPainter& painter, int top) const;
  void DrawOpen(QPainter& painter, int top) const;

  ScnStrip strip_;
  std::int64_t first_ = 0, last_ = 0;  // at the left and the right end
};

}  // namespace quillmere
