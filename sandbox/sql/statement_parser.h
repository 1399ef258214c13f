// The statement part of the grammar. Private to sql/.
#pragma once

#include "sandbox/sql/expression_parser.h"

namespace quillmere::sandbox {

class StatementParser {
 public:
  StatementParser(std::string_view sql, const std::vector<Token>& tokens)
      : sql_(sql), reader_(tokens), expressions_(reader_) {}

  Status Parse(Statement* out);

 private:
  // DML and control (statement_parser.cpp)
  Status ParseInsert(Statement* out);
  Status ParseValueList(std::vector<ExprPtr>* out);
  Status ParseUpdate(Statement* out);
  Status ParseDelete(Statement* out);
  Status ParseWhere(ExprPtr* out);
  Status ParseControl(Statement* out);
  Status ParseBlock(Statement* out);
  Status ParseArgument(ProcedureArgument* out);
  Status NotUnderstood() const;

  // Tables and indexes (table_parser.cpp)
  Status ParseCreateTable(Statement* out);
  Status ParseTableElement(CreateTable* table);
  Status ParseColumn(ColumnDef* out);
  Status ParseColumnOptions(ColumnDef* column);
  Status ParseType(TypeName* out);
  Status ParseTypeSize(TypeName* type);
  Status ParseTimestampTail(TypeName* type);
  Status ParseInlineConstraint(std::string name, ColumnDef* column, bool* found);
  Status ParseTableConstraint(ConstraintDef* out);
  Status ParseReferences(ConstraintDef* out);
  Status ParseConstraintState(ConstraintDef* out);
  Status ParseTableOptions(CreateTable* out);
  bool StartsTableConstraint() const;

  // The rest of DDL (ddl_parser.cpp)
  Status ParseCreate(Statement* out);
  Status ParseCreateIndex(bool unique, Statement* out);
  Status ParseAlter(Statement* out);
  Status ParseAlterTable(Statement* out);
  Status ParseAlterTableAdd(AlterTable* out);
  Status ParseAlterTableDrop(AlterTable* out);
  Status ParseAlterIndex(Statement* out);
  Status ParseAlterSession(Statement* out);
  Status ParseDrop(Statement* out);
  Status ParseUser(bool create, Statement* out);
  Status ParseGrant(bool revoke, Statement* out);
  Status ParseAnalyze(Statement* out);
  Status SkipRest();

  std::string_view sql_;
  TokenReader reader_;
  ExpressionParser expressions_;
};

}  // namespace quillmere::sandbox
