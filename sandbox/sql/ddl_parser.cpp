// SPDX-License-Identifier: MIT
#include "sandbox/sql/statement_parser.h"

namespace quillmere::sandbox {

namespace {

using Change = ObjectChange::Kind;

Status NoChecks() {
  return Ora(900, "CHECK constraints are not supported by this database");
}

std::string WithoutEndBlanks(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(" \t\r\n") + 1));
}

}  // namespace

void Parser::ParseCreate(Statement* out) {
  if (Is("TABLE") || Is("GLOBAL")) {
    auto& table = out->emplace<TableDefinition>();
    table.temporary = Take("GLOBAL");
    if (table.temporary) Need("TEMPORARY");
    Need("TABLE");
    return ParseCreateTable(&table);
  }
  if (Take("USER")) return ParseUser(true, &out->emplace<UserStatement>());
  const bool unique = Take("UNIQUE");
  if (!unique && !Is("INDEX")) return NotUnderstood();
  Need("INDEX");
  CreateIndex& index = out->emplace<CreateIndex>();
  index.unique = unique;
  index.index = Object(953);
  Need("ON", 969);
  index.table = Object(903);
  index.columns = Names();
  std::string ignored;
  ParseTablespace(&ignored);
}

void Parser::ParseTablespace(std::string* out) {
  if (Take("TABLESPACE")) *out = Name(2216);
}

void Parser::ParseCreateTable(TableDefinition* out) {
  out->table = Object(903);
  if (Is("AS")) Fail(Ora(900, "CREATE TABLE ... AS SELECT: list the columns"));
  Need("(");
  do {
    ParseTableElement(out);
  } while (Take(","));
  Need(")");
  ParseTablespace(&out->tablespace);
  if (out->temporary && Take("ON")) {
    for (const char* word : {"COMMIT", "DELETE", "ROWS"}) Need(word, 922);
  }
  if (!AtEnd()) Fail(Ora(922));
}

void Parser::ParseTableElement(TableDefinition* out) {
  const bool key = (Is("PRIMARY") || Is("FOREIGN")) && NextIs("KEY");
  const bool constraint = Is("CONSTRAINT") || key || ((Is("UNIQUE") || Is("CHECK")) && NextIs("("));
  if (!constraint) return ParseColumn(out);
  ConstraintDef& def = out->constraints.emplace_back();
  if (Take("CONSTRAINT")) def.name = Name(2250);
  if (Is("CHECK")) Fail(NoChecks());
  if (!TakeKey(&def)) {
    Need("FOREIGN", 904);
    Need("KEY");
    def.kind = ConstraintKind::ForeignKey;
  }
  def.columns = Names();
  if (def.kind == ConstraintKind::ForeignKey) ParseReferences(&def);
}

bool Parser::TakeKey(ConstraintDef* out) {
  if (Take("UNIQUE")) {
    out->kind = ConstraintKind::Unique;
    return true;
  }
  if (!Take("PRIMARY")) return false;
  Need("KEY");
  return true;
}

void Parser::ParseReferences(ConstraintDef* out) {
  out->kind = ConstraintKind::ForeignKey;
  Need("REFERENCES");
  out->referenced = Object(903);
  if (Is("(")) out->referenced_columns = Names();
}

void Parser::ParseColumn(TableDefinition* out) {
  ColumnDef& column = out->columns.emplace_back();
  column.name = Name(904);
  column.type = Type();
  for (;;) {
    ConstraintDef def;
    def.columns = {column.name};
    const bool named = Take("CONSTRAINT");
    if (named) def.name = Name(2250);
    if (Take("DEFAULT")) {
      const std::size_t begin = Current().begin;
      column.default_value = Value();
      column.default_text = WithoutEndBlanks(sql_.substr(begin, Current().begin - begin));
    } else if (Take("NOT")) {
      Need("NULL", 908);
      column.not_null = true;
    } else if (Is("REFERENCES")) {
      ParseReferences(&def);
      out->constraints.push_back(std::move(def));
    } else if (TakeKey(&def)) {
      out->constraints.push_back(std::move(def));
    } else if (!Take("NULL")) {
      if (Is("CHECK")) Fail(NoChecks());
      if (named) Fail(Ora(905));
      return;
    }
  }
}

TypeName Parser::Type() {
  TypeName type;
  if (Current().kind != TokenKind::Word) Fail(Ora(902));
  type.name = Current().text;
  Advance();
  if (type.name == "LONG" && Take("RAW")) type.name = "LONG RAW";
  if (Take("(")) {
    type.star_precision = Take("*");
    if (!type.star_precision) type.first = Integer(910);
    type.in_characters = Take("CHAR");
    if (!type.in_characters) Take("BYTE");
    if (Take(",")) type.second = Integer(1728);
    Need(")");
  }
  if (type.name == "TIMESTAMP" && Take("WITH")) {
    type.name += Take("LOCAL") ? " WITH LOCAL TIME ZONE" : " WITH TIME ZONE";
    Need("TIME");
    Need("ZONE");
  }
  return type;
}

