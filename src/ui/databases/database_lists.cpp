// SPDX-License-Identifier: MIT
#include "ui/databases/database_lists.h"

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

QVariant StateTip(const SourceEntry& row, int role) {
  return role == Qt::ToolTipRole ? ToQt(ConnectionText(row.state)) : QVariant();
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
    : RowList({Text<&SourceEntry::name>("Data Source", 130, NameExtra),
               Text<&SourceEntry::version>("Version", 100, StateTip),
               Text<&SourceEntry::user_id>("UserName", 90, StateTip),
               Text<&SourceEntry::mode>("Mode", 80, StateTip)}) {}

MetaTypeList::MetaTypeList() : RowList({Text<&MetaType::caption>("Meta Types", 210, TypeExtra)}) {
  sort(-1, Qt::AscendingOrder);  // as in the tree, until a click on the head
  Take({{NodeKind::PrimaryKey, "PRIMARY KEY", "key"},
        {NodeKind::Index, "INDEX", "index"},
        {NodeKind::Table, "TABLE", "table"}},
       false);
}

KeyList::KeyList()
    : RecordList(&DataSource::primary_keys, {Text<&KeyRecord::key_name>("Key Name", 210, KeyExtra),
                                             Text<&KeyRecord::table_owner>("Table Owner", 110),
                                             Text<&KeyRecord::table_name>("Table Name", 110),
                                             Text<&KeyRecord::status>("Status", 90)}) {}

IndexList::IndexList()
    : RecordList(&DataSource::indexes,
                 {Text<&IndexRecord::index_name>("Index Name", 210, IndexExtra),
                  Text<&IndexRecord::type>("Index Type", 80),
                  Text<&IndexRecord::index_owner>("Index Owner", 110),
                  Text<&IndexRecord::table_owner>("Table Owner", 110),
                  Text<&IndexRecord::table_name>("Table Name", 110),
                  Text<&IndexRecord::status>("Status", 90)}) {}

TableList::TableList()
    : RecordList(&DataSource::tables,
                 {Text<&TableRecord::table_name>("Table Name", 210, TableExtra),
                  Text<&TableRecord::table_owner>("Table Owner", 80),
                  Text<&TableRecord::tablespace>("Table Space", 110),
                  Number<&TableRecord::rows>("Rows", 80), Text<&TableRecord::type>("Type", 80)}) {}

}  // namespace quillmere
