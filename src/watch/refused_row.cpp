// SPDX-License-Identifier: MIT
#include "watch/refused_row.h"

#include <algorithm>
#include <array>
#include <vector>

#include "foundation/quote_scanner.h"
#include "foundation/text.h"

namespace quillmere {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

// Where a word with blanks around it stands outside of literals and names.
std::size_t FindWord(std::string_view text, std::string_view word) {
  QuoteScanner quotes;
  const std::string spaced = " " + std::string(word) + " ";
  for (std::size_t at = 0; (at = quotes.Find(text, at, ' ', ' ')) != kNone; ++at) {
    if (EqualsIgnoringCase(text.substr(at, spaced.size()), spaced)) return at;
  }
  return kNone;
}

// What stands between the brackets that text begins with, parted at its commas; nothing when it
// begins with none, or they are never closed.
std::vector<std::string_view> Listed(std::string_view text) {
  std::vector<std::string_view> parts;
  if (!text.starts_with('(')) return parts;
  char quote = '\0';
  int depth = 0;
  std::size_t begin = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
      continue;
    }
    if (c == '\'' || c == '"') quote = c;
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (depth > 1 || (c != ',' && depth > 0)) continue;
    parts.push_back(Trim(text.substr(begin, i - begin)));
    begin = i + 1;
    if (depth == 0) return parts;
  }
  return {};
}

std::string RowOfInsert(std::string_view statement) {
  QuoteScanner quotes;
  const std::size_t columns_at = quotes.Find(statement, 0, '(', '(');
  const std::size_t values_at = FindWord(statement, "values");
  if (columns_at == kNone || values_at == kNone) return {};
  const auto columns = Listed(statement.substr(columns_at));
  const auto values = Listed(TrimLeft(statement.substr(values_at + sizeof(" values")), " "));
  if (columns.size() != values.size()) return {};
  std::string row;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) row += ", ";
    row.append(columns[i]).append(" = ").append(values[i]);
  }
  return row;
}

}  // namespace

std::string_view OperationOf(std::string_view statement) {
  const std::string_view text = TrimLeft(statement, " ");
  const std::string_view verb = text.substr(0, text.find(' '));
  for (const std::string_view known : {"insert", "update", "delete"}) {
    if (EqualsIgnoringCase(verb, known)) return known;
  }
  return {};
}

std::string RowOf(std::string_view statement) {
  const std::string_view operation = OperationOf(statement);
  if (operation == "insert") return RowOfInsert(statement);
  const std::size_t where = operation.empty() ? kNone : FindWord(statement, "where");
  return where == kNone ? std::string()
                        : std::string(Trim(statement.substr(where + sizeof(" where"))));
}

}  // namespace quillmere
