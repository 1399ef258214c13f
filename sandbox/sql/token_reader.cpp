// SPDX-License-Identifier: MIT
#include "sandbox/sql/token_reader.h"

#include <algorithm>
#include <charconv>

namespace quillmere::sandbox {

namespace {

bool IsReservedWord(std::string_view word) {
  static constexpr std::string_view kReserved[] = {
      "ACCESS",    "ADD",      "ALL",        "ALTER",      "AND",      "ANY",        "AS",
      "ASC",       "AUDIT",    "BETWEEN",    "BY",         "CHAR",     "CHECK",      "CLUSTER",
      "COLUMN",    "COMMENT",  "COMPRESS",   "CONNECT",    "CREATE",   "CURRENT",    "DATE",
      "DECIMAL",   "DEFAULT",  "DELETE",     "DESC",       "DISTINCT", "DROP",       "ELSE",
      "EXCLUSIVE", "EXISTS",   "FILE",       "FLOAT",      "FOR",      "FROM",       "GRANT",
      "GROUP",     "HAVING",   "IDENTIFIED", "IMMEDIATE",  "IN",       "INCREMENT",  "INDEX",
      "INITIAL",   "INSERT",   "INTEGER",    "INTERSECT",  "INTO",     "IS",         "LEVEL",
      "LIKE",      "LOCK",     "LONG",       "MAXEXTENTS", "MINUS",    "MLSLABEL",   "MODE",
      "MODIFY",    "NOAUDIT",  "NOCOMPRESS", "NOT",        "NOWAIT",   "NULL",       "NUMBER",
      "OF",        "OFFLINE",  "ON",         "ONLINE",     "OPTION",   "OR",         "ORDER",
      "PCTFREE",   "PRIOR",    "PRIVILEGES", "PUBLIC",     "RAW",      "RENAME",     "RESOURCE",
      "REVOKE",    "ROW",      "ROWID",      "ROWNUM",     "ROWS",     "SELECT",     "SESSION",
      "SET",       "SHARE",    "SIZE",       "SMALLINT",   "START",    "SUCCESSFUL", "SYNONYM",
      "SYSDATE",   "TABLE",    "THEN",       "TO",         "TRIGGER",  "UID",        "UNION",
      "UNIQUE",    "UPDATE",   "USER",       "VALIDATE",   "VALUES",   "VARCHAR",    "VARCHAR2",
      "VIEW",      "WHENEVER", "WHERE",      "WITH"};
  return std::binary_search(std::begin(kReserved), std::end(kReserved), word);
}

}  // namespace

bool TokenReader::Matches(const Token& token, std::string_view text) {
  return (token.kind == TokenKind::Word || token.kind == TokenKind::Symbol) && token.text == text;
}

void TokenReader::Fail(const Status& status) {
  if (!status_.ok()) return;
  status_ = status;
  at_ = tokens_.size() - 1;
}

const Token& TokenReader::Ahead(std::size_t count) const {
  return tokens_[std::min(at_ + count, tokens_.size() - 1)];
}

void TokenReader::Advance() {
  if (at_ + 1 < tokens_.size()) ++at_;
}

bool TokenReader::Take(std::string_view text) {
  if (!Is(text)) return false;
  Advance();
  return true;
}

void TokenReader::Need(std::string_view text, int error) {
  if (Take(text)) return;
  const int usual = text == "(" ? 906 : text == ")" ? 907 : text == "=" ? 927 : 905;
  Fail(Ora(error == 0 ? usual : error));
}

bool TokenReader::IsName() const {
  const Token& token = Current();
  return token.kind == TokenKind::QuotedName ||
         (token.kind == TokenKind::Word && !IsReservedWord(token.text));
}

std::string TokenReader::Name(int error) {
  if (!IsName()) Fail(Ora(error));
  std::string name = Current().text;
  Advance();
  return name;
}

ObjectName TokenReader::Object(int error) {
  ObjectName object{"", Name(error)};
  if (!Take(".")) return object;
  return {std::move(object.name), Name(error)};
}

std::vector<std::string> TokenReader::Names() {
  std::vector<std::string> names;
  Need("(");
  do {
    names.push_back(Name(904));
  } while (Take(","));
  Need(")");
  return names;
}

int TokenReader::Integer(int error) {
  const bool negative = Take("-");
  const std::string& text = Current().text;
  int value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, value);
  if (Current().kind != TokenKind::Number || failure != std::errc() || stop != end) {
    Fail(Ora(error));
  }
  Advance();
  return negative ? -value : value;
}

}  // namespace quillmere::sandbox
