// SPDX-License-Identifier: MIT
#include "ui/jobs/history_charts.h"

#include <QDateTime>
#include <QHelpEvent>
#include <QLocale>
#include <QPainter>
#include <QTimeZone>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"
#include "watch/health.h"

namespace quillmere {
namespace {

enum Chart { kApplied, kWaiting, kBehind, kPasses };

// A line is drawn between passes that are no further apart than this part of the span: beyond, the
// job did not run.
constexpr std::size_t kGapPart = 8;

QString TitleOf(int chart) {
  switch (chart) {
    case kApplied:
      return HistoryCharts::tr("Applied per second");
    case kWaiting:
      return HistoryCharts::tr("Waiting");
    case kBehind:
      return HistoryCharts::tr("Behind");
    default:
      return HistoryCharts::tr("Passes, failed ones hatched");
  }
}

std::optional<double> ValueOf(const HistoryPicture& picture, const PicturePoint& point, int chart) {
  switch (chart) {
    case kApplied:
      return picture.AppliedPerSecond(point);
    case kWaiting:
      return static_cast<double>(point.waiting);
    case kBehind:
      if (!point.behind_s) return std::nullopt;
      return static_cast<double>(*point.behind_s);
    default:
      return static_cast<double>(point.passes);
  }
}

QString Words(double value, int chart) {
  if (chart == kBehind) {
    return ToQt(AgeText(std::chrono::seconds{static_cast<std::int64_t>(value)}));
  }
  if (chart == kApplied && value < 100) return QLocale().toString(value, 'g', 3);
  return Grouped(std::llround(value));
}

// The next of 1, 2, 5, 10, 20 ... that is not below; of times one that reads well.
double RoundTop(double most, int chart) {
  if (most <= 0) return 1;
  if (chart == kBehind) {
    constexpr double kMinute = 60, kHour = 60 * kMinute, kDay = 24 * kHour;
    for (const double top : {10.0, 30.0, kMinute, 5 * kMinute, 15 * kMinute, kHour, 4 * kHour,
                             12 * kHour, kDay, 3 * kDay, 10 * kDay, 30 * kDay}) {
      if (top >= most) return top;
    }
    return std::ceil(most / kDay) * kDay;
  }
  double step = std::pow(10, std::floor(std::log10(most)));
  if (chart != kApplied) step = std::max(step, 1.0);
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * step >= most) return factor * step;
  }
  return 10 * step;
}

// The calendar's time is kept as if it were that of Greenwich.
QDateTime Moment(LocalTime time) {
  return QDateTime::fromMSecsSinceEpoch(time.ms, QTimeZone::utc());
}

}  // namespace

HistoryCharts::HistoryCharts(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("HistoryCharts"));
  setAccessibleName(tr("Picture of the job's history"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void HistoryCharts::Show(HistoryPicture picture) {
  picture_ = std::move(picture);
  update();
}

void HistoryCharts::Clear() {
  picture_.reset();
  update();
}

QSize HistoryCharts::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 10};
}

QRect HistoryCharts::Cell(int chart) const {
  const int w = width() / 2;
  const int h = height() / 2;
  return {(chart % 2) * w, (chart / 2) * h, w, h};
}

// Title above, times below, the scale's top on the left.
QRect HistoryCharts::Plot(int chart) const {
  const int line = fontMetrics().height();
  return Cell(chart).adjusted(fontMetrics().averageCharWidth() * 9, line + 2, -kMargin, -line - 2);
}

void HistoryCharts::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  if (!picture_) return;
  if (picture_->Points().empty()) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignCenter, tr("No pass ended in this time"));
    return;
  }
  for (int chart = 0; chart < kCharts; ++chart) Draw(painter, chart);
}

void HistoryCharts::Draw(QPainter& painter, int chart) const {
  double most = 0;
  for (const PicturePoint& point : picture_->Points()) {
    most = std::max(most, ValueOf(*picture_, point, chart).value_or(0));
  }
  const double top = RoundTop(most, chart);
  DrawFrame(painter, chart, top);
  if (chart == kApplied || chart == kPasses) {
    DrawBars(painter, chart, top);
  } else {
    DrawLine(painter, chart, top);
  }
}

void HistoryCharts::DrawFrame(QPainter& painter, int chart, double top) const {
  const QRect plot = Plot(chart);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(plot.topLeft(), plot.topRight());
  painter.drawLine(plot.bottomLeft(), plot.bottomRight());
  DrawTimes(painter, plot);
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const QRect left(Cell(chart).left(), plot.top() - fontMetrics().height() / 2,
                   plot.left() - Cell(chart).left() - kSpacing / 2, fontMetrics().height());
  painter.drawText(left, Qt::AlignRight | Qt::AlignVCenter, Words(top, chart));
  painter.drawText(left.translated(0, plot.height()), Qt::AlignRight | Qt::AlignVCenter,
                   QStringLiteral("0"));
  painter.setPen(palette().color(QPalette::WindowText));
  const QRect head(plot.left(), Cell(chart).top(), plot.width(), fontMetrics().height());
  painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter, TitleOf(chart));
}

