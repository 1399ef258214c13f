#include "sandbox/sql/token_reader.h"

#include <algorithm>
#include <charconv>

namespace quillmere::sandbox {

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

Status TokenReader::ReadName(std::string* out, int error) {
  const Token& token = Current();
  const bool is_name = token.kind == TokenKind::QuotedName ||
                       (token.kind == TokenKind::Word && !IsReservedWord(token.text));
  if (!is_name) return Ora(error);
  *out = token.text;
  Advance();
  return {};
}

Status TokenReader::ReadObjectName(ObjectName* out, int error) {
  if (Status status = ReadName(&out->name, error); !status.ok()) return status;
  out->owner.clear();
  if (!TakeSymbol(".")) return {};
  out->owner = std::move(out->name);
  return ReadName(&out->name, error);
}

Status TokenReader::ReadNameList(std::vector<std::string>* out) {
  if (Status status = NeedSymbol("(", 906); !status.ok()) return status;
  do {
    std::string name;
    if (Status status = ReadName(&name, 904); !status.ok()) return status;
    out->push_back(std::move(name));
  } while (TakeSymbol(","));
  return NeedSymbol(")", 907);
}

Status TokenReader::ReadInteger(int* out, int error) {
  const bool negative = TakeSymbol("-");
  const Token& token = Current();
  if (token.kind != TokenKind::Number) return Ora(error);
  const char* end = token.text.data() + token.text.size();
  const auto [stop, failure] = std::from_chars(token.text.data(), end, *out);
  if (failure != std::errc() || stop != end) return Ora(error);
  if (negative) *out = -*out;
  Advance();
  return {};
}

}  // namespace quillmere::sandbox
