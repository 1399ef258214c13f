// SPDX-License-Identifier: MIT
#include "workspace/position_table.h"

#include <algorithm>

#include "jobs/source_file.h"
#include "oracle/follow_queries.h"
#include "oracle/position_row.h"

namespace quillmere {
namespace {

// No job has it: those have 32 digits.
constexpr std::string_view kProbe = "probe";

LogOn DestinationOf(const SyncJob& job) {
  const MutexLock lock(job.config_mutex);
  return job.config.destination;
}

bool IsPlainName(std::string_view name) {
  const auto plain = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' || c == '#';
  };
  return !name.empty() && std::all_of(name.begin(), name.end(), plain);
}

std::string Named(const std::string& owner) {
  return owner + "." + std::string(kPositionTable);
}

// All that a pass will do, and back. False: the session's last error, and what could not be done.
bool TryRow(OracleSession& session, const std::string& owner, std::string& step) {
  PositionRow row(session, owner, std::string(kProbe));
  std::optional<PositionRow::Value> value;
  const auto tried = [&](const char* name, bool good) {
    if (!good && step.empty()) step = name;
    return good;
  };
  return tried("insert", row.Insert({0, 0})) && tried("lock", row.Lock(value)) &&
         tried("update", row.Update({1, 1})) && tried("delete", row.Delete()) &&
         tried("roll back", session.Execute(follow::kRollback));
}

Outcome Keep(Workspace& workspace, SyncJob& job, const std::string& owner, std::string text) {
  {
    const MutexLock lock(job.config_mutex);
    job.config.position_owner = owner;
  }
  workspace.Actions().Note("edit", "job " + NameOf(job) + " position row", {},
                           owner.empty() ? "none" : "in " + owner);
  std::string reason;
  if (!workspace.SaveJobs(reason)) return Outcome::Refused(std::move(reason));
  workspace.Log().Add(text, false);
  return Outcome::Done(std::move(text));
}

std::string WhyNotStopped(Workspace& workspace, std::size_t index) {
  if (workspace.Jobs().State(index) == JobState::Stopped) return {};
  return "The position row of " + NameOf(workspace.Jobs().At(index)) +
         " can be changed while it is stopped only";
}

}  // namespace

Outcome UsePositionTable(Workspace& workspace, std::size_t index, const std::string& owner) {
  SyncJob& job = workspace.Jobs().At(index);
  if (std::string why = WhyNotStopped(workspace, index); !why.empty()) {
    return Outcome::Refused(std::move(why));
  }
  if (!IsPlainName(owner)) {
    return Outcome::Refused("'" + owner +
                            "' is no plain name of an owner: capital letters, digits, _ $ and #");
  }
  OracleSession session(workspace.Oci());
  const LogOn destination = DestinationOf(job);
  if (!session.Connect(destination)) {
    return Outcome::Refused("Can not connect to " + destination.name + " : " + session.LastError());
  }
  bool made = false;
  if (!PositionRow(session, owner, std::string(kProbe)).MakeTable(made)) {
    return Outcome::Refused(Named(owner) + " could not be made : " + session.LastError() +
                            ". Grant the right to create a table there, or name another owner");
  }
  std::string step;
  if (!TryRow(session, owner, step)) {
    const std::string error = session.LastError();
    static_cast<void>(session.Execute(follow::kRollback));
    return Outcome::Refused("To " + step + " a row of " + Named(owner) + " was refused : " + error +
                            ". Grant select, insert, update and delete on it");
  }
  return Keep(workspace, job, owner,
              Named(owner) + (made ? " was made on " : " is there on ") + destination.name +
                  "; a row of it could be written, locked and removed. " + NameOf(job) +
                  " uses it from its next start on");
}

Outcome LeavePositionTable(Workspace& workspace, std::size_t index) {
  SyncJob& job = workspace.Jobs().At(index);
  if (std::string why = WhyNotStopped(workspace, index); !why.empty()) {
    return Outcome::Refused(std::move(why));
  }
  const std::string owner = PositionOwnerOf(job);
  if (owner.empty()) return Outcome::Done(NameOf(job) + " has no position row");
  SourceFile source;
  const JobFolder folder = workspace.Catalogue().FolderOf(NameOf(job));
  std::string left;
  if (ReadSourceFile(workspace.Files(), folder, source)) {
    OracleSession session(workspace.Oci());
    if (!session.Connect(DestinationOf(job)) ||
        !PositionRow(session, owner, source.job_id).Delete() || !session.EndSession()) {
      left = ". Its row in " + Named(owner) + " stays : " + session.LastError();
    }
  }
  return Keep(workspace, job, {}, NameOf(job) + " has no position row any more" + left);
}

}  // namespace quillmere
