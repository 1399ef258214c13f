// SPDX-License-Identifier: MIT
#include "engine/redo_assembler.h"

#include <algorithm>

#include "foundation/text.h"

namespace quillmere {
namespace {

bool IsComment(std::string_view text) {
  return text.starts_with("/*") || text.starts_with("--");
}

bool SkipWord(std::string_view& text, std::string_view word) {
  if (!EqualsIgnoringCase(text.substr(0, word.size()), word)) return false;
  text.remove_prefix(word.size());
  return true;
}

bool SkipQuotedName(std::string_view& text) {
  if (!text.starts_with('"')) return false;
  const std::size_t close = text.find('"', 1);
  if (close == std::string_view::npos || close == 1) return false;
  text.remove_prefix(close + 1);
  return true;
}

// What a statement of the redo begins with, and what follows the name of its table.
bool BeginsStatement(std::string_view text) {
  std::string_view after;
  if (SkipWord(text, "insert into ")) {
    after = "(";
  } else if (SkipWord(text, "update ")) {
    after = " set ";
  } else if (SkipWord(text, "delete from ")) {
    after = " where ";
  } else {
    return false;
  }
  if (!SkipQuotedName(text) || !SkipWord(text, ".") || !SkipQuotedName(text)) return false;
  if (after == "(") text = TrimLeft(text);
  return SkipWord(text, after);
}

// False when a literal that goes on with this text would be followed by what can not follow one.
bool MayContinueLiteral(std::string_view text) {
  std::size_t quote = 0;
  while ((quote = text.find('\'', quote)) != std::string_view::npos) {
    const std::size_t behind = std::min(text.find_first_not_of('\'', quote), text.size());
    const bool doubled = (behind - quote) % 2 == 0;
    if (!doubled) {
      return behind == text.size() ||
             std::string_view(" \t\r\n,);|").find(text[behind]) != std::string_view::npos;
    }
    quote = behind;
  }
  return true;
}

}  // namespace

bool RedoAssembler::IsBrokenBy(std::string_view piece) const {
  if (open_.empty() || !BeginsStatement(piece)) return false;
  return latest_piece_ < kLeastFullPiece || !scanner_.Inside() || !MayContinueLiteral(piece);
}

bool RedoAssembler::Add(std::int64_t scn, std::string_view piece, Taker& taker) {
  if (IsBrokenBy(piece)) GiveUp(taker);
  const std::size_t bytes = piece.size();
  std::string line_feeds_replaced;
  std::size_t from = 0;
  while (true) {
    if (open_.empty() && from == 0) {
      piece = TrimLeft(piece);
      if (piece.empty()) return true;
      if (IsComment(piece)) {
        taker.OnComment(scn, piece);
        return true;
      }
    }
    const std::size_t end = scanner_.Find(piece, from, ';', '\n');
    if (end == std::string_view::npos) break;
    if (piece[end] == '\n') {
      // Between tokens a line feed is a blank; the batch file needs its line ends for itself.
      if (line_feeds_replaced.empty()) {
        line_feeds_replaced = piece;
        piece = line_feeds_replaced;
      }
      line_feeds_replaced[end + (line_feeds_replaced.size() - piece.size())] = ' ';
      from = end + 1;
      continue;
    }
    Complete(scn, piece.substr(0, end), taker);
    piece.remove_prefix(end + 1);
    from = 0;
  }
  if (open_.size() + piece.size() > most_bytes_) return false;
  if (open_.empty()) open_scn_ = scn;
  open_ += piece;
  latest_piece_ = bytes;
  return true;
}

void RedoAssembler::Complete(std::int64_t scn, std::string_view last_part, Taker& taker) {
  if (open_.empty()) return taker.OnStatement(scn, last_part);
  open_ += last_part;
  taker.OnStatement(scn, open_);
  open_.clear();
}

void RedoAssembler::GiveUp(Taker& taker) {
  taker.OnUnfinished(open_scn_, open_);
  open_.clear();
  scanner_ = {};
}

bool RedoAssembler::Finish(Taker& taker) {
  if (open_.empty()) return true;
  if (latest_piece_ >= kLeastFullPiece) return false;
  GiveUp(taker);
  return true;
}

}  // namespace quillmere
