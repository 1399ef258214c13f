// SPDX-License-Identifier: MIT
#include "foundation/text.h"
#include "oracle/H_oracle.h"

#include <array>
#include <cstring>
#include <utility>

namespace quillmere {
namespace {

using namespace oci;

// "Not allocated": all bits set but the lowest. Null is a value that a client may give back.
template <typename Handle>
Handle* NotAllocated() {
  return reinterpret_cast<Handle*>(static_cast<std::intptr_t>(-2));
}

// An empty text is a pointer to an empty text, never null.
const OraText* InputBytes(std::string_view text) {
  return reinterpret_cast<const OraText*>(text.empty() ? "" : text.data());
}

template <typename Handle>
bool Allocate(const OciApi& api, OCIEnv* environment, Handle*& handle, ub4 type, sword& status) {
  void* allocated = nullptr;
  status = api.HandleAlloc(environment, &allocated, type, 0, nullptr);
  const bool ok = status == kSuccess || status == kSuccessWithInfo;
  handle = ok ? static_cast<Handle*>(allocated) : NotAllocated<Handle>();
  return ok;
}

}  // namespace

OracleSession::OracleSession(OciLibrary& library)
    : library_(library),
      environment_(library.ThreadEnvironment()),
      error_(NotAllocated<OCIError>()),
      server_(NotAllocated<OCIServer>()),
      service_(NotAllocated<OCISvcCtx>()),
      session_(NotAllocated<OCISession>()) {}

OracleSession::~OracleSession() {
  Disconnect();
  ReleaseHandles();
}

bool OracleSession::MayGoOn() {
  if (!stop_condition_ || !stop_condition_()) return true;
  stopped_ = true;
  return Refuse("stopped");
}

bool OracleSession::AllocateHandles() {
  if (!library_.Loaded()) {
    return Refuse("OCIHandleAlloc(Env) : " + library_.LoadError());
  }
  if (environment_.handle == nullptr) {
    return Refuse("OCIHandleAlloc(Env) : the client library " + library_.Path() +
                  " could not make an OCI environment");
  }
  sword status = kSuccess;
  OCIEnv* const env = environment_.handle;
  if (!Allocate(Api(), env, error_, kHtypeError, status)) {
    SetError("OCIHandleAlloc(Env) : ", ErrorSource::Environment, status);
  } else if (!Allocate(Api(), env, server_, kHtypeServer, status)) {
    SetError("OCIHandleAlloc(Server) : ", ErrorSource::Error, status);
  } else if (!Allocate(Api(), env, service_, kHtypeSvcCtx, status)) {
    SetError("OCIHandleAlloc(Svcctx) : ", ErrorSource::Error, status);
  } else if (!Allocate(Api(), env, session_, kHtypeSession, status)) {
    SetError("OCIHandleAlloc(Session) : ", ErrorSource::Error, status);
  } else {
    return true;
  }
  ReleaseHandles();
  return false;
}

void OracleSession::ReleaseHandles() {
  if (error_ != NotAllocated<OCIError>()) Api().HandleFree(error_, kHtypeError);
  if (server_ != NotAllocated<OCIServer>()) Api().HandleFree(server_, kHtypeServer);
  if (service_ != NotAllocated<OCISvcCtx>()) Api().HandleFree(service_, kHtypeSvcCtx);
  // The session handle stays with the client library: what is given back in its place is the
  // service context, as installations have always seen it.
  if (session_ != NotAllocated<OCISession>()) Api().HandleFree(service_, kHtypeSession);
  error_ = NotAllocated<OCIError>();
  server_ = NotAllocated<OCIServer>();
  service_ = NotAllocated<OCISvcCtx>();
  session_ = NotAllocated<OCISession>();
}

bool OracleSession::Connect(const LogOn& log_on) {
  if (connected_) Disconnect();
  ReleaseHandles();
  if (!AllocateHandles()) return false;
  if (!Attach(log_on.name)) {
    ReleaseHandles();
    return false;
  }
  if (!BeginSession(log_on)) {
    Api().ServerDetach(server_, error_, kDefault);
    ReleaseHandles();
    return false;
  }
  connected_ = true;
  session_open_ = true;
  return true;
}

bool OracleSession::Attach(std::string_view connect_name) {
  if (!MayGoOn()) return false;
  const sword status = Api().ServerAttach(server_, error_, InputBytes(connect_name),
                                          static_cast<sb4>(connect_name.size()), kDefault);
  if (Succeeded(status)) return true;
  SetError("OCIServerAttach : ", ErrorSource::Error, status);
  return false;
}

bool OracleSession::BeginSession(const LogOn& log_on) {
  if (!MayGoOn() || !SetHandleAttribute(kAttrServer, server_, "OCIAttrSet(SERVER) : "))
    return false;
  if (!SetLoginText(kAttrUsername, log_on.user_id)) return false;
  if (!SetLoginText(kAttrPassword, log_on.password)) return false;
  const sword status = Api().SessionBegin(service_, error_, session_, kCredRdbms,
                                          log_on.sysdba ? kSysdba : kDefault);
  if (!Succeeded(status)) {
    SetError("OCISessionBegin : ", ErrorSource::Error, status);
    return false;
  }
  if (SetHandleAttribute(kAttrSession, session_, "OCIAttrSet(SESSION) : ")) return true;
  Api().SessionEnd(service_, error_, session_, kDefault);
  return false;
}

// Gives the service context its server or session.
bool OracleSession::SetHandleAttribute(ub4 attribute, void* handle, std::string_view label) {
  const sword status = Api().AttrSet(service_, kHtypeSvcCtx, handle, 0, attribute, error_);
  if (Succeeded(status)) return true;
  SetError(label, ErrorSource::Error, status);
  return false;
}

// User name and password fail under the same label.
bool OracleSession::SetLoginText(ub4 attribute, std::string_view text) {
  std::string input(text);  // OCI takes it through a pointer to non-const, and copies it
  const sword status = Api().AttrSet(session_, kHtypeSession, input.data(),
                                     static_cast<ub4>(input.size()), attribute, error_);
  if (Succeeded(status)) return true;
  SetError("OCIAttrSet(USERNAME) : ", ErrorSource::Error, status);
  return false;
}

bool OracleSession::EndSession() {
  if (!session_open_) return true;
  session_open_ = false;
  const sword status = Api().SessionEnd(service_, error_, session_, kDefault);
  if (Succeeded(status)) return true;
  SetError("OCISessionEnd : ", ErrorSource::Error, status);
  return false;
}

void OracleSession::Abandon() {
  session_open_ = false;
  Disconnect();
}

void OracleSession::Disconnect() {
  if (!connected_) return;
  connected_ = false;
  // Neither result matters here, and the reason of an earlier failure is still to be read.
  if (session_open_) Api().SessionEnd(service_, error_, session_, kDefault);
  session_open_ = false;
  Api().ServerDetach(server_, error_, kDefault);
}

void OracleSession::SetError(std::string_view label, ErrorSource source, sword status) {
  constexpr ub4 kBufferSize = 512;
  std::array<OraText, kBufferSize + 1>
      buffer{};  // one more: the text ends whatever the client does
  sb4& code = last_error_code_;
  code = 0;
  last_error_ = label;
  // An invalid handle leaves no message to ask for.
  if (status != kInvalidHandle) {
    if (source == ErrorSource::Environment) {
      Api().ErrorGet(environment_.handle, 1, nullptr, &code, buffer.data(), kBufferSize, kHtypeEnv);
    } else {
      Api().ErrorGet(error_, 1, nullptr, &code, buffer.data(), kBufferSize, kHtypeError);
    }
  }
  buffer[kBufferSize] = 0;
  std::string_view text = reinterpret_cast<const char*>(buffer.data());
  text = TrimRight(text);
  if (text.empty()) {
    last_error_ +=
        status == kInvalidHandle
            ? "the client library refused a handle (OCI_INVALID_HANDLE)"
            : "the client library gave no message (status " + std::to_string(status) + ")";
  } else {
    last_error_ += text;
  }
}

bool OracleSession::Refuse(std::string reason) {
  last_error_ = std::move(reason);
  last_error_code_ = 0;
  return false;
}

bool OracleSession::Execute(std::string_view statement) {
  OCIStmt* handle = nullptr;
  sword status = kSuccess;
  if (!Allocate(Api(), environment_.handle, handle, kHtypeStmt, status)) {
    SetError("OCIHandleAlloc(Stmt1) : ", ErrorSource::Error, status);
    return false;
  }
  const bool ok = ExecuteOn(handle, statement, "OCIStmtPrepare : ", "OCIStmtExecute : ");
  Api().HandleFree(handle, kHtypeStmt);
  return ok;
}

bool OracleSession::ExecuteOn(OCIStmt* statement, std::string_view text,
                              std::string_view prepare_label, std::string_view execute_label) {
  if (!MayGoOn()) return false;
  sword status = Api().StmtPrepare(statement, error_, InputBytes(text),
                                   static_cast<ub4>(text.size()), kNtvSyntax, kDefault);
  if (!Succeeded(status)) {
    SetError(prepare_label, ErrorSource::Error, status);
    return false;
  }
  status = Api().StmtExecute(service_, statement, error_, 1, 0, nullptr, nullptr, kDefault);
  if (Succeeded(status)) return true;
  SetError(execute_label, ErrorSource::Error, status);
  return false;
}

std::vector<std::string> OracleSession::TakeWarnings() {
  return std::exchange(warnings_, {});
}

}  // namespace quillmere
