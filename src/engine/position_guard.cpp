// SPDX-License-Identifier: MIT
#include "engine/position_guard.h"

#include "engine/job_view.h"

namespace quillmere {
namespace {

std::string InWords(const PositionRow::Value& value) {
  return "SCN " + std::to_string(value.cutoff_scn) + " with " +
         std::to_string(value.batch_remaining) + " statements left";
}

}  // namespace

PositionGuard::PositionGuard(EngineContext& context, std::size_t index, FollowMemory& memory)
    : context_(context),
      job_(context.jobs.At(index)),
      owner_(PositionOwnerOf(job_)),
      folder_(context.catalogue.FolderOf(NameOf(job_))),
      memory_(memory) {}

bool PositionGuard::ReadSource(std::string& error) {
  const FileStatus read = ReadSourceOnce(context_.files, folder_, memory_);
  if (!read) {
    error = read.reason;
    return false;
  }
  source_ = *memory_.source;
  return true;
}

// A batch that has not been begun finds what the one before it left; what is kept as finished was.
bool PositionGuard::Fits(std::int64_t cutoff_scn, std::uint32_t remaining) const {
  if (found_ == PositionRow::Value{cutoff_scn, remaining}) return true;
  return remaining == job_.run.pending_batch.Size() && source_.row_cutoff != cutoff_scn &&
         found_ == PositionRow::Value{source_.row_cutoff, 0};
}

PositionGuard::Found PositionGuard::Lock(OracleSession& destination, std::uint32_t remaining,
                                         std::string& error) {
  constexpr std::string_view kWhatToDo =
      ". Compare the tables, then stop the job and start it anew";
  if (!ReadSource(error)) {
    error +=
        ". Without it the position row can not be found: bring the file back, or stop the job "
        "and start it anew";
    return Found::Held;
  }
  std::optional<PositionRow::Value> value;
  if (!PositionRow(destination, owner_, source_.job_id).Lock(value)) {
    error = "the position row could not be locked : " + destination.LastError();
    return Found::Failed;
  }
  const std::string where = owner_ + "." + std::string(kPositionTable);
  if (!value) {
    error = "The job's row in " + where + " is gone" + std::string(kWhatToDo);
    return Found::Held;
  }
  found_ = *value;
  const std::int64_t cutoff = job_.run.positions.cutoff_scn;
  if (!job_.run.unsettled) {
    if (Fits(cutoff, remaining)) return Found::AsRecorded;
    error = "The destination has another position than the job, as when it was restored: " + where +
            " says " + InWords(found_) + ", the record " + InWords({cutoff, remaining}) +
            std::string(kWhatToDo);
    return Found::Held;
  }
  const RunRecord& before = job_.run.unsettled->commit_point;
  if (Fits(before.cutoff_scn, before.batch_remaining)) return Found::NotTaken;
  if (found_.cutoff_scn == before.cutoff_scn && found_.batch_remaining < before.batch_remaining) {
    return Found::Taken;
  }
  error = "What became of the last pass can not be told: " + where + " says " + InWords(found_) +
          ", and the pass began at " + InWords({before.cutoff_scn, before.batch_remaining}) +
          std::string(kWhatToDo);
  return Found::Held;
}

bool PositionGuard::Write(OracleSession& destination, std::uint32_t remaining, std::string& error) {
  const PositionRow::Value value{job_.run.positions.cutoff_scn, remaining};
  if (PositionRow(destination, owner_, source_.job_id).Update(value)) return true;
  error = NameOf(job_) + ": the position row could not be written : " + destination.LastError();
  return false;
}

bool PositionGuard::KeepFinished(std::string& error) {
  if (!ReadSource(error)) return false;
  if (source_.row_cutoff == job_.run.positions.cutoff_scn) return true;
  source_.row_cutoff = job_.run.positions.cutoff_scn;
  memory_.source.reset();
  return WriteSourceFile(context_.files, folder_, source_, error);
}

bool PositionGuard::Start(const std::string& old_job_id, std::int64_t cutoff_scn,
                          std::string& error) {
  if (FollowOf(job_) == Follow::Rows) {
    source_ = {NewJobId(), {}, {}, 0};
  } else if (!ReadSource(error)) {
    return false;
  }
  source_.row_cutoff = cutoff_scn;
  OracleSession destination(context_.oci);
  bool made = false;
  PositionRow row(destination, owner_, source_.job_id);
  const bool good = destination.Connect(JobView(job_).destination) && row.MakeTable(made) &&
                    (old_job_id.empty() || PositionRow(destination, owner_, old_job_id).Delete()) &&
                    row.Insert({cutoff_scn, 0}) && destination.EndSession();
  if (!good) {
    error = NameOf(job_) + ": the position row in " + owner_ + "." + std::string(kPositionTable) +
            " could not be made : " + destination.LastError();
    return false;
  }
  return WriteSourceFile(context_.files, folder_, source_, error);
}

}  // namespace quillmere
