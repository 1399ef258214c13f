#include "sandbox/tool/compare.h"

#include <optional>
#include <ostream>
#include <vector>

#include "sandbox/store/catalog.h"
#include "sandbox/store/run_sql.h"
#include "sandbox/store/sqlite_functions.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

constexpr std::size_t kMostShown = 50;  // lines about rows, all tables together
constexpr std::size_t kMostShownPerTable = 10;

// One side of the comparison, held in one read transaction: what is compared is one moment.
class Side {
 public:
  Status Open(const DatabasePath& path) {
    Status status = OpenDatabase(path, SqliteConnection::Mode::ReadWrite, &connection_);
    if (status.ok()) status = RegisterFunctions(connection_.get(), &context_);
    return status.ok() ? connection_->Exec("BEGIN") : status;
  }

  Status TableNames(const std::string& owner, std::set<std::string>* out) {
    SqliteStatement* rows = nullptr;
    Status status = PrepareSql(connection_.get(),
                               "SELECT owner || '.' || name FROM qm_table"
                               " WHERE owner NOT IN ('SYS', 'SYSTEM') AND (?1 = '' OR owner = ?1)",
                               &rows, owner);
    bool row = false;
    while (status.ok() && (status = rows->Step(&row)).ok() && row) {
      out->emplace(rows->Text(0));
    }
    return status;
  }

  Status FindTable(const std::string& full_name, TablePtr* out) {
    const std::size_t dot = full_name.find('.');
    return catalog_.FindTable(connection_.get(), full_name.substr(0, dot),
                              full_name.substr(dot + 1), out);
  }

  Status Rows(const Table& table, std::unique_ptr<SqliteStatement>* out) {
    std::string columns;
    std::string order;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      columns += (i == 0 ? "" : ", ") + table.columns[i].SqlName();
      order += (i == 0 ? "" : ", ") + table.columns[i].SqlName() + " COLLATE BINARY";
    }
    return connection_->Prepare(
        "SELECT " + columns + " FROM " + table.SqlName() + " ORDER BY " + order, out);
  }

 private:
  EvalContext context_;
  std::unique_ptr<SqliteConnection> connection_;
  Catalog catalog_;
};

// The rows of a table in order, one at a time.
class RowStream {
 public:
  Status Open(Side* side, const Table& table) {
    width_ = table.columns.size();
    Status status = side->Rows(table, &statement_);
    return status.ok() ? Advance() : status;
  }

  Status Advance() {
    if (Status status = statement_->Step(&valid_); !status.ok() || !valid_) return status;
    row_.resize(width_);
    for (std::size_t i = 0; i < width_; ++i) {
      const int column = static_cast<int>(i);
      row_[i].reset();
      if (!statement_->IsNull(column)) row_[i] = std::string(statement_->Text(column));
    }
    return {};
  }

  bool valid() const { return valid_; }
  const std::vector<std::optional<std::string>>& row() const { return row_; }

 private:
  std::unique_ptr<SqliteStatement> statement_;
  std::size_t width_ = 0;
  std::vector<std::optional<std::string>> row_;
  bool valid_ = false;
};

std::string Shown(const Table& table, const std::vector<std::optional<std::string>>& row) {
  std::string text;
  for (std::size_t i = 0; i < row.size(); ++i) {
    text += (i == 0 ? "" : ", ") + table.columns[i].name + "=";
    text += row[i] ? QuoteLiteral(Shortened(*row[i], 60)) : "NULL";
  }
  return Shortened(text, 400);
}

std::string ColumnList(const Table& table) {
  std::string text;
  for (const Column& column : table.columns) {
    text += (text.empty() ? "" : ", ") + column.name + " " + column.type.name;
    if (column.type.char_length > 0) text += "(" + std::to_string(column.type.char_length) + ")";
    if (column.type.code == TypeCode::Number && column.type.scale) {
      text += "(" + (column.type.precision ? std::to_string(*column.type.precision) : "*") + "," +
              std::to_string(*column.type.scale) + ")";
    }
    if (!column.nullable) text += " NOT NULL";
  }
  return text;
}

