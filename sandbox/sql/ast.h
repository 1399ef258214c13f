// SPDX-License-Identifier: MIT
// What the parser makes of a statement. Plain values; a statement owns all that hangs on it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quillmere::sandbox {

struct Select;

struct ObjectName {
  std::string owner;  // empty: the session's user
  std::string name;
};

// Compare and Call have their operator or function in Expr::text: "<=", "||", "TO_DATE".
enum class ExprOp {
  Literal,
  Null,
  Column,
  Rowid,
  CountStar,
  Call,
  Compare,
  And,
  Or,
  Not,
  IsNull,
  Between,
  In,
  Like,
  Exists,
  Subquery
};

struct Expr {
  ExprOp op = ExprOp::Null;
  std::string text;        // a literal's value; the name of Column and Call
  std::string qualifier;   // of Column and Rowid: table or alias, may be empty
  bool is_number = false;  // of Literal
  std::vector<std::unique_ptr<Expr>> args;
  int depth = 1;                     // of the tree below, itself included
  std::shared_ptr<Select> subquery;  // of Exists and Subquery
};
using ExprPtr = std::unique_ptr<Expr>;

struct SelectItem {
  ExprPtr expr;           // none: every column
  std::string qualifier;  // of "alias.*"
  std::string alias;
};

struct SelectSource {
  ObjectName object;
  std::string alias;
};

struct OrderItem {
  ExprPtr expr;
  int position = 0;  // of "order by 2"
  bool descending = false;
};

struct Select {
  std::vector<SelectItem> items;
  std::vector<SelectSource> from;
  ExprPtr where;
  std::vector<OrderItem> order_by;
  bool for_update = false;
  std::optional<int> lock_wait;  // seconds; none: as long as any statement waits
};

struct Assignment {
  std::string column;
  ExprPtr value;  // none: DEFAULT
};

struct Insert {
  ObjectName table;
  std::vector<std::string> columns;  // empty: all
  std::vector<ExprPtr> values;       // none: DEFAULT
};

struct Update {
  ObjectName table;
  std::string alias;
  std::vector<Assignment> set;
  ExprPtr where;
};

struct Delete {
  ObjectName table;
  std::string alias;
  ExprPtr where;
};

struct TypeName {
  std::string name;             // "VARCHAR2", "TIMESTAMP WITH TIME ZONE", ...
  std::optional<int> first;     // length or precision
  std::optional<int> second;    // scale
  bool star_precision = false;  // NUMBER(*)
  bool in_characters = false;   // VARCHAR2(10 CHAR)
};

enum class ConstraintKind { PrimaryKey, Unique, ForeignKey };

struct ConstraintDef {
  ConstraintKind kind = ConstraintKind::PrimaryKey;
  std::string name;  // empty: the server makes one
  std::vector<std::string> columns;
  ObjectName referenced;
  std::vector<std::string> referenced_columns;  // empty: its primary key
};

struct ColumnDef {
  std::string name;
  TypeName type;
  bool not_null = false;
  ExprPtr default_value;
  std::string default_text;
};

// Constraints of columns stand among the others.
struct TableDefinition {
  ObjectName table;
  bool temporary = false;  // its rows go at the commit
  std::vector<ColumnDef> columns;
  std::vector<ConstraintDef> constraints;
  std::string tablespace;
};

struct AddedConstraint {
  ObjectName table;
  ConstraintDef constraint;
};

struct AddedColumns {
  ObjectName table;
  std::vector<ColumnDef> columns;
};

struct CreateIndex {
  ObjectName index;
  ObjectName table;
  std::vector<std::string> columns;
  bool unique = false;
};

// The statements that name one object and little else.
struct ObjectChange {
  enum class Kind {
    DropTable,
    DropIndex,
    DropUser,
    DropConstraint,
    RenameTable,
    RenameIndex,
    Truncate
  };
  Kind kind = Kind::DropTable;
  ObjectName object;
  std::string name;  // the new name, or the constraint
  bool cascade = false;
};

struct UserStatement {
  bool create = true;
  std::string name;
  std::string password;
};

// ALTER DATABASE and ALTER SYSTEM, as far as the redo goes, and what of it ALTER TABLE may say too.
struct DatabaseChange {
  enum class Kind { AddGroup, AddMember, Archive, SwitchLog, Supplemental, CharacterSet };
  Kind kind = Kind::SwitchLog;
  ObjectName table;  // of Supplemental; without name: the database
  int group = 0;
  int size = 0;      // bytes of every log; 0: it never ends
  bool on = false;   // of Archive
  std::string name;  // of Supplemental: NONE, MIN, KEY or ALL; of CharacterSet
};

struct TransactionControl {
  enum class Kind { Commit, Rollback, Savepoint, RollbackTo };
  Kind kind = Kind::Commit;
  std::string savepoint;
};

struct ProcedureArgument {
  std::string name;
  std::string value;                   // of a literal
  std::vector<std::string> constants;  // of a sum of package constants
};

struct ProcedureCall {
  std::string name;  // "DBMS_LOGMNR.ADD_LOGFILE"
  std::vector<ProcedureArgument> arguments;
};

using Statement = std::variant<Select, Insert, Update, Delete, TableDefinition, AddedConstraint,
                               AddedColumns, CreateIndex, ObjectChange, UserStatement,
                               DatabaseChange, TransactionControl, ProcedureCall>;

}  // namespace quillmere::sandbox
