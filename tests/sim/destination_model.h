// SPDX-License-Identifier: MIT
// A destination in memory that takes the statements of source models, and answers as a server does:
// one transaction at a time with a savepoint, refusals on demand, the position row. It keeps what
// was applied in the order of the commits, and the rows that result.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sim/change.h"

namespace quillmere::sim {

using Rows = std::vector<std::vector<std::string>>;

class DestinationModel {
 public:
  // name is the owner and the table as the statements have them: SHOP.ORDERS. table says which of
  // the source's tables arrives there.
  void AddTable(const std::string& name, std::uint8_t table) { tables_[name].table = table; }

  // What was committed: the arrivals, and how many they were after each commit that added some.
  const std::vector<Arrival>& Journal() const { return committed_; }
  const std::vector<std::size_t>& Commits() const { return commits_; }
  // What no server notices: texts that arrived damaged.
  std::size_t Damaged() const { return state_.damaged; }

  // Told of each commit, with what it adds.
  std::function<void(std::span<const Arrival> arrived)> on_commit;
  // The number of the ORA error with which the server refuses a statement; 0 lets it pass.
  std::function<int(std::string_view sql)> refuse;
  // False: an insert replaces the row that is there already (else ORA-00001), for counting what is
  // lost instead of stopping at its first consequence.
  bool strict = true;

  // A statement of the one session, at the time now (ms). 0 or the number of the ORA error; waiting
  // for a session that is dying moves now on.
  int Execute(std::string_view sql, Rows& rows, std::int64_t& now);
  // The session ends: its transaction is committed, taken back, or taken back only at a later time
  // (the server has not noticed yet that the program is dead).
  void Commit();
  void Rollback();
  void Die(std::int64_t until) { dying_until_ = until; }

 private:
  struct Table {
    std::uint8_t table = 0;
    std::unordered_map<std::int64_t, std::int64_t> values;  // V by ID
  };
  struct Undo {
    Table* table;
    std::int64_t id, value;  // V before; 0: there was no row
  };
  struct State {
    std::size_t undo = 0, arrivals = 0, damaged = 0;
    std::map<std::string, std::vector<std::string>> positions;  // OWNER/job id; OWNER/: its table
  };

  int ExecuteOnPosition(std::size_t statement, const std::vector<std::string_view>& values,
                        Rows& rows);
  int Apply(std::string_view sql);
  int Change(Table& table, std::int64_t id, std::int64_t from, std::int64_t to);
  State Here() const;
  void GoBack(const State& state);

  std::map<std::string, Table, std::less<>> tables_;
  std::vector<Arrival> committed_, open_;
  std::vector<std::size_t> commits_;
  std::vector<Undo> undo_;
  State state_, begin_, savepoint_;
  bool has_savepoint_ = false;
  std::int64_t dying_until_ = 0;
};

}  // namespace quillmere::sim
