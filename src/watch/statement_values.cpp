// SPDX-License-Identifier: MIT
#include "watch/statement_values.h"

#include <algorithm>

#include "foundation/text.h"

namespace quillmere {
namespace {

bool StartsWithWord(std::string_view text, std::string_view word) {
  return text.size() > word.size() && EqualsIgnoringCase(text.substr(0, word.size()), word) &&
         IsBlank(text[word.size()]);
}

// Behind the closing quote of the literal or name that begins there; npos when there is none. One
// that is doubled does not close.
std::size_t EndOfQuoted(std::string_view text, std::size_t begin) {
  const char quote = text[begin];
  for (std::size_t i = begin + 1; i < text.size(); ++i) {
    if (text[i] != quote) continue;
    if (i + 1 < text.size() && text[i + 1] == quote) {
      ++i;
    } else {
      return i + 1;
    }
  }
  return std::string_view::npos;
}

// Reads a statement from its table's name on.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool Take(std::string_view mark) {
    text_ = TrimLeft(text_);
    if (!EqualsIgnoringCase(text_.substr(0, mark.size()), mark)) return false;
    text_.remove_prefix(mark.size());
    return true;
  }
  bool AtEnd() const { return Trim(text_).empty() || Trim(text_) == ";"; }

  bool TakeColumn(std::string& column) {
    text_ = TrimLeft(text_);
    if (text_.starts_with('"')) {
      const std::size_t end = EndOfQuoted(text_, 0);
      if (end == std::string_view::npos) return false;
      column = text_.substr(1, end - 2);
      text_.remove_prefix(end);
      return true;
    }
    const std::size_t end = std::min(text_.find_first_of(" =,)"), text_.size());
    column = text_.substr(0, end);
    text_.remove_prefix(end);
    return !column.empty();
  }

  // Up to a comma, a closing parenthesis or the words where and and, outside of quotes and of its
  // own parentheses.
  bool TakeExpression(std::string& expression) {
    text_ = TrimLeft(text_);
    std::size_t depth = 0;
    std::size_t i = 0;
    while (i < text_.size()) {
      const char c = text_[i];
      if (c == '\'' || c == '"') {
        i = EndOfQuoted(text_, i);
        if (i == std::string_view::npos) return false;
        continue;
      }
      if (depth == 0 && (c == ',' || c == ')')) break;
      const std::string_view rest = text_.substr(i + 1);
      if (depth == 0 && IsBlank(c) &&
          (StartsWithWord(rest, "where") || StartsWithWord(rest, "and")))
        break;
      depth += c == '(' ? 1 : 0;
      depth -= c == ')' ? 1 : 0;
      ++i;
    }
    expression = TrimRight(text_.substr(0, i));
    text_.remove_prefix(i);
    return depth == 0 && !expression.empty();
  }

 private:
  std::string_view text_;
};

bool ReadInsert(Reader& reader, std::vector<ColumnValue>& given) {
  if (!reader.Take("(")) return false;
  do {
    if (!reader.TakeColumn(given.emplace_back().column)) return false;
  } while (reader.Take(","));
  if (!reader.Take(")") || !reader.Take("values") || !reader.Take("(")) return false;
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (i > 0 && !reader.Take(",")) return false;
    if (!reader.TakeExpression(given[i].expression)) return false;
  }
  return reader.Take(")") && reader.AtEnd();
}

bool ReadPairs(Reader& reader, std::string_view between, std::vector<ColumnValue>& pairs) {
  do {
    ColumnValue& pair = pairs.emplace_back();
    if (!reader.TakeColumn(pair.column)) return false;
    if (reader.Take("is null")) {
      pair.expression = "NULL";
    } else if (!reader.Take("=") || !reader.TakeExpression(pair.expression)) {
      return false;
    }
  } while (reader.Take(between));
  return true;
}

}  // namespace

std::optional<StatementValues> ReadStatementValues(std::string_view statement) {
  const ParsedStatement parsed = ParseStatement(statement);
  if (parsed.table.empty()) return std::nullopt;
  StatementValues values;
  values.verb = parsed.verb;
  // As the server takes them: a name without quotes means capitals.
  values.owner = parsed.owner_quoted ? std::string(parsed.owner) : UpperCase(parsed.owner);
  values.table = parsed.table_quoted ? std::string(parsed.table) : UpperCase(parsed.table);
  Reader reader(parsed.rest);
  if (parsed.verb == Verb::Insert) {
    if (!ReadInsert(reader, values.given)) return std::nullopt;
    return values;
  }
  if (parsed.verb == Verb::Update &&
      (!reader.Take("set") || !ReadPairs(reader, ",", values.given))) {
    return std::nullopt;
  }
  if (!reader.Take("where") || !ReadPairs(reader, "and", values.before) || !reader.AtEnd()) {
    return std::nullopt;
  }
  return values;
}

std::optional<std::string> PlainValue(std::string_view expression) {
  if (EqualsIgnoringCase(expression, "NULL")) return std::nullopt;
  std::size_t begin = 0;
  for (const std::string_view conversion :
       {"TO_DATE(", "TO_TIMESTAMP(", "TO_TIMESTAMP_TZ(", "HEXTORAW("}) {
    if (EqualsIgnoringCase(expression.substr(0, conversion.size()), conversion)) {
      begin = conversion.size();
    }
  }
  if (begin >= expression.size() || expression[begin] != '\'') return std::string(expression);
  const std::size_t end = EndOfQuoted(expression, begin);
  if (end == std::string_view::npos || (begin == 0 && end != expression.size())) {
    return std::string(expression);
  }
  std::string plain;
  for (std::size_t i = begin + 1; i + 1 < end; ++i) {
    plain += expression[i];
    if (expression[i] == '\'') ++i;
  }
  // As a server gives it.
  return EqualsIgnoringCase(expression.substr(0, begin), "HEXTORAW(") ? UpperCase(plain) : plain;
}

}  // namespace quillmere
