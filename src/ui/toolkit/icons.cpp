#include "ui/toolkit/icons.h"

namespace quillmere {

QIcon Icon(std::string_view name) {
  return QIcon(QStringLiteral(":/icons/") +
               QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) +
               QStringLiteral(".svg"));
}

}  // namespace quillmere
