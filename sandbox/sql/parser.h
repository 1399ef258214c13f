// SPDX-License-Identifier: MIT
// Text to statement. Errors are those Oracle gives for the same mistake where it is clear which,
// and ORA-00900 with the statement's beginning where it is not. Usable on any thread.
#pragma once

#include <string_view>

#include "sandbox/base/status.h"
#include "sandbox/sql/ast.h"

namespace quillmere::sandbox {

// After a failure `out` holds something, but nothing to be used.
Status ParseStatement(std::string_view sql, Statement* out);

// One value on its own, e.g. a column's stored default.
Status ParseExpression(std::string_view text, ExprPtr* out);

}  // namespace quillmere::sandbox
