#include <algorithm>
#include <cstring>

#include "sandbox/oci/calls.h"

namespace quillmere::sandbox {

HandleRegistry& Registry() {
  // Never destroyed: threads of the client may still call while the process ends.
  static auto* registry = new HandleRegistry();
  return *registry;
}

oci::sword Report(const HandlePtr& error, const Status& status, oci::sword result) {
  if (status.ok()) return result;
  const std::lock_guard lock(error->mutex);
  error->error = status;
  return result == oci::kSuccess ? oci::kError : result;
}

void AbandonSession(const HandlePtr& session) {
  std::shared_ptr<SessionSlot> slot;
  {
    const std::lock_guard lock(session->mutex);
    slot = std::exchange(session->session.slot, nullptr);
  }
  if (!slot) return;
  const std::lock_guard lock(slot->mutex);
  slot->session.reset();
}

void CloseStatement(const HandlePtr& statement, const std::shared_ptr<SessionSlot>& unless) {
  std::shared_ptr<SessionSlot> slot;
  {
    const std::lock_guard lock(statement->mutex);
    slot = statement->statement.slot;
  }
  if (!slot || slot == unless) return;
  const std::lock_guard session_lock(slot->mutex);
  const std::lock_guard lock(statement->mutex);
  statement->statement.cursor.reset();
}

namespace {

void Release(const HandlePtr& handle) {
  switch (handle->type) {
    case oci::kHtypeStmt:
      CloseStatement(handle, nullptr);
      break;
    case oci::kHtypeSession:
      AbandonSession(handle);
      break;
    case oci::kHtypeServer:
    case oci::kHtypeSvcCtx:
      for (const HandlePtr& session : Registry().SessionsOf(handle->env)) {
        bool uses = false;
        {
          const std::lock_guard lock(session->mutex);
          uses = session->session.server == handle->id || session->session.svcctx == handle->id;
        }
        if (uses) AbandonSession(session);
      }
      break;
    default:
      break;
  }
}

bool IsKnownType(oci::ub4 type) {
  return type == oci::kHtypeError || type == oci::kHtypeSvcCtx || type == oci::kHtypeStmt ||
         type == oci::kHtypeServer || type == oci::kHtypeSession;
}

}  // namespace
}  // namespace quillmere::sandbox

using namespace quillmere::oci;      // NOLINT: this file is these functions
using namespace quillmere::sandbox;  // NOLINT

extern "C" {

OciEnvCreateFn OCIEnvCreate;
OciHandleAllocFn OCIHandleAlloc;
OciHandleFreeFn OCIHandleFree;
OciErrorGetFn OCIErrorGet;

sword OCIEnvCreate(OCIEnv** envhpp, ub4, void*, void* (*)(void*, std::size_t),
                   void* (*)(void*, void*, std::size_t), void (*)(void*, void*), std::size_t,
                   void** usrmempp) {
  if (envhpp == nullptr) return kError;
  try {
    *envhpp = reinterpret_cast<OCIEnv*>(Registry().AddEnvironment()->id);
    if (usrmempp != nullptr) *usrmempp = nullptr;
    return kSuccess;
  } catch (const std::exception&) {
    return kError;
  }
}

sword OCIHandleAlloc(const void* parenth, void** hndlpp, ub4 type, std::size_t, void** usrmempp) {
  try {
    if (hndlpp == nullptr || !IsKnownType(type)) return kInvalidHandle;
    const HandlePtr handle = Registry().Add(parenth, type);
    if (!handle) return kInvalidHandle;
    *hndlpp = reinterpret_cast<void*>(handle->id);
    if (usrmempp != nullptr) *usrmempp = nullptr;
    return kSuccess;
  } catch (const std::exception&) {
    return kInvalidHandle;
  }
}

sword OCIHandleFree(void* hndlp, ub4 type) {
  try {
    const auto removed = Registry().Remove(hndlp, type);
    for (const HandlePtr& handle : removed) Release(handle);
    return removed.empty() ? kInvalidHandle : kSuccess;
  } catch (const std::exception&) {
    return kError;
  }
}

sword OCIErrorGet(void* hndlp, ub4 recordno, OraText* sqlstate, sb4* errcodep, OraText* bufp,
                  ub4 bufsiz, ub4 type) {
  try {
    if (type != kHtypeError && type != kHtypeEnv) return kInvalidHandle;
    const HandlePtr handle = Registry().Find(hndlp, type);
    if (!handle) return kInvalidHandle;
    if (sqlstate != nullptr) *sqlstate = '\0';
    if (bufp != nullptr && bufsiz > 0) *bufp = '\0';
    const std::lock_guard lock(handle->mutex);
    if (recordno != 1 || handle->error.ok()) return kNoData;
    if (errcodep != nullptr) *errcodep = handle->error.code();
    if (bufp != nullptr && bufsiz > 0) {
      const std::string text = handle->error.Text() + "\n";
      const std::size_t size = std::min<std::size_t>(text.size(), bufsiz - 1);
      std::memcpy(bufp, text.data(), size);
      bufp[size] = '\0';
    }
    return kSuccess;
  } catch (const std::exception&) {
    return kError;
  }
}

}  // extern "C"
