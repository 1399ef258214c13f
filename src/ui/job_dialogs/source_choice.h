// SPDX-License-Identifier: MIT
// A drop-down list of the registered data sources.
#pragma once

#include <QComboBox>
#include <string>
#include <string_view>

#include "datasources/data_source_registry.h"

namespace quillmere {

class SourceChoice : public QComboBox {
  Q_OBJECT

 public:
  explicit SourceChoice(QWidget* parent = nullptr);

  // Fills the list in the registry's order and chooses the name. One that is not registered stands
  // at the end, marked: a job does not lose it by being looked at. Signals nothing.
  void Show(const DataSourceRegistry& registry, std::string_view chosen);

  // In bytes; empty when nothing is chosen.
  std::string Chosen() const;
};

}  // namespace quillmere
