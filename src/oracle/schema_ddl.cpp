// SPDX-License-Identifier: MIT
#include <algorithm>
#include <deque>

#include "foundation/text.h"
#include "oracle/H_oracle.h"
#include "oracle/statement_text.h"

namespace quillmere {
namespace {

// A column name that fills the room which the dictionary query leaves it may be the beginning of a
// longer one.
constexpr std::ptrdiff_t kCutColumnName = 50;

// Of a text in UTF-8.
std::ptrdiff_t Characters(std::string_view text) {
  return std::count_if(text.begin(), text.end(), [](char c) { return !ContinuesCharacter(c); });
}

}  // namespace

struct OracleSession::KeyRebuild {
  struct ForeignKey {
    KeyInfo key;
    std::vector<std::string> columns;
  };
  KeyInfo key;
  std::vector<std::string> columns;
  std::vector<ForeignKey> foreign_keys;
};

bool OracleSession::ReadWhole(std::size_t warnings_before) {
  if (warnings_.size() == warnings_before) return true;
  return Refuse(warnings_[warnings_before]);
}

bool OracleSession::DropConstraint(const KeyInfo& key) {
  return Execute(DropConstraintText(key));
}

bool OracleSession::DropPrimaryKey(const KeyInfo& key, const LineSink& error_line) {
  const std::size_t warnings = warnings_.size();
  std::vector<KeyInfo> foreign_keys;
  if (!ListReferencingForeignKeys(key.constraint_name, foreign_keys) || !ReadWhole(warnings)) {
    error_line("check fk of " + key.constraint_name + " failed.");
    return false;
  }
  for (const KeyInfo& foreign_key : foreign_keys) {
    if (DropConstraint(foreign_key)) continue;
    error_line("drop fk of " + key.constraint_name + " failed.");
    return false;
  }
  if (DropConstraint(key)) return true;
  error_line("drop pk: " + key.constraint_name + " failed.");
  return false;
}

bool OracleSession::DropTable(std::string_view owner, std::string_view table, bool cascade) {
  return Execute(DropTableText(owner, table, cascade));
}

bool OracleSession::DropIndex(const IndexRef& index) {
  return Execute(DropIndexText(index));
}

bool OracleSession::AddPrimaryKey(const KeyInfo& key, const std::vector<std::string>& columns) {
  return Execute(AddPrimaryKeyText(key, columns));
}

bool OracleSession::AddForeignKey(const std::vector<std::string>& columns,
                                  const std::vector<std::string>& referenced_columns,
                                  const KeyInfo& key, std::string_view referenced_owner,
                                  std::string_view referenced_table) {
  return Execute(
      AddForeignKeyText(columns, referenced_columns, key, referenced_owner, referenced_table));
}

bool OracleSession::CreateIndex(const IndexRef& index, const std::vector<std::string>& columns) {
  return Execute(CreateIndexText(index, columns));
}

bool OracleSession::CreateTable(const TableInfo& table, const std::vector<ColumnInfo>& columns,
                                bool with_tablespace, const LineSink& trace) {
  const std::string statement = CreateTableText(table, columns, with_tablespace);
  // A slash and n, not line ends: traces have always looked so.
  if (trace) trace("/n" + statement + "/n");
  return Execute(statement);
}

bool OracleSession::RenameTable(std::string_view owner, std::string_view table,
                                std::string_view new_name) {
  return Execute(RenameTableText(owner, table, new_name));
}

bool OracleSession::RenameIndex(std::string_view owner, std::string_view index,
                                std::string_view new_name) {
  return Execute(RenameIndexText(owner, index, new_name));
}

bool OracleSession::ReadKeyColumns(const KeyInfo& key, std::vector<std::string>& columns) {
  const std::size_t warnings = warnings_.size();
  if (!ListConstraintColumns(key.owner, key.constraint_name, columns) || !ReadWhole(warnings)) {
    return false;
  }
  for (const std::string& column : columns) {
    if (Characters(column) < kCutColumnName) continue;
    return Refuse("the name of column " + column + " of key " + key.owner + "." +
                  key.constraint_name + " may be longer than is shown here; nothing was changed");
  }
  return true;
}

bool OracleSession::ReadRebuild(KeyRebuild& rebuild) {
  if (!ReadKeyColumns(rebuild.key, rebuild.columns)) return false;
  const std::size_t warnings = warnings_.size();
  std::vector<KeyInfo> referencing;
  if (!ListReferencingForeignKeys(rebuild.key.constraint_name, referencing) ||
      !ReadWhole(warnings)) {
    return false;
  }
  for (KeyInfo& key : referencing) {
    KeyRebuild::ForeignKey foreign_key{std::move(key), {}};
    if (!ReadKeyColumns(foreign_key.key, foreign_key.columns)) return false;
    rebuild.foreign_keys.push_back(std::move(foreign_key));
  }
  return true;
}

// gone: what would bring back the keys that are dropped and not created again, in the order in
// which it has to run.
bool OracleSession::RunRebuild(const KeyRebuild& rebuild, std::string_view new_name,
                               std::deque<std::string>& gone) {
  const KeyInfo& key = rebuild.key;
  for (const auto& foreign_key : rebuild.foreign_keys) {
    if (!DropConstraint(foreign_key.key)) return false;
    gone.push_back(AddForeignKeyText(foreign_key.columns, rebuild.columns, foreign_key.key,
                                     key.owner, key.table_name));
  }
  if (!DropConstraint(key)) return false;
  gone.push_front(AddPrimaryKeyText(key, rebuild.columns));
  KeyInfo renamed = key;
  renamed.constraint_name = new_name;
  if (!AddPrimaryKey(renamed, rebuild.columns)) return false;
  gone.pop_front();
  for (const auto& foreign_key : rebuild.foreign_keys) {
    if (!AddForeignKey(foreign_key.columns, rebuild.columns, foreign_key.key, key.owner,
                       key.table_name)) {
      return false;
    }
    gone.pop_front();
  }
  return true;
}

bool OracleSession::RenamePrimaryKey(const KeyInfo& key, std::string_view new_name) {
  KeyRebuild rebuild;
  rebuild.key = key;
  if (!ReadRebuild(rebuild)) return false;
  std::deque<std::string> gone;
  if (RunRebuild(rebuild, new_name, gone)) return true;
  for (const std::string& statement : gone) {
    warnings_.push_back("dropped and not created again, to be run by hand: " + statement);
  }
  return false;
}

}  // namespace quillmere
