// SPDX-License-Identifier: MIT
// Takes a statement apart into tokens. Bytes above 127 count as letters, so names and literals of
// any encoding pass through unchanged. Plain values, usable on any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sandbox/base/status.h"

namespace quillmere::sandbox {

enum class TokenKind { Word, QuotedName, String, Number, Symbol, End };

struct Token {
  TokenKind kind = TokenKind::End;
  // Word: upper-cased. QuotedName and String: without quotes, doubled ones made single.
  std::string text;
  std::size_t begin = 0;  // byte range in the statement
  std::size_t end = 0;
};

// The tokens with an End token behind them. ORA-00911, 01756, 01740, 01741 or 00972 where the
// text is none of SQL; `out` then holds what came before.
Status Tokenise(std::string_view sql, std::vector<Token>* out);

}  // namespace quillmere::sandbox
