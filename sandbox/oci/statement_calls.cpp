// SPDX-License-Identifier: MIT
#include "sandbox/oci/handles.h"

namespace quillmere::sandbox {

namespace {

constexpr oci::ub4 kMaxColumns = 1000;

Outcome Execute(Environment& environment, const ServiceHandle& service, StatementHandle* statement,
                oci::ub4 iters, oci::ub4 rowoff, oci::ub4 mode) {
  statement->cursor.reset();
  statement->ahead.clear();
  statement->at_end = false;
  auto* user = environment.Find<SessionHandle>(service.session);
  if (user == nullptr || !user->session) return Ora(1012);
  if (statement->text.empty()) return Ora(24337);
  if ((mode & ~oci::kCommitOnSuccess) != 0) return Status(24300, "bad value for mode");
  Session& session = *user->session;
  session.link().RoundTrip();
  statement->session = service.session;
  StatementResult result;
  const bool query_only = iters <= rowoff;
  Status status = session.Execute(statement->text, &result, query_only);
  statement->cursor = result.cursor;
  for (oci::ub4 i = rowoff + 1; i < iters && status.ok() && !result.cursor; ++i) {
    status = session.Execute(statement->text, &result);
  }
  Outcome outcome(status);
  if (status.ok() && statement->cursor) {
    if (statement->defines.size() > statement->cursor->columns().size()) return Ora(1007);
    outcome = TakeRows(statement, iters);
    if (outcome.status.ok() && iters > 0) outcome = FetchRows(environment, statement, iters);
  }
  if (outcome.status.ok() && (mode & oci::kCommitOnSuccess) != 0) outcome = session.Commit();
  return outcome;
}

}  // namespace
}  // namespace quillmere::sandbox

using namespace quillmere::oci;      // NOLINT: this file is these functions
using namespace quillmere::sandbox;  // NOLINT

extern "C" {

OciStmtPrepareFn OCIStmtPrepare;
OciStmtExecuteFn OCIStmtExecute;
OciDefineByPosFn OCIDefineByPos;
OciStmtFetch2Fn OCIStmtFetch2;

sword OCIStmtPrepare(OCIStmt* stmtp, OCIError* errhp, const OraText* stmt, ub4 stmt_len, ub4, ub4) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    auto* statement = environment.Find<StatementHandle>(stmtp);
    if (statement == nullptr) return kInvalidHandle;
    if (stmt == nullptr || stmt_len == 0) return Ora(24373);
    statement->text.assign(reinterpret_cast<const char*>(stmt), stmt_len);
    statement->defines.clear();
    statement->cursor.reset();
    statement->ahead.clear();
    return kSuccess;
  });
}

sword OCIStmtExecute(OCISvcCtx* svchp, OCIStmt* stmtp, OCIError* errhp, ub4 iters, ub4 rowoff,
                     const OCISnapshot*, OCISnapshot*, ub4 mode) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    const auto* service = environment.Find<ServiceHandle>(svchp);
    auto* statement = environment.Find<StatementHandle>(stmtp);
    if (service == nullptr || statement == nullptr) return kInvalidHandle;
    return Execute(environment, *service, statement, iters, rowoff, mode);
  });
}

sword OCIDefineByPos(OCIStmt* stmtp, OCIDefine** defnpp, OCIError* errhp, ub4 position,
                     void* valuep, sb4 value_sz, ub2 dty, void* indp, ub2* rlenp, ub2* rcodep,
                     ub4) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    auto* statement = environment.Find<StatementHandle>(stmtp);
    if (statement == nullptr) return kInvalidHandle;
    if (position == 0 || position > kMaxColumns) return Ora(1007);
    if (dty != kSqltChr) return Ora(3115);
    if (valuep == nullptr || value_sz < 1) {
      return Status(1062, "unable to allocate memory for define buffer");
    }
    auto& defines = statement->defines;
    if (defines.size() < position) defines.resize(position);
    defines[position - 1] = {valuep, value_sz, static_cast<sb2*>(indp), rlenp, rcodep};
    // Nothing is ever asked of a define handle here; it only must not look like none.
    if (defnpp != nullptr) *defnpp = reinterpret_cast<OCIDefine*>(stmtp);
    return kSuccess;
  });
}

sword OCIStmtFetch2(OCIStmt* stmtp, OCIError* errhp, ub4 nrows, ub2 orientation, sb4, ub4) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    auto* statement = environment.Find<StatementHandle>(stmtp);
    if (statement == nullptr) return kInvalidHandle;
    if (!statement->cursor) return Ora(24338);
    if (orientation != kFetchNext && orientation != kDefault) {
      return Status(24391, "invalid fetch operation");
    }
    return FetchRows(environment, statement, nrows);
  });
}

}  // extern "C"
