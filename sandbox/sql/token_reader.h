// SPDX-License-Identifier: MIT
// A position in a token list that keeps its first error. From then on the list seems to be at its
// end: a parser goes on asking without harm, finds nothing, and looks at the outcome once. Private
// to sql/.
#pragma once

#include <string_view>
#include <vector>

#include "sandbox/base/status.h"
#include "sandbox/sql/ast.h"
#include "sandbox/sql/lexer.h"

namespace quillmere::sandbox {

class TokenReader {
 public:
  // `tokens` must outlive the reader and end with an End token.
  explicit TokenReader(const std::vector<Token>& tokens) : tokens_(tokens) {}

  const Status& status() const { return status_; }
  // Keeps the error unless there is one already.
  void Fail(const Status& status);

  const Token& Current() const { return tokens_[at_]; }
  const Token& Ahead(std::size_t count = 1) const;
  bool AtEnd() const { return Current().kind == TokenKind::End; }
  void Advance();

  // Keywords and symbols alike.
  bool Is(std::string_view text) const { return Matches(Current(), text); }
  bool NextIs(std::string_view text) const { return Matches(Ahead(), text); }
  bool Take(std::string_view text);
  // Fails with `error`, or with the usual one for a text that is missing, when it is not there.
  void Need(std::string_view text, int error = 0);

  // A name that is no reserved word. Failed, these give something empty.
  bool IsName() const;
  std::string Name(int error);
  ObjectName Object(int error);      // [owner.]name
  std::vector<std::string> Names();  // (name, name, ...)
  int Integer(int error);            // with an optional sign

  static bool Matches(const Token& token, std::string_view text);

 private:
  const std::vector<Token>& tokens_;
  std::size_t at_ = 0;
  Status status_;
};

}  // namespace quillmere::sandbox
