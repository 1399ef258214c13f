// The scalar functions and arithmetic of SQL, written once: constants are evaluated through this
// table, and the same entries are registered with SQLite for expressions on columns.
#pragma once

#include <string_view>
#include <vector>

#include "sandbox/values/datum.h"

namespace quillmere::sandbox {

struct Function {
  std::string_view name;  // as SQL spells it; operators as their symbol
  std::size_t min_args;
  std::size_t max_args;
  std::vector<Kind> args;  // what each argument is converted to; the last one repeats
  Kind result;
  bool strict;  // NULL in, NULL out
  Status (*call)(const std::vector<Datum>& args, const EvalContext& context, Datum* out);
};

const std::vector<Function>& Functions();

// The entry for these arguments: ORA-00904 for an unknown name, 00909 for a wrong number.
Status FindFunction(std::string_view name, const std::vector<Kind>& args, const Function** out);

inline Kind ArgumentKind(const Function& function, std::size_t index) {
  return index < function.args.size() ? function.args[index] : function.args.back();
}

// Calls with arguments already converted; an empty text comes back as NULL.
Status CallFunction(const Function& function, const std::vector<Datum>& args,
                    const EvalContext& context, Datum* out);

}  // namespace quillmere::sandbox
