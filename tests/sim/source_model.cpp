// SPDX-License-Identifier: MIT
#include "sim/source_model.h"

#include <algorithm>

namespace quillmere::sim {

SourceModel::SourceModel(const SourceShape& shape, std::int64_t now)
    : shape_(shape),
      random_(shape.seed),
      now_(now),
      instances_(shape.threads),
      workload_(shape.habits, random_.Next(), now) {
  while (threads_.size() < shape.threads) threads_.emplace_back(shape.log, 1000, random_.Next());
}

void SourceModel::RunUntil(std::int64_t now) {
  while (workload_.NextTime() <= now) {
    now_ = std::max(now_, workload_.NextTime());
    workload_.Step(*this);
    Write();
  }
  now_ = std::max(now_, now);
  const bool quiet = now_ - instances_[0].last_record_at >= 3000;
  if (shape_.background_redo && quiet) Append(0, 100, false, false);
  Write();
}

// --- SCNs and redo ------------------------------------------------------------------------------

// The SCNs of instances meet now and then; in between, one that does little falls behind.
void SourceModel::Synchronize(Instance& instance) {
  if (now_ - instance.synchronized_at < shape_.lag_ms) return;
  instance.synchronized_at = now_;
  for (const Instance& other : instances_) instance.scn = std::max(instance.scn, other.scn);
}

// The record's SCN.
std::int64_t SourceModel::Append(std::size_t thread, std::uint64_t bytes, bool commit,
                                 bool shares_scn) {
  Instance& instance = instances_[thread];
  Synchronize(instance);
  if (!shares_scn || now_ - instance.last_record_at > 50) ++instance.scn;
  instance.last_record_at = now_;
  threads_[thread].Append(now_, instance.scn, bytes, commit);
  return instance.scn;
}

void SourceModel::Write() {
  bool switched = false;
  for (RedoThread& thread : threads_) switched |= thread.Write(now_);
  if (switched) ForgetWhatIsGone();
}

void SourceModel::ForgetWhatIsGone() {
  ++switches_;
  for (std::size_t i = 0; i < instances_.size(); ++i) {
    Instance& instance = instances_[i];
    const std::int64_t oldest = threads_[i].OldestHeld();
    while (!instance.committed.empty() && instance.committed.front().commit_scn < oldest) {
      instance.committed.pop_front();
      ++instance.committed_gone;
    }
  }
}

// --- What a connection can see ------------------------------------------------------------------

std::int64_t SourceModel::CurrentScn() {
  Synchronize(instances_[shape_.instance]);
  return instances_[shape_.instance].scn;
}

const Transaction* SourceModel::OldestTransaction() const {
  const Transaction* oldest = nullptr;
  for (const auto& [number, one] : open_) {
    if (one.changes.empty()) continue;
    if (oldest == nullptr || one.start_scn < oldest->start_scn) oldest = &one;
  }
  return oldest;
}

std::int64_t SourceModel::OldestOpen() const {
  for (const auto& [number, one] : open_) {
    if (!one.changes.empty() && now_ - one.begun_at < 200) return 0;
  }
  const Transaction* oldest = OldestTransaction();
  return oldest == nullptr ? -1 : oldest->start_scn;
}

const Transaction* SourceModel::Committed(std::size_t thread, std::uint64_t index) const {
  const Instance& instance = instances_[thread];
  const std::uint64_t place = index - instance.committed_gone;  // of one that is gone: beyond all
  return place < instance.committed.size() ? &instance.committed[place] : nullptr;
}

std::uint64_t SourceModel::FirstCommitted(std::size_t thread, std::int64_t commit_scn) const {
  const std::deque<Transaction>& committed = instances_[thread].committed;
  const auto first = std::partition_point(
      committed.begin(), committed.end(),
      [&](const Transaction& transaction) { return transaction.commit_scn < commit_scn; });
  return instances_[thread].committed_gone + static_cast<std::uint64_t>(first - committed.begin());
}

// --- Transactions -------------------------------------------------------------------------------

std::uint32_t SourceModel::Begin(std::size_t thread) {
  Transaction& transaction = open_[++last_number_];
  transaction.number = last_number_;
  transaction.thread = thread;
  transaction.container = shape_.containers > 1 && last_number_ % 3 == 0 ? 1 : 0;
  return last_number_;
}

SourceModel::Row& SourceModel::RowOf(const Transaction& transaction, const Change& change) {
  Instance& instance = instances_[transaction.thread];
  return instance.tables[transaction.container][change.table][change.row / shape_.threads];
}

// Often the row that the transaction changed last, else any that nobody else has changed; an insert
// takes the place of one that is not there any more.
std::uint32_t SourceModel::PickRow(const Transaction& transaction, Change& change) {
  std::vector<Row>& rows =
      instances_[transaction.thread].tables[transaction.container][change.table];
  const bool insert = change.operation == Operation::Insert;
  const auto fits = [&](std::size_t place) {
    const bool own = rows[place].holder == transaction.number;
    return (own || rows[place].holder == 0) && (rows[place].value == 0) == insert;
  };
  std::size_t place = rows.size();
  const bool again = !transaction.changes.empty() && random_.Chance(.3);
  if (again && transaction.changes.back().table == change.table) {
    place = transaction.changes.back().row / shape_.threads;
  }
  for (int i = 0; i < 4 && (place >= rows.size() || !fits(place)); ++i) {
    place = rows.empty() ? 0 : random_.Below(rows.size());
  }
  if (place >= rows.size() || !fits(place)) {
    change.operation = Operation::Insert;
    place = rows.size();
    rows.emplace_back();
  }
  return static_cast<std::uint32_t>(place * shape_.threads + transaction.thread);
}

std::uint32_t SourceModel::Do(std::uint32_t number, Operation operation, std::uint8_t table,
                              std::uint32_t row, std::uint16_t note) {
  Transaction& transaction = open_.at(number);
  Change change{.row = row, .note = note, .table = table, .operation = operation};
  transaction.live.push_back(static_cast<std::uint32_t>(transaction.changes.size()));
  if (operation > Operation::Update) {
    change.row = change.note = 0;
  } else {
    if (row == kAnyRow) change.row = PickRow(transaction, change);
    if (change.operation == Operation::Delete) change.note = 0;
    Row& state = RowOf(transaction, change);
    change.old = state.value;
    state = {change.operation == Operation::Delete ? 0 : last_id_ + 1, number};
  }
  Record(transaction, change);
  return change.row;
}

void SourceModel::Record(Transaction& transaction, Change change) {
  change.scn = Append(transaction.thread, 200U + change.note, false, false);
  change.id = ++last_id_;
  if (transaction.changes.empty()) {
    transaction.start_scn = change.scn;
    transaction.begun_at = now_;
  }
  transaction.changes.push_back(change);
}

std::size_t SourceModel::Savepoint(std::uint32_t number) const {
  return open_.at(number).live.size();
}

void SourceModel::RollbackTo(std::uint32_t number, std::size_t savepoint) {
  TakeBack(open_.at(number), savepoint, true);
}

// The newest change first. Of a full rollback LogMiner returns nothing, so it leaves no records.
void SourceModel::TakeBack(Transaction& transaction, std::size_t keep, bool records) {
  static constexpr Operation kInverse[] = {Operation::Delete, Operation::Insert, Operation::Update};
  for (; transaction.live.size() > keep; transaction.live.pop_back()) {
    Change change = transaction.changes[transaction.live.back()];
    if (change.operation > Operation::Update) continue;
    RowOf(transaction, change).value = change.old;
    change.operation = kInverse[static_cast<std::size_t>(change.operation)];
    if (change.operation == Operation::Delete) change.note = 0;
    change.undo = true;
    if (records) Record(transaction, change);
  }
}

void SourceModel::Release(const Transaction& transaction) {
  for (const Change& change : transaction.changes) {
    if (change.operation <= Operation::Update) RowOf(transaction, change).holder = 0;
  }
}

void SourceModel::Commit(std::uint32_t number, bool shares_scn) {
  Transaction transaction = std::move(open_.at(number));
  open_.erase(number);
  Release(transaction);
  if (transaction.changes.empty()) return;
  transaction.commit_scn = Append(transaction.thread, 100, true, shares_scn);
  transaction.committed_at = now_;
  if (on_commit) on_commit(transaction);
  transaction.live = {};
  instances_[transaction.thread].committed.push_back(std::move(transaction));
}

void SourceModel::Rollback(std::uint32_t number) {
  Transaction& transaction = open_.at(number);
  Append(transaction.thread, 100 + 100 * transaction.live.size(), false, false);
  TakeBack(transaction, 0, false);
  Release(transaction);
  open_.erase(number);
}

// --- Fate ---------------------------------------------------------------------------------------

void SourceModel::LoseOpenTransactions() {
  while (!open_.empty()) Rollback(open_.begin()->first);
  for (RedoThread& thread : threads_) thread.WriteAll();
  workload_.Restart(random_.Next(), now_);
}

void SourceModel::ResetLogs() {
  LoseOpenTransactions();
  for (const Instance& one : instances_) resetlogs_scn_ = std::max(resetlogs_scn_, one.scn + 1);
  for (Instance& instance : instances_) instance.scn = resetlogs_scn_;
  for (RedoThread& thread : threads_) thread.ResetLogs(resetlogs_scn_);
  ForgetWhatIsGone();
}

void SourceModel::RestoreFrom(const SourceModel& backup, bool resetlogs) {
  const std::int64_t now = now_;
  const std::uint64_t seed = random_.Next(), switches = switches_;
  *this = SourceModel(backup);
  now_ = now;
  random_ = Random(seed);
  switches_ = switches;
  LoseOpenTransactions();
  if (resetlogs) ResetLogs();
  ForgetWhatIsGone();
}

}  // namespace quillmere::sim
