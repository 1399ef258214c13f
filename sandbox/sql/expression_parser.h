// The expression part of the grammar. Private to sql/.
#pragma once

#include "sandbox/sql/token_reader.h"

namespace quillmere::sandbox {

class ExpressionParser {
 public:
  explicit ExpressionParser(TokenReader& reader) : reader_(reader) {}

  // A value: literals, columns, functions, + - * / ||.
  Status ParseValue(ExprPtr* out);
  // A condition: comparisons, IN, BETWEEN, LIKE, IS NULL, EXISTS under AND, OR, NOT.
  Status ParseCondition(ExprPtr* out);
  Status ParseSelect(Select* out);

 private:
  Status ParseAnd(ExprPtr* out);
  Status ParseNot(ExprPtr* out);
  Status ParsePredicate(ExprPtr* out);
  Status ParsePredicateTail(ExprPtr left, ExprPtr* out);
  Status ParseIn(ExprPtr left, ExprPtr* out);
  Status ParseExists(ExprPtr* out);
  Status ParseTerm(ExprPtr* out);
  Status ParseFactor(ExprPtr* out);
  Status ParsePrimary(ExprPtr* out);
  Status ParseNameOrCall(ExprPtr* out);
  Status ParseCallArguments(Expr* call);
  Status ParseTypedLiteral(std::string_view function, ExprPtr* out);
  Status ParseSelectItem(SelectItem* out);
  Status ParseFrom(Select* out);
  Status ParseOrderBy(Select* out);
  bool ParenthesisHoldsCondition() const;
  Status Enter();

  TokenReader& reader_;
  int depth_ = 0;
};

}  // namespace quillmere::sandbox
