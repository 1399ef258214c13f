// SPDX-License-Identifier: MIT
// A save costs what changed and not what there is; a statement of a batch costs its text and little
// more.
#include <benchmark/benchmark.h>

#include <memory>

#include "benches.h"
#include "jobs/job_list.h"
#include "support/temp_folder.h"

namespace quillmere::bench {

namespace {

class Catalogue {
 public:
  explicit Catalogue(int jobs) {
    for (int i = 0; i < jobs; ++i) {
      const std::size_t index = jobs_.Claim();
      const MutexLock lock(jobs_.At(index).config_mutex);
      JobConfig& job = jobs_.At(index).config;
      job.name = "job_" + std::to_string(i);
      job.database_type = "ORACLE";
      job.description = "copies the order tables of branch " + std::to_string(i);
      job.sync_interval = 15;
      job.src_database_name = "HEADQUARTERS";
      job.des_database_name = "BRANCH";
      for (int t = 0; t < 200; ++t) {
        JobTable table;
        table.name = "ORDERS_" + std::to_string(t);
        table.desowner = "SALES";
        job.schemas["SALES"].Append(table);
      }
      jobs_.SetState(index, JobState::Stopped);
    }
    Save();
  }

  void Save() {
    std::string error;
    if (!catalogue_.SaveAll(error)) std::abort();
  }

  // As at the end of a batch: the counters of one job have grown.
  void SaveWithOneChange() {
    {
      SyncJob& job = jobs_.At(0);
      const MutexLock lock(job.config_mutex);
      job.config.schemas.begin()->second.Tables().front().totalsynced.Increment();
      ++job.config.tables_revision;
    }
    Save();
  }

 private:
  TempFolder folder_;
  SystemClock clock_;
  Settings settings_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  JobList jobs_;
  JobCatalogue catalogue_{folder_.Files(), folder_.Path(), jobs_, log_};
};

constexpr std::size_t kStatements = 200'000;

std::string Statement(std::size_t i) {
  return "insert into \"SALES\".\"ORDERS\"(\"ID\",\"CUSTOMER\") values ('" + std::to_string(i) +
         "','" + std::string(i % 200, 'x') + "')";
}

// a_transaction: statements of each, 0 for a batch that was taken by rows.
double BytesAboveText(std::size_t a_transaction) {
  PendingBatch batch;
  std::size_t text = 0;
  const std::size_t before = BytesInUse();
  for (std::size_t i = 0; i < kStatements; ++i) {
    const std::string statement = Statement(i);
    text += statement.size();
    if (a_transaction != 0 && i % a_transaction == 0) batch.BeginTransaction({});
    batch.Append(statement);
  }
  const std::size_t taken = BytesInUse() - before;
  return static_cast<double>(taken - text) / static_cast<double>(batch.Size());
}

void AppendToPendingBatch(benchmark::State& state) {
  std::vector<std::string> statements;
  for (std::size_t i = 0; i < kStatements; ++i) statements.push_back(Statement(i));
  for (auto _ : state) {
    PendingBatch batch;
    for (const std::string& statement : statements) batch.Append(statement);
    benchmark::DoNotOptimize(batch[kStatements - 1].text.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kStatements));
}
BENCHMARK(AppendToPendingBatch)->Unit(benchmark::kMillisecond);

}  // namespace

void AddCatalogueBenches(RatioTable& table) {
  const auto thousand = std::make_shared<Catalogue>(1000);
  const auto one = std::make_shared<Catalogue>(1);
  table.Add({"save, 1 of 1000 jobs changed / 1 of 1", 0, [one] { one->SaveWithOneChange(); },
             [thousand] { thousand->SaveWithOneChange(); }, 101});
  table.Add({"save, nothing of 1000 jobs changed / 1 of 1", 0, [one] { one->SaveWithOneChange(); },
             [thousand] { thousand->Save(); }, 101});
  const auto above_text = [&](const char* name, double limit, std::size_t a_transaction) {
    table.AddFigure(name, "a statement", limit, [=] { return BytesAboveText(a_transaction); });
  };
  above_text("pending batch, bytes above the text", 64, 0);
  above_text("the same by commits, ten statements a transaction", 64, 10);
  above_text("the same by commits, one statement a transaction", 64, 1);
}

}  // namespace quillmere::bench
