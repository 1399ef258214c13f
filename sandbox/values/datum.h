// SPDX-License-Identifier: MIT
// One value as statements handle it: its kind and its canonical text. Plain values.
#pragma once

#include <string>
#include <string_view>

#include "sandbox/values/datetime.h"

namespace quillmere::sandbox {

struct Datum {
  Kind kind = Kind::Null;
  bool null = true;
  std::string text;

  static Datum Of(Kind kind, std::string text) { return Datum{kind, false, std::move(text)}; }
  static Datum NullOf(Kind kind) { return Datum{kind, true, {}}; }
};

// What the evaluation of expressions depends on besides their operands. One per session, which
// changes it between statements only; whoever is given it must not outlive the session.
struct EvalContext {
  Nls nls;
  DateTime now;  // fixed at the beginning of each statement
  std::string user;
};

// Implicit conversion as the server does it. ORA-00932 when there is none, ORA-01722 and the like
// when the text is not of that kind; `out` is then untouched.
Status Convert(const Datum& value, Kind target, const EvalContext& context, Datum* out);

// How a client reads a value that it fetches as text.
Status DisplayText(const Datum& value, const EvalContext& context, std::string* out);

// For messages: "TIMESTAMP".
std::string_view KindName(Kind kind);

}  // namespace quillmere::sandbox
