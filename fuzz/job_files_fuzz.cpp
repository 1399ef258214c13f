// SPDX-License-Identifier: MIT
// Any content of a job's files, between the lines "--8<-- <file>": what is taken from them keeps
// its sums, and a second start finds what the first one left.
#include <string>
#include <string_view>

#include "foundation/clock.h"
#include "jobs/job_catalogue.h"
#include "jobs/job_list.h"
#include "jobs/run_state_files.h"
#include "jobs/source_file.h"
#include "must.h"
#include "support/memory_files.h"

using namespace quillmere;

namespace {

constexpr std::string_view kCut = "--8<-- ";

void PutFiles(testing::MemoryFiles& files, std::string_view text) {
  while (text.starts_with(kCut)) {
    text.remove_prefix(kCut.size());
    const std::size_t name_end = text.find('\n');
    if (name_end == std::string_view::npos) return;
    const std::string_view name = text.substr(0, name_end);
    text.remove_prefix(name_end + 1);
    const std::size_t next = text.find(kCut);
    const std::string_view content = text.substr(0, next);
    text.remove_prefix(content.size());
    for (const std::string_view known :
         {"jobs.xml", "J/J.xml", "J/block.dat", "J/commit.dat", "J/sqlcmds.txt", "J/source.dat"}) {
      if (name == known) files.Put("/work/jobs/" + std::string(name), content);
    }
  }
}

// The program's start on the files: what the jobs come back as, and what was told of it.
struct Start {
  explicit Start(testing::MemoryFiles& files) {
    JobList jobs;
    SystemClock clock;
    Settings settings;
    MessageLog log(files, "/work", clock, settings);
    JobCatalogue catalogue(files, "/work", jobs, log);
    const auto log_on = [](std::string_view name) { return LogOn{.name = std::string(name)}; };
    catalogue.Load(log_on, [&](SyncJob& job) {
      const std::string name = NameOf(job);
      SourceFile source;
      static_cast<void>(ReadSourceFile(files, catalogue.FolderOf(name), source));
      const RestoredRun run =
          RestoreRunState(files, job, catalogue.FolderOf(name), RestoreMode::Resume);
      MUST(run.state != JobState::Started);
      quiet = quiet && run.problem.empty() && run.held.empty();
      states += name + " " + std::string(StateName(run.state)) + " " +
                std::to_string(run.progress.batch_applied) + " " +
                std::to_string(run.progress.batch_remaining) + " " +
                std::to_string(job.run.pending_batch.Size()) + "\n";
      return run.state;
    });
    std::string error;
    quiet = catalogue.SaveAll(error) && quiet;
  }

  std::string states;
  bool quiet = true;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  testing::MemoryFiles files;
  PutFiles(files, {reinterpret_cast<const char*>(data), size});
  const Start first(files);
  const Start second(files);
  MUST(!first.quiet || second.quiet);
  MUST(!first.quiet || second.states == first.states);
  return 0;
}
