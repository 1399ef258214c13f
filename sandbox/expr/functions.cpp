#include "sandbox/expr/functions.h"

#include <unordered_map>

#include "sandbox/expr/function_parts.h"

namespace quillmere::sandbox {

namespace {

std::vector<Function> MakeTable() {
  std::vector<Function> table;
  AddNumberFunctions(&table);
  AddTextFunctions(&table);
  AddTimeFunctions(&table);
  return table;
}

// How well an entry fits: exact kinds first, then those a NULL or a text can become.
int Fit(const Function& function, const std::vector<Kind>& args) {
  int score = 0;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const Kind wanted = ArgumentKind(function, i);
    if (args[i] == wanted) {
      score += 4;
    } else if (args[i] == Kind::Null || (args[i] == Kind::Lob && wanted == Kind::Text)) {
      score += 3;
    } else if (args[i] == Kind::Text) {
      score += 1;
    }
  }
  return score;
}

}  // namespace

const std::vector<Function>& Functions() {
  static const std::vector<Function> table = MakeTable();
  return table;
}

Status FindFunction(std::string_view name, const std::vector<Kind>& args, const Function** out) {
  bool known = false;
  int best = -1;
  // NVL is of its first argument's kind, whatever the second one is.
  const bool by_first = name == "NVL" && args.size() == 2 && args[0] != Kind::Null;
  const std::vector<Kind> fitted = by_first ? std::vector<Kind>{args[0]} : args;
  for (const Function& function : Functions()) {
    if (function.name != name) continue;
    known = true;
    if (args.size() < function.min_args || args.size() > function.max_args) continue;
    const int fit = Fit(function, fitted);
    if (fit > best) {
      best = fit;
      *out = &function;
    }
  }
  if (best >= 0) return {};
  if (known) return Ora(909);
  return {904, "\"" + std::string(name) + "\": invalid identifier"};
}

Status CallFunction(const Function& function, const std::vector<Datum>& args,
                    const EvalContext& context, Datum* out) {
  if (function.strict) {
    for (const Datum& argument : args) {
      if (!argument.null) continue;
      *out = Datum::NullOf(function.result);
      return {};
    }
  }
  *out = Datum::Of(function.result, {});
  if (Status status = function.call(args, context, out); !status.ok()) return status;
  if (function.result == Kind::Text && out->text.empty()) out->null = true;
  return {};
}

}  // namespace quillmere::sandbox
