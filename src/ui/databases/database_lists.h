// The lists of the database manager, one model per layout. They hold copies of the records (which
// share their texts), so that nothing that happens to the registry can reach into them.
// User-interface thread.
#pragma once

#include <QIcon>
#include <string>
#include <utility>
#include <vector>

#include "ui/databases/database_node.h"
#include "ui/toolkit/row_model.h"

namespace quillmere {

// The root's list: the registered data sources.
class DataSourceList final : public RowModel {
 public:
  DataSourceList();
  void Show(const DataSourceRegistry& registry);
  const std::string& NameAt(std::size_t row) const { return rows_[row].name; }

 private:
  struct Row {
    std::string name, version, user_id, mode;
    ConnectionState state;
  };

  std::size_t SourceRows() const override { return rows_.size(); }
  std::string_view CellText(std::size_t row, int column) const override;
  QVariant CellExtra(std::size_t row, int column, int role) const override;

  std::vector<Row> rows_;
  const QIcon connected_, disconnected_;
};

// A data source's list: what there is to browse.
class MetaTypeList final : public RowModel {
 public:
  MetaTypeList();
  NodeKind KindAt(std::size_t row) const { return kMetaTypes[row]; }

 private:
  std::size_t SourceRows() const override { return std::size(kMetaTypes); }
  std::string_view CellText(std::size_t row, int column) const override;
  QVariant CellExtra(std::size_t row, int column, int role) const override;

  const QIcon icons_[std::size(kMetaTypes)];
};

// A list of keys, indexes or tables.
class ObjectList : public RowModel {
 public:
  // Null empties the list.
  virtual void Show(const DataSource* source) = 0;
  virtual SchemaItem ItemAt(std::size_t row) const = 0;

 protected:
  ObjectList(std::vector<Column> columns, const char* icon);
  QVariant CellExtra(std::size_t row, int column, int role) const override;

 private:
  const QIcon icon_;
};

template <typename Record>
class RecordList : public ObjectList {
 public:
  void Show(const DataSource* source) override {
    // Not as the same rows: another object may stand in a row, which must not stay selected.
    ReplaceRows(false, [&] {
      if (source == nullptr) {
        records_ = {};
      } else {
        records_ = source->*list_;
      }
    });
  }
  SchemaItem ItemAt(std::size_t row) const override { return ItemOf(records_[row]); }

 protected:
  using Text = SharedText Record::*;

  // texts: one a column, null for a number's.
  RecordList(std::vector<Column> columns, const char* icon, std::vector<Record> DataSource::*list,
             std::vector<Text> texts)
      : ObjectList(std::move(columns), icon), list_(list), texts_(std::move(texts)) {}

  const Record& RecordAt(std::size_t row) const { return records_[row]; }

 private:
  std::size_t SourceRows() const override { return records_.size(); }
  std::string_view CellText(std::size_t row, int column) const override {
    const Text text = texts_[static_cast<std::size_t>(column)];
    return text == nullptr ? std::string_view() : (records_[row].*text).View();
  }

  std::vector<Record> DataSource::*const list_;
  const std::vector<Text> texts_;
  std::vector<Record> records_;
};

class KeyList final : public RecordList<KeyRecord> {
 public:
  KeyList();
};

class IndexList final : public RecordList<IndexRecord> {
 public:
  IndexList();
};

class TableList final : public RecordList<TableRecord> {
 public:
  TableList();

 private:
  std::int64_t CellNumber(std::size_t row, int column) const override;
};

}  // namespace quillmere
