// SPDX-License-Identifier: MIT
// A pass costs a round trip and one small write a statement, whatever the job's size; a capture
// costs little more than copying the redo.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <memory>

#include "benches.h"
#include "engine/follow_commits.h"
#include "engine/follow_rows.h"
#include "engine/job_runner.h"
#include "engine/transaction_assembler.h"
#include "jobs/batch_lines.h"
#include "null_oci.h"
#include "silence.h"
#include "support/temp_folder.h"
#include "watch/watched_listener.h"

namespace quillmere::bench {

namespace {

constexpr std::size_t kStatements = 100'000;

class Engine {
 public:
  enum class Watched { No, Yes, WithDefinitions };
  Engine(std::size_t jobs, std::size_t tables, Watched watched = Watched::No)
      : library_(NullOci(nullptr)), is_watched_(watched != Watched::No) {
    settings_.definitions_by_rows = watched == Watched::WithDefinitions;
    for (std::size_t i = 0; i < jobs; ++i) {
      const std::size_t index = jobs_.Claim();
      SyncJob& job = jobs_.At(index);
      {
        const MutexLock lock(job.config_mutex);
        job.config.name = "job_" + std::to_string(i);
        job.config.sync_interval = 1'000'000;
        JobSchema& schema = job.config.schemas["SALES"];
        for (std::size_t t = 0; t < tables; ++t) {
          schema.Append({.name = "ORDERS_" + std::to_string(t), .desowner = "BRANCH"});
        }
      }
      jobs_.SetState(index, JobState::Stopped);
    }
  }

  SyncJob& Job() { return jobs_.At(0); }
  EngineContext& Context() { return context_; }
  OciLibrary& Library() { return library_; }

  // The pass ends with a save of the counters, of as many tables as the job has; without it the
  // job's file counts as saved already.
  void Apply(const std::vector<std::string>& statements, bool save = true) {
    {
      const MutexLock lock(Job().config_mutex);
      JobConfig& config = Job().config;
      config.tables_saved_revision = save ? 0 : config.tables_revision + 1;
    }
    JobRun& run = Job().run;
    for (const std::string& statement : statements) run.pending_batch.Append(statement);
    run.next_due = LocalTime{};
    jobs_.SetState(0, JobState::Started, {0, static_cast<std::uint32_t>(run.pending_batch.Size())});
    run.applied_count = 0;
    runner_.Step(0);
    if (static_cast<std::size_t>(run.applied_count.Get()) != statements.size()) std::abort();
  }

  void Capture(std::size_t rows) {
    OracleSession session(library_);
    if (!session.Connect({"S", "u", "p", false})) std::abort();
    Job().run.positions.cutoff_scn = 1'000'000'000;
    if (!FollowRows(context_, 0).Mine(session) || Job().run.pending_batch.Empty()) std::abort();
    benchmark::DoNotOptimize(rows);
    Job().run.pending_batch.Clear();
  }

  // Reads the redo and applies it, by the way that the job follows. How many statements.
  std::size_t WholePass() {
    OracleSession session(library_);
    if (!session.Connect({"S", "u", "p", false})) std::abort();
    JobRun& run = Job().run;
    run.positions.cutoff_scn = 1'000'000'000;
    FollowMemory memory;
    std::string error;
    std::int64_t stopped_at = MinedRow::kNoScn;
    CommitMiner miner(session);
    const bool mined = FollowOf(Job()) == Follow::Rows
                           ? FollowRows(context_, 0).Mine(session)
                           : FollowCommits(context_, 0, memory).Read(miner, 0, stopped_at, error);
    const std::size_t size = run.pending_batch.Size();
    if (!mined || size == 0) std::abort();
    run.next_due = LocalTime{};
    jobs_.SetState(0, JobState::Started, {0, static_cast<std::uint32_t>(size)});
    run.applied_count = 0;
    runner_.Step(0);
    if (static_cast<std::size_t>(run.applied_count.Get()) != size) std::abort();
    return size;
  }
  void FollowBy(Follow follow) {
    const MutexLock lock(Job().config_mutex);
    Job().config.follow = follow;
  }

