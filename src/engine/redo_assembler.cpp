#include "engine/redo_assembler.h"

#include <algorithm>

namespace quillmere {
namespace {

constexpr std::string_view kConjunction = " and ROWID = '";
constexpr std::size_t kRowAddress = 18;
constexpr std::size_t kCut = 33;
static_assert(kConjunction.size() + kRowAddress + 1 == kCut);

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsBlankText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), IsBlank);
}

}  // namespace

std::string_view CutRowAddress(std::string_view statement) {
  if (statement.ends_with(')')) return statement;
  if (statement.size() <= kCut) return {};
  const std::string_view tail = statement.substr(statement.size() - kCut);
  const std::string_view address = tail.substr(kConjunction.size(), kRowAddress);
  if (!tail.starts_with(kConjunction) || tail.back() != '\'' ||
      address.find('\'') != std::string_view::npos) {
    return {};
  }
  return statement.substr(0, statement.size() - kCut);
}

bool RedoAssembler::Add(std::string_view piece, Taker& taker) {
  std::size_t begin = 0;
  std::size_t from = 0;
  std::string line_feeds_replaced;
  std::size_t end = 0;
  while ((end = scanner_.Find(piece, from, ';', '\n')) != std::string_view::npos) {
    from = end + 1;
    if (piece[end] == '\n') {
      // Between tokens a line feed is a blank; the batch file needs its line ends for itself.
      if (line_feeds_replaced.empty()) line_feeds_replaced = piece;
      line_feeds_replaced[end] = ' ';
      piece = line_feeds_replaced;
      continue;
    }
    const std::string_view part = piece.substr(begin, end - begin);
    if (buffer_.empty()) {
      Complete(part, taker);
    } else {
      buffer_ += part;
      Complete(buffer_, taker);
      buffer_.clear();
    }
    begin = from;
  }
  const std::string_view rest = piece.substr(begin);
  if (buffer_.empty() && IsBlankText(rest)) return true;
  if (buffer_.size() + rest.size() > kMostBytes) return false;
  buffer_ += rest;
  return true;
}

void RedoAssembler::Complete(std::string_view statement, Taker& taker) {
  const std::string_view kept = CutRowAddress(statement);
  if (kept.empty()) {
    taker.OnUnsafeStatement(statement);
  } else {
    taker.OnStatement(kept);
  }
}

}  // namespace quillmere
