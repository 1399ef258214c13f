// SPDX-License-Identifier: MIT
// Every window, dialog and state of the program, one picture each.
#pragma once

#include "gallery/studio.h"
#include "ui/H_global.h"

namespace quillmere {

// The workspace is that of ExampleFolder; it is as before afterwards.
void TakeAll(UiContext& context, Studio& studio);

// What a newcomer sees: a folder with nothing in it.
void TakeEmpty(UiContext& context, Studio& studio);

// The pages of a job that a refused row holds up.
void TakeStuck(UiContext& context, Studio& studio);

// The main window once more, in the skin.
void TakeSkin(UiContext& context, Studio& studio, const std::filesystem::path& skin);

}  // namespace quillmere
