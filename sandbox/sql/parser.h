// Tokens to statement. Errors are those Oracle gives for the same mistake where it is clear which,
// and ORA-00900 with the statement's beginning where it is not.
#pragma once

#include <string_view>
#include <vector>

#include "sandbox/base/status.h"
#include "sandbox/sql/ast.h"
#include "sandbox/sql/lexer.h"

namespace quillmere::sandbox {

// `sql` is the text that `tokens` came from.
Status ParseStatement(std::string_view sql, const std::vector<Token>& tokens, Statement* out);

// One expression on its own, e.g. a column's stored default.
Status ParseExpression(const std::vector<Token>& tokens, ExprPtr* out);

}  // namespace quillmere::sandbox
