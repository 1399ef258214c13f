// SPDX-License-Identifier: MIT
#include "ui/databases/source_connection.h"

#include "ui/sources/T_dblogin.h"
#include "ui/sources/secret.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/text.h"
#include "ui/waiting/waiting.h"

namespace quillmere {

void SourceConnection::Connect(std::size_t index, const std::function<void()>& logged_on) {
  Workspace& workspace = context_.workspace;
  Waiting waiting(context_, parent_, tr("Connect"));
  const Outcome tested = TestDataSource(workspace, index, waiting);
  if (tested.cancelled) return;
  std::optional<LogOn> entered;
  if (!tested) {
    workspace.Log().Add(workspace.Registry().At(index).name + ": " + tested.text, true);
    entered = LogIn(index, tested.text);
    if (!entered) return;
  }
  static_cast<void>(MarkConnected(workspace, index, true));
  logged_on();
  Refresh(index, entered ? &*entered : nullptr);
  if (entered) WipeText(entered->password);
}

std::optional<LogOn> SourceConnection::LogIn(std::size_t index, const std::string& why) {
  Workspace& workspace = context_.workspace;
  const DataSource& source = workspace.Registry().At(index);
  TDbLoginForm form(context_, {source.name, source.user_id, {}, source.sysdba}, why, parent_);
  if (form.exec() != QDialog::Accepted) return std::nullopt;
  if (form.Login().name != source.name) {
    ShowFailure(parent_, tr("The log-on was to %1, but the data source is %2. Nothing was changed. "
                            "Another database is added in the data source manager.")
                             .arg(ToQt(form.Login().name), ToQt(source.name)));
    return std::nullopt;
  }
  workspace.Log().Add("The log-on entered for " + source.name +
                          " serves this connection only. What is stored, and what jobs use, is "
                          "changed in the data source manager",
                      false);
  return form.Login();
}

void SourceConnection::Refresh(std::size_t index, const LogOn* log_on) {
  Workspace& workspace = context_.workspace;
  const std::string name = workspace.Registry().At(index).name;
  Waiting waiting(context_, parent_, tr("Refresh"));
  const Outcome outcome = RefreshDataSource(workspace, index, waiting, log_on);
  if (outcome) return;
  if (outcome.cancelled) {
    workspace.Log().Add("Refreshing " + name + " was cancelled: its lists are as they were", false);
    return;
  }
  const bool begun = !outcome.text.starts_with("Can't not connect");
  const QString left = begun
                           ? tr("The lists of %1 show what had been read until then. Refresh again "
                                "when the cause is mended.")
                           : tr("The lists of %1 are as they were.");
  ShowFailure(parent_, Translated(outcome.text) + QStringLiteral("\n\n") + left.arg(ToQt(name)));
}

void SourceConnection::Disconnect(std::size_t index) {
  const Outcome saved = MarkConnected(context_.workspace, index, false);
  if (!saved) ShowFailure(parent_, saved.text);
}

}  // namespace quillmere
