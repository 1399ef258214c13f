// SPDX-License-Identifier: MIT
#include "sandbox/tool/compare.h"

#include <cstdlib>
#include <ostream>
#include <vector>

#include "sandbox/store/sql_runner.h"
#include "sandbox/store/sqlite_functions.h"
#include "sandbox/values/text.h"

namespace quillmere::sandbox {

namespace {

constexpr std::size_t kMostShown = 50;  // lines about rows, all tables together
constexpr std::size_t kMostShownPerTable = 10;

// A table on one side.
struct Side {
  std::string sql_name;            // "other.t5"
  std::string columns;             // "c7,c8"
  std::string definition;          // "ID NUMBER(10,0) NOT NULL, ..."
  std::vector<std::string> names;  // of its columns
};

// Both databases on one connection, "main" and "other", in one read transaction: what is compared
// is one moment.
class Comparison {
 public:
  Comparison(const CompareOptions& options, std::ostream& out, SqliteConnection* connection)
      : options_(options), out_(out), sql_(connection) {}

  Status Run(const std::string& other_file) {
    sql_.Run("ATTACH ? AS other", other_file);
    sql_.Run("BEGIN");
    const std::set<std::string> first_names = TableNames("main", options_.owner);
    const std::set<std::string> second_names = TableNames("other", "");
    std::set<std::string> expected;
    for (const std::string& name : first_names) {
      const auto mapping = options_.mapped.find(name);
      const std::string other = mapping == options_.mapped.end() ? name : mapping->second;
      expected.insert(other);
      if (options_.excluded.contains(name)) continue;
      if (second_names.contains(other)) {
        CompareTable(name, other);
      } else {
        Say("table " + name + " is only in the first database" +
            (other == name ? "" : " (there is no " + other + " in the second)"));
      }
    }
    for (const std::string& name : second_names) {
      const bool asked = options_.owner.empty() || name.starts_with(options_.owner + ".");
      if (asked && !expected.contains(name) && !options_.excluded.contains(name)) {
        Say("table " + name + " is only in the second database");
      }
    }
    if (shown_rows_ > kMostShown) out_ << "... and more\n";
    return sql_.status();
  }

  std::size_t differences() const { return differences_; }

 private:
  std::set<std::string> TableNames(const std::string& database, const std::string& owner) {
    std::set<std::string> names;
    sql_.Each(
        "SELECT owner || '.' || name FROM " + database +
            ".qm_table WHERE owner NOT IN ('SYS', 'SYSTEM') AND (?1 = '' OR owner = ?1)",
        [&names](const SqliteStatement& row) { names.emplace(row.Text(0)); }, owner);
    return names;
  }

  Side Look(const std::string& database, const std::string& name) {
    Side side;
    const std::string in = database + ".";
    sql_.Each(
        "SELECT t.id, c.id, c.name, c.name || ' ' || c.data_type ||"
        " iif(c.char_length > 0, '(' || c.char_length || ')', '') ||"
        " iif(c.data_type = 'NUMBER' AND c.data_scale IS NOT NULL,"
        " '(' || ifnull(c.data_precision, '*') || ',' || c.data_scale || ')', '') ||"
        " iif(c.nullable AND NOT EXISTS (SELECT 1 FROM " +
            in + "qm_constraint_column p JOIN " + in +
            "qm_constraint k ON k.id = p.constraint_id AND k.type = 'P'"
            " WHERE p.column_id = c.id), '', ' NOT NULL') FROM " +
            in + "qm_column c JOIN " + in +
            "qm_table t ON t.id = c.table_id WHERE t.owner || '.' || t.name = ? ORDER BY "
            "c.position",
        [&side, &in](const SqliteStatement& row) {
          const char* comma = side.names.empty() ? "" : ", ";
          side.sql_name = in + "t" + std::to_string(row.Int(0));
          side.columns += comma + ("c" + std::to_string(row.Int(1)));
          side.names.emplace_back(row.Text(2));
          side.definition.append(comma).append(row.Text(3));
        },
        name);
    return side;
  }

  void Say(const std::string& line) {
    ++differences_;
    out_ << line << '\n';
  }

  // Rows count one for the first side and minus one for the second: what does not add up to nothing
  // is on one side only.
  void CompareTable(const std::string& name, const std::string& other) {
    const Side a = Look("main", name);
    const Side b = Look("other", other);
    if (a.definition != b.definition) {
      return Say("table " + name + " has other columns: " + a.definition + " | " + b.definition);
    }
    std::string all;
    for (std::size_t i = 0; i < a.names.size(); ++i) {
      all += (i == 0 ? "" : ",") + std::to_string(i + 3);
    }
    std::size_t only_a = 0;
    std::size_t only_b = 0;
    sql_.Each("SELECT sum(side), * FROM (SELECT 1 AS side, " + a.columns + " FROM " + a.sql_name +
                  " UNION ALL SELECT -1, " + b.columns + " FROM " + b.sql_name + ") GROUP BY " +
                  all + " HAVING sum(side) <> 0 ORDER BY " + all,
              [&](const SqliteStatement& row) {
                const std::int64_t count = row.Int(0);
                (count > 0 ? only_a : only_b) += static_cast<std::size_t>(std::abs(count));
                SayRow(count, name, a, row, only_a + only_b);
              });
    if (only_a + only_b == 0) return;
    out_ << "table " << name << ": " << only_a << " rows only in the first database, " << only_b
         << " only in the second\n";
  }

  void SayRow(std::int64_t count, const std::string& name, const Side& side,
              const SqliteStatement& row, std::size_t in_table) {
    differences_ += static_cast<std::size_t>(std::abs(count));
    if (in_table > kMostShownPerTable || ++shown_rows_ > kMostShown) return;
    std::string text;
    for (std::size_t i = 0; i < side.names.size(); ++i) {
      const int column = static_cast<int>(i) + 2;
      text += (i == 0 ? "" : ", ") + side.names[i] + "=";
      text += row.IsNull(column) ? "NULL" : QuoteLiteral(Shortened(row.Text(column), 60));
    }
    out_ << (count > 0 ? "- " : "+ ") << name << ": " << Shortened(text, 400);
    if (std::abs(count) > 1) out_ << " (" << std::abs(count) << " times)";
    out_ << '\n';
  }

  const CompareOptions& options_;
  std::ostream& out_;
  SqlRunner sql_;
  std::size_t differences_ = 0;
  std::size_t shown_rows_ = 0;
};

}  // namespace

Status CompareDatabases(const DatabasePath& first, const DatabasePath& second,
                        const CompareOptions& options, std::ostream& out,
                        std::size_t* differences) {
  const EvalContext context;
  std::unique_ptr<SqliteConnection> connection;
  Status status = OpenDatabase(second, &connection);  // is it one at all?
  if (status.ok()) status = OpenDatabase(first, &connection);
  if (status.ok()) status = RegisterFunctions(connection.get(), &context);
  if (!status.ok()) return status;
  Comparison comparison(options, out, connection.get());
  status = comparison.Run(second.file.string());
  *differences = comparison.differences();
  return status;
}

}  // namespace quillmere::sandbox
