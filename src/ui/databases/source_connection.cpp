// SPDX-License-Identifier: MIT
#include "ui/databases/source_connection.h"

#include "ui/sources/T_dblogin.h"
#include "ui/toolkit/notice.h"
#include "ui/toolkit/progress_dialog.h"

namespace quillmere {
namespace {

// Knows afterwards how far a reading came.
class WatchedProgress final : public ProgressListener {
 public:
  explicit WatchedProgress(ProgressListener& shown) : shown_(shown) {}

  bool OnProgress(std::string_view what, std::size_t done, std::size_t total) override {
    begun_ = true;
    if (!shown_.OnProgress(what, done, total)) cancelled_ = true;
    return !cancelled_;
  }

  bool Begun() const { return begun_; }
  bool Cancelled() const { return cancelled_; }

 private:
  ProgressListener& shown_;
  bool begun_ = false;
  bool cancelled_ = false;
};

}  // namespace

void SourceConnection::Connect(std::size_t index, const std::function<void()>& logged_on) {
  Workspace& workspace = context_.workspace;
  Outcome tested;
  {
    ProgressDialog progress(parent_, QStringLiteral("Connect"),
                            "connect to " + workspace.Registry().At(index).name);
    progress.HideCancel();
    tested = TestDataSource(workspace, index);
  }
  std::unique_ptr<OracleSession> session;
  if (!tested) {
    workspace.Log().Add(tested.text, true);
    if (!LogIn(index, session)) return;
  }
  static_cast<void>(MarkConnected(workspace, index, true));
  logged_on();
  Refresh(index, session.get());
}

bool SourceConnection::LogIn(std::size_t index, std::unique_ptr<OracleSession>& session) {
  Workspace& workspace = context_.workspace;
  const DataSource& source = workspace.Registry().At(index);
  TDbLoginForm form(context_, {source.name, source.user_id, {}, source.sysdba}, parent_);
  if (form.exec() != QDialog::Accepted) return false;
  if (form.Login().name != source.name) {
    ShowFailure(parent_, "The log-on was to " + form.Login().name + ", but the data source is " +
                             source.name + ". Nothing was changed. Another database is added in " +
                             "the data source manager.");
    return false;
  }
  if (IsUsedByRunningJob(workspace.Jobs(), source.name)) {
    // A job must not change its log-on while it runs.
    workspace.Log().Add("The log-on entered for " + source.name +
                            " is used once and not stored: a running job uses the data source",
                        false);
    session = form.TakeSession();
    return true;
  }
  const Outcome saved = SaveDataSource(workspace, form.Login());
  if (saved) {
    workspace.Log().Add("The log-on entered for " + source.name + " is stored", false);
  } else {
    ShowFailure(parent_, saved.text);
  }
  return saved.done;
}

void SourceConnection::Refresh(std::size_t index, OracleSession* session) {
  Workspace& workspace = context_.workspace;
  const DataSource& source = workspace.Registry().At(index);
  Outcome outcome;
  bool begun = false;
  bool cancelled = false;
  {
    ProgressDialog progress(parent_, QStringLiteral("Refresh"), "connect to " + source.name);
    WatchedProgress watched(progress);
    outcome = RefreshDataSource(workspace, index, watched, session);
    begun = watched.Begun();
    cancelled = watched.Cancelled();
  }
  if (cancelled) {
    workspace.Log().Add("Refreshing " + source.name + " was cancelled: its lists are as they were",
                        false);
  } else if (!outcome) {
    ShowFailure(parent_, outcome.text + "\n\n" +
                             (begun ? "The lists of " + source.name +
                                          " show what had been read until then. Refresh again "
                                          "when the cause is mended."
                                    : "The lists of " + source.name + " are as they were."));
  }
}

void SourceConnection::Disconnect(std::size_t index) {
  const Outcome saved = MarkConnected(context_.workspace, index, false);
  if (!saved) ShowFailure(parent_, saved.text);
}

}  // namespace quillmere
