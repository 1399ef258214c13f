// SPDX-License-Identifier: MIT
// What the program is and what it works with, for the operator and for whoever is asked for help.
#pragma once

#include <QDialog>
#include <string>
#include <utility>
#include <vector>

#include "ui/H_global.h"

namespace quillmere {

using AboutFacts = std::vector<std::pair<std::string, std::string>>;  // what, and its value

AboutFacts FactsOf(Workspace& workspace);

// "What: value", a line each.
std::string FactsText(const AboutFacts& facts);

class AboutBox : public QDialog {
  Q_OBJECT

 public:
  AboutBox(UiContext& context, QWidget* parent);
};

}  // namespace quillmere
