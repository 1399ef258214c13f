#include "sandbox/sql/statement_parser.h"

#include "sandbox/sql/parser.h"

namespace quillmere::sandbox {

Status ParseStatement(std::string_view sql, const std::vector<Token>& tokens, Statement* out) {
  return StatementParser(sql, tokens).Parse(out);
}

Status ParseExpression(const std::vector<Token>& tokens, ExprPtr* out) {
  TokenReader reader(tokens);
  if (Status status = ExpressionParser(reader).ParseValue(out); !status.ok()) return status;
  return reader.AtEnd() ? Status() : Ora(907);
}

Status StatementParser::NotUnderstood() const {
  return Ora(900, Shortened(sql_));
}

Status StatementParser::Parse(Statement* out) {
  if (reader_.AtEnd()) return Ora(900, "the statement is empty");
  Status status;
  if (reader_.TakeWord("SELECT")) {
    status = expressions_.ParseSelect(&out->emplace<Select>());
  } else if (reader_.TakeWord("INSERT")) {
    status = ParseInsert(out);
  } else if (reader_.TakeWord("UPDATE")) {
    status = ParseUpdate(out);
  } else if (reader_.TakeWord("DELETE")) {
    status = ParseDelete(out);
  } else if (reader_.TakeWord("CREATE")) {
    status = ParseCreate(out);
  } else if (reader_.TakeWord("ALTER")) {
    status = ParseAlter(out);
  } else if (reader_.TakeWord("DROP")) {
    status = ParseDrop(out);
  } else if (reader_.TakeWord("TRUNCATE")) {
    status = reader_.NeedWord("TABLE", 3290);
    if (status.ok()) status = reader_.ReadObjectName(&out->emplace<TruncateTable>().table, 903);
    if (status.ok() && (reader_.TakeWord("REUSE") || reader_.TakeWord("DROP"))) {
      status = reader_.NeedWord("STORAGE");
    }
  } else if (reader_.TakeWord("ANALYZE")) {
    status = ParseAnalyze(out);
  } else if (reader_.TakeWord("GRANT")) {
    status = ParseGrant(false, out);
  } else if (reader_.TakeWord("REVOKE")) {
    status = ParseGrant(true, out);
  } else if (reader_.IsWord("BEGIN")) {
    status = ParseBlock(out);
  } else if (reader_.IsWord("COMMIT") || reader_.IsWord("ROLLBACK") ||
             reader_.IsWord("SAVEPOINT")) {
    status = ParseControl(out);
  } else {
    return NotUnderstood();
  }
  if (!status.ok()) return status;
  if (reader_.AtEnd()) return {};
  return reader_.IsSymbol(";") ? Ora(911, ";") : Ora(933);
}

Status StatementParser::ParseInsert(Statement* out) {
  Insert& insert = out->emplace<Insert>();
  if (Status status = reader_.NeedWord("INTO", 925); !status.ok()) return status;
  if (Status status = reader_.ReadObjectName(&insert.table, 903); !status.ok()) return status;
  if (reader_.IsSymbol("(")) {
    if (Status status = reader_.ReadNameList(&insert.columns); !status.ok()) return status;
  }
  if (reader_.IsWord("SELECT")) return Ora(900, "INSERT ... SELECT: use INSERT ... VALUES");
  if (Status status = reader_.NeedWord("VALUES", 926); !status.ok()) return status;
  if (Status status = reader_.NeedSymbol("(", 906); !status.ok()) return status;
  do {
    ExprPtr value;
    if (!reader_.TakeWord("DEFAULT")) {
      if (Status status = expressions_.ParseValue(&value); !status.ok()) return status;
    }
    insert.values.push_back(std::move(value));
  } while (reader_.TakeSymbol(","));
  return reader_.NeedSymbol(")", reader_.AtEnd() ? 907 : 917);
}

Status StatementParser::ParseWhere(ExprPtr* out) {
  return reader_.TakeWord("WHERE") ? expressions_.ParseCondition(out) : Status();
}

Status StatementParser::ParseUpdate(Statement* out) {
  Update& update = out->emplace<Update>();
  if (Status status = reader_.ReadObjectName(&update.table, 903); !status.ok()) return status;
  if (!reader_.IsWord("SET")) {
    if (Status status = reader_.ReadName(&update.alias, 971); !status.ok()) return status;
  }
  if (Status status = reader_.NeedWord("SET", 971); !status.ok()) return status;
  do {
    std::string column;
    if (Status status = reader_.ReadName(&column, 1747); !status.ok()) return status;
    if (reader_.TakeSymbol(".")) {
      if (Status status = reader_.ReadName(&column, 1747); !status.ok()) return status;
    }
    if (Status status = reader_.NeedSymbol("=", 927); !status.ok()) return status;
    ExprPtr value;
    if (!reader_.TakeWord("DEFAULT")) {
      if (Status status = expressions_.ParseValue(&value); !status.ok()) return status;
    }
    update.columns.push_back(std::move(column));
    update.values.push_back(std::move(value));
  } while (reader_.TakeSymbol(","));
  return ParseWhere(&update.where);
}

Status StatementParser::ParseDelete(Statement* out) {
  Delete& erase = out->emplace<Delete>();
  reader_.TakeWord("FROM");
  if (Status status = reader_.ReadObjectName(&erase.table, 903); !status.ok()) return status;
  const bool has_alias = reader_.Current().kind == TokenKind::QuotedName ||
                         (reader_.Current().kind == TokenKind::Word && !reader_.IsWord("WHERE"));
  if (has_alias) {
    if (Status status = reader_.ReadName(&erase.alias, 933); !status.ok()) return status;
  }
  return ParseWhere(&erase.where);
}

Status StatementParser::ParseControl(Statement* out) {
  TransactionControl& control = out->emplace<TransactionControl>();
  if (reader_.TakeWord("COMMIT")) {
    control.kind = TransactionControl::Kind::Commit;
    reader_.TakeWord("WORK");
    return {};
  }
  if (reader_.TakeWord("SAVEPOINT")) {
    control.kind = TransactionControl::Kind::Savepoint;
    return reader_.ReadName(&control.savepoint, 931);
  }
  reader_.Advance();
  control.kind = TransactionControl::Kind::Rollback;
  reader_.TakeWord("WORK");
  if (!reader_.TakeWord("TO")) return {};
  reader_.TakeWord("SAVEPOINT");
  control.kind = TransactionControl::Kind::RollbackTo;
  return reader_.ReadName(&control.savepoint, 931);
}

// begin [owner.]package.procedure[(name=>value, ...)]; end;
Status StatementParser::ParseBlock(Statement* out) {
  const Status failure = {
      6550,
      "line 1, column 7:\nPLS-00103: not a call that this database knows: " + Shortened(sql_)};
  ProcedureCall& call = out->emplace<ProcedureCall>();
  reader_.Advance();
  std::vector<std::string> parts;
  do {
    if (!reader_.ReadName(&parts.emplace_back(), 6550).ok()) return failure;
  } while (reader_.TakeSymbol("."));
  if (parts.size() == 3 && parts[0] == "SYS") parts.erase(parts.begin());
  if (parts.size() != 2) return failure;
  call.name = parts[0] + "." + parts[1];
  if (reader_.TakeSymbol("(") && !reader_.TakeSymbol(")")) {
    do {
      if (!ParseArgument(&call.arguments.emplace_back()).ok()) return failure;
    } while (reader_.TakeSymbol(","));
    if (!reader_.TakeSymbol(")")) return failure;
  }
  const bool ended = reader_.TakeSymbol(";") && reader_.TakeWord("END") && reader_.TakeSymbol(";");
  return ended && reader_.AtEnd() ? Status() : failure;
}

// name => value, where value is a literal, a number or a sum of package constants.
Status StatementParser::ParseArgument(ProcedureArgument* out) {
  if (Status status = reader_.ReadName(&out->name, 6550); !status.ok()) return status;
  if (Status status = reader_.NeedSymbol("=>", 6550); !status.ok()) return status;
  if (reader_.Current().kind != TokenKind::Word) return expressions_.ParseValue(&out->value);
  do {
    ObjectName constant;
    if (Status status = reader_.ReadObjectName(&constant, 6550); !status.ok()) return status;
    out->constants.push_back(constant.owner + "." + constant.name);
  } while (reader_.TakeSymbol("+"));
  return {};
}

}  // namespace quillmere::sandbox
