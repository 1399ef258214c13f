// SPDX-License-Identifier: MIT
// Puts the rows of mined redo together into statements, by their text alone. Made for one capture,
// on its thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/quote_scanner.h"

namespace quillmere {

// A statement ends at the first semicolon outside of literals and names; a row that does not end it
// is a piece of it, and the next row goes on. Two kinds of rows must not swallow what follows them:
//
// - a comment where a statement would begin, as rows of temporary tables are written;
// - a statement whose quotes do not pair (some servers leave an apostrophe as it is) or that has no
//   semicolon. When a piece begins as a statement does while another is open, there are two
//   readings: the open one is broken, or the piece goes on inside a long literal, for tables that
//   audit others hold statements as text. The server cuts a statement only where a piece is full,
//   at 4000 characters of its character set, of which no one takes more than twice the bytes that
//   it takes here. So the open one is broken when its latest piece is shorter than kLeastFullPiece,
//   when it is not inside a literal, or when the first quote that is not doubled in the piece is
//   followed by what can not follow a literal. Else the piece is taken as its continuation.
class RedoAssembler {
 public:
  static constexpr std::size_t kLeastFullPiece = 2000;
  static constexpr std::size_t kMostBytes = std::size_t{1} << 28;

  // A statement may not grow beyond this many bytes.
  explicit RedoAssembler(std::size_t most_bytes = kMostBytes) : most_bytes_(most_bytes) {}

  // What the rows turn out to be; text is valid during the call only.
  class Taker {
   public:
    virtual ~Taker() = default;
    // A whole statement without its semicolon, and the SCN of the row that completed it.
    virtual void OnStatement(std::int64_t scn, std::string_view text) = 0;
    // One that never ends, with the SCN of its first row.
    virtual void OnUnfinished(std::int64_t scn, std::string_view text) = 0;
    // A row that is no statement.
    virtual void OnComment(std::int64_t scn, std::string_view text) = 0;
  };

  // Takes one row's text. False when the open statement grew too long.
  bool Add(std::int64_t scn, std::string_view piece, Taker& taker);

  // After the last row. False when the rows broke off: the open statement was to go on.
  bool Finish(Taker& taker);

  // The statement that waits for its end, empty when none does, and the SCN of its first row.
  std::string_view Open() const { return open_; }
  std::int64_t OpenScn() const { return open_scn_; }

 private:
  bool IsBrokenBy(std::string_view piece) const;
  void GiveUp(Taker& taker);
  void Complete(std::int64_t scn, std::string_view last_part, Taker& taker);

  const std::size_t most_bytes_;
  QuoteScanner scanner_;
  std::string open_;
  std::int64_t open_scn_ = 0;
  std::size_t latest_piece_ = 0;  // its bytes
};

}  // namespace quillmere