void HistoryCharts::DrawTimes(QPainter& painter, const QRect& plot) const {
  constexpr int kMostTimes = 4;
  const bool days = picture_->Span() > std::chrono::hours(25);
  const QString format = days ? tr("d MMM hh:mm") : QStringLiteral("hh:mm");
  const auto words = [&](std::int64_t since_ms) {
    return QLocale().toString(Moment({picture_->Begin().ms + since_ms}), format);
  };
  const int room = fontMetrics().horizontalAdvance(words(0)) + kMargin;
  const int times = std::clamp(plot.width() / room, 1, kMostTimes);
  const int width = plot.width() / times;
  for (int i = 0; i < times; ++i) {
    const int x = plot.left() + i * width;
    const std::int64_t since = picture_->Span().count() * i / times;
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(x, plot.bottom(), x, plot.bottom() + 3);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(QRect(x + 3, plot.bottom() + 1, width - 3, fontMetrics().height()),
                     Qt::AlignLeft | Qt::AlignVCenter, words(since));
  }
}

void HistoryCharts::DrawBars(QPainter& painter, int chart, double top) const {
  const QRectF plot = Plot(chart);
  const double part = plot.width() / static_cast<double>(picture_->Parts());
  const double width = std::max(part, 1.5);
  for (const PicturePoint& point : picture_->Points()) {
    const double x = plot.left() + part * static_cast<double>(point.part);
    const auto bar = [&](double value) {
      const double high = plot.height() * value / top;
      return QRectF(x, plot.bottom() - high, width, high);
    };
    painter.fillRect(bar(*ValueOf(*picture_, point, chart)), palette().color(QPalette::Highlight));
    if (chart != kPasses || point.failed == 0) continue;
    const QRectF failed = bar(static_cast<double>(point.failed));
    painter.fillRect(failed, palette().base());
    painter.fillRect(failed, QBrush(FailureColor(), Qt::BDiagPattern));
    painter.fillRect(QRectF(failed.left(), failed.top(), width, 2), FailureColor());
  }
}

void HistoryCharts::DrawLine(QPainter& painter, int chart, double top) const {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
  const QRectF plot = Plot(chart);
  const double part = plot.width() / static_cast<double>(picture_->Parts());
  const PicturePoint* before = nullptr;
  QPointF last;
  for (const PicturePoint& point : picture_->Points()) {
    const std::optional<double> value = ValueOf(*picture_, point, chart);
    if (!value) {
      before = nullptr;
      continue;
    }
    const QPointF place(plot.left() + part * (static_cast<double>(point.part) + 0.5),
                        plot.bottom() - plot.height() * *value / top);
    const bool joined =
        before != nullptr && point.part - before->part <= picture_->Parts() / kGapPart;
    if (joined) painter.drawLine(last, place);
    if (!joined) painter.drawEllipse(place, 1, 1);
    before = &point;
    last = place;
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

bool HistoryCharts::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  QToolTip::showText(help->globalPos(), TipAt(help->pos()), this);
  return true;
}

// The nearest pass to the place.
QString HistoryCharts::TipAt(QPoint place) const {
  if (!picture_ || picture_->Points().empty()) return {};
  const QRect plot = Plot(place.x() < width() / 2 ? 0 : 1);
  const double wanted = static_cast<double>(place.x() - plot.left()) / std::max(plot.width(), 1) *
                        static_cast<double>(picture_->Parts());
  const auto distance = [wanted](const PicturePoint& point) {
    return std::abs(static_cast<double>(point.part) + 0.5 - wanted);
  };
  const PicturePoint& point =
      *std::min_element(picture_->Points().begin(), picture_->Points().end(),
                        [&](const auto& a, const auto& b) { return distance(a) < distance(b); });
  QString tip = QLocale().toString(Moment(picture_->TimeOf(point.part)), QLocale::ShortFormat);
  for (int chart = 0; chart < kPasses; ++chart) {
    const std::optional<double> value = ValueOf(*picture_, point, chart);
    if (value) tip += u'\n' + tr("%1: %2").arg(TitleOf(chart), Words(*value, chart));
  }
  return tip + u'\n' +
         tr("Passes: %1, failed: %2").arg(Grouped(point.passes), Grouped(point.failed));
}

}  // namespace quillmere
