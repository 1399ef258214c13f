// Evaluates expressions that depend on no row.
#pragma once

#include <vector>

#include "sandbox/expr/functions.h"
#include "sandbox/sql/ast.h"
#include "sandbox/sql/lexer.h"

namespace quillmere::sandbox {

// Whether the expression has no column, row address, aggregate or condition in it.
bool IsConstant(const Expr& expr);

// The kind of a constant; known from its shape alone.
Status ConstantKind(const Expr& expr, Kind* out);

// `tokens` are those of the statement executed, whose literals may differ from those parsed.
Status EvaluateConstant(const Expr& expr, const std::vector<Token>& tokens,
                        const EvalContext& context, Datum* out);

// The table's name of an operator or call: "+", "NEGATE", "TO_DATE".
std::string_view FunctionName(const Expr& expr);

}  // namespace quillmere::sandbox