void Parser::ParseAlter(Statement* out) {
  if (Take("USER")) return ParseUser(false, &out->emplace<UserStatement>());
  if (Is("DATABASE") || Is("SYSTEM")) return ParseDatabase(&out->emplace<DatabaseChange>());
  const bool table = Take("TABLE");
  if (!table && !Take("INDEX")) return NotUnderstood();
  ObjectChange change;
  change.object = Object(table ? 903 : 953);
  if (Take("RENAME")) {
    Need("TO", 14155);
    change.kind = table ? Change::RenameTable : Change::RenameIndex;
    change.name = Name(table ? 903 : 953);
  } else if (table && (Is("ADD") || Is("DROP")) && NextIs("SUPPLEMENTAL")) {
    auto& logged = out->emplace<DatabaseChange>();
    logged.table = std::move(change.object);
    const bool drop = Is("DROP");
    Advance();
    Advance();
    return ParseSupplemental(drop, &logged);
  } else if (table && Take("ADD")) {
    return ParseAdded(std::move(change.object), out);
  } else if (table && Take("DROP")) {
    change.kind = Change::DropConstraint;
    if (Take("CONSTRAINT")) {
      change.name = Name(2250);
    } else {
      Need("PRIMARY");
      Need("KEY");
    }
    change.cascade = Take("CASCADE");
  } else {
    NotUnderstood();
  }
  *out = std::move(change);
}

// A constraint, a column, or columns in parentheses.
void Parser::ParseAdded(ObjectName table, Statement* out) {
  TableDefinition added;
  const bool list = Take("(");
  do {
    ParseTableElement(&added);
  } while (list && Take(","));
  if (list) Need(")");
  if (added.columns.empty() && !list) {
    *out = AddedConstraint{std::move(table), std::move(added.constraints[0])};
    return;
  }
  for (const ColumnDef& column : added.columns) {
    if (column.not_null || column.default_value) {
      Fail(Ora(900, "ALTER TABLE ... ADD of a column that must have a value or has a default"));
    }
  }
  if (!added.constraints.empty()) Fail(Ora(900, "ALTER TABLE ... ADD: constraints one by one"));
  *out = AddedColumns{std::move(table), std::move(added.columns)};
}

void Parser::ParseDatabase(DatabaseChange* out) {
  using Kind = DatabaseChange::Kind;
  const bool system = Take("SYSTEM");
  if (system) {
    Need("SWITCH", 2065);
    return Need("LOGFILE", 2065);
  }
  Take("DATABASE");
  if (Is("ARCHIVELOG") || Is("NOARCHIVELOG")) {
    out->kind = Kind::Archive;
    out->on = Take("ARCHIVELOG");
    Take("NOARCHIVELOG");
    return;
  }
  if (Take("CHARACTER")) {
    Need("SET", 2231);
    out->kind = Kind::CharacterSet;
    out->name = Name(2231);
    return;
  }
  const bool drop = Take("DROP");
  if (!drop) Need("ADD", 2231);
  if (Take("SUPPLEMENTAL")) return ParseSupplemental(drop, out);
  Need("LOGFILE", 2231);
  const bool member = Take("MEMBER");
  if (drop) NotUnderstood();
  if (member) Need("TO");
  Need("GROUP", 2231);
  out->kind = member ? Kind::AddMember : Kind::AddGroup;
  out->group = Integer(2231);
  if (!member && Take("SIZE")) out->size = Integer(2231);
}

void Parser::ParseSupplemental(bool drop, DatabaseChange* out) {
  out->kind = DatabaseChange::Kind::Supplemental;
  Need("LOG", 2231);
  Need("DATA", 2231);
  out->name = drop ? "NONE" : "MIN";
  if (!Take("(")) return;
  const bool all = Take("ALL");
  if (!all) Need("PRIMARY", 2231);
  if (!all) Need("KEY", 2231);
  Need(")");
  Need("COLUMNS", 2231);
  out->name = drop ? "MIN" : all ? "ALL" : "KEY";
}

void Parser::ParseDrop(ObjectChange* out) {
  const bool drop = Take("DROP");
  if (!drop) Advance();
  out->kind = drop ? Change::DropTable : Change::Truncate;
  if (drop && Take("INDEX")) {
    out->kind = Change::DropIndex;
    out->object = Object(953);
  } else if (drop && Take("USER")) {
    out->kind = Change::DropUser;
    out->object.name = Name(987);
    out->cascade = Take("CASCADE");
  } else if (Take("TABLE")) {
    out->object = Object(903);
    out->cascade = drop && Take("CASCADE");
    if (out->cascade) Need("CONSTRAINTS");
  } else {
    NotUnderstood();
  }
}

void Parser::ParseUser(bool create, UserStatement* out) {
  out->create = create;
  out->name = Name(987);
  Need("IDENTIFIED", 988);
  Need("BY", 988);
  const Token& password = Current();
  // An unquoted password keeps the case it is written in.
  const bool quoted = password.kind == TokenKind::QuotedName;
  if (!quoted && password.kind != TokenKind::Word && password.kind != TokenKind::Number) {
    Fail(Ora(988));
  }
  out->password =
      quoted ? password.text : sql_.substr(password.begin, password.end - password.begin);
  Advance();
  if (!AtEnd()) Fail(Ora(922));
}

}  // namespace quillmere::sandbox
