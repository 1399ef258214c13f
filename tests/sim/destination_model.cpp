// SPDX-License-Identifier: MIT
#include "sim/destination_model.h"

#include <algorithm>

#include "oracle/follow_queries.h"
#include "sim/statement_match.h"

namespace quillmere::sim {
namespace {

enum PositionStatement : std::size_t { Create, Insert, Lock, Update, Delete };
constexpr std::string_view kPositionStatements[] = {
    follow::kCreatePositions, follow::kInsertPosition, follow::kLockPosition,
    follow::kUpdatePosition, follow::kDeletePosition};
constexpr std::int64_t kLockWaitMs = 5000;

// The literals of a statement, whose doubled quotes become one.
std::vector<std::string> Literals(std::string_view sql) {
  std::vector<std::string> literals;
  for (std::size_t i = 0; i < sql.size(); ++i) {
    if (sql[i] != '\'') continue;
    std::string& literal = literals.emplace_back();
    for (++i; i < sql.size(); ++i) {
      if (sql[i] == '\'' && (i + 1 == sql.size() || sql[++i] != '\'')) break;
      literal += sql[i];
    }
  }
  return literals;
}

bool Arrived(const std::string& note, std::int64_t id) {
  const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  const auto characters = std::count_if(note.begin(), note.end(), begins);
  return note == Note(id, static_cast<std::size_t>(characters));
}

}  // namespace

int DestinationModel::Execute(std::string_view sql, Rows& rows, std::int64_t& now) {
  if (dying_until_ != 0) {
    const bool in_vain = Match(follow::kLockPosition, sql) && dying_until_ > now + kLockWaitMs;
    now = in_vain ? now + kLockWaitMs : std::max(now, dying_until_);
    if (in_vain) return 30006;
    Rollback();
  }
  if (const int code = refuse ? refuse(sql) : 0) return code;
  if (sql == follow::kRollback) return Rollback(), 0;
  if (sql == follow::kSavepoint) {
    has_savepoint_ = true;
    savepoint_ = Here();
    return 0;
  }
  if (sql == follow::kBackToSavepoint) {
    if (has_savepoint_) GoBack(savepoint_);
    return has_savepoint_ ? 0 : 1086;
  }
  for (std::size_t i = 0; i < std::size(kPositionStatements); ++i) {
    if (const auto values = Match(kPositionStatements[i], sql)) {
      return ExecuteOnPosition(i, *values, rows);
    }
  }
  return Apply(sql);
}

int DestinationModel::ExecuteOnPosition(std::size_t statement,
                                        const std::vector<std::string_view>& values, Rows& rows) {
  const std::string owner = std::string(values[0]) + '/';
  if (statement == Create) {
    Commit();
    const bool made = state_.positions.try_emplace(owner).second;
    Commit();
    return made ? 0 : 955;
  }
  if (!state_.positions.contains(owner)) return 942;
  const std::string job = owner + std::string(values[statement == Update ? 3 : 1]);
  const bool there = state_.positions.contains(job);
  if (statement == Insert && there) return 1;
  if (statement == Insert) state_.positions[job] = {values.begin() + 2, values.end()};
  if (statement == Lock && there) rows.push_back(state_.positions[job]);
  if (statement == Update && there) {
    state_.positions[job] = {values.begin() + 1, values.begin() + 3};
  }
  if (statement == Delete) state_.positions.erase(job);
  return 0;
}

int DestinationModel::Apply(std::string_view sql) {
  const bool insert = sql.starts_with("INSERT INTO "), update = sql.starts_with("UPDATE  ");
  if (!insert && !update && !sql.starts_with("DELETE FROM ")) return 900;
  std::string_view name = sql.substr(update ? 8 : 12);
  name = name.substr(0, name.find(insert ? '(' : ' '));
  const auto table = tables_.find(name);
  if (table == tables_.end()) return 942;
  // insert: ID, V, NOTE; update: V, NOTE, ID, V before; delete: ID, V before. NOTE may be missing.
  std::vector<std::string> literals = Literals(sql);
  const std::size_t least = update ? 3 : 2, note = update ? 1 : 2;
  if (literals.size() < least) return 900;
  std::string text;
  if (literals.size() > least) {
    text = literals[note];
    literals.erase(literals.begin() + static_cast<std::ptrdiff_t>(note));
  }
  const std::int64_t from = insert ? 0 : std::stoll(literals.back());
  const std::int64_t to = insert ? std::stoll(literals[1]) : update ? std::stoll(literals[0]) : 0;
  const Arrival arrival(table->second, to != 0 ? to : -from);
  if (refused == arrival.id) return ++refusals_, 1;
  if (!Arrived(text, to)) ++state_.damaged;
  open_.push_back(arrival);
  return 0;
}

DestinationModel::State DestinationModel::Here() const {
  State here = state_;
  here.arrivals = open_.size();
  return here;
}

void DestinationModel::GoBack(const State& state) {
  open_.resize(state.arrivals, Arrival(0, 0));
  state_ = state;
}

void DestinationModel::Commit() {
  const bool dead = dying_until_ != 0;  // what is open is the dead session's
  if (on_commit) on_commit(dead ? std::span<const Arrival>() : open_);
  if (dead) return;
  open_.clear();
  has_savepoint_ = false;
  begin_ = Here();
}

void DestinationModel::Rollback() {
  GoBack(begin_);
  has_savepoint_ = false;
  dying_until_ = 0;
}

}  // namespace quillmere::sim
