// SPDX-License-Identifier: MIT
#include "ui/databases/database_lists.h"

#include <QCoreApplication>

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

struct DatabaseLists {
  Q_DECLARE_TR_FUNCTIONS(DatabaseLists)
};

QVariant StateTip(const SourceEntry& row, int role) {
  return role == Qt::ToolTipRole ? Translated(ConnectionText(row.state)) : QVariant();
}

QVariant NameExtra(const SourceEntry& row, int role) {
  if (role != Qt::DecorationRole) return StateTip(row, role);
  return Icon(row.state == ConnectionState::Connected ? "connected" : "disconnected");
}

QVariant TypeExtra(const MetaType& row, int role) {
  return role == Qt::DecorationRole ? QVariant(Icon(row.icon)) : QVariant();
}

QVariant IconFor(int role, const char* icon) {
  return role == Qt::DecorationRole ? QVariant(Icon(icon)) : QVariant();
}

QVariant KeyExtra(const KeyRecord&, int role) {
  return IconFor(role, "key");
}

QVariant IndexExtra(const IndexRecord&, int role) {
  return IconFor(role, "index");
}

QVariant TableExtra(const TableRecord&, int role) {
  return IconFor(role, "table");
}

}  // namespace

DataSourceList::DataSourceList()
    : RowList({Text<&SourceEntry::name>(DatabaseLists::tr("Data Source"), 130, NameExtra),
               Text<&SourceEntry::version>(DatabaseLists::tr("Version"), 100, StateTip),
               Text<&SourceEntry::user_id>(DatabaseLists::tr("UserName"), 90, StateTip),
               Text<&SourceEntry::mode>(DatabaseLists::tr("Mode"), 80, StateTip)}) {}

MetaTypeList::MetaTypeList()
    : RowList({Text<&MetaType::caption>(DatabaseLists::tr("Meta Types"), 210, TypeExtra)}) {
  sort(-1, Qt::AscendingOrder);  // as in the tree, until a click on the head
  Take({{NodeKind::PrimaryKey, ToBytes(DatabaseLists::tr("PRIMARY KEY")), "key"},
        {NodeKind::Index, ToBytes(DatabaseLists::tr("INDEX")), "index"},
        {NodeKind::Table, ToBytes(DatabaseLists::tr("TABLE")), "table"}},
       false);
}

KeyList::KeyList()
    : RecordList(&DataSource::primary_keys,
                 {Text<&KeyRecord::key_name>(DatabaseLists::tr("Key Name"), 210, KeyExtra),
                  Text<&KeyRecord::table_owner>(DatabaseLists::tr("Table Owner"), 110),
                  Text<&KeyRecord::table_name>(DatabaseLists::tr("Table Name"), 110),
                  Text<&KeyRecord::status>(DatabaseLists::tr("Status"), 90)}) {}

IndexList::IndexList()
    : RecordList(&DataSource::indexes,
                 {Text<&IndexRecord::index_name>(DatabaseLists::tr("Index Name"), 210, IndexExtra),
                  Text<&IndexRecord::type>(DatabaseLists::tr("Index Type"), 80),
                  Text<&IndexRecord::index_owner>(DatabaseLists::tr("Index Owner"), 110),
                  Text<&IndexRecord::table_owner>(DatabaseLists::tr("Table Owner"), 110),
                  Text<&IndexRecord::table_name>(DatabaseLists::tr("Table Name"), 110),
                  Text<&IndexRecord::status>(DatabaseLists::tr("Status"), 90)}) {}

TableList::TableList()
    : RecordList(&DataSource::tables,
                 {Text<&TableRecord::table_name>(DatabaseLists::tr("Table Name"), 210, TableExtra),
                  Text<&TableRecord::table_owner>(DatabaseLists::tr("Table Owner"), 80),
                  Text<&TableRecord::tablespace>(DatabaseLists::tr("Table Space"), 110),
                  Number<&TableRecord::rows>(DatabaseLists::tr("Rows"), 80),
                  Text<&TableRecord::type>(DatabaseLists::tr("Type"), 80)}) {}

}  // namespace quillmere
