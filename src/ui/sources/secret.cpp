// SPDX-License-Identifier: MIT
#include "ui/sources/secret.h"

#include <QLineEdit>

namespace quillmere {

void WipeText(std::string& text) {
  volatile char* const characters = text.data();
  for (std::size_t i = 0; i < text.size(); ++i) characters[i] = '\0';
  text.clear();
}

void WipeText(QLineEdit& field) {
  field.setText({});  // unlike clear(), which could be undone
}

}  // namespace quillmere
