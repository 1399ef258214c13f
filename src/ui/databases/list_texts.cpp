// SPDX-License-Identifier: MIT
#include "ui/databases/list_texts.h"

#include <QLocale>

#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

QString Number(std::size_t count) {
  return QLocale(QLocale::English).toString(static_cast<qulonglong>(count));
}

QString Plural(ObjectKind kind) {
  if (kind == ObjectKind::PrimaryKey) return QStringLiteral("primary keys");
  return kind == ObjectKind::Index ? QStringLiteral("indexes") : QStringLiteral("tables");
}

QString CountedRows(NodeKind kind, std::size_t count) {
  const std::optional<ObjectKind> objects = ObjectKindOf(kind);
  return objects ? CountedObjects(*objects, count) : Counted(count, QStringLiteral("data source"));
}

}  // namespace

QString CountedObjects(ObjectKind kind, std::size_t count) {
  if (count != 1) return Number(count) + u' ' + Plural(kind);
  if (kind == ObjectKind::PrimaryKey) return QStringLiteral("1 primary key");
  return kind == ObjectKind::Index ? QStringLiteral("1 index") : QStringLiteral("1 table");
}

QString CountText(const DatabaseNode& node, const ListCounts& counts, ConnectionState state) {
  if (node.kind == NodeKind::None) return {};
  if (node.kind == NodeKind::DataSource) return ToQt(ConnectionText(state));
  QString text = CountedRows(node.kind, counts.all);
  if (counts.shown != counts.all) text = Number(counts.shown) + QStringLiteral(" of ") + text;
  if (counts.selected > 1) text += QStringLiteral(", %1 selected").arg(Number(counts.selected));
  return text;
}

QString EmptyText(const DatabaseNode& node, ConnectionState state) {
  if (node.kind == NodeKind::Root) {
    return QStringLiteral(
        "No data source is registered yet. Open the data source manager "
        "(OpenDbMgr) to add the first one.");
  }
  const std::optional<ObjectKind> objects = ObjectKindOf(node.kind);
  if (!objects) return {};
  const QString none =
      QStringLiteral("No %1 of %2 are known. ").arg(Plural(*objects), OneLine(node.source));
  if (state == ConnectionState::Connected) {
    return none + QStringLiteral(
                      "Select the data source and refresh it (RefreshDS) to read its "
                      "catalogue anew.");
  }
  return none + QStringLiteral(
                    "Select the data source and connect to it (ConnectDS): then its "
                    "catalogue is read.");
}

}  // namespace quillmere
