// SPDX-License-Identifier: MIT
// Writes changes as LogMiner does: quoted names, quoted values, the row address at the end. Plain
// functions, for any thread.
#pragma once

#include <string>
#include <vector>

#include "sandbox/redo/redo_record.h"

namespace quillmere::sandbox {

// The longest piece of a statement that one row of v$logmnr_contents carries: bytes in the server's
// character set, which are as many here when that is UTF-8, and up to four for each when it has one
// byte a character.
inline constexpr std::size_t kRedoPiece = 4000;

struct RedoStatement {
  RedoOperation operation = RedoOperation::Insert;
  std::string text;  // with its semicolon
};

// One or two statements: large values of an insert follow in an update, as they do in the log. With
// `undo` those that undo the record, which tell the row by its address alone. ORA-01578 for a
// record that does not fit; `out` then holds nothing of use.
Status WriteRedo(const RedoShape& shape, const RedoRecord& record, std::int64_t row, bool undo,
                 const EvalContext& context, std::vector<RedoStatement>* out);

// The statement in pieces of at most kRedoPiece bytes or characters, cut between characters.
std::vector<std::string> SplitRedo(const std::string& text, bool by_characters);

}  // namespace quillmere::sandbox
