// SPDX-License-Identifier: MIT
// Whole lives of a job, with a fault at each operation on files and each call of the client library
// in turn: nothing is lost, nothing comes twice, whatever a power cut takes back.
#include <gmock/gmock.h>

#include <algorithm>
#include <new>
#include <random>

#include "engine/engine_fixture.h"
#include "engine/skip.h"

namespace quillmere {
namespace {

struct Change {
  std::int64_t scn;
  std::string mined, applied;  // applied is empty for what is blocked
};

// In the order of the redo; SCNs go up and down. Three groups: what the first pass finds there,
// what has come before the second, and the rest.
const std::vector<Change> kChanges = {
    {101, Insert("1"), InsertOf("1")},
    {105, Insert("5"), InsertOf("5")},
    {103, Insert("3"), InsertOf("3")},
    {107, Insert("7"), InsertOf("7")},
    {102, Insert("2"), InsertOf("2")},
    {110, Insert("x", "SECRET"), ""},
    {111, "delete from \"SHOP\".\"ORDERS\" where \"ID\" = 'set aside, for it has no address';", ""},
    {114, "insert into \"SHOP\".\"ORDERS\"(\"ID\") values ('O'Hara');", ""},
    {113, Insert("13", "ITEMS"), InsertOf("13", "ARCHIVE.ITEMS")},
    {115, Insert("never"), ""},  // refused until the operator skips it
    {112, Insert("12"), InsertOf("12")}};
constexpr std::size_t kFirst = 3, kSecond = 5;

enum class Fault { PowerCut, Refusal, OutOfMemory };

using Texts = std::vector<std::string>;

// Both servers and the disk, which outlive programs; and the fault.
class World {
 public:
  World(Fault fault, int at) : fault_(fault), at_(at) {
    script.Answer(kScnQuery, {{"100"}});
    script.Answer(kMembersQuery, {{"/redo01.log"}});
    script.on_call = [this](const std::string& line) { return OnCall(line); };
    script.on_executed = [this](const std::string& sql) { OnExecuted(sql); };
    files.on_operation = [this](const testing::FileOperation& operation) {
      return Meets(Fault::PowerCut, operation.Text()) || Meets(Fault::Refusal, operation.Text())
                 ? FileStatus{FileCode::NoSpace, "No space left on device"}
                 : FileStatus();
    };
  }

  // True once: at the operation that the fault is for.
  bool Meets(Fault fault, const std::string& operation) {
    if (fault != fault_ || dead || ++operations_ != at_) return false;
    met = operation;
    if (fault == Fault::PowerCut) {
      dead = true;
      files.CutOff();
    }
    return true;
  }

  void Watch(EngineProgram& program) {
    program_ = &program;
    program.listener.is_heard = [this] {
      if (Meets(Fault::OutOfMemory, "telling")) throw std::bad_alloc();
      return !dead;
    };
  }

  // As a power cut leaves the disk, with the servers as they are then.
  void Restart(const MemoryFiles::Keep& keep) {
    disk_after = files.AfterPowerCut(keep);
    dead = false;
    fault_ = Fault::PowerCut;
    at_ = 0;
  }

  MemoryFiles files;
  std::unique_ptr<MemoryFiles> disk_after;
  HandClock clock;
  ScriptedOci script;
  std::size_t visible = kFirst;
  Texts committed;
  std::string met;    // the operation with the fault
  bool dead = false;  // the program is gone, its calls do nothing
  // What the server has committed last: killed before the commit point is gone, it comes twice.
  Texts last_session;

 private:
  std::string OnCall(const std::string& line) {
    const bool ends = on_destination_ && line.starts_with("SessionEnd(");
    const bool works = ends || (on_destination_ && line.starts_with("StmtExecute("));
    if (dead || (works && Meets(Fault::PowerCut, line))) return "ORA-03113: end-of-file";
    const bool takes_memory = line.starts_with("StmtFetch2") ||
                              (line.starts_with("HandleAlloc") && line.find("stm") != line.npos);
    if (takes_memory && Meets(Fault::OutOfMemory, line)) throw std::bad_alloc();
    if (line.starts_with("ServerAttach")) {
      on_destination_ = line.find("DES") != line.npos;
      open_.clear();
      if (on_destination_) last_session.clear();
    }
    CheckFiles(ends);
    const bool refused = Meets(Fault::Refusal, line);
    if (!ends) return refused || Refuses(line) ? "ORA-00001: unique constraint" : "";
    on_destination_ = false;
    // The third change's session is lost when it ends for the first time.
    if (refused || (std::count(open_.begin(), open_.end(), InsertOf("3")) > 0 && !end_failed_++)) {
      open_.clear();
      return "ORA-03114: not connected";
    }
    committed.insert(committed.end(), open_.begin(), open_.end());
    last_session = std::exchange(open_, {});
    return "";
  }

