// SPDX-License-Identifier: MIT
// The program's own icons: SVG drawings that take the colours of the palette and are crisp at
// every scale. User-interface thread.
#pragma once

#include <QIcon>
#include <QString>
#include <string_view>

namespace quillmere {

// name: that of a drawing in ui/icons/ without ".svg". An unknown name is an empty icon.
QIcon Icon(std::string_view name);

// The same with a small drawing over its lower right corner.
QIcon MarkedIcon(std::string_view name, std::string_view mark);

}  // namespace quillmere
