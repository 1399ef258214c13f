// SPDX-License-Identifier: MIT
// The lists of the database manager, one model per layout. They hold copies of the records (which
// share their texts), so that nothing that happens to the registry can reach into them.
// User-interface thread.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ui/databases/database_node.h"
#include "ui/sources/source_list_model.h"
#include "ui/toolkit/row_list.h"

namespace quillmere {

// The root's list: the registered data sources.
class DataSourceList final : public RowList<SourceEntry> {
 public:
  DataSourceList();
  void Show(const DataSourceRegistry& registry) { Take(RowsOf(registry), false); }
};

// A data source's list: what there is to browse.
struct MetaType {
  NodeKind kind;
  std::string caption;
  const char* icon;
};

class MetaTypeList final : public RowList<MetaType> {
 public:
  MetaTypeList();
};

// A list of keys, indexes or tables.
class ObjectList : public RowModel {
 public:
  using RowModel::RowModel;

  // Null empties the list.
  virtual void Show(const DataSource* source) = 0;
  virtual SchemaItem ItemAt(std::size_t source_row) const = 0;
};

template <typename Record>
class RecordList : public RowList<Record, ObjectList> {
 public:
  void Show(const DataSource* source) override {
    // Not as the same rows: another object may stand in a row, which must not stay selected.
    this->Take(source == nullptr ? std::vector<Record>() : source->*list_, false);
  }
  SchemaItem ItemAt(std::size_t source_row) const override {
    return ItemOf(this->RowAt(source_row));
  }

 protected:
  using Columns = std::vector<typename RowList<Record, ObjectList>::ListColumn>;

  RecordList(std::vector<Record> DataSource::*list, Columns columns)
      : RowList<Record, ObjectList>(std::move(columns)), list_(list) {}

 private:
  std::vector<Record> DataSource::*const list_;
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
};

}  // namespace quillmere