  // What is on the disk at every call, even if the power went now.
  void CheckFiles(bool ends) {
    if (!fault_free_) return;
    const auto disk_now = files.AfterPowerCut([] { return false; });
    const std::string commit_point = disk_now->Content("/work/jobs/J/commit.dat");
    const std::string record = disk_now->Content("/work/jobs/J/block.dat");
    EXPECT_TRUE(open_.empty() || commit_point != "(none)");
    EXPECT_TRUE(!open_.empty() || on_destination_ || commit_point == "(none)");
    if (!ends || open_.empty()) return;
    EXPECT_EQ(record, files.Content("/work/jobs/J/block.dat"));
    EXPECT_NE(record, commit_point) << "ahead of it";
  }

  bool Refuses(const std::string& line) {
    if (line.find("  " + InsertOf("never")) != line.npos) return true;
    return line.find("  " + InsertOf("3")) != line.npos && !refused_++;
  }

  void OnExecuted(const std::string& sql) {
    if (sql == "rollback") open_.clear();
    if (sql.starts_with("INSERT") || sql.starts_with("DELETE")) open_.push_back(sql);
    // A pause with the last statement of a batch, and one before.
    if (sql == InsertOf("2") || sql.find("13'") != sql.npos) {
      RequestPause(program_->jobs, program_->index);
    }
    if (const auto start = sql.find("startscn=>"); start != sql.npos) {
      const std::int64_t from = std::stoll(sql.substr(start + 10));
      ScriptedOci::Rows rows;
      for (std::size_t i = 0; i < visible; ++i) {
        if (kChanges[i].scn < from) continue;
        rows.push_back({std::to_string(kChanges[i].scn), kChanges[i].mined});
      }
      script.Answer(kRedoQuery, rows);
    }
  }

