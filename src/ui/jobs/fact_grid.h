// SPDX-License-Identifier: MIT
// Facts under each other, each a name and words that can be selected and copied. A fact without
// words is not shown. User-interface thread.
#pragma once

#include <QScrollArea>
#include <string_view>
#include <vector>

class QGridLayout;
class QLabel;

namespace quillmere {

class FactGrid final : public QScrollArea {
 public:
  // name: of its object, and the beginning of the names of its labels ("Now" and "NowBehind").
  FactGrid(const QString& name, QWidget* parent);

  // object: the end of the label's name.
  void Add(const char* object, const QString& caption);

  // In the order of their adding. Line breaks and blanks stay as they are.
  void Show(const std::vector<QString>& words);

 private:
  const QString name_;
  QGridLayout* grid_ = nullptr;
  std::vector<QLabel*> names_, words_;
};

}  // namespace quillmere
