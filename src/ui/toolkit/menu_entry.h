// SPDX-License-Identifier: MIT
// Entries of pop-up menus that stand for an action under a name of their own. User-interface
// thread.
#pragma once

#include <QString>

class QAction;
class QMenu;

namespace quillmere {

// Shows, enables and does what the action does, and names its shortcut. Owned by the menu; without
// effect once the action is gone. caption: the action's when empty.
QAction* AddEntry(QMenu& menu, const char* name, QAction& action, const QString& caption = {});

}  // namespace quillmere
