// SPDX-License-Identifier: MIT
#include "workspace/source_operations.h"

#include <utility>

namespace quillmere {
namespace {

constexpr const char* kCancelled = "Cancelled, nothing was changed";

SchemaOperations SchemaOperationsOf(Workspace& workspace) {
  return {workspace.Oci(), workspace.Log(), workspace.ProgramSettings()};
}

Outcome ConnectFailed(const OracleSession& session) {
  return Outcome::Refused("connect Database failed. Error: " + session.LastError());
}

// After each change of the registry.
Outcome SaveRegistry(Workspace& workspace, std::string done_text = {}) {
  workspace.RefreshJobLogOns();
  std::string reason;
  if (workspace.Registry().Save(reason)) return Outcome::Done(std::move(done_text));
  workspace.Log().Add(reason, true);
  return Outcome::Refused(std::move(reason));
}

}  // namespace

std::string WhyLoginRefused(const LogOn& login) {
  if (login.name.empty() || login.user_id.empty()) return "Obligatory field can not be empty";
  if (login.password.size() > TeaCipher::kLongestPassword) {
    return "A password must not be longer than " + std::to_string(TeaCipher::kLongestPassword) +
           " bytes";
  }
  if (login.password.find('\0') != std::string::npos) {
    return "A password must not contain a zero byte";
  }
  return {};
}

std::string WhyNewSourceRefused(const Workspace& workspace, const LogOn& login) {
  std::string refused = WhyLoginRefused(login);
  return refused.empty() ? workspace.Registry().WhyNameRefused(login.name) : refused;
}

Outcome Connect(OracleSession& session, const LogOn& login) {
  std::string refused = WhyLoginRefused(login);
  if (!refused.empty()) return Outcome::Refused(std::move(refused));
  return session.Connect(login) ? Outcome::Done() : ConnectFailed(session);
}

Outcome AddDataSource(Workspace& workspace, const LogOn& login, ProgressListener& progress) {
  std::string refused = WhyNewSourceRefused(workspace, login);
  if (!refused.empty()) return Outcome::Refused(std::move(refused));
  OracleSession session(workspace.Oci());
  if (!session.Connect(login)) return ConnectFailed(session);
  DataSource source;
  static_cast<LogOn&>(source) = login;
  source.state = ConnectionState::Disconnected;
  source.version = ReadVersion(session);
  std::string reason;
  const CatalogueRead read =
      SchemaOperationsOf(workspace).ReadCatalogue(session, source, progress, reason);
  if (read == CatalogueRead::Cancelled) return Outcome::Refused(kCancelled);
  workspace.Registry().Add(std::move(source));
  Outcome saved = SaveRegistry(workspace);
  if (!saved) return saved;
  return Outcome::Done(std::move(reason));
}

Outcome SaveDataSource(Workspace& workspace, const LogOn& login) {
  std::string refused = WhyLoginRefused(login);
  if (refused.empty()) refused = WhySourceBusy(workspace, login.name);
  if (!refused.empty()) return Outcome::Refused(std::move(refused));
  OracleSession session(workspace.Oci());
  if (!session.Connect(login)) return ConnectFailed(session);
  const int index = workspace.Registry().IndexOf(login.name);
  if (index < 0) return Outcome::Refused("There is no data source " + login.name);
  DataSource& source = workspace.Registry().At(static_cast<std::size_t>(index));
  static_cast<LogOn&>(source) = login;
  source.state = ConnectionState::Disconnected;
  source.needsave = true;
  return SaveRegistry(workspace);
}

Outcome TestDataSource(Workspace& workspace, std::size_t index) {
  const LogOn login = workspace.Registry().At(index);
  OracleSession session(workspace.Oci());
  if (!session.Connect(login)) return ConnectFailed(session);
  return Outcome::Done("connect to " + login.name + " successed");
}

Outcome RemoveDataSource(Workspace& workspace, std::size_t index) {
  DataSourceRegistry& registry = workspace.Registry();
  std::string busy = WhySourceBusy(workspace, registry.At(index).name);
  if (!busy.empty()) return Outcome::Refused(std::move(busy));
  std::string reason;
  const bool removed = registry.Remove(index, reason);
  if (!removed) workspace.Log().Add(reason, true);
  Outcome saved = SaveRegistry(workspace);
  return removed ? saved : Outcome::Refused(std::move(reason));
}

Outcome RefreshDataSource(Workspace& workspace, std::size_t index, ProgressListener& progress,
                          OracleSession* session) {
  SchemaOperations operations = SchemaOperationsOf(workspace);
  DataSource& source = workspace.Registry().At(index);
  std::string reason;
  switch (session == nullptr ? operations.RefreshCatalogue(source, progress, reason)
                             : operations.RefreshCatalogue(*session, source, progress, reason)) {
    case CatalogueRead::Read:
      return SaveRegistry(workspace);
    case CatalogueRead::Cancelled:
      return Outcome::Refused(kCancelled);
    case CatalogueRead::Failed:
      break;
  }
  return Outcome::Refused(std::move(reason));
}

Outcome MarkConnected(Workspace& workspace, std::size_t index, bool connected) {
  DataSource& source = workspace.Registry().At(index);
  source.state = connected ? ConnectionState::Connected : ConnectionState::Disconnected;
  source.needsave = true;
  return connected ? Outcome::Done() : SaveRegistry(workspace);
}

bool IsUsedByRunningJob(const JobList& jobs, std::string_view data_source) {
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    if (!IsRunning(jobs.State(index))) continue;
    const SyncJob& job = jobs.At(index);
    const MutexLock lock(job.config_mutex);
    if (job.config.src_database_name == data_source ||
        job.config.des_database_name == data_source) {
      return true;
    }
  }
  return false;
}

std::string WhySourceBusy(const Workspace& workspace, std::string_view data_source) {
  if (!IsUsedByRunningJob(workspace.Jobs(), data_source)) return {};
  return "Database is using in running job, delete later";
}

}  // namespace quillmere
