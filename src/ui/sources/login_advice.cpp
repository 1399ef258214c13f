// SPDX-License-Identifier: MIT
#include "ui/sources/login_advice.h"

#include "workspace/job_operations.h"

namespace quillmere {
namespace {

constexpr std::size_t kNamesTold = 12;

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

LoginField FieldToCorrect(const LogOn& login, std::string_view refusal) {
  if (login.name.empty()) return LoginField::Name;
  if (login.user_id.empty()) return LoginField::UserId;
  // Wrong name or password; expired password; a password that cannot be stored.
  if (Contains(refusal, "ORA-01017") || Contains(refusal, "ORA-28001") ||
      refusal.starts_with("A password ")) {
    return LoginField::Password;
  }
  // No right to SYSDBA; SYS without it.
  if (Contains(refusal, "ORA-01031") || Contains(refusal, "ORA-28009")) return LoginField::Mode;
  // Account locked; no right to log on.
  if (Contains(refusal, "ORA-28000") || Contains(refusal, "ORA-01045")) return LoginField::UserId;
  return LoginField::Name;
}

std::string WhyAsked(std::string_view data_source, std::string_view refusal) {
  constexpr std::string_view kFailed = "connect Database failed. Error: ";
  if (refusal.starts_with(kFailed)) refusal.remove_prefix(kFailed.size());
  const std::string name(data_source);
  // There is a listener, but the database behind it is not open.
  bool reached = !refusal.starts_with("OCIServerAttach");
  for (const char* code : {"ORA-01033", "ORA-01034", "ORA-01089", "ORA-12528", "ORA-27101"}) {
    reached = reached && !Contains(refusal, code);
  }
  std::string text = reached ? "The stored log-on to " + name + " was refused: "
                             : name + " is unreachable with any log-on: ";
  text += refusal;
  return text + "\n\nWhat is entered here serves this connection only; nothing is stored.";
}

std::string AddAdvice(const DataSourceRegistry& registry, std::string_view typed) {
  const std::string refused = typed.empty() ? "" : registry.WhyNameRefused(typed);
  if (!refused.empty()) return refused;
  return "Add connects, reads the catalogue and registers the data source when that went well.";
}

std::string SaveAdvice(const DataSourceRegistry& registry, std::string_view edited,
                       std::string_view typed) {
  if (typed == edited) {
    return "Save tries the log-on and then keeps it; jobs use it from their next connection on.";
  }
  if (registry.IndexOf(typed) >= 0) {
    return "Save will change the log-on of " + std::string(typed) + ", not that of " +
           std::string(edited) + ".";
  }
  return "A data source keeps its name. To register another one, use New.";
}

std::string DeleteQuestion(const JobList& jobs, std::string_view data_source) {
  std::string names;
  std::size_t count = 0;
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    if (jobs.State(index) == JobState::Empty) continue;
    const JobProperties job = PropertiesOf(jobs.At(index));
    if (job.source != data_source && job.destination != data_source) continue;
    if (++count <= kNamesTold) names += (count == 1 ? "" : ", ") + job.name;
  }
  std::string question = "Delete the data source " + std::string(data_source) +
                         "?\n\nIts log-on and what was read of its catalogue go. The database "
                         "itself stays as it is.";
  if (count == 0) return question;
  if (count > kNamesTold) names += " and " + std::to_string(count - kNamesTold) + " more";
  const bool one = count == 1;
  return question + "\n\n" + (one ? "This job uses it and is" : "These jobs use it and are") +
         " held: " + names + ". " + (one ? "It" : "They") +
         " can not be run or continued until a data source of that name is registered.";
}

}  // namespace quillmere
