// SPDX-License-Identifier: MIT
// A destination in memory that takes the statements of source models, and answers as a server does:
// one transaction at a time with a savepoint, a refusal on demand, the position row. What it
// commits it tells.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/change.h"
#include "sim/dictionary.h"

namespace quillmere::sim {

using Rows = std::vector<std::vector<std::string>>;

class DestinationModel {
 public:
  // name is the owner and the table as the statements have them: SHOP.ORDERS. table says which of
  // the source's tables arrives there.
  void AddTable(const std::string& name, std::uint8_t table) { tables_[name] = table; }

  ModelDictionary dictionary;

  // What no server notices: texts that arrived damaged.
  std::size_t Damaged() const { return state_.damaged; }

  // Told of each commit, with what it adds.
  std::function<void(std::span<const Arrival> arrived)> on_commit;
  // The number of the ORA error with which the server refuses a statement; 0 lets it pass.
  std::function<int(std::string_view sql)> refuse;
  // The change that it does not take, by what arrives, and how often it has not.
  std::optional<std::int64_t> refused;
  std::size_t Refusals() const { return refusals_; }

  // A statement of the one session, at the time now (ms). 0 or the number of the ORA error; waiting
  // for a session that is dying moves now on.
  int Execute(std::string_view sql, Rows& rows, std::int64_t& now);
  // The session ends: its transaction is committed, taken back, or taken back only at a later time
  // (the server has not noticed yet that the program is dead).
  void Commit();
  void Rollback();
  void Die(std::int64_t until) { dying_until_ = until; }

 private:
  struct State {
    std::size_t arrivals = 0, damaged = 0;
    std::map<std::string, std::vector<std::string>> positions;  // OWNER/job id; OWNER/: its table
  };

  int ExecuteOnPosition(std::size_t statement, const std::vector<std::string_view>& values,
                        Rows& rows);
  int Apply(std::string_view sql);
  State Here() const;
  void GoBack(const State& state);

  std::map<std::string, std::uint8_t, std::less<>> tables_;
  std::vector<Arrival> open_;
  State state_, begin_, savepoint_;
  bool has_savepoint_ = false;
  std::int64_t dying_until_ = 0;
  std::size_t refusals_ = 0;
};

}  // namespace quillmere::sim
