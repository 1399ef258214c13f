// SPDX-License-Identifier: MIT
// Takes a script of statements apart: a semicolon at a line's end, outside of literals, quoted
// names and comments, ends a statement.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillmere {

struct ScriptStatement {
  std::string text;      // without the semicolon
  std::size_t line = 0;  // where it begins, from 1
};

class StatementSplitter {
 public:
  // The next line of the script, without its line end. The statement that it completes, if any.
  std::optional<ScriptStatement> Feed(std::string_view line);

  // After the last line: what stands there without a semicolon, if anything.
  std::optional<ScriptStatement> Finish();

  // What the script has begun and not ended ("a literal that begins in line 3"); empty when it may
  // end here.
  std::string Unfinished() const;

 private:
  enum class Place { Outside, Literal, QuotedName, Comment };

  // What a line holds besides blanks and comments.
  struct Seen {
    bool any = false;
    std::size_t last = 0;  // where the last of it stands
    bool ends = false;     // it is a semicolon outside of literals and names
  };

  Seen Scan(std::string_view line);
  void Enter(Place place);
  void Toggle(Place place);
  std::optional<ScriptStatement> Take();

  Place place_ = Place::Outside;
  ScriptStatement statement_;
  std::size_t line_ = 0;
  std::size_t place_line_ = 0;
};

}  // namespace quillmere
