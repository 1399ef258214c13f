// Puts the rows of mined redo together into executable statements.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/quote_scanner.h"

namespace quillmere {

class RedoAssembler {
 public:
  // Takes each complete statement, without its semicolon and row address. text is valid during the
  // call only. An unsafe one comes with an empty text and its mined text: without the 33 characters
  // that would have to be cut it could match other rows, or all.
  class Taker {
   public:
    virtual ~Taker() = default;
    virtual void OnStatement(std::string_view text) = 0;
    virtual void OnUnsafeStatement(std::string_view mined) = 0;
  };

  // A statement may not grow beyond this many bytes.
  static constexpr std::size_t kMostBytes = std::size_t{1} << 28;

  // Appends one row's text. False when the statement grew too long.
  bool Add(std::string_view piece, Taker& taker);

  // True when text is waiting for its end: the rows broke off inside a statement.
  bool Unfinished() const { return !buffer_.empty(); }

 private:
  void Complete(std::string_view statement, Taker& taker);

  QuoteScanner scanner_;
  std::string buffer_;  // earlier rows of a statement that is not complete yet
};

// The statement without the conjunction on ROWID that mined updates and deletes end with; whole
// when it ends in ")". Empty when the 33 characters at its end are no such conjunction.
std::string_view CutRowAddress(std::string_view statement);

}  // namespace quillmere
