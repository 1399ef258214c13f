// SPDX-License-Identifier: MIT
#include "ui/job_dialogs/source_choice.h"

#include <QSignalBlocker>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

QByteArray Stored(std::string_view name) {
  return {name.data(), static_cast<qsizetype>(name.size())};
}

}  // namespace

SourceChoice::SourceChoice(QWidget* parent) : QComboBox(parent) {
  setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(20);
  setPlaceholderText(tr("Choose a data source"));
}

void SourceChoice::Show(const DataSourceRegistry& registry, std::string_view chosen) {
  const QSignalBlocker quiet(this);
  clear();
  for (std::size_t index = 0; index < registry.Count(); ++index) {
    const DataSource& source = registry.At(index);
    if (source.state == ConnectionState::Empty) continue;
    addItem(Icon("source"), OneLine(source.name), Stored(source.name));
  }
  int place = findData(Stored(chosen));
  if (place < 0 && !chosen.empty()) {
    place = count();
    addItem(Icon("warning"), OneLine(chosen), Stored(chosen));
    setItemData(place, tr("This data source is not registered"), Qt::ToolTipRole);
  }
  setCurrentIndex(place);
}

std::string SourceChoice::Chosen() const {
  return currentData().toByteArray().toStdString();
}

}  // namespace quillmere
