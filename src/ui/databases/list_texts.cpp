// SPDX-License-Identifier: MIT
#include "ui/databases/list_texts.h"

#include <QCoreApplication>

#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

struct ListTexts {
  Q_DECLARE_TR_FUNCTIONS(ListTexts)
};

QString CountedRows(NodeKind kind, std::size_t count) {
  const std::optional<ObjectKind> objects = ObjectKindOf(kind);
  return objects ? CountedObjects(*objects, count)
                 : ListTexts::tr("%Ln data source(s)", nullptr, Plural(count));
}

QString NoneKnown(ObjectKind kind, const std::string& source) {
  const QString none = kind == ObjectKind::PrimaryKey
                           ? ListTexts::tr("No primary keys of %1 are known.")
                       : kind == ObjectKind::Index ? ListTexts::tr("No indexes of %1 are known.")
                                                   : ListTexts::tr("No tables of %1 are known.");
  return none.arg(OneLine(source));
}

}  // namespace

QString CountedObjects(ObjectKind kind, std::size_t count) {
  const int number = Plural(count);
  if (kind == ObjectKind::PrimaryKey) return ListTexts::tr("%Ln primary key(s)", nullptr, number);
  return kind == ObjectKind::Index ? ListTexts::tr("%Ln index(es)", nullptr, number)
                                   : ListTexts::tr("%Ln table(s)", nullptr, number);
}

QString CountText(const DatabaseNode& node, std::size_t rows, ConnectionState state) {
  if (node.kind == NodeKind::None) return {};
  if (node.kind == NodeKind::DataSource) return Translated(ConnectionText(state));
  return CountedRows(node.kind, rows);
}

QString EmptyText(const DatabaseNode& node, ConnectionState state) {
  if (node.kind == NodeKind::Root) {
    return ListTexts::tr(
        "No data source is registered yet. Open the data source manager "
        "(OpenDbMgr) to add the first one.");
  }
  const std::optional<ObjectKind> objects = ObjectKindOf(node.kind);
  if (!objects) return {};
  const QString advice =
      state == ConnectionState::Connected
          ? ListTexts::tr(
                "Select the data source and refresh it (RefreshDS) to read its catalogue "
                "anew.")
          : ListTexts::tr(
                "Select the data source and connect to it (ConnectDS): then its catalogue "
                "is read.");
  return NoneKnown(*objects, node.source) + u' ' + advice;
}

}  // namespace quillmere
