#include "sandbox/sql/expression_parser.h"

namespace quillmere::sandbox {

namespace {

bool EndsSelectList(const TokenReader& reader) {
  return reader.IsWord("FROM") || reader.IsSymbol(",") || reader.AtEnd() || reader.IsSymbol(")");
}

}  // namespace

// The word SELECT has been read.
Status ExpressionParser::ParseSelect(Select* out) {
  if (reader_.TakeWord("DISTINCT") || reader_.TakeWord("UNIQUE")) {
    out->distinct = true;
  } else {
    reader_.TakeWord("ALL");
  }
  do {
    if (Status status = ParseSelectItem(&out->items.emplace_back()); !status.ok()) return status;
  } while (reader_.TakeSymbol(","));
  if (Status status = reader_.NeedWord("FROM", 923); !status.ok()) return status;
  if (Status status = ParseFrom(out); !status.ok()) return status;
  if (reader_.TakeWord("WHERE")) {
    if (Status status = ParseCondition(&out->where); !status.ok()) return status;
  }
  if (reader_.TakeWord("GROUP")) {
    if (Status status = reader_.NeedWord("BY", 924); !status.ok()) return status;
    do {
      if (Status status = ParseValue(&out->group_by.emplace_back()); !status.ok()) return status;
    } while (reader_.TakeSymbol(","));
  }
  if (reader_.TakeWord("ORDER")) return ParseOrderBy(out);
  return {};
}

Status ExpressionParser::ParseSelectItem(SelectItem* out) {
  if (reader_.TakeSymbol("*")) return {};
  if ((reader_.Current().kind == TokenKind::Word ||
       reader_.Current().kind == TokenKind::QuotedName) &&
      reader_.AheadIsSymbol(".") && reader_.Ahead(2).text == "*" &&
      reader_.Ahead(2).kind == TokenKind::Symbol) {
    out->qualifier = reader_.Current().text;
    reader_.Advance();
    reader_.Advance();
    reader_.Advance();
    return {};
  }
  if (Status status = ParseValue(&out->expr); !status.ok()) return status;
  const bool explicit_alias = reader_.TakeWord("AS");
  if (explicit_alias || !EndsSelectList(reader_)) return reader_.ReadName(&out->alias, 923);
  return {};
}

Status ExpressionParser::ParseFrom(Select* out) {
  do {
    SelectSource& source = out->from.emplace_back();
    if (Status status = reader_.ReadObjectName(&source.object, 903); !status.ok()) return status;
    const Token& token = reader_.Current();
    const bool has_alias = token.kind == TokenKind::QuotedName ||
                           (token.kind == TokenKind::Word && !IsReservedWord(token.text));
    if (has_alias) {
      if (Status status = reader_.ReadName(&source.alias, 933); !status.ok()) return status;
    }
  } while (reader_.TakeSymbol(","));
  return {};
}

Status ExpressionParser::ParseOrderBy(Select* out) {
  if (Status status = reader_.NeedWord("BY", 924); !status.ok()) return status;
  do {
    OrderItem& item = out->order_by.emplace_back();
    if (reader_.Current().kind == TokenKind::Number) {
      if (Status status = reader_.ReadInteger(&item.position, 1785); !status.ok()) return status;
      if (item.position < 1)
        return {1785, "ORDER BY item must be the number of a SELECT-list expression"};
    } else if (Status status = ParseValue(&item.expr); !status.ok()) {
      return status;
    }
    if (reader_.TakeWord("DESC")) {
      item.descending = true;
    } else {
      reader_.TakeWord("ASC");
    }
  } while (reader_.TakeSymbol(","));
  return {};
}

}  // namespace quillmere::sandbox
