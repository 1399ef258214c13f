// SPDX-License-Identifier: MIT
// The grammar, by recursive descent. No function says whether it failed: the reader keeps the first
// error, and whoever began looks at status() at the end. Private to sql/.
#pragma once

#include "sandbox/sql/token_reader.h"

namespace quillmere::sandbox {

class Parser : public TokenReader {
 public:
  // Both must outlive the parser.
  Parser(std::string_view sql, const std::vector<Token>& tokens) : TokenReader(tokens), sql_(sql) {}

  void Parse(Statement* out);
  // A value: literals, columns, functions, + - * / ||, or what stands in parentheses. Never null.
  ExprPtr Value();

 private:
  // Expressions and queries (expression_parser.cpp). Whether a condition stands where one is wanted
  // is judged when the statement is compiled.
  ExprPtr Condition();
  ExprPtr Conjunction();
  ExprPtr Negation();
  ExprPtr Predicate();
  ExprPtr PredicateOf(ExprPtr left);
  ExprPtr Term();
  ExprPtr Factor();
  ExprPtr Primary();
  ExprPtr NameOrCall();
  ExprPtr Arguments(ExprPtr call);
  void Open();
  void Close();
  ExprPtr Make(ExprOp op, std::string_view text = {}, ExprPtr first = nullptr,
               ExprPtr second = nullptr);
  void AddArgument(Expr* expr, ExprPtr argument);
  ExprPtr Subquery(ExprOp op);
  Select Query();
  void QueryFrom(Select* select);
  ExprPtr Both(ExprPtr first, ExprPtr second);
  void QueryLock(Select* select);
  SelectItem QueryItem();
  OrderItem QueryOrder();

  // DML, control and procedures (statement_parser.cpp)
  void ParseInsert(Insert* out);
  void ParseUpdate(Update* out);
  void ParseDelete(Delete* out);
  ExprPtr ValueOrDefault();
  ExprPtr Where();
  void ParseControl(TransactionControl* out);
  void ParseBlock(ProcedureCall* out);
  void ParseArgument(ProcedureArgument* out);
  void NotUnderstood() { Fail(Ora(900, Shortened(sql_))); }

  // Tables, indexes, and users (ddl_parser.cpp)
  void ParseCreate(Statement* out);
  void ParseAlter(Statement* out);
  void ParseAdded(ObjectName table, Statement* out);
  void ParseDrop(ObjectChange* out);
  void ParseCreateTable(TableDefinition* out);
  void ParseTableElement(TableDefinition* out);
  void ParseColumn(TableDefinition* out);
  bool TakeKey(ConstraintDef* out);  // PRIMARY KEY or UNIQUE
  void ParseReferences(ConstraintDef* out);
  TypeName Type();
  void ParseTablespace(std::string* out);
  void ParseUser(bool create, UserStatement* out);
  void ParseDatabase(DatabaseChange* out);
  void ParseSupplemental(bool drop, DatabaseChange* out);

  std::string_view sql_;
  int depth_ = 0;
};

}  // namespace quillmere::sandbox
