#include "ui/databases/database_lists.h"

#include "ui/toolkit/icons.h"
#include "ui/toolkit/text.h"

namespace quillmere {

DataSourceList::DataSourceList()
    : RowModel({{QStringLiteral("Data Source"), 130},
                {QStringLiteral("Version"), 100},
                {QStringLiteral("UserName"), 90},
                {QStringLiteral("Mode"), 80}}),
      connected_(Icon("connected")),
      disconnected_(Icon("disconnected")) {}

void DataSourceList::Show(const DataSourceRegistry& registry) {
  ReplaceRows(false, [&] {
    rows_.clear();
    for (std::size_t slot = 0; slot < registry.Count(); ++slot) {
      const DataSource& source = registry.At(slot);
      if (source.state == ConnectionState::Empty) continue;
      rows_.push_back({source.name, source.version, source.user_id, source.mode, source.state});
    }
  });
}

std::string_view DataSourceList::CellText(std::size_t row, int column) const {
  const Row& cells = rows_[row];
  const std::string* const texts[] = {&cells.name, &cells.version, &cells.user_id, &cells.mode};
  return *texts[column];
}

QVariant DataSourceList::CellExtra(std::size_t row, int column, int role) const {
  const ConnectionState state = rows_[row].state;
  if (role == Qt::ToolTipRole) return ToQt(ConnectionText(state));
  if (role != Qt::DecorationRole || column != 0) return {};
  return state == ConnectionState::Connected ? connected_ : disconnected_;
}

MetaTypeList::MetaTypeList()
    : RowModel({{QStringLiteral("Meta Types"), 210}}),
      icons_{Icon("key"), Icon("index"), Icon("table")} {
  sort(-1, Qt::AscendingOrder);  // as in the tree, until a click on the head
  ReplaceRows(false, [] {});
}

std::string_view MetaTypeList::CellText(std::size_t row, int) const {
  static constexpr std::string_view kCaptions[] = {"PRIMARY KEY", "INDEX", "TABLE"};
  return kCaptions[row];
}

QVariant MetaTypeList::CellExtra(std::size_t row, int, int role) const {
  return role == Qt::DecorationRole ? QVariant(icons_[row]) : QVariant();
}

ObjectList::ObjectList(std::vector<Column> columns, const char* icon)
    : RowModel(std::move(columns)), icon_(Icon(icon)) {}

QVariant ObjectList::CellExtra(std::size_t, int column, int role) const {
  return role == Qt::DecorationRole && column == 0 ? QVariant(icon_) : QVariant();
}

KeyList::KeyList()
    : RecordList({{QStringLiteral("Key Name"), 210},
                  {QStringLiteral("Table Owner"), 110},
                  {QStringLiteral("Table Name"), 110},
                  {QStringLiteral("Status"), 90}},
                 "key", &DataSource::primary_keys,
                 {&KeyRecord::key_name, &KeyRecord::table_owner, &KeyRecord::table_name,
                  &KeyRecord::status}) {}

IndexList::IndexList()
    : RecordList({{QStringLiteral("Index Name"), 210},
                  {QStringLiteral("Index Type"), 80},
                  {QStringLiteral("Index Owner"), 110},
                  {QStringLiteral("Table Owner"), 110},
                  {QStringLiteral("Table Name"), 110},
                  {QStringLiteral("Status"), 90}},
                 "index", &DataSource::indexes,
                 {&IndexRecord::index_name, &IndexRecord::type, &IndexRecord::index_owner,
                  &IndexRecord::table_owner, &IndexRecord::table_name, &IndexRecord::status}) {}

TableList::TableList()
    : RecordList({{QStringLiteral("Table Name"), 210},
                  {QStringLiteral("Table Owner"), 80},
                  {QStringLiteral("Table Space"), 110},
                  {QStringLiteral("Rows"), 80, RowModel::Kind::Number},
                  {QStringLiteral("Type"), 80}},
                 "table", &DataSource::tables,
                 {&TableRecord::table_name, &TableRecord::table_owner, &TableRecord::tablespace,
                  nullptr, &TableRecord::type}) {}

std::int64_t TableList::CellNumber(std::size_t row, int) const {
  return RecordAt(row).rows;
}

}  // namespace quillmere
