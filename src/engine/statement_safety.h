// SPDX-License-Identifier: MIT
// Whether a mined statement may be applied to another database, and how much of it. Pure functions:
// both ways of following ask them.
#pragma once

#include <string_view>

namespace quillmere {

enum class Safety {
  Safe,
  NoRowAddress,     // could match other rows once the row address is gone
  RowAddressAlone,  // nothing else tells the row: how a server writes that it takes a change back
  NoTable,          // no owner and table in it
  UnknownObject,    // the server no longer knows what was changed
  UnknownColumn,    // nor which column
  UnsupportedType,  // a value is missing
  NotExecutable,    // the server says so of the row
  Unfinished,       // it never ends, see RedoAssembler
};

// What its row says of a statement besides the text. By rows nothing is read but the text.
struct RowFacts {
  bool not_executable = false;  // STATUS is 2
};

struct Judgement {
  Safety safety = Safety::Safe;
  // The statement as it may be applied: without the conjunction on ROWID that mined updates and
  // deletes end with, whole when it is an insert. A view into it; empty unless it is safe.
  std::string_view kept;
};

// mined: a statement as the redo has it, without its semicolon. Unfinished is never the answer.
Judgement JudgeStatement(std::string_view mined, const RowFacts& facts = {});

// For messages and setaside.sql, to be read after "it is not applied: ".
std::string_view WhyUnsafe(Safety safety);

}  // namespace quillmere
