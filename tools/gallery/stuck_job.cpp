// SPDX-License-Identifier: MIT
#include "gallery/stuck_job.h"

#include <cmath>

#include "engine/job_runner.h"
#include "watch/job_history.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"
#include "workspace/source_operations.h"

namespace quillmere {
namespace {

constexpr int kMinutes = 5;  // between two passes
constexpr int kPasses = 7 * 24 * 60 / kMinutes;
constexpr std::int64_t kDay = std::int64_t{24} * 60;  // minutes

// The destination has a customer of its own under the number of the third.
constexpr const char* kThere = "insert into SHOP.CUSTOMERS values (1003, 'Lindt & Co', 'Bern');\n";
constexpr const char* kChanges = R"(
insert into SHOP.CUSTOMERS values (1001, 'Ilves Oy', 'Tampere');
insert into SHOP.CUSTOMERS values (1002, 'Marais SARL', 'Lyon');
commit;
insert into SHOP.PRODUCTS values (71, 'Copper kettle', 38.5);
insert into SHOP.CUSTOMERS values (1003, 'Nordlicht GmbH', 'Kiel');
insert into SHOP.ORDERS values (5001, 1003, date '2026-03-02');
insert into SHOP.ORDER_LINES values (5001, 1, 71);
commit;
update SHOP.PRODUCTS set PRICE = 41 where ID = 71;
update SHOP.CUSTOMERS set CITY = 'Turku' where ID = 1001;
insert into SHOP.ORDERS values (5002, 1001, date '2026-03-02');
insert into SHOP.ORDER_LINES values (5002, 1, 71);
insert into SHOP.CARTS values (9, 'one kettle');
commit;
)";

class IntoTheLog final : public RunnerListener {
 public:
  explicit IntoTheLog(Workspace& workspace) : workspace_(workspace) {}
  void OnJobChanged(std::size_t, bool) override {}
  void OnError(std::size_t job, std::string_view text) override { Add(job, text, true); }
  void OnInformation(std::size_t job, std::string_view text) override { Add(job, text, false); }

 private:
  void Add(std::size_t job, std::string_view text, bool error) {
    workspace_.Log().AddOf(NameOf(workspace_.Jobs().At(job)), std::string(text), error);
  }

  Workspace& workspace_;
};

// A shop's week: little at night, an hour at noon in which the destination could not be reached.
HistoryLine PassOf(int number, LocalTime end) {
  const double hour = std::fmod(number * kMinutes / 60.0, 24);
  constexpr int kCut = 968, kBack = 980;
  const bool cut = number > kCut && number < kBack;
  HistoryLine line;
  line.time = end;
  line.captured = static_cast<std::int64_t>(
      40 + 900 * std::pow(std::sin((hour + 3) * 3.14159 / 24), 4) + number * 37 % 61);
  // Nothing is captured behind a batch that waits.
  if (cut) line.captured = number == kCut + 1 ? line.captured : 0;
  if (number == kBack) line.captured *= kBack - kCut;
  line.applied = cut ? 0 : line.captured;
  line.took_ms = 300 + line.captured * 2;
  line.behind_s = cut ? (number - kCut) * kMinutes * 60 : 4 + number * 13 % 29;
  if (cut) line.error = "OCIServerAttach : ORA-12541: TNS:no listener";
  return line;
}

bool WriteWeek(Workspace& workspace, LocalTime now, std::string& reason) {
  HistoryWriter writer;
  const std::filesystem::path path =
      workspace.Catalogue().FolderOf("orders").File(JobFile::History);
  for (int number = 0; number < kPasses; ++number) {
    const LocalTime end{now.ms - std::int64_t{kPasses - number} * kMinutes * 60'000};
    if (!writer.Append(workspace.Files(), path, PassOf(number, end), reason)) return false;
  }
  return true;
}

}  // namespace

bool MakeStuckJob(
    Workspace& workspace, StandingClock& clock, const std::string& source,
    const std::string& destination,
    const std::function<bool(const std::string& database, const std::string& script)>& enter,
    std::string& reason) {
  InPlace work;
  for (const std::string& name : {source, destination}) {
    const Outcome added = AddDataSource(workspace, {name, "SYS", "sandbox", true}, work);
    if (!added) return reason = added.text, false;
  }
  workspace.ProgramSettings().commit_age_seconds = 0;
  JobProperties properties{"orders", "Orders, customers and products", source, destination,
                           kMinutes};
  properties.follow = Follow::Commits;
  std::size_t index = 0;
  Outcome outcome = AddJob(workspace, properties, index, work);
  if (!outcome) return reason = outcome.text, false;
  FilterTables(workspace, index, {TableFilter::Exclude, "SHOP", {"CARTS", "SESSIONS"}});
  if (!WriteWeek(workspace, clock.Now(), reason)) return false;

  IntoTheLog listener(workspace);
  EngineContext engine = workspace.EngineFor(listener);
  JobRunner runner(engine);
  outcome = RunJob(workspace, engine, index);
  if (!outcome) return reason = outcome.text, false;
  runner.Step(index);
  if (!enter(destination, kThere) || !enter(source, kChanges)) return false;
  constexpr int kTries = 4;
  for (int i = 0; i < kTries; ++i) {
    clock.Turn(std::int64_t{kMinutes} * 60);
    runner.Step(index);
  }
  workspace.Jobs().At(index).run.next_due = AddMinutes(clock.Now(), kDay);
  if (workspace.Watch().Look(index).health == Health::Failing) return true;
  reason = "nothing was refused";
  return false;
}

}  // namespace quillmere
