// What the parser makes of a statement. Literals are kept as indexes into the token list, so that
// one tree serves every statement of the same shape. Plain values.
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

enum class ExprOp {
  Literal,
  Null,
  Column,
  Rowid,
  CountStar,
  Call,
  Negate,
  Add,
  Subtract,
  Multiply,
  Divide,
  Concat,
  Equal,
  NotEqual,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  And,
  Or,
  Not,
  IsNull,
  Between,
  In,
  Like,
  Exists
};

struct Expr {
  ExprOp op = ExprOp::Null;
  std::size_t token = 0;   // of Literal
  bool is_number = false;  // of Literal
  std::string qualifier;   // of Column and Rowid: table or alias, may be empty
  std::string name;        // of Column and Call
  std::vector<std::unique_ptr<Expr>> args;
  int depth = 1;                     // of the tree below, itself included
  std::shared_ptr<Select> subquery;  // of Exists
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
  bool distinct = false;
  std::vector<SelectItem> items;
  std::vector<SelectSource> from;
  ExprPtr where;
  std::vector<ExprPtr> group_by;
  std::vector<OrderItem> order_by;
};

struct Insert {
  ObjectName table;
  std::vector<std::string> columns;  // empty: all
  std::vector<ExprPtr> values;       // no expression: DEFAULT
};

struct Update {
  ObjectName table;
  std::string alias;
  std::vector<std::string> columns;
  std::vector<ExprPtr> values;  // no expression: DEFAULT
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

enum class ConstraintKind { PrimaryKey, Unique, ForeignKey, NotNull };

struct ConstraintDef {
  ConstraintKind kind = ConstraintKind::PrimaryKey;
  std::string name;  // empty: the server makes one
  std::vector<std::string> columns;
  ObjectName referenced;
  std::vector<std::string> referenced_columns;
  std::string delete_rule = "NO ACTION";
  bool disabled = false;
};

struct ColumnDef {
  std::string name;
  TypeName type;
  bool not_null = false;
  ExprPtr default_value;
  std::string default_text;
  std::vector<ConstraintDef> constraints;
};

struct CreateTable {
  ObjectName table;
  std::vector<ColumnDef> columns;
  std::vector<ConstraintDef> constraints;
  std::string tablespace;
};

struct CreateIndex {
  ObjectName index;
  ObjectName table;
  std::vector<std::string> columns;
  bool unique = false;
};

struct AlterTable {
  enum class Action { AddConstraint, AddColumns, DropConstraint, DropPrimaryKey, Rename };
  Action action = Action::Rename;
  ObjectName table;
  ConstraintDef constraint;
  std::vector<ColumnDef> columns;
  std::string name;  // constraint dropped, or the new name
  bool cascade = false;
};

struct AlterIndex {
  ObjectName index;
  std::string new_name;  // empty: rebuild, which changes nothing here
};

struct DropObject {
  enum class Kind { Table, Index, User };
  Kind kind = Kind::Table;
  ObjectName object;
  bool cascade = false;
};

struct TruncateTable {
  ObjectName table;
};

struct AnalyzeTable {
  ObjectName table;
  bool remove = false;
};

struct UserStatement {
  bool create = true;
  std::string name;
  std::optional<std::string> password;
};

struct GrantStatement {
  bool revoke = false;
  std::vector<std::string> privileges;
  std::optional<ObjectName> object;
  std::vector<std::string> grantees;
};

struct TransactionControl {
  enum class Kind { Commit, Rollback, Savepoint, RollbackTo };
  Kind kind = Kind::Commit;
  std::string savepoint;
};

struct AlterSession {
  std::string parameter;
  std::string value;
};

struct ProcedureArgument {
  std::string name;
  ExprPtr value;
  std::vector<std::string> constants;  // of a sum of package constants
};

struct ProcedureCall {
  std::string name;  // "DBMS_LOGMNR.ADD_LOGFILE"
  std::vector<ProcedureArgument> arguments;
};

using Statement = std::variant<Select, Insert, Update, Delete, CreateTable, CreateIndex, AlterTable,
                               AlterIndex, DropObject, TruncateTable, AnalyzeTable, UserStatement,
                               GrantStatement, TransactionControl, AlterSession, ProcedureCall>;

}  // namespace quillmere::sandbox
