// The records of a synchronization job: the job, its source owners, their tables, its run state.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "foundation/H_tea.h"
#include "jobs/pending_batch.h"

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

// "Starting" to "Paused"; any other value is the empty text.
std::string_view StateName(JobState state);

// Neither an empty slot nor Stopped nor Paused.
bool IsRunning(JobState state);

// Stopped or Paused: then a job may be changed.
bool Rests(JobState state);

// A number that one thread writes while another reads it; copies like a number. Who sees a number
// sees what its writer wrote before it: so count first, then raise the revision.
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

// Counters are written by the worker while the window reads them; the other fields are guarded by
// the job's configuration lock.
struct JobTable {
  std::string name{};
  std::string desowner{};                       // owner written to on the destination
  SharedNumber<std::int32_t> beginrows{};       // catalogue rows at the refresh that first saw it
  SharedNumber<std::int32_t> rows{};            // catalogue rows at the latest refresh
  SharedNumber<std::int32_t> totalsynced{};     // changes applied
  SharedNumber<std::int32_t> RecordsBlocked{};  // changes set aside
  SharedNumber<std::int32_t> synced{};
  bool includeflag = true;
};

// The tables of one source owner, in insertion order, found by name through a hash. Tables never
// move in memory while the schema lives.
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

// How a job logs on to one of its data sources.
struct JobLogin {
  std::string user_id, password;
  bool sysdba = false;
};

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

// Who may touch what:
// - state, batch_applied, batch_remaining: through JobList's calls only, which hold its lock;
// - configuration (name to schemas, the table-list flags): under config_mutex, on every thread.
//   Edited only while the job rests; the worker looks tables up and saves while it runs;
// - the rest belongs to the worker while the job runs and to the window while it rests.
struct SyncJob {
  mutable std::mutex config_mutex;  // never held across database work or file I/O
  std::string name;
  std::string database_type;
  std::string description;
  std::int32_t sync_interval = 0;  // minutes; 0 is due on every sweep
  bool has_runned = false;         // a start has succeeded
  bool save_mark = false;
  std::string src_database_name;
  JobLogin source;  // copied from the data source, not persisted
  std::string des_database_name;
  JobLogin destination;
  SchemaMap schemas;
  bool table_list_fetched = false;
  bool table_list_changed = false;
  std::string error_log_path;                         // the job's own error.log, in its folder
  SharedNumber<std::uint64_t> tables_revision{1};     // grows with owners, tables and counters
  SharedNumber<std::uint64_t> tables_saved_revision;  // the revision that the job's file holds

  SharedNumber<std::int32_t> applied_count;
  SharedNumber<std::int32_t> blocked_count;
  SharedNumber<std::int32_t> batch_pending;
  std::int64_t mining_start_scn = 0;
  std::int64_t cutoff_scn = 0;
  std::int64_t next_mining_start_scn = 0;
  std::int64_t next_cutoff_scn = 0;
  PendingBatch pending_batch;
  LocalTime next_due;

 private:
  friend class JobList;
  JobState state_ = JobState::Empty;
  std::uint32_t batch_applied_ = 0;
  std::uint32_t batch_remaining_ = 0;
};

}  // namespace quillmere
