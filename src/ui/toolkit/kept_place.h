// SPDX-License-Identifier: MIT
// Buttons of a tool bar that leave their place empty while they are hidden, so that none jumps
// under the mouse. User-interface thread.
#pragma once

class QAction;
class QToolBar;
class QWidget;

namespace quillmere {

// Adds the action with its button, which is returned.
QWidget* AddKeepingPlace(QToolBar& bar, QAction& action);

// Adds a separator that keeps its place in the same way.
QAction* AddSeparatorKeepingPlace(QToolBar& bar);

}  // namespace quillmere
