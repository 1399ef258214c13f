// SPDX-License-Identifier: MIT
// The scalar functions and arithmetic of SQL. Each is registered with SQLite, which calls it; the
// table is made once and only read afterwards, on any thread.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "sandbox/values/datum.h"

namespace quillmere::sandbox {

struct Function {
  std::string_view name;  // as SQL spells it; operators as their symbol
  std::size_t min_args;
  std::vector<Kind> args;  // what each argument is converted to, as many as there may be
  Kind result;
  // Called with canonical texts of those kinds, none of them NULL: a NULL argument makes the result
  // NULL, and so does an empty text that is no large object. After a failure `out` means nothing.
  Status (*call)(const std::vector<std::string>& args, const EvalContext& context,
                 std::string* out);
};

std::span<const Function> Functions();

// The entry that fits best: ORA-00904 for an unknown name, 00909 for a wrong number of arguments.
Status FindFunction(std::string_view name, const std::vector<Kind>& args, const Function** out);

}  // namespace quillmere::sandbox