  void StartAll() {
    for (std::size_t i = 0; i < jobs_.Count(); ++i) {
      jobs_.At(i).run.next_due = AddMinutes(clock_.Now(), 10'000);
      jobs_.SetState(i, JobState::Started);
    }
  }
  void Sweep() {
    for (std::size_t i = 0; i < jobs_.Count(); ++i) runner_.Step(i);
  }

 private:
  TempFolder folder_;
  SystemClock clock_;
  Settings settings_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  JobList jobs_;
  JobCatalogue catalogue_{folder_.Files(), folder_.Path(), jobs_, log_};
  OciLibrary library_;
  Silence nobody_;
  JobWatch watch_{folder_.Files(), folder_.Path(), jobs_, catalogue_, clock_};
  WatchedListener watching_{watch_, nobody_};
  const bool is_watched_;
  RunnerListener& listener_ = is_watched_ ? static_cast<RunnerListener&>(watching_) : nobody_;
  EngineContext context_{folder_.Files(), folder_.Path(), jobs_,    catalogue_, library_, log_,
                         clock_,          settings_,      listener_};
  JobRunner runner_{context_};
};

std::vector<std::string> Statements(std::size_t tables) {
  std::vector<std::string> statements;
  for (std::size_t i = 0; i < kStatements; ++i) {
    statements.push_back(
        "update \"SALES\".\"ORDERS_" + std::to_string(i * 7919 % tables) +
        "\" set \"STATUS\" = 'shipped to the customer' where \"ID\" = '" + std::to_string(i) +
        "' and \"STATUS\" = 'packed and waiting' and \"NOTE\" = '" + std::string(60, 'n') + "'");
  }
  return statements;
}

// The calls of a batch and one small write a statement, and nothing else.
void BareLoop(const OciApi& api, const std::vector<std::string>& statements) {
  using namespace oci;
  static const TempFolder folder;
  PendingBatch batch;
  for (const std::string& statement : statements) batch.Append(statement);
  const int file = open((folder.Path() / "block.dat").c_str(), O_WRONLY | O_CREAT, 0600);
  char record[40] = {};
  for (std::size_t i = 0; i < batch.Size(); ++i) {
    void* handle = nullptr;
    api.HandleAlloc(nullptr, &handle, kHtypeStmt, 0, nullptr);
    api.StmtPrepare(static_cast<OCIStmt*>(handle), nullptr,
                    reinterpret_cast<const OraText*>(batch[i].text.data()),
                    static_cast<ub4>(batch[i].text.size()), kNtvSyntax, kDefault);
    api.StmtExecute(nullptr, static_cast<OCIStmt*>(handle), nullptr, 1, 0, nullptr, nullptr,
                    kDefault);
    api.HandleFree(handle, kHtypeStmt);
    if (pwrite(file, record, sizeof record, 0) != sizeof record) std::abort();
  }
  close(file);
}

// Statements of 200 bytes, every tenth of more than 4000 bytes in three rows.
class Redo {
 public:
  explicit Redo(std::size_t rows) {
    const std::string head = "insert into \"SALES\".\"ORDERS_1\"(\"ID\",\"NOTE\") values ('1','";
    short_ = head + std::string(200 - head.size() - 3, 'x') + "');";
    long_ = head + std::string(9000 - head.size() - 3, 'y') + "');";
    const std::string_view text = long_;
    while (rows_.size() + 3 <= rows) {
      if (++count_ % 10 != 0) {
        rows_.push_back({"4711", short_});
      } else {
        for (std::size_t at = 0; at < text.size(); at += 4000) {
          rows_.push_back({"4711", text.substr(at, 4000)});
        }
      }
    }
    for (const RedoRow& row : rows_) bytes_ += row.text.size();
  }
  const std::vector<RedoRow>& Rows() const { return rows_; }

  // What a capture cannot do without: the bytes stand somewhere else afterwards.
  void Copy() const {
    const auto memory = std::make_unique_for_overwrite<char[]>(bytes_);
    char* to = memory.get();
    for (const RedoRow& row : rows_) to = std::copy(row.text.begin(), row.text.end(), to);
    benchmark::DoNotOptimize(*(to - 1));
  }