  Fault fault_;
  int at_;
  const bool fault_free_ = at_ < 0;
  int operations_ = 0;
  int refused_ = 0, end_failed_ = 0;
  EngineProgram* program_ = nullptr;
  bool on_destination_ = false;
  Texts open_;
};

bool Told(const EngineProgram& program, std::string_view text) {
  return std::ranges::any_of(program.listener.lines, [&](const std::string& line) {
    return line.find(text) != std::string::npos;
  });
}

// What an operator does who finds the job stuck at what it will never get through.
void Skip(EngineProgram& program) {
  JobList::Progress progress;
  const PendingBatch& batch = program.Job().run.pending_batch;
  program.jobs.State(program.index, &progress);
  const std::size_t next = batch.Size() - progress.batch_remaining;
  if (next >= batch.Size() || batch[next].text.find("never") == std::string::npos) return;
  RequestPause(program.jobs, program.index);
  program.runner.Step(program.index);
  NextToSkip skip;
  std::string reason;
  if (!FindNextToSkip(program.jobs, program.index, skip, reason)) return;
  EXPECT_EQ(skip.statements, Texts{std::string(batch[next].text)});
  static_cast<void>(
      MarkToSkip(program.files, program.catalogue.FolderOf("J"), program.Job().run, skip, reason));
}

// A pass an interval later, by an operator who wants the job to run.
void NextPass(World& world, EngineProgram& program) {
  std::string reason;
  Skip(program);
  if (Told(program, "given up")) return;
  if (!IsRunning(program.State()) && !RequestRun(program.context, program.index, reason)) {
    program.listener.lines.push_back("e:" + reason);
  }
  world.clock.TurnMinutes(5);
  program.runner.Step(program.index);
  world.script.TakeTranscript();
}

void Live(World& world, EngineProgram& program) {
  world.Watch(program);
  program.AddJob();
  std::string error;
  ASSERT_TRUE(program.catalogue.SaveAll(error) || !world.met.empty()) << error;
  for (int pass = 0; pass < 17 && !world.dead && !Told(program, "given up"); ++pass) {
    if (pass == 2) world.visible = kSecond;
    if (pass == 6) world.visible = kChanges.size();
    NextPass(world, program);
  }
}

void ExpectAllApplied(World& world, EngineProgram& program, const Texts& twice = {}) {
  Texts expected = twice;
  for (const Change& change : kChanges) {
    if (!change.applied.empty()) expected.push_back(change.applied);
  }
  ASSERT_THAT(world.committed, ::testing::UnorderedElementsAreArray(expected)) << world.met;
  const JobRun& run = program.Job().run;
  EXPECT_EQ(run.applied_count, 7) << world.met;
  EXPECT_EQ(run.blocked_count, 4) << world.met;
  EXPECT_TRUE(run.pending_batch.Empty());
  EXPECT_EQ(world.script.LiveHandles(), 0u) << world.met;
}

// A second program, on what the first has left.
void ExpectRecovery(World& world, bool was_started) {
  const bool goes_back = world.disk_after->Content("/work/jobs/J/commit.dat") != "(none)";
  const Texts twice = goes_back ? world.last_session : Texts();
  EngineProgram program(*world.disk_after, world.clock, world.script);
  world.Watch(program);
  program.Load();
  EXPECT_EQ(program.listener.lines, Texts()) << world.met;
  if (program.jobs.Count() == 0 || program.State() == JobState::Stopped) {
    EXPECT_FALSE(was_started) << world.met;
    return;
  }
  EXPECT_EQ(program.State(), JobState::Paused);
  world.visible = kChanges.size();
  for (int pass = 0; pass < 15; ++pass) NextPass(world, program);
  ExpectAllApplied(world, program, twice);
}

TEST(PassFaults, ALifeWithoutThem) {
  World world(Fault::PowerCut, -1);
  EngineProgram program(world.files, world.clock, world.script);
  Live(world, program);
  ExpectAllApplied(world, program);
  EXPECT_EQ(program.Table("ORDERS").totalsynced + program.Table("ITEMS").totalsynced, 7);
  FileFacts facts;
  ASSERT_TRUE(world.files.Look("/work/jobs/J/sqlcmds.txt", facts));
  EXPECT_EQ(facts.mode, FileSystem::kOwnerOnly);
}

// least: so many operations there are, at the least.
void AtAnyOperation(Fault fault, int least,
                    const std::function<void(World&, EngineProgram&)>& expect) {
  for (int at = 1; !::testing::Test::HasFailure(); ++at) {
    World world(fault, at);
    EngineProgram program(world.files, world.clock, world.script);
    Live(world, program);
    if (world.met.empty()) {
      EXPECT_GT(at, least);
      return;
    }
    SCOPED_TRACE(std::to_string(at) + ": " + world.met);
    expect(world, program);
  }
}

TEST(PassFaults, APowerCutOnlyDelays) {
  std::mt19937 random(1);
  AtAnyOperation(Fault::PowerCut, 200, [&](World& world, EngineProgram& program) {
    const bool started = Told(program, "i:Job J started.");
    const Texts committed = world.committed, last_session = world.last_session;
    const MemoryFiles::Keep keeps[] = {[] { return false; },  // all that was not flushed is gone
                                       [] { return true; },   // as after a kill
                                       [&] { return random() % 2 == 0; },
                                       [&] { return random() % 4 != 0; }};
    for (const MemoryFiles::Keep& keep : keeps) {
      world.committed = committed;
      world.last_session = last_session;
      world.Restart(keep);
      ExpectRecovery(world, started);
    }
  });
}

TEST(PassFaults, ARefusalOnlyDelays) {
  AtAnyOperation(Fault::Refusal, 500, [](World& world, EngineProgram& program) {
    for (int pass = 0; pass < 6; ++pass) NextPass(world, program);
    ExpectAllApplied(world, program);
  });
}

TEST(PassFaults, WantOfMemoryOnlyDelays) {
  AtAnyOperation(Fault::OutOfMemory, 50, [](World& world, EngineProgram& program) {
    if (!Told(program, "The step was given up")) return ExpectAllApplied(world, program);
    EXPECT_NE(program.State(), JobState::Started);
    // Of a pass, what it does itself is caught there, so that it ends as a failed one does.
    const bool started = Told(program, "i:Job J started.");
    EXPECT_TRUE(world.met == "telling" || !started);
    world.Restart([] { return true; });
    ExpectRecovery(world, started);
  });
}

}  // namespace
}  // namespace quillmere
