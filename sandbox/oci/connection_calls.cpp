// SPDX-License-Identifier: MIT
#include <algorithm>

#include "sandbox/oci/handles.h"

namespace quillmere::sandbox {

namespace {

std::string TextOf(const void* text, std::size_t size) {
  return text == nullptr ? std::string() : std::string(static_cast<const char*>(text), size);
}

Outcome Begin(Environment& environment, const void* svchp, const void* usrhp, bool sysdba) {
  const auto* service = environment.Find<ServiceHandle>(svchp);
  auto* user = environment.Find<SessionHandle>(usrhp);
  if (service == nullptr || user == nullptr) return oci::kInvalidHandle;
  const auto* server = environment.Find<ServerHandle>(service->server);
  if (server == nullptr || !server->link) {
    return Status(24327, "need explicit attach before authenticating a user");
  }
  if (user->session) return Status(24313, "user already authenticated");
  user->service = reinterpret_cast<HandleId>(svchp);
  user->server = service->server;
  server->link->RoundTrip();
  return Session::Open(server->link, {user->user, user->password, sysdba, false}, &user->session);
}

Outcome End(SessionHandle* user) {
  if (!user->session) return Ora(1012);
  user->session->link().RoundTrip();
  Status status = user->session->Commit();
  user->session.reset();  // rolls back what a failure left
  return status;
}

Outcome SetService(Environment& environment, ServiceHandle* service, void* handle, void* attribute,
                   oci::ub4 kind) {
  const auto id = reinterpret_cast<HandleId>(attribute);
  if (kind == oci::kAttrServer) {
    if (environment.Find<ServerHandle>(id) == nullptr) return oci::kInvalidHandle;
    service->server = id;
    return oci::kSuccess;
  }
  if (kind != oci::kAttrSession) return Ora(24315);
  auto* session = environment.Find<SessionHandle>(id);
  if (session == nullptr) return oci::kInvalidHandle;
  session->service = reinterpret_cast<HandleId>(handle);
  service->session = id;
  return oci::kSuccess;
}

Outcome SetSession(SessionHandle* session, const std::string& text, oci::ub4 kind) {
  if (kind != oci::kAttrUsername && kind != oci::kAttrPassword) return Ora(24315);
  (kind == oci::kAttrUsername ? session->user : session->password) = text;
  return oci::kSuccess;
}

Outcome SetStatement(StatementHandle* statement, const void* attribute, oci::ub4 kind) {
  const bool rows = kind == oci::kAttrPrefetchRows;
  if (attribute == nullptr || (!rows && kind != oci::kAttrPrefetchMemory)) return Ora(24315);
  (rows ? statement->prefetch_rows : statement->prefetch_memory) =
      *static_cast<const oci::ub4*>(attribute);
  return oci::kSuccess;
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
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    auto* server = environment.Find<ServerHandle>(srvhp);
    if (server == nullptr) return kInvalidHandle;
    if (server->link) return Status(24309, "already connected to a server");
    const auto size = static_cast<std::size_t>(std::max(dblink_len, 0));
    return Link::Attach(TextOf(dblink, size), &server->link);
  });
}

sword OCIServerDetach(OCIServer* srvhp, OCIError* errhp, ub4) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    auto* server = environment.Find<ServerHandle>(srvhp);
    if (server == nullptr) return kInvalidHandle;
    if (!server->link) return Ora(3114);
    environment.EndSessionsOn(reinterpret_cast<HandleId>(srvhp));
    server->link->RoundTrip();
    server->link.reset();
    return kSuccess;
  });
}

sword OCIAttrSet(void* trgthndlp, ub4 trghndltyp, void* attributep, ub4 size, ub4 attrtype,
                 OCIError* errhp) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    if (auto* service = environment.Find<ServiceHandle>(trgthndlp);
        service != nullptr && trghndltyp == kHtypeSvcCtx) {
      return SetService(environment, service, trgthndlp, attributep, attrtype);
    }
    if (auto* session = environment.Find<SessionHandle>(trgthndlp);
        session != nullptr && trghndltyp == kHtypeSession) {
      return SetSession(session, TextOf(attributep, size), attrtype);
    }
    if (auto* statement = environment.Find<StatementHandle>(trgthndlp);
        statement != nullptr && trghndltyp == kHtypeStmt) {
      return SetStatement(statement, attributep, attrtype);
    }
    return kInvalidHandle;
  });
}

sword OCISessionBegin(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4 credt, ub4 mode) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    if (credt != kCredRdbms) return Ora(1017);
    if (mode != kDefault && mode != kSysdba) return Status(24300, "bad value for mode");
    return Begin(environment, svchp, usrhp, mode == kSysdba);
  });
}

sword OCISessionEnd(OCISvcCtx* svchp, OCIError* errhp, OCISession* usrhp, ub4) {
  return Guarded(errhp, [&](Environment& environment) -> Outcome {
    const auto* service = environment.Find<ServiceHandle>(svchp);
    if (service == nullptr) return kInvalidHandle;
    auto* user = usrhp != nullptr ? environment.Find<SessionHandle>(usrhp)
                                  : environment.Find<SessionHandle>(service->session);
    return user == nullptr ? Outcome(kInvalidHandle) : End(user);
  });
}

}  // extern "C"
