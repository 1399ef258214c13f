#include "sandbox/sql/statement_parser.h"

namespace quillmere::sandbox {

Status StatementParser::ParseCreate(Statement* out) {
  if (reader_.TakeWord("TABLE")) return ParseCreateTable(out);
  if (reader_.IsWord("GLOBAL") && reader_.AheadIsWord("TEMPORARY")) {
    return Ora(900, "temporary tables are not supported by this database");
  }
  if (reader_.TakeWord("USER")) return ParseUser(true, out);
  if (reader_.TakeWord("INDEX")) return ParseCreateIndex(false, out);
  if (reader_.TakeWord("UNIQUE")) {
    if (Status status = reader_.NeedWord("INDEX", 901); !status.ok()) return status;
    return ParseCreateIndex(true, out);
  }
  return NotUnderstood();
}

Status StatementParser::ParseCreateIndex(bool unique, Statement* out) {
  CreateIndex& index = out->emplace<CreateIndex>();
  index.unique = unique;
  if (Status status = reader_.ReadObjectName(&index.index, 953); !status.ok()) return status;
  if (Status status = reader_.NeedWord("ON", 969); !status.ok()) return status;
  if (Status status = reader_.ReadObjectName(&index.table, 903); !status.ok()) return status;
  if (Status status = reader_.NeedSymbol("(", 906); !status.ok()) return status;
  do {
    std::string column;
    if (Status status = reader_.ReadName(&column, 936); !status.ok()) return status;
    if (reader_.IsSymbol("(")) return Ora(900, "function-based indexes are not supported here");
    index.columns.push_back(std::move(column));
    if (!reader_.TakeWord("ASC") && reader_.IsWord("DESC")) {
      return Ora(900, "descending indexes are not supported here");
    }
  } while (reader_.TakeSymbol(","));
  if (Status status = reader_.NeedSymbol(")", 907); !status.ok()) return status;
  if (reader_.TakeWord("TABLESPACE")) {
    std::string tablespace;
    return reader_.ReadName(&tablespace, 2216);
  }
  return {};
}

Status StatementParser::ParseAlter(Statement* out) {
  if (reader_.TakeWord("TABLE")) return ParseAlterTable(out);
  if (reader_.TakeWord("INDEX")) return ParseAlterIndex(out);
  if (reader_.TakeWord("USER")) return ParseUser(false, out);
  if (reader_.TakeWord("SESSION")) return ParseAlterSession(out);
  return NotUnderstood();
}

Status StatementParser::ParseAlterTable(Statement* out) {
  AlterTable& alter = out->emplace<AlterTable>();
  if (Status status = reader_.ReadObjectName(&alter.table, 903); !status.ok()) return status;
  if (reader_.TakeWord("ADD")) return ParseAlterTableAdd(&alter);
  if (reader_.TakeWord("DROP")) return ParseAlterTableDrop(&alter);
  if (reader_.TakeWord("RENAME")) {
    alter.action = AlterTable::Action::Rename;
    if (reader_.IsWord("COLUMN") || reader_.IsWord("CONSTRAINT")) return NotUnderstood();
    if (Status status = reader_.NeedWord("TO", 14155); !status.ok()) return status;
    return reader_.ReadName(&alter.name, 903);
  }
  return NotUnderstood();
}

Status StatementParser::ParseAlterTableAdd(AlterTable* out) {
  if (StartsTableConstraint()) {
    out->action = AlterTable::Action::AddConstraint;
    return ParseTableConstraint(&out->constraint);
  }
  out->action = AlterTable::Action::AddColumns;
  if (reader_.IsWord("SUPPLEMENTAL")) return SkipRest();
  if (!reader_.TakeSymbol("(")) return ParseColumn(&out->columns.emplace_back());
  if (StartsTableConstraint()) {
    out->action = AlterTable::Action::AddConstraint;
    if (Status status = ParseTableConstraint(&out->constraint); !status.ok()) return status;
    return reader_.NeedSymbol(")", 907);
  }
  do {
    if (Status status = ParseColumn(&out->columns.emplace_back()); !status.ok()) return status;
  } while (reader_.TakeSymbol(","));
  return reader_.NeedSymbol(")", 907);
}

Status StatementParser::ParseAlterTableDrop(AlterTable* out) {
  if (reader_.TakeWord("CONSTRAINT")) {
    out->action = AlterTable::Action::DropConstraint;
    if (Status status = reader_.ReadName(&out->name, 2250); !status.ok()) return status;
  } else if (reader_.TakeWord("PRIMARY")) {
    out->action = AlterTable::Action::DropPrimaryKey;
    if (Status status = reader_.NeedWord("KEY"); !status.ok()) return status;
  } else {
    return NotUnderstood();
  }
  out->cascade = reader_.TakeWord("CASCADE");
  return {};
}

Status StatementParser::ParseAlterIndex(Statement* out) {
  AlterIndex& alter = out->emplace<AlterIndex>();
  if (Status status = reader_.ReadObjectName(&alter.index, 953); !status.ok()) return status;
  if (reader_.TakeWord("REBUILD")) return {};
  if (!reader_.TakeWord("RENAME")) return NotUnderstood();
  if (Status status = reader_.NeedWord("TO", 14155); !status.ok()) return status;
  return reader_.ReadName(&alter.new_name, 953);
}

Status StatementParser::ParseAlterSession(Statement* out) {
  AlterSession& alter = out->emplace<AlterSession>();
  if (Status status = reader_.NeedWord("SET", 922); !status.ok()) return status;
  if (Status status = reader_.ReadName(&alter.parameter, 2248); !status.ok()) return status;
  if (Status status = reader_.NeedSymbol("=", 927); !status.ok()) return status;
  if (reader_.Current().kind == TokenKind::End) return Ora(922);
  alter.value = reader_.Current().text;
  reader_.Advance();
  return {};
}

Status StatementParser::ParseDrop(Statement* out) {
  DropObject& drop = out->emplace<DropObject>();
  if (reader_.TakeWord("TABLE")) {
    drop.kind = DropObject::Kind::Table;
    if (Status status = reader_.ReadObjectName(&drop.object, 903); !status.ok()) return status;
    if (reader_.TakeWord("CASCADE")) {
      drop.cascade = true;
      if (Status status = reader_.NeedWord("CONSTRAINTS"); !status.ok()) return status;
    }
    reader_.TakeWord("PURGE");
    return {};
  }
  if (reader_.TakeWord("INDEX")) {
    drop.kind = DropObject::Kind::Index;
    return reader_.ReadObjectName(&drop.object, 953);
  }
  if (reader_.TakeWord("USER")) {
    drop.kind = DropObject::Kind::User;
    if (Status status = reader_.ReadName(&drop.object.name, 987); !status.ok()) return status;
    drop.cascade = reader_.TakeWord("CASCADE");
    return {};
  }
  return NotUnderstood();
}

Status StatementParser::ParseUser(bool create, Statement* out) {
  UserStatement& user = out->emplace<UserStatement>();
  user.create = create;
  if (Status status = reader_.ReadName(&user.name, 987); !status.ok()) return status;
  if (reader_.TakeWord("IDENTIFIED")) {
    if (Status status = reader_.NeedWord("BY", 988); !status.ok()) return status;
    const Token& token = reader_.Current();
    if (token.kind == TokenKind::Word || token.kind == TokenKind::Number) {
      // An unquoted password keeps the case it is written in.
      user.password = std::string(sql_.substr(token.begin, token.end - token.begin));
    } else if (token.kind == TokenKind::QuotedName) {
      user.password = token.text;
    } else {
      return Ora(988);
    }
    reader_.Advance();
  } else if (create) {
    return Ora(988, "CREATE USER needs IDENTIFIED BY");
  }
  return SkipRest();
}

// Storage clauses of users and supplemental logging: accepted, nothing here depends on them.
Status StatementParser::SkipRest() {
  while (!reader_.AtEnd()) {
    if (reader_.IsSymbol(";")) return Ora(911, ";");
    if (reader_.Current().kind == TokenKind::String) return Ora(922);
    reader_.Advance();
  }
  return {};
}

Status StatementParser::ParseGrant(bool revoke, Statement* out) {
  GrantStatement& grant = out->emplace<GrantStatement>();
  grant.revoke = revoke;
  std::string privilege;
  while (!reader_.AtEnd() && !reader_.IsWord("ON") && !reader_.IsWord("TO") &&
         !(revoke && reader_.IsWord("FROM"))) {
    if (reader_.TakeSymbol(",")) {
      if (privilege.empty()) return Ora(990);
      grant.privileges.push_back(std::exchange(privilege, {}));
      continue;
    }
    if (reader_.Current().kind != TokenKind::Word) return Ora(990);
    if (!privilege.empty()) privilege += ' ';
    privilege += reader_.Current().text;
    reader_.Advance();
  }
  if (privilege.empty()) return Ora(990);
  grant.privileges.push_back(std::move(privilege));
  if (reader_.TakeWord("ON")) {
    grant.object.emplace();
    if (Status status = reader_.ReadObjectName(&*grant.object, 903); !status.ok()) return status;
  }
  if (Status status = reader_.NeedWord(revoke ? "FROM" : "TO"); !status.ok()) return status;
  do {
    std::string& grantee = grant.grantees.emplace_back();
    if (reader_.TakeWord("PUBLIC")) {
      grantee = "PUBLIC";
    } else if (Status status = reader_.ReadName(&grantee, 987); !status.ok()) {
      return status;
    }
  } while (reader_.TakeSymbol(","));
  if (reader_.TakeWord("WITH")) return SkipRest();
  return {};
}

Status StatementParser::ParseAnalyze(Statement* out) {
  AnalyzeTable& analyze = out->emplace<AnalyzeTable>();
  if (Status status = reader_.NeedWord("TABLE"); !status.ok()) return status;
  if (Status status = reader_.ReadObjectName(&analyze.table, 903); !status.ok()) return status;
  if (reader_.TakeWord("DELETE")) {
    analyze.remove = true;
  } else if (!reader_.TakeWord("COMPUTE") && !reader_.TakeWord("ESTIMATE")) {
    return Ora(905);
  }
  return reader_.NeedWord("STATISTICS");
}

}  // namespace quillmere::sandbox