class Comparison {
 public:
  Comparison(const CompareOptions& options, std::ostream& out) : options_(options), out_(out) {}

  Status Run(const DatabasePath& first, const DatabasePath& second) {
    Status status = first_.Open(first);
    if (status.ok()) status = second_.Open(second);
    std::set<std::string> first_names;
    std::set<std::string> second_names;
    if (status.ok()) status = first_.TableNames(options_.owner, &first_names);
    if (status.ok()) status = second_.TableNames("", &second_names);
    if (!status.ok()) return status;
    std::set<std::string> expected;
    for (const std::string& name : first_names) {
      const auto mapping = options_.mapped.find(name);
      const std::string other = mapping == options_.mapped.end() ? name : mapping->second;
      expected.insert(other);
      if (options_.excluded.contains(name)) continue;
      if (!second_names.contains(other)) {
        Say("table " + name + " is only in the first database" +
            (other == name ? "" : " (there is no " + other + " in the second)"));
        continue;
      }
      if (status = CompareTable(name, other); !status.ok()) return status;
    }
    for (const std::string& name : second_names) {
      const bool asked = options_.owner.empty() || name.starts_with(options_.owner + ".");
      if (asked && !expected.contains(name) && !options_.excluded.contains(name)) {
        Say("table " + name + " is only in the second database");
      }
    }
    if (shown_rows_ > kMostShown) out_ << "... and more\n";
    return {};
  }

  std::size_t differences() const { return differences_; }

 private:
  void Say(const std::string& line) {
    ++differences_;
    out_ << line << '\n';
  }

  void SayRow(const std::string& name, char sign, const Table& table,
              const std::vector<std::optional<std::string>>& row, std::size_t in_table) {
    ++differences_;
    if (in_table > kMostShownPerTable || ++shown_rows_ > kMostShown) return;
    out_ << sign << ' ' << name << ": " << Shown(table, row) << '\n';
  }

  Status CompareTable(const std::string& name, const std::string& other) {
    TablePtr a;
    TablePtr b;
    Status status = first_.FindTable(name, &a);
    if (status.ok()) status = second_.FindTable(other, &b);
    if (!status.ok()) return status;
    if (ColumnList(*a) != ColumnList(*b)) {
      Say("table " + name + " has other columns: " + ColumnList(*a) + " | " + ColumnList(*b));
      return {};
    }
    RowStream left;
    RowStream right;
    status = left.Open(&first_, *a);
    if (status.ok()) status = right.Open(&second_, *b);
    std::size_t only_left = 0;
    std::size_t only_right = 0;
    while (status.ok() && (left.valid() || right.valid())) {
      const bool take_left = left.valid() && (!right.valid() || left.row() < right.row());
      const bool take_right = right.valid() && (!left.valid() || right.row() < left.row());
      if (take_left) SayRow(name, '-', *a, left.row(), ++only_left);
      if (take_right) SayRow(name, '+', *b, right.row(), ++only_right);
      if (!take_right) status = left.Advance();
      if (status.ok() && !take_left) status = right.Advance();
    }
    if (only_left + only_right > 0) {
      out_ << "table " << name << ": " << only_left << " rows only in the first database, "
           << only_right << " only in the second\n";
    }
    return status;
  }

  const CompareOptions& options_;
  std::ostream& out_;
  Side first_;
  Side second_;
  std::size_t differences_ = 0;
  std::size_t shown_rows_ = 0;
};

}  // namespace

Status CompareDatabases(const DatabasePath& first, const DatabasePath& second,
                        const CompareOptions& options, std::ostream& out,
                        std::size_t* differences) {
  Comparison comparison(options, out);
  Status status = comparison.Run(first, second);
  *differences = comparison.differences();
  return status;
}

}  // namespace quillmere::sandbox
