// SPDX-License-Identifier: MIT
#include "engine/intake.h"

#include "engine/rewriter.h"
#include "jobs/set_aside_file.h"

namespace quillmere {

Intake::Intake(EngineContext& context, std::size_t index, CaptureWatcher* watcher)
    : context_(context), index_(index), job_(context.jobs.At(index)), watcher_(watcher) {}

void Intake::TellWatcher(const ParsedStatement& parsed, std::string_view why,
                         std::string_view text) {
  if (watcher_ == nullptr) return;
  watcher_->OnBlocked(job_.run.pending_batch.Size() - 1, parsed.owner, parsed.table, why, text);
}

void Intake::Take(std::int64_t scn, std::string_view mined, const RowFacts& facts) {
  const Judgement judgement = JudgeStatement(mined, facts);
  if (judgement.safety != Safety::Safe) return TakeAside(scn, mined, judgement.safety);
  TakeStored(scn, job_.run.pending_batch.Store(judgement.kept));
}

void Intake::TakeStored(std::int64_t scn, std::string_view stored) {
  job_.run.pending_batch.AppendStored(stored);
  if (context_.settings.debug) {
    context_.log.WriteGeneral(std::to_string(scn) + ", " + std::string(stored));
  }
}

void Intake::TakeUnfinished(std::int64_t scn, std::string_view mined) {
  TakeAside(scn, mined, Safety::Unfinished);
}

void Intake::PassOver(std::int64_t scn, std::string_view text) {
  constexpr std::size_t kShown = 80;
  if (++passed_over_ > 1) return;
  first_passed_over_ = std::string(text.substr(0, kShown)) + " (SCN " + std::to_string(scn) + ")";
}

void Intake::TakeAside(std::int64_t scn, std::string_view mined, Safety why) {
  job_.run.pending_batch.AppendSetAside();
  const ParsedStatement parsed = ParseStatement(mined);
  TellWatcher(parsed, WhyUnsafe(why), mined);
  const bool table_is_known = why != Safety::NoTable && why != Safety::UnknownObject &&
                              !parsed.owner.empty() && !parsed.table.empty();
  if (table_is_known && Decide(job_, parsed).decision != Decision::Accepted) return;
  context_.log.WriteGeneral(std::to_string(scn) + ", not applied: " + std::string(mined));
  set_aside_.Add(scn, parsed.owner, parsed.table, why, mined);
}

void Intake::TakeUntold(std::string_view owner, std::string_view table, std::string_view what) {
  ParsedStatement parsed;
  parsed.owner = owner;
  parsed.table = table;
  if (Decide(job_, parsed).decision != Decision::Accepted) return;
  job_.run.pending_batch.AppendSetAside();
  TellWatcher(parsed, "it came without a statement", what);
  Untold& untold = untold_[{std::string(owner), std::string(table)}];
  if (untold.count++ == 0) untold.first = what;
}

bool Intake::Keep(std::string& error) {
  const JobFolder folder = context_.catalogue.FolderOf(NameOf(job_));
  if (!set_aside_.Tables().empty() &&
      !AppendSetAside(context_.files, folder, set_aside_.Text(), error)) {
    return false;
  }
  bool changed = false;
  for (const auto& [table, untold] : untold_) {
    if (MarkToCompare(job_, table.first, table.second)) changed = true;
  }
  for (const SetAside::Table& table : set_aside_.Tables()) {
    if (MarkToCompare(job_, table.owner, table.name)) changed = true;
  }
  // A mark that does not reach the disk is there until the program ends, and the change is kept.
  std::string unsaved;
  if (changed && !context_.catalogue.SaveAll(unsaved)) context_.listener.OnError(index_, unsaved);
  return true;
}

void Intake::Tell() const {
  const std::string job = NameOf(job_);
  const JobFolder folder = context_.catalogue.FolderOf(job);
  const std::string file = PathText(folder.File(JobFile::SetAside));
  for (const std::string& line : set_aside_.Messages(file)) {
    context_.listener.OnError(index_, job + ": " + line);
  }
  for (const auto& [table, untold] : untold_) {
    context_.listener.OnError(index_, job + ": changes of " + table.first + "." + table.second +
                                          " that came without a statement and are not applied: " +
                                          std::to_string(untold.count) +
                                          ". The first: " + untold.first + "; compare the table");
  }
  if (passed_over_ == 0) return;
  context_.listener.OnInformation(
      index_, job + ": rows of the redo that are no statement left out: " +
                  std::to_string(passed_over_) + ". The first: " + first_passed_over_);
}

}  // namespace quillmere
