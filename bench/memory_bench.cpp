// SPDX-License-Identifier: MIT
// Sessions, handles and environments come and go by the thousand: the process must not grow.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "benches.h"
#include "engine/job_runner.h"
#include "silence.h"
#include "support/temp_folder.h"

namespace quillmere::bench {

namespace {

constexpr int kPasses = 10'000;
constexpr int kSettled = 100;

double ResidentBytes() {
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// A job between two sandbox databases; every tenth pass finds a change to apply.
class SandboxJob {
 public:
  SandboxJob() {
    setenv("QUILLMERE_SANDBOX_DIR", (folder_.Path() / "sandbox").c_str(), 1);
    const std::string tool =
        (programs_ / "quillmere-sandbox").string() + " --workdir " + folder_.Path().string() + " ";
    std::ofstream(folder_.Path() / "schema.sql")
        << "create user A identified by a;\ncreate table A.T (ID number primary key);\n";
    for (const std::string name : {"S", "D"}) {
      Run(tool + "create " + name);
      Run(tool + "sql " + name + " " + (folder_.Path() / "schema.sql").string());
    }
    SyncJob& job = jobs_.At(jobs_.Claim());
    {
      const MutexLock lock(job.config_mutex);
      job.config.name = "J";
      job.config.source = {"S", "SYS", "sandbox", true};
      job.config.destination = {"D", "SYS", "sandbox", true};
      job.config.table_list_fetched = true;
      job.config.schemas["A"].Append({.name = "T", .desowner = "A"});
    }
    jobs_.SetState(0, JobState::Starting);
    runner_.Step(0);
  }

  void Pass(int number) {
    if (number % 10 == 0) {
      OracleSession session(library_);
      if (!session.Connect({"S", "SYS", "sandbox", true}) ||
          !session.Execute("insert into A.T values (" + std::to_string(number) + ")")) {
        std::abort();
      }
    }
    jobs_.At(0).run.next_due = LocalTime{};
    runner_.Step(0);
  }

  int Applied() const { return jobs_.At(0).run.applied_count; }

 private:
  static void Run(const std::string& command) {
    if (std::system((command + " >/dev/null").c_str()) != 0) std::abort();
  }

  TempFolder folder_;
  const std::filesystem::path programs_ =
      std::filesystem::read_symlink("/proc/self/exe").parent_path();
  SystemClock clock_;
  Settings settings_;
  MessageLog log_{folder_.Files(), folder_.Path(), clock_, settings_};
  JobList jobs_;
  JobCatalogue catalogue_{folder_.Files(), folder_.Path(), jobs_, log_};
  OciLibrary library_{"sandbox", programs_};
  Silence listener_;
  EngineContext context_{folder_.Files(), folder_.Path(), jobs_,    catalogue_, library_, log_,
                         clock_,          settings_,      listener_};
  JobRunner runner_{context_};
};

double GrowthOverPasses() {
  SandboxJob job;
  double settled = 0;
  for (int pass = 1; pass <= kPasses; ++pass) {
    job.Pass(pass);
    if (pass == kSettled) settled = ResidentBytes();
  }
  // The change before the last pass is applied by the pass after it.
  if (job.Applied() < kPasses / 10 - 2) std::abort();
  return ResidentBytes() / settled;
}

}  // namespace

void AddMemoryBenches(RatioTable& table) {
  table.AddFigure("resident memory, after 10000 passes / after 100", "times", 1.05,
                  GrowthOverPasses);
}

}  // namespace quillmere::bench
