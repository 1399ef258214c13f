// SPDX-License-Identifier: MIT
#include "workspace/source_operations.h"

#include <utility>

namespace quillmere {
namespace {

// Connects on the way to something else.
Outcome Reach(OracleSession& session, const LogOn& login, ProgressListener& listener) {
  if (!listener.OnConnect("connect to " + login.name)) return Outcome::Cancelled();
  if (session.Connect(login)) return Outcome::Done();
  return Outcome::Refused("connect Database failed. Error: " + session.LastError());
}

// Connects and disconnects.
Outcome Try(Workspace& workspace, const LogOn& login, DatabaseWork& work) {
  const auto attempt = [library = &workspace.Oci(), login](SchemaListener& listener, LogLines&) {
    OracleSession session(*library);
    return Reach(session, login, listener);
  };
  return RunFor(work, workspace.Log(), attempt).value_or(Outcome::Cancelled());
}

// What is read of a data source's catalogue, and what became of the reading.
struct CatalogueReading {
  Outcome reached;
  CatalogueRead read = CatalogueRead::Cancelled;
  std::string reason;
  DataSource record;
};

// After each change of the registry.
Outcome SaveRegistry(Workspace& workspace, std::string done_text = {}) {
  workspace.RefreshJobLogOns();
  workspace.KeepSettings();
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
  if (refused.empty()) refused = WhyNotAdded(workspace.Registry().WhyListNotRead());
  return refused.empty() ? workspace.Registry().WhyNameRefused(login.name) : refused;
}

Outcome TryLogOn(Workspace& workspace, const LogOn& login, DatabaseWork& work) {
  std::string refused = WhyLoginRefused(login);
  if (!refused.empty()) return Outcome::Refused(std::move(refused));
  return Try(workspace, login, work);
}

Outcome AddDataSource(Workspace& workspace, const LogOn& login, DatabaseWork& work) {
  std::string refused = WhyNewSourceRefused(workspace, login);
  if (!refused.empty()) return Outcome::Refused(std::move(refused));
  const auto read = [library = &workspace.Oci(), settings = &workspace.ProgramSettings(), login](
                        SchemaListener& listener, LogLines& log) {
    CatalogueReading reading;
    OracleSession session(*library);
    reading.reached = Reach(session, login, listener);
    if (!reading.reached) return reading;
    static_cast<LogOn&>(reading.record) = login;
    reading.record.state = ConnectionState::Disconnected;
    reading.record.version = ReadVersion(session);
    reading.read = SchemaOperations(*library, log, *settings)
                       .ReadCatalogue(session, reading.record, listener, reading.reason);
    return reading;
  };
  std::optional<CatalogueReading> reading = RunFor(work, workspace.Log(), read);
  if (!reading) return Outcome::Cancelled();
  if (!reading->reached) return reading->reached;
  if (reading->read == CatalogueRead::Cancelled) return Outcome::Cancelled();
  workspace.Registry().Add(std::move(reading->record));
  workspace.Actions().Note("add", "data source " + login.name, {}, "user " + login.user_id);
  Outcome saved = SaveRegistry(workspace);
  if (!saved) return saved;
  return Outcome::Done(std::move(reading->reason));
}

Outcome SaveDataSource(Workspace& workspace, const LogOn& login, DatabaseWork& work) {
  std::string refused = WhyLoginRefused(login);
  if (refused.empty()) refused = WhySourceBusy(workspace, login.name);
  if (!refused.empty()) return Outcome::Refused(std::move(refused));
  Outcome reached = TryLogOn(workspace, login, work);
  if (!reached) return reached;
  const int index = workspace.Registry().IndexOf(login.name);
  if (index < 0) return Outcome::Refused("There is no data source " + login.name);
  DataSource& source = workspace.Registry().At(static_cast<std::size_t>(index));
  workspace.Actions().Note("edit", "data source " + login.name, "user " + source.user_id,
                           "user " + login.user_id);
  static_cast<LogOn&>(source) = login;
  source.state = ConnectionState::Disconnected;
  source.needsave = true;
  return SaveRegistry(workspace);
}

Outcome TestDataSource(Workspace& workspace, std::size_t index, DatabaseWork& work) {
  const LogOn login = workspace.Registry().At(index);
  Outcome reached = Try(workspace, login, work);
  return reached ? Outcome::Done("connect to " + login.name + " successed") : reached;
}

Outcome RemoveDataSource(Workspace& workspace, std::size_t index) {
  DataSourceRegistry& registry = workspace.Registry();
  std::string busy = WhySourceBusy(workspace, registry.At(index).name);
  if (!busy.empty()) return Outcome::Refused(std::move(busy));
  std::string reason;
  workspace.Actions().Note("remove", "data source " + registry.At(index).name);
  const bool removed = registry.Remove(index, reason);
  if (!removed) workspace.Log().Add(reason, true);
  Outcome saved = SaveRegistry(workspace);
  return removed ? saved : Outcome::Refused(std::move(reason));
}

Outcome RefreshDataSource(Workspace& workspace, std::size_t index, DatabaseWork& work,
                          const LogOn* log_on) {
  DataSource& source = workspace.Registry().At(index);
  DataSource copy = source;
  if (log_on != nullptr) static_cast<LogOn&>(copy) = *log_on;
  const auto read = [library = &workspace.Oci(), settings = &workspace.ProgramSettings(),
                     copy = std::move(copy)](SchemaListener& listener, LogLines& log) mutable {
    CatalogueReading reading;
    reading.read =
        SchemaOperations(*library, log, *settings).RefreshCatalogue(copy, listener, reading.reason);
    reading.record = std::move(copy);
    return reading;
  };
  std::optional<CatalogueReading> reading = RunFor(work, workspace.Log(), read);
  if (!reading || reading->read == CatalogueRead::Cancelled) return Outcome::Cancelled();
  TakeLists(source, std::move(reading->record));
  if (reading->read == CatalogueRead::Failed) return Outcome::Refused(std::move(reading->reason));
  return SaveRegistry(workspace);
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
