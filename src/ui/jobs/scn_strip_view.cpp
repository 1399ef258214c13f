// SPDX-License-Identifier: MIT
#include "ui/jobs/scn_strip_view.h"

#include <QPainter>
#include <algorithm>
#include <utility>
#include <vector>

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

constexpr int kMarkRows = 5;  // of words, so that none lies over another
constexpr int kBand = 12;
constexpr int kBar = 7;
constexpr std::size_t kMostBars = 5;

}  // namespace

std::vector<StripMark> MarksOf(const ScnStrip& strip) {
  std::vector<StripMark> marks;
  const auto add = [&](const QString& words, const std::optional<std::int64_t>& scn) {
    if (scn) marks.push_back({words.arg(Grouped(*scn)), *scn});
  };
  add(ScnStripView::tr("oldest redo there %1"), strip.oldest_there);
  add(ScnStripView::tr("oldest needed %1"), strip.oldest_needed);
  add(ScnStripView::tr("applied %1"), strip.applied);
  add(ScnStripView::tr("captured %1"), strip.captured);
  add(strip.live ? ScnStripView::tr("now %1") : ScnStripView::tr("at the last pass %1"), strip.now);
  return marks;
}

ScnStripView::ScnStripView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("ScnStrip"));
  setAccessibleName(tr("Where the job and its source stand"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ScnStripView::Show(ScnStrip strip) {
  strip_ = std::move(strip);
  first_ = last_ = 0;
  const auto take = [this](std::int64_t scn) {
    first_ = first_ == 0 ? scn : std::min(first_, scn);
    last_ = std::max(last_, scn);
  };
  for (const StripMark& mark : MarksOf(strip_)) take(mark.scn);
  for (const OpenTransaction& open : strip_.open) take(open.start_scn);
  updateGeometry();
  update();
}

QSize ScnStripView::sizeHint() const {
  const int line = fontMetrics().height();
  const int bars = static_cast<int>(std::min(strip_.open.size(), kMostBars));
  const int open = strip_.live ? line + bars * (kBar + 3) : 0;
  return {fontMetrics().averageCharWidth() * 60, kMarkRows * line + kBand + open + kSpacing};
}

double ScnStripView::PlaceOf(std::int64_t scn) const {
  const double room = width() - 2.0 * kMargin;
  const double whole = static_cast<double>(std::max<std::int64_t>(last_ - first_, 1));
  return kMargin + room * static_cast<double>(scn - first_) / whole;
}

void ScnStripView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  if (last_ == 0) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignCenter, tr("Where the job stands is known once it has run"));
    return;
  }
  const int band = kMarkRows * fontMetrics().height();
  DrawBand(painter, band);
  DrawMarks(painter, band);
  if (strip_.live) DrawOpen(painter, band + kBand);
}

// Words in the lowest row in which they have room, and a line down to their place.
int ScnStripView::DrawMarks(QPainter& painter, int band) const {
  const int line = fontMetrics().height();
  std::vector<StripMark> marks = MarksOf(strip_);
  std::sort(marks.begin(), marks.end(),
            [](const StripMark& a, const StripMark& b) { return a.scn < b.scn; });
  std::vector<int> free(kMarkRows, -1);  // from where on, row by row
  for (const StripMark& mark : marks) {
    const int x = static_cast<int>(PlaceOf(mark.scn));
    const int wide = fontMetrics().horizontalAdvance(mark.words);
    const int left = x + 3 + wide < width() ? x + 3 : x - 3 - wide;
    const auto row = std::find_if(free.begin(), free.end(), [&](int end) { return end < left; });
    const auto up = static_cast<int>(
        (row == free.end() ? std::max_element(free.begin(), free.end()) : row) - free.begin());
    free[static_cast<std::size_t>(up)] = left + wide + kSpacing;
    const int top = band - (up + 1) * line;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawLine(x, top + 2, x, band + kBand);
    painter.fillRect(QRect(left, top, wide, line), palette().base());
    painter.drawText(QRect(left, top, wide, line), Qt::AlignLeft | Qt::AlignVCenter, mark.words);
  }
  return band;
}

// What is there in a quiet colour, what is needed of it in a strong one; what is needed and gone
// hatched.
void ScnStripView::DrawBand(QPainter& painter, int top) const {
  const auto part = [&](std::int64_t from, std::int64_t to) {
    return QRectF(PlaceOf(from), top, std::max(PlaceOf(to) - PlaceOf(from), 1.0), kBand);
  };
  painter.fillRect(part(first_, last_), palette().color(QPalette::AlternateBase));
  if (strip_.oldest_there) {
    painter.fillRect(part(*strip_.oldest_there, last_), palette().color(QPalette::Mid));
  }
  if (!strip_.oldest_needed) return;
  painter.fillRect(part(*strip_.oldest_needed, last_), palette().color(QPalette::Highlight));
  if (strip_.oldest_there && *strip_.oldest_needed < *strip_.oldest_there) {
    const QRectF gone = part(*strip_.oldest_needed, *strip_.oldest_there);
    painter.fillRect(gone, palette().base());
    painter.fillRect(gone, QBrush(FailureColor(), Qt::BDiagPattern));
  }
}

void ScnStripView::DrawOpen(QPainter& painter, int top) const {
  const int line = fontMetrics().height();
  painter.setPen(palette().color(QPalette::WindowText));
  QString words = tr("No transaction is open");
  if (!strip_.open.empty()) {
    const OpenTransaction& oldest = strip_.open.front();
    words = tr("Open transactions: %1, the oldest for %2 h: %3")
                .arg(Grouped(static_cast<std::int64_t>(strip_.open.size())), Grouped(oldest.hours),
                     OneLine(oldest.holder));
  }
  painter.drawText(QRect(kMargin, top + 1, width() - 2 * kMargin, line),
                   Qt::AlignLeft | Qt::AlignVCenter,
                   fontMetrics().elidedText(words, Qt::ElideRight, width() - 2 * kMargin));
  int y = top + line + 2;
  for (std::size_t i = 0; i < std::min(strip_.open.size(), kMostBars); ++i) {
    const double from = PlaceOf(strip_.open[i].start_scn);
    painter.fillRect(QRectF(from, y, std::max(PlaceOf(last_) - from, 2.0), kBar),
                     i == 0 ? WarningColor() : QuietColor());
    y += kBar + 3;
  }
}

}  // namespace quillmere
