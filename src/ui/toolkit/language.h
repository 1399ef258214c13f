// SPDX-License-Identifier: MIT
// The language of the window. English unless the operator chose another one, whatever the system
// speaks; what the core says (messages, log files) stays English. User-interface thread.
#pragma once

#include "ui/toolkit/window_memory.h"

namespace quillmere {

enum class Language { English, German };

// What was chosen last time.
Language ChosenLanguage(const WindowMemory& memory);

// From the next start on: what is on the screen keeps its language.
void KeepLanguage(WindowMemory& memory, Language language);

// Of all texts, numbers and dates that are asked for from now on. Called before any window is made;
// an application that never calls it speaks English.
void UseLanguage(Language language);

}  // namespace quillmere
