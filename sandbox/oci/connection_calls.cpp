#include <algorithm>

#include "sandbox/oci/calls.h"

namespace quillmere::sandbox {

namespace {

std::string TextOf(const void* text, std::size_t size) {
  return text == nullptr ? std::string() : std::string(static_cast<const char*>(text), size);
}

std::shared_ptr<Link> LinkOf(const HandlePtr& server) {
  const std::lock_guard lock(server->mutex);
  return server->link;
}

SvcCtxState StateOf(const HandlePtr& svcctx) {
  const std::lock_guard lock(svcctx->mutex);
  return svcctx->svcctx;
}

Status Attach(const HandlePtr& server, const std::string& name) {
  const std::lock_guard lock(server->mutex);
  if (server->link) return {24309, "already connected to a server"};
  return Link::Attach(name, &server->link);
}

// The session handle keeps what it was begun on, so that a detach can find it.
Status Begin(const HandlePtr& svcctx, const HandlePtr& user, bool sysdba) {
  const HandleId server_id = StateOf(svcctx).server;
  const HandlePtr server = Registry().Find(server_id, oci::kHtypeServer);
  const std::shared_ptr<Link> link = server ? LinkOf(server) : nullptr;
  if (!link) return {24327, "need explicit attach before authenticating a user"};
  auto slot = std::make_shared<SessionSlot>();
  LogOn log_on;
  {
    const std::lock_guard lock(user->mutex);
    if (user->session.slot) return {24313, "user already authenticated"};
    user->session.svcctx = svcctx->id;
    log_on = {user->session.user, user->session.password, sysdba, false};
  }
  if (Status status = link->RoundTrip(); !status.ok()) return status;
  if (Status status = Session::Open(link, log_on, &slot->session); !status.ok()) return status;
  const std::lock_guard lock(user->mutex);
  user->session.slot = std::move(slot);
  user->session.server = server_id;
  return {};
}

Status End(const HandlePtr& user) {
  std::shared_ptr<SessionSlot> slot;
  {
    const std::lock_guard lock(user->mutex);
    slot = std::exchange(user->session.slot, nullptr);
  }
  if (!slot) return Ora(1012);
  const std::lock_guard lock(slot->mutex);
  if (!slot->session) return Ora(1012);
  Status status = slot->session->link().RoundTrip();
  if (status.ok()) status = slot->session->Commit();
  slot->session.reset();  // rolls back what a failure left
  return status;
}

Status SetSvcCtx(const HandlePtr& svcctx, void* attribute, oci::ub4 kind, bool* valid) {
  const oci::ub4 type = kind == oci::kAttrServer ? oci::kHtypeServer : oci::kHtypeSession;
  if (kind != oci::kAttrServer && kind != oci::kAttrSession) return Ora(24315);
  const HandlePtr target = Registry().Find(attribute, type);
  *valid = target != nullptr;
  if (!target) return {};
  if (kind == oci::kAttrSession) {
    const std::lock_guard lock(target->mutex);
    target->session.svcctx = svcctx->id;
  }
  const std::lock_guard lock(svcctx->mutex);
  (kind == oci::kAttrServer ? svcctx->svcctx.server : svcctx->svcctx.session) = target->id;
  return {};
}

Status SetSession(const HandlePtr& session, const std::string& text, oci::ub4 kind) {
  const std::lock_guard lock(session->mutex);
  if (kind == oci::kAttrUsername) {
    session->session.user = text;
  } else if (kind == oci::kAttrPassword) {
    session->session.password = text;
  } else {
    return Ora(24315);
  }
  return {};
}

Status SetStatement(const HandlePtr& statement, const void* attribute, oci::ub4 kind) {
  if (attribute == nullptr) return Ora(24315);
  const oci::ub4 value = *static_cast<const oci::ub4*>(attribute);
  const std::lock_guard lock(statement->mutex);
  if (kind == oci::kAttrPrefetchRows) {
    statement->statement.prefetch_rows = value;
  } else if (kind == oci::kAttrPrefetchMemory) {
    statement->statement.prefetch_memory = value;
  } else {
    return Ora(24315);
  }
  return {};
}

}  // namespace
}  // namespace quillmere::sandbox

using namespace quillmere::oci;      // NOLINT: this file is these functions
using namespace quillmere::sandbox;  // NOLINT

extern "C" {

OciServerAttachFn OCIServerAttach;
OciServerDetachFn OCIServerDetach;
OciAttrSetFn OCIAttrSet;
OciSessionBeginFn OCISessionBegin;
OciSessionEndFn OCISessionEnd;

sword OCIServerAttach(OCIServer* srvhp, OCIError* errhp, const OraText* dblink, sb4 dblink_len,
                      ub4) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr server = Registry().Find(srvhp, kHtypeServer);
    if (!server) return kInvalidHandle;
    const auto size = static_cast<std::size_t>(std::max(dblink_len, 0));
    return Report(error, Attach(server, TextOf(dblink, size)));
  });
}

sword OCIServerDetach(OCIServer* srvhp, OCIError* errhp, ub4) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr server = Registry().Find(srvhp, kHtypeServer);
    if (!server) return kInvalidHandle;
    const std::shared_ptr<Link> link = LinkOf(server);
    if (!link) return Report(error, Ora(3114));
    for (const HandlePtr& session : Registry().SessionsOf(server->env)) {
      bool on_it = false;
      {
        const std::lock_guard lock(session->mutex);
        on_it = session->session.server == server->id;
      }
      if (on_it) AbandonSession(session);
    }
    // What is left of a cut connection is detached all the same.
    (void)link->RoundTrip();
    const std::lock_guard lock(server->mutex);
    server->link.reset();
    return kSuccess;
  });
}

sword OCIAttrSet(void* trgthndlp, ub4 trghndltyp, void* attributep, ub4 size, ub4 attrtype,
                 OCIError* errhp) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr target = Registry().Find(trgthndlp, trghndltyp);
    if (!target) return kInvalidHandle;
    bool valid = true;
    Status status;
    if (trghndltyp == kHtypeSvcCtx) {
      status = SetSvcCtx(target, attributep, attrtype, &valid);
    } else if (trghndltyp == kHtypeSession) {
      status = SetSession(target, TextOf(attributep, size), attrtype);
    } else if (trghndltyp == kHtypeStmt) {
      status = SetStatement(target, attributep, attrtype);
    } else {
      status = Ora(24315);
    }
    return valid ? Report(error, status) : kInvalidHandle;
  });
}

sword OCISessionBegin(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4 credt, ub4 mode) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr svcctx = Registry().Find(svchp, kHtypeSvcCtx);
    const HandlePtr user = Registry().Find(usrhp, kHtypeSession);
    if (!svcctx || !user) return kInvalidHandle;
    if (credt != kCredRdbms) return Report(error, Ora(1017));
    if (mode != kDefault && mode != kSysdba) return Report(error, {24300, "bad value for mode"});
    return Report(error, Begin(svcctx, user, mode == kSysdba));
  });
}

sword OCISessionEnd(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4) {
  return Guarded(errhp, [&](const HandlePtr& error) {
    const HandlePtr svcctx = Registry().Find(svchp, kHtypeSvcCtx);
    if (!svcctx) return kInvalidHandle;
    const HandlePtr user = usrhp != nullptr
                               ? Registry().Find(usrhp, kHtypeSession)
                               : Registry().Find(StateOf(svcctx).session, kHtypeSession);
    if (!user) return kInvalidHandle;
    return Report(error, End(user));
  });
}

}  // extern "C"
