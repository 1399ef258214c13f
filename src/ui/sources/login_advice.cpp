// SPDX-License-Identifier: MIT
#include "ui/sources/login_advice.h"

#include <QCoreApplication>
#include <QStringList>

#include "ui/toolkit/text.h"
#include "workspace/job_operations.h"

namespace quillmere {
namespace {

struct LoginAdvice {
  Q_DECLARE_TR_FUNCTIONS(LoginAdvice)
};

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

QString WhyAsked(std::string_view data_source, std::string_view refusal) {
  constexpr std::string_view kFailed = "connect Database failed. Error: ";
  if (refusal.starts_with(kFailed)) refusal.remove_prefix(kFailed.size());
  // There is a listener, but the database behind it is not open.
  bool reached = !refusal.starts_with("OCIServerAttach");
  for (const char* code : {"ORA-01033", "ORA-01034", "ORA-01089", "ORA-12528", "ORA-27101"}) {
    reached = reached && !Contains(refusal, code);
  }
  const QString why = reached ? LoginAdvice::tr("The stored log-on to %1 was refused: %2")
                              : LoginAdvice::tr("%1 is unreachable with any log-on: %2");
  return why.arg(ToQt(data_source), ToQt(refusal)) + QStringLiteral("\n\n") +
         LoginAdvice::tr("What is entered here serves this connection only; nothing is stored.");
}

QString AddAdvice(const DataSourceRegistry& registry, std::string_view typed) {
  const std::string refused = typed.empty() ? "" : registry.WhyNameRefused(typed);
  if (!refused.empty()) return Translated(refused);
  return LoginAdvice::tr(
      "Add connects, reads the catalogue and registers the data source when that went well.");
}

QString SaveAdvice(const DataSourceRegistry& registry, std::string_view edited,
                   std::string_view typed) {
  if (typed == edited) {
    return LoginAdvice::tr(
        "Save tries the log-on and then keeps it; jobs use it from their next connection on.");
  }
  if (registry.IndexOf(typed) >= 0) {
    return LoginAdvice::tr("Save will change the log-on of %1, not that of %2.")
        .arg(ToQt(typed), ToQt(edited));
  }
  return LoginAdvice::tr("A data source keeps its name. To register another one, use New.");
}

QString DeleteQuestion(const JobList& jobs, std::string_view data_source) {
  QStringList names;
  std::size_t count = 0;
  for (std::size_t index = 0; index < jobs.Count(); ++index) {
    if (jobs.State(index) == JobState::Empty) continue;
    const JobProperties job = PropertiesOf(jobs.At(index));
    if (job.source != data_source && job.destination != data_source) continue;
    if (++count <= kNamesTold) names << ToQt(job.name);
  }
  const QString question = LoginAdvice::tr(
                               "Delete the data source %1?\n\nIts log-on and what was read of its "
                               "catalogue go. The database itself stays as it is.")
                               .arg(ToQt(data_source));
  if (count == 0) return question;
  QString held = names.join(QStringLiteral(", "));
  if (count > kNamesTold) {
    held = LoginAdvice::tr("%1 and %Ln more", nullptr, Plural(count - kNamesTold)).arg(held);
  }
  const QString use = count == 1
                          ? LoginAdvice::tr(
                                "This job uses it and is held: %1. It can not be run or continued "
                                "until a data source of that name is registered.")
                          : LoginAdvice::tr(
                                "These jobs use it and are held: %1. They can not be run or "
                                "continued until a data source of that name is registered.");
  return question + QStringLiteral("\n\n") + use.arg(held);
}

}  // namespace quillmere
