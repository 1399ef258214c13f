// SPDX-License-Identifier: MIT
// The records of a synchronization job: its configuration with source owners and tables, and its
// run. Who may touch which of them when is said at SyncJob.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/H_tea.h"
#include "foundation/mutex.h"
#include "jobs/pending_batch.h"
#include "oracle/log_on.h"

namespace quillmere {

enum class JobState : std::int32_t {
  Empty = 0,
  Starting = 1,
  Started = 2,
  Stopping = 3,
  Stopped = 4,
  Pausing = 5,
  Paused = 6,
};

// How a job follows its source.
enum class Follow {
  Rows,     // by the SCN of each change, statement by statement
  Commits,  // by the SCN of each commit, whole transactions
};

// "rows" and "commits".
std::string_view FollowName(Follow follow);

// "Starting" to "Paused"; any other value is the empty text.
std::string_view StateName(JobState state);

// Neither an empty slot nor Stopped nor Paused.
bool IsRunning(JobState state);

// Stopped or Paused: then a job may be changed.
bool Rests(JobState state);

// A number that one thread writes while another reads it; copies like a number.
template <typename T>
class SharedNumber {
 public:
  SharedNumber(T value = 0) : value_(value) {}
  SharedNumber(const SharedNumber& other) : value_(other.Get()) {}
  SharedNumber& operator=(const SharedNumber& other) { return *this = other.Get(); }
  SharedNumber& operator=(T value) {
    value_.store(value, std::memory_order_release);
    return *this;
  }
  T Get() const { return value_.load(std::memory_order_acquire); }
  operator T() const { return Get(); }
  void Increment() { value_.fetch_add(1, std::memory_order_acq_rel); }

 private:
  std::atomic<T> value_;
};

// Counters are written by the worker while others read them; the other fields are guarded by the
// job's configuration lock.
struct JobTable {
  std::string name{};
  std::string desowner{};                       // owner written to on the destination
  SharedNumber<std::int32_t> beginrows{};       // catalogue rows at the refresh that first saw it
  SharedNumber<std::int32_t> rows{};            // catalogue rows at the latest refresh
  SharedNumber<std::int32_t> totalsynced{};     // changes applied
  SharedNumber<std::int32_t> RecordsBlocked{};  // changes set aside
  SharedNumber<std::int32_t> synced{};
  // "compare": it may differ from the destination's, for a change was not applied. Set by the
  // worker, cleared by the operator, who alone knows what became of it.
  SharedNumber<bool> compare{};
  bool includeflag = true;
};

// The tables of one source owner, in insertion order, found by name through a hash. Tables never
// move in memory while the schema lives. Guarded by the lock of the job that it belongs to.
class JobSchema {
 public:
  JobSchema() = default;
  JobSchema(JobSchema&&) = default;
  JobSchema& operator=(JobSchema&&) = default;

  JobTable& Append(JobTable table);

  // The first table of that name, or null.
  JobTable* Find(std::string_view name);
  const JobTable* Find(std::string_view name) const;

  const std::deque<JobTable>& Tables() const { return tables_; }
  std::deque<JobTable>& Tables() { return tables_; }  // names must stay as they are

 private:
  std::deque<JobTable> tables_;
  std::unordered_map<std::string_view, JobTable*> by_name_;  // keys point into tables_
};

using SchemaMap = std::map<std::string, JobSchema, std::less<>>;  // by source owner, byte order

// The 40 bytes of block.dat: a job's run state as it survives a restart.
struct RunRecord {
  std::int32_t state = static_cast<std::int32_t>(JobState::Stopped);
  std::int32_t applied_count = 0;
  std::uint32_t batch_applied = 0;
  std::uint32_t batch_remaining = 0;
  std::int64_t mining_start_scn = 0;
  std::int64_t cutoff_scn = 0;
  std::int32_t blocked_count = 0;
  std::int32_t batch_pending = 0;
};
static_assert(sizeof(RunRecord) == 40);

// A table whose changes are carried.
struct CarriedTable {
  std::string owner, name;  // on the source
  std::string to_owner;     // on the destination

  bool operator==(const CarriedTable&) const = default;
};

// What a job is to do, as an operator chose it and its source has it.
struct JobConfig {
  std::string name;
  std::string database_type;
  std::string description;
  std::int32_t sync_interval = 0;  // minutes; 0 is due on every sweep
  bool has_runned = false;         // a start has succeeded
  bool save_mark = false;
  Follow follow = Follow::Rows;
  std::string position_owner;  // whose table on the destination has the job's row; empty: none
  // By commits, when the source is the root of a container database: the one that is followed.
  std::string container;
  std::string src_database_name;
  std::string des_database_name;
  LogOn source, destination;  // of the data sources named above, see ResolveLogOns; not persisted
  SchemaMap schemas;
  bool table_list_fetched = false;
  bool table_list_changed = false;
  std::string error_log_path;               // the job's own error.log, in its folder
  std::uint64_t tables_revision = 1;        // grows after each change of owners, tables, counters
  std::uint64_t tables_saved_revision = 0;  // the one that the job's file holds
};

// Where a job stands in its source's redo.
struct Positions {
  std::int64_t mining_start_scn = 0;
  std::int64_t cutoff_scn = 0;
  bool operator==(const Positions&) const = default;
};

// How far a job has come since its start: the part of it that runs.
struct JobRun {
  SharedNumber<std::int32_t> applied_count;
  SharedNumber<std::int32_t> blocked_count;
  SharedNumber<std::int32_t> batch_pending;
  Positions positions;
  std::optional<Positions> next_positions;  // where the batch at hand leads; not persisted
  PendingBatch pending_batch;
  // The commit point of a pass of which nobody knows whether the destination took it: the position
  // row will tell. Until then what is above may be too far.
  struct Unsettled {
    RunRecord commit_point;
    // What that pass added to the counters of tables; by name, for they are read anew meanwhile.
    struct Counted {
      std::string owner, table;
      std::int32_t applied = 0, blocked = 0;
    };
    std::vector<Counted> counted{};
  };
  std::optional<Unsettled> unsettled;
  LocalTime next_due;  // not set: due at once
  // An operator does not want to wait for it. Any thread sets it, the next pass takes it.
  SharedNumber<bool> pass_asked = false;
};

// A job. Its state and progress are not here: JobList has them under its own lock.
struct SyncJob {
  // Never held across database work or file I/O, nor together with another job's or the list's.
  mutable Mutex config_mutex;
  // Any thread, with the lock. Edited only while the job rests, but for log-ons; the worker looks
  // tables up and saves while it runs. Owners and tables stay where they are while it does.
  JobConfig config GUARDED_BY(config_mutex);

  // The worker's while the job runs, the user interface's while it rests; the three counts may be
  // read by any thread at any time.
  JobRun run;
};

// Its name as it stands, copied under its lock.
std::string NameOf(const SyncJob& job);

// How it follows its source, and who owns the table of its position row; read under its lock.
Follow FollowOf(const SyncJob& job);

std::string PositionOwnerOf(const SyncJob& job);

// Of all owners, in their order. The caller has the job's configuration lock.
std::vector<CarriedTable> CarriedTables(const JobConfig& config);

// The container that it follows; read under its lock.
std::string ContainerOf(const SyncJob& job);

// Gives the table the mark "compare". False when it bears it, or the job has no such table. Any
// thread; the job's file gets it with the next save.
bool MarkToCompare(SyncJob& job, std::string_view owner, std::string_view table);

// Its owners and tables are known: a job can not run before.
bool TablesFetched(const SyncJob& job);

}  // namespace quillmere
