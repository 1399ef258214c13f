// A position in a token list, with the questions a recursive parser asks. Private to sql/.
#pragma once

#include <string_view>
#include <vector>

#include "sandbox/base/status.h"
#include "sandbox/sql/ast.h"
#include "sandbox/sql/lexer.h"

namespace quillmere::sandbox {

class TokenReader {
 public:
  explicit TokenReader(const std::vector<Token>& tokens) : tokens_(tokens) {}

  const Token& Current() const { return tokens_[at_]; }
  const Token& Ahead(std::size_t count = 1) const {
    return tokens_[at_ + count < tokens_.size() ? at_ + count : tokens_.size() - 1];
  }
  std::size_t Index() const { return at_; }
  void Advance() {
    if (at_ + 1 < tokens_.size()) ++at_;
  }
  bool AtEnd() const { return Current().kind == TokenKind::End; }

  bool IsWord(std::string_view word) const {
    return Current().kind == TokenKind::Word && Current().text == word;
  }
  bool IsSymbol(std::string_view symbol) const {
    return Current().kind == TokenKind::Symbol && Current().text == symbol;
  }
  bool AheadIsWord(std::string_view word) const {
    return Ahead().kind == TokenKind::Word && Ahead().text == word;
  }
  bool AheadIsSymbol(std::string_view symbol) const {
    return Ahead().kind == TokenKind::Symbol && Ahead().text == symbol;
  }
  bool TakeWord(std::string_view word) {
    if (!IsWord(word)) return false;
    Advance();
    return true;
  }
  bool TakeSymbol(std::string_view symbol) {
    if (!IsSymbol(symbol)) return false;
    Advance();
    return true;
  }
  Status NeedWord(std::string_view word, int error = 905) {
    return TakeWord(word) ? Status() : Ora(error);
  }
  Status NeedSymbol(std::string_view symbol, int error) {
    return TakeSymbol(symbol) ? Status() : Ora(error);
  }

  // A name that is no reserved word; `error` when there is none.
  Status ReadName(std::string* out, int error);
  // [owner.]name
  Status ReadObjectName(ObjectName* out, int error);
  // (name, name, ...)
  Status ReadNameList(std::vector<std::string>* out);
  // A whole number, with an optional sign.
  Status ReadInteger(int* out, int error);

 private:
  const std::vector<Token>& tokens_;
  std::size_t at_ = 0;
};

bool IsReservedWord(std::string_view word);

}  // namespace quillmere::sandbox
