// SPDX-License-Identifier: MIT
// Draws what a job did over a span of time: applied per second, waiting, behind and passes, in the
// colours of the palette. User-interface thread.
#pragma once

#include <QWidget>
#include <optional>

#include "watch/history_picture.h"

namespace quillmere {

class HistoryCharts final : public QWidget {
  Q_OBJECT

 public:
  explicit HistoryCharts(QWidget* parent);

  void Show(HistoryPicture picture);
  void Clear();

  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;  // what was at a place, as a tool tip

 private:
  static constexpr int kCharts = 4;

  QRect Cell(int chart) const;
  QRect Plot(int chart) const;
  void Draw(QPainter& painter, int chart) const;
  void DrawFrame(QPainter& painter, int chart, double top) const;
  void DrawTimes(QPainter& painter, const QRect& plot) const;
  void DrawBars(QPainter& painter, int chart, double top) const;
  void DrawLine(QPainter& painter, int chart, double top) const;
  QString TipAt(QPoint place) const;

  std::optional<HistoryPicture> picture_;
};

}  // namespace quillmere
