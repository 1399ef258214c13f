// SPDX-License-Identifier: MIT
#include "foundation/statement_splitter.h"

#include <utility>

#include "foundation/text.h"

namespace quillmere {

std::optional<ScriptStatement> StatementSplitter::Feed(std::string_view line) {
  ++line_;
  const std::size_t begin = statement_.text.size();
  const Seen seen = Scan(line);
  // Blank lines and comments in front of a statement are no part of it.
  if (begin == 0 && !seen.any) return std::nullopt;
  if (begin == 0) statement_.line = line_;
  statement_.text += line;
  if (place_ == Place::Outside && seen.ends) {
    statement_.text.resize(begin + seen.last);
    return Take();
  }
  statement_.text += '\n';
  return std::nullopt;
}

// Follows literals, names and comments through the line.
StatementSplitter::Seen StatementSplitter::Scan(std::string_view line) {
  Seen seen;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    const char next = i + 1 < line.size() ? line[i + 1] : '\0';
    if (place_ == Place::Comment) {
      if (c == '*' && next == '/') {
        place_ = Place::Outside;
        ++i;
      }
      continue;
    }
    if (place_ == Place::Outside && c == '-' && next == '-') break;
    if (place_ == Place::Outside && c == '/' && next == '*') {
      Enter(Place::Comment);
      ++i;
      continue;
    }
    if (place_ == Place::Outside && IsBlank(c)) continue;
    seen.any = true;
    seen.last = i;
    seen.ends = place_ == Place::Outside && c == ';';
    if (c == '\'' && place_ != Place::QuotedName) Toggle(Place::Literal);
    if (c == '"' && place_ != Place::Literal) Toggle(Place::QuotedName);
  }
  return seen;
}

void StatementSplitter::Enter(Place place) {
  place_ = place;
  place_line_ = line_;
}

void StatementSplitter::Toggle(Place place) {
  Enter(place_ == Place::Outside ? place : Place::Outside);
}

std::optional<ScriptStatement> StatementSplitter::Take() {
  ScriptStatement taken = std::exchange(statement_, {});
  taken.text.resize(TrimRight(taken.text).size());
  if (taken.text.empty()) return std::nullopt;
  return taken;
}

std::optional<ScriptStatement> StatementSplitter::Finish() {
  return place_ == Place::Outside ? Take() : std::nullopt;
}

std::string StatementSplitter::Unfinished() const {
  const std::string line = " that begins in line " + std::to_string(place_line_);
  switch (place_) {
    case Place::Literal:
      return "a literal" + line;
    case Place::QuotedName:
      return "a quoted name" + line;
    case Place::Comment:
      return "a comment" + line;
    case Place::Outside:
      break;
  }
  return {};
}

}  // namespace quillmere