 private:
  std::string short_, long_;
  std::vector<RedoRow> rows_;
  std::size_t count_ = 0;
  std::size_t bytes_ = 0;
};

double IdleSweep() {
  Engine engine(1000, 10);
  engine.StartAll();
  engine.Sweep();
  const double begin = ProcessorMilliseconds();
  constexpr int kSweeps = 100;
  for (int i = 0; i < kSweeps; ++i) engine.Sweep();
  return (ProcessorMilliseconds() - begin) / kSweeps;
}

// A million statements, in transactions of so many: the most that is in use above their text while
// they go from their transaction into the batch.
double BytesOfStatements(std::size_t a_transaction) {
  constexpr std::size_t kLong = 1'000'000;
  struct Taker final : TransactionAssembler::Taker {
    std::string_view Store(std::string_view text) override {
      bytes += text.size();
      return batch.Store(text);
    }
    void OnTransaction(const TransactionAssembler::Transaction& mined) override {
      TransactionMark mark;
      if (!ReadXid(mined.xid, mark)) std::abort();
      mark.commit_scn = mined.commit_scn;
      mark.commit_second = ReadCommitTime(mined.commit_time);
      batch.BeginTransaction(mark);
    }
    void OnStatement(std::string_view stored) override {
      batch.AppendStored(stored);
      if (batch.Size() % (kLong / 10) == 1 || batch.Size() == kLong) {
        most = std::max(most, BytesInUse());
      }
    }
    void OnSetAside(std::int64_t, std::string_view, std::string_view, Safety,
                    std::string_view) override {
      std::abort();
    }
    void OnUntold(std::int64_t, std::string_view, std::string_view, std::string_view,
                  TransactionAssembler::Untold) override {
      std::abort();
    }
    void OnComment(std::int64_t, std::string_view) override {}
    PendingBatch batch;
    std::size_t bytes = 0, most = 0;
  };
  const std::size_t before = BytesInUse();
  Taker taker;
  TransactionAssembler assembler(taker, 2 * kLong);
  std::string reason;
  for (std::size_t i = 0; i < kLong; ++i) {
    const std::string number = std::to_string(i);
    const std::string text = "insert into \"SALES\".\"ORDERS\"(\"ID\",\"NOTE\") values ('" +
                             number + "','a note of some length');";
    MinedRow row;
    // As on a server with 30 undo segments and 100 commits a second.
    const std::size_t t = i / a_transaction;
    const std::size_t segment = t * 7919 % 30;
    const std::string xid = std::to_string(segment + 1) + "." + std::to_string(t * 31 % 34) + "." +
                            std::to_string(90'000 + segment * 500 + t / 30);
    const std::string time = CommitTime(static_cast<std::int64_t>(1'700'000'000 + t / 100));
    row.commit_scn = static_cast<std::int64_t>(5'000'000 + t * 17 + t * 13 % 7);
    row.transaction = xid;
    row.commit_time = time;
    row.operation_code = 1;
    row.owner = "SALES";
    row.table = "ORDERS";
    row.change = row.row = number;
    row.text = text;
    if (assembler.OnRow(row, reason) != CommitSink::Next::GoOn) std::abort();
  }
  if (!assembler.Finish(reason) || taker.most == 0) std::abort();
  return static_cast<double>(taker.most - before - taker.bytes) / static_cast<double>(kLong);
}

}  // namespace

void AddEngineBenches(RatioTable& table) {
  const auto few = std::make_shared<std::vector<std::string>>(Statements(10));
  const auto many = std::make_shared<std::vector<std::string>>(Statements(20'000));
  const auto small = std::make_shared<Engine>(1, 10);
  const auto large = std::make_shared<Engine>(1, 20'000);
  table.Add({"pass, 100000 statements / bare calls and writes", 1.5,
             [=] { BareLoop(small->Library().Api(), *few); }, [=] { small->Apply(*few); }});
  table.Add({"pass, owner of 20000 tables / of 10", 1.1, [=] { small->Apply(*few, false); },
             [=] { large->Apply(*few, false); }});
  table.Add({"the same with the save of all counters at its end", 0, [=] { small->Apply(*few); },
             [=] { large->Apply(*few); }});
  table.Add({"pass, changes in all of 20000 tables / in 10 of them", 0, [=] { large->Apply(*few); },
             [=] { large->Apply(*many); }});

  const auto hundred = std::make_shared<std::vector<std::string>>(few->begin(), few->begin() + 100);
  const auto watched = std::make_shared<Engine>(1, 10, Engine::Watched::Yes);
  table.Add({"pass of 100000 statements, watched / not", 1.02, [=] { small->Apply(*few); },
             [=] { watched->Apply(*few); }});
  const auto asked = std::make_shared<Engine>(1, 20'000, Engine::Watched::WithDefinitions);
  table.Add({"pass in 20000 tables, watched and asked for definitions / not", 1.02,
             [=] { large->Apply(*few); }, [=] { asked->Apply(*few); }});
  table.Add({"pass of 100 statements without a server's time, watched / not", 0,
             [=] { small->Apply(*hundred); }, [=] { watched->Apply(*hundred); }, 101});

  const auto million = std::make_shared<Redo>(1'000'000);
  const auto tenth = std::make_shared<Redo>(100'000);
  const auto mine = [](const std::shared_ptr<Redo>& redo) {
    const auto engine = std::make_shared<Engine>(1, 10);
    return [=] {
      NullOci(&redo->Rows());
      malloc_trim(0);  // each capture takes its memory from the system, as the first of a program
      engine->Capture(redo->Rows().size());
    };
  };
  table.Add({"capture, 1000000 rows / copying their bytes", 4, [=] { million->Copy(); },
             mine(million), 5});
  table.Add({"capture, 1000000 rows / 100000 rows", 11, mine(tenth), mine(million), 5});
  const auto pass_by = [=](Follow follow) {
    const auto engine = std::make_shared<Engine>(1, 10);
    engine->FollowBy(follow);
    return [=] {
      NullOci(&tenth->Rows());
      engine->WholePass();
    };
  };
  table.Add({"pass of 100000 rows by commits / by rows", 1.15, pass_by(Follow::Rows),
             pass_by(Follow::Commits), 9});
  table.AddFigure("transaction of 1000000 statements, bytes above its text", "a statement", 25.1,
                  [] { return BytesOfStatements(1'000'000); });
  // By rows a statement costs 17.1 bytes, and by commits it may cost 8 more.
  table.AddFigure("1000000 transactions of one statement, bytes above its text", "a statement",
                  25.1, [] { return BytesOfStatements(1); });
  table.AddFigure("sweep over 1000 idle jobs, processor time", "ms", 1, IdleSweep);
}

}  // namespace quillmere::bench
