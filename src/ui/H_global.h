// SPDX-License-Identifier: MIT
// What every window of the program is given. Made by main, outlives all windows.
#pragma once

#include "ui/toolkit/appearance.h"
#include "ui/toolkit/window_memory.h"
#include "ui/waiting/database_thread.h"
#include "workspace/workspace.h"

namespace quillmere {

struct UiContext {
  Workspace& workspace;
  WindowMemory& memory;       // sizes, positions and column widths of the last time
  Appearance& appearance;     // light, dark and skins
  DatabaseThread& databases;  // where whatever connects is done (ui/waiting/waiting.h)
};

}  // namespace quillmere
