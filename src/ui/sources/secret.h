// SPDX-License-Identifier: MIT
// Passwords that are through with.
#pragma once

#include <string>

class QLineEdit;

namespace quillmere {

// Overwrites the characters, then empties the text.
void WipeText(std::string& text);

// Empties the field for good: nothing to undo is kept.
void WipeText(QLineEdit& field);

}  // namespace quillmere
