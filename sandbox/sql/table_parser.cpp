#include "sandbox/sql/statement_parser.h"

namespace quillmere::sandbox {

Status StatementParser::ParseCreateTable(Statement* out) {
  CreateTable& table = out->emplace<CreateTable>();
  if (Status status = reader_.ReadObjectName(&table.table, 903); !status.ok()) return status;
  if (reader_.IsWord("AS")) return Ora(900, "CREATE TABLE ... AS SELECT: list the columns");
  if (Status status = reader_.NeedSymbol("(", 906); !status.ok()) return status;
  do {
    if (Status status = ParseTableElement(&table); !status.ok()) return status;
  } while (reader_.TakeSymbol(","));
  if (Status status = reader_.NeedSymbol(")", 907); !status.ok()) return status;
  return ParseTableOptions(&table);
}

bool StatementParser::StartsTableConstraint() const {
  if (reader_.IsWord("CONSTRAINT")) return true;
  if (reader_.IsWord("UNIQUE") || reader_.IsWord("CHECK")) return reader_.AheadIsSymbol("(");
  return (reader_.IsWord("PRIMARY") || reader_.IsWord("FOREIGN")) && reader_.AheadIsWord("KEY");
}

Status StatementParser::ParseTableElement(CreateTable* table) {
  if (StartsTableConstraint()) return ParseTableConstraint(&table->constraints.emplace_back());
  return ParseColumn(&table->columns.emplace_back());
}

Status StatementParser::ParseColumn(ColumnDef* out) {
  if (Status status = reader_.ReadName(&out->name, 904); !status.ok()) return status;
  if (Status status = ParseType(&out->type); !status.ok()) return status;
  return ParseColumnOptions(out);
}

Status StatementParser::ParseColumnOptions(ColumnDef* column) {
  for (;;) {
    if (reader_.TakeWord("DEFAULT")) {
      const std::size_t begin = reader_.Current().begin;
      if (Status status = expressions_.ParseValue(&column->default_value); !status.ok()) {
        return status;
      }
      column->default_text = sql_.substr(begin, reader_.Current().begin - begin);
      continue;
    }
    std::string name;
    if (reader_.TakeWord("CONSTRAINT")) {
      if (Status status = reader_.ReadName(&name, 2250); !status.ok()) return status;
    }
    bool found = false;
    const bool named = !name.empty();
    if (Status status = ParseInlineConstraint(std::move(name), column, &found); !status.ok()) {
      return status;
    }
    if (!found) return named ? Ora(905) : Status();
  }
}

Status StatementParser::ParseInlineConstraint(std::string name, ColumnDef* column, bool* found) {
  *found = true;
  ConstraintDef constraint;
  constraint.name = std::move(name);
  constraint.columns = {column->name};
  if (reader_.TakeWord("NULL")) return {};
  if (reader_.TakeWord("NOT")) {
    column->not_null = true;
    constraint.kind = ConstraintKind::NotNull;
    if (Status status = reader_.NeedWord("NULL", 908); !status.ok()) return status;
    if (!constraint.name.empty()) column->constraints.push_back(std::move(constraint));
    ConstraintDef state;
    return ParseConstraintState(&state);
  }
  if (reader_.TakeWord("PRIMARY")) {
    constraint.kind = ConstraintKind::PrimaryKey;
    if (Status status = reader_.NeedWord("KEY"); !status.ok()) return status;
  } else if (reader_.TakeWord("UNIQUE")) {
    constraint.kind = ConstraintKind::Unique;
  } else if (reader_.IsWord("REFERENCES")) {
    constraint.kind = ConstraintKind::ForeignKey;
    if (Status status = ParseReferences(&constraint); !status.ok()) return status;
  } else if (reader_.IsWord("CHECK")) {
    return Ora(900, "CHECK constraints are not supported by this database");
  } else {
    *found = false;
    return {};
  }
  if (Status status = ParseConstraintState(&constraint); !status.ok()) return status;
  column->constraints.push_back(std::move(constraint));
  return {};
}

Status StatementParser::ParseTableConstraint(ConstraintDef* out) {
  if (reader_.TakeWord("CONSTRAINT")) {
    if (Status status = reader_.ReadName(&out->name, 2250); !status.ok()) return status;
  }
  if (reader_.TakeWord("PRIMARY")) {
    out->kind = ConstraintKind::PrimaryKey;
    if (Status status = reader_.NeedWord("KEY"); !status.ok()) return status;
  } else if (reader_.TakeWord("UNIQUE")) {
    out->kind = ConstraintKind::Unique;
  } else if (reader_.TakeWord("FOREIGN")) {
    out->kind = ConstraintKind::ForeignKey;
    if (Status status = reader_.NeedWord("KEY"); !status.ok()) return status;
  } else if (reader_.IsWord("CHECK")) {
    return Ora(900, "CHECK constraints are not supported by this database");
  } else {
    return Ora(904);
  }
  if (Status status = reader_.ReadNameList(&out->columns); !status.ok()) return status;
  if (out->kind == ConstraintKind::ForeignKey) {
    if (Status status = ParseReferences(out); !status.ok()) return status;
  }
  return ParseConstraintState(out);
}

Status StatementParser::ParseReferences(ConstraintDef* out) {
  if (Status status = reader_.NeedWord("REFERENCES"); !status.ok()) return status;
  if (Status status = reader_.ReadObjectName(&out->referenced, 903); !status.ok()) return status;
  if (reader_.IsSymbol("(")) {
    if (Status status = reader_.ReadNameList(&out->referenced_columns); !status.ok()) return status;
  }
  if (!reader_.TakeWord("ON")) return {};
  if (Status status = reader_.NeedWord("DELETE"); !status.ok()) return status;
  if (reader_.TakeWord("CASCADE")) {
    out->delete_rule = "CASCADE";
    return {};
  }
  if (Status status = reader_.NeedWord("SET"); !status.ok()) return status;
  out->delete_rule = "SET NULL";
  return reader_.NeedWord("NULL");
}

Status StatementParser::ParseConstraintState(ConstraintDef* out) {
  for (;;) {
    if (reader_.TakeWord("ENABLE") || reader_.TakeWord("VALIDATE")) {
      out->disabled = false;
    } else if (reader_.IsWord("DISABLE") || reader_.IsWord("DEFERRABLE") ||
               reader_.IsWord("NOVALIDATE") || reader_.IsWord("INITIALLY")) {
      return Ora(900, "constraints are always enabled and checked at once in this database");
    } else if (reader_.TakeWord("USING")) {
      if (Status status = reader_.NeedWord("INDEX"); !status.ok()) return status;
      if (reader_.TakeWord("TABLESPACE")) {
        std::string tablespace;
        if (Status status = reader_.ReadName(&tablespace, 2216); !status.ok()) return status;
      }
    } else {
      return {};
    }
  }
}

Status StatementParser::ParseType(TypeName* out) {
  const Token& token = reader_.Current();
  if (token.kind != TokenKind::Word) return Ora(902);
  out->name = token.text;
  reader_.Advance();
  if (out->name == "LONG" && reader_.TakeWord("RAW")) out->name = "LONG RAW";
  if (out->name == "DOUBLE" && reader_.TakeWord("PRECISION")) out->name = "FLOAT";
  if (out->name == "CHARACTER" && reader_.TakeWord("VARYING")) out->name = "VARCHAR2";
  if (reader_.TakeSymbol("(")) {
    if (Status status = ParseTypeSize(out); !status.ok()) return status;
  }
  if (out->name == "TIMESTAMP") return ParseTimestampTail(out);
  return {};
}

Status StatementParser::ParseTypeSize(TypeName* type) {
  if (reader_.TakeSymbol("*")) {
    type->star_precision = true;
  } else {
    int value = 0;
    if (Status status = reader_.ReadInteger(&value, 910); !status.ok()) return status;
    type->first = value;
  }
  if (reader_.TakeWord("CHAR")) {
    type->in_characters = true;
  } else {
    reader_.TakeWord("BYTE");
  }
  if (reader_.TakeSymbol(",")) {
    int value = 0;
    if (Status status = reader_.ReadInteger(&value, 1728); !status.ok()) return status;
    type->second = value;
  }
  return reader_.NeedSymbol(")", 907);
}

Status StatementParser::ParseTimestampTail(TypeName* type) {
  if (!reader_.TakeWord("WITH")) return {};
  const bool local = reader_.TakeWord("LOCAL");
  if (Status status = reader_.NeedWord("TIME"); !status.ok()) return status;
  if (Status status = reader_.NeedWord("ZONE"); !status.ok()) return status;
  type->name = local ? "TIMESTAMP WITH LOCAL TIME ZONE" : "TIMESTAMP WITH TIME ZONE";
  return {};
}

Status StatementParser::ParseTableOptions(CreateTable* out) {
  for (;;) {
    if (reader_.TakeWord("TABLESPACE")) {
      if (Status status = reader_.ReadName(&out->tablespace, 2216); !status.ok()) return status;
    } else if (reader_.TakeWord("PCTFREE") || reader_.TakeWord("PCTUSED") ||
               reader_.TakeWord("INITRANS")) {
      int ignored = 0;
      if (Status status = reader_.ReadInteger(&ignored, 2211); !status.ok()) return status;
    } else if (!reader_.TakeWord("LOGGING") && !reader_.TakeWord("NOLOGGING")) {
      return reader_.AtEnd() ? Status() : Ora(922);
    }
  }
}

}  // namespace quillmere::sandbox
