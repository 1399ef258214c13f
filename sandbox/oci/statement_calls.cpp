#include <cctype>
#include <string_view>

#include "sandbox/oci/calls.h"

namespace quillmere::sandbox {

namespace {

constexpr oci::ub4 kMaxColumns = 1000;
constexpr oci::ub2 kFetchDefault = 0;

// Whether the text is a query, without reading more of it than its first word.
bool IsQuery(std::string_view sql) {
  for (;;) {
    while (!sql.empty() && std::isspace(static_cast<unsigned char>(sql.front()))) {
      sql.remove_prefix(1);
    }
    std::string_view end;
    if (sql.starts_with("--")) {
      end = "\n";
    } else if (sql.starts_with("/*")) {
      end = "*/";
    } else {
      break;
    }
    const std::size_t at = sql.find(end, 2);
    if (at == std::string_view::npos) return false;
    sql.remove_prefix(at + end.size());
  }
  constexpr std::string_view kWord = "SELECT";
  for (std::size_t i = 0; i < kWord.size(); ++i) {
    if (i >= sql.size() || std::toupper(static_cast<unsigned char>(sql[i])) != kWord[i]) {
      return false;
    }
  }
  return true;
}

std::shared_ptr<SessionSlot> SlotOf(const HandlePtr& svcctx) {
  HandleId session_id = 0;
  {
    const std::lock_guard lock(svcctx->mutex);
    session_id = svcctx->svcctx.session;
  }
  const HandlePtr session = Registry().Find(session_id, oci::kHtypeSession);
  if (!session) return nullptr;
  const std::lock_guard lock(session->mutex);
  return session->session.slot;
}

Status RunQuery(Session* session, StatementState* statement, oci::ub4 iters, oci::sword* result) {
  StatementResult executed;
  if (Status status = session->Execute(statement->text, &executed); !status.ok()) return status;
  statement->cursor = executed.cursor;
  if (!statement->cursor) return {};
  if (statement->defines.size() > statement->cursor->columns().size()) return Ora(1007);
  if (Status status = TakeRows(statement, iters); !status.ok()) return status;
  return iters == 0 ? Status() : FetchRows(statement, iters, result);
}

Status RunOther(Session* session, const StatementState& statement, oci::ub4 count) {
  for (oci::ub4 i = 0; i < count; ++i) {
    StatementResult executed;
    if (Status status = session->Execute(statement.text, &executed); !status.ok()) return status;
  }
  return {};
}

Status Execute(const std::shared_ptr<SessionSlot>& slot, StatementState* statement, oci::ub4 iters,
               oci::ub4 rowoff, oci::ub4 mode, oci::sword* result) {
  statement->cursor.reset();
  statement->ahead.clear();
  statement->at_end = false;
  Session* session = slot->session.get();
  if (session == nullptr) return Ora(1012);
  if (!statement->prepared) return Ora(24337);
  if ((mode & ~oci::kCommitOnSuccess) != 0) return {24300, "bad value for mode"};
  const bool query = IsQuery(statement->text);
  if (!query && iters <= rowoff) return Ora(24333);
  Status status = session->link().RoundTrip();
  if (!status.ok()) {
    session->Rollback();
    return status;
  }
  statement->slot = slot;
  status = query ? RunQuery(session, statement, iters, result)
                 : RunOther(session, *statement, iters - rowoff);
  if (status.ok() && (mode & oci::kCommitOnSuccess) != 0) status = session->Commit();
  return status;
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
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr handle = Registry().Find(stmtp, kHtypeStmt);
    if (!handle) return kInvalidHandle;
    if (stmt == nullptr || stmt_len == 0) return Report(error, Ora(24373));
    std::shared_ptr<SessionSlot> slot;
    {
      const std::lock_guard lock(handle->mutex);
      slot = handle->statement.slot;
    }
    std::unique_lock<std::mutex> session_lock;
    if (slot) session_lock = std::unique_lock(slot->mutex);
    const std::lock_guard lock(handle->mutex);
    StatementState fresh;
    fresh.prefetch_rows = handle->statement.prefetch_rows;
    fresh.prefetch_memory = handle->statement.prefetch_memory;
    fresh.prepared = true;
    fresh.text.assign(reinterpret_cast<const char*>(stmt), stmt_len);
    handle->statement = std::move(fresh);
    return kSuccess;
  });
}

sword OCIStmtExecute(OCISvcCtx* svchp, OCIStmt* stmtp, OCIError* errhp, ub4 iters, ub4 rowoff,
                     const OCISnapshot*, OCISnapshot*, ub4 mode) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr svcctx = Registry().Find(svchp, kHtypeSvcCtx);
    const HandlePtr handle = Registry().Find(stmtp, kHtypeStmt);
    if (!svcctx || !handle) return kInvalidHandle;
    const std::shared_ptr<SessionSlot> slot = SlotOf(svcctx);
    if (!slot) return Report(error, Ora(1012));
    sword result = kSuccess;
    CloseStatement(handle, slot);
    const std::lock_guard session_lock(slot->mutex);
    const std::lock_guard lock(handle->mutex);
    const Status status = Execute(slot, &handle->statement, iters, rowoff, mode, &result);
    return Report(error, status, result);
  });
}

sword OCIDefineByPos(OCIStmt* stmtp, OCIDefine** defnpp, OCIError* errhp, ub4 position,
                     void* valuep, sb4 value_sz, ub2 dty, void* indp, ub2* rlenp, ub2* rcodep,
                     ub4) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr handle = Registry().Find(stmtp, kHtypeStmt);
    if (!handle) return kInvalidHandle;
    constexpr ub2 kSqltStr = 5;
    constexpr ub2 kSqltAfc = 96;
    if (position == 0 || position > kMaxColumns) return Report(error, Ora(1007));
    if (dty != kSqltChr && dty != kSqltStr && dty != kSqltAfc) return Report(error, Ora(3115));
    if (valuep == nullptr || value_sz < 1) {
      return Report(error, {1062, "unable to allocate memory for define buffer"});
    }
    const std::lock_guard lock(handle->mutex);
    auto& defines = handle->statement.defines;
    if (defines.size() < position) defines.resize(position);
    defines[position - 1] = {valuep, value_sz, dty, static_cast<sb2*>(indp), rlenp, rcodep};
    // Nothing is ever asked of a define handle here; it only must not look like none.
    if (defnpp != nullptr) *defnpp = reinterpret_cast<OCIDefine*>(handle->id + position % 16);
    return kSuccess;
  });
}

sword OCIStmtFetch2(OCIStmt* stmtp, OCIError* errhp, ub4 nrows, ub2 orientation, sb4, ub4) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr handle = Registry().Find(stmtp, kHtypeStmt);
    if (!handle) return kInvalidHandle;
    std::shared_ptr<SessionSlot> slot;
    {
      const std::lock_guard lock(handle->mutex);
      if (handle->statement.cursor) slot = handle->statement.slot;
    }
    if (!slot) return Report(error, Ora(24338));
    if (orientation != kFetchNext && orientation != kFetchDefault) {
      return Report(error, {24391, "invalid fetch operation"});
    }
    sword result = kSuccess;
    const std::lock_guard session_lock(slot->mutex);
    const std::lock_guard lock(handle->mutex);
    if (!handle->statement.cursor) return Report(error, Ora(24338));
    const Status status = FetchRows(&handle->statement, nrows, &result);
    return Report(error, status, result);
  });
}

}  // extern "C"
