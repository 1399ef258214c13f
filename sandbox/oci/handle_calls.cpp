// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "sandbox/oci/handles.h"

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
    *envhpp = reinterpret_cast<OCIEnv*>(AddEnvironment()->id());
    if (usrmempp != nullptr) *usrmempp = nullptr;
    return kSuccess;
  } catch (const std::exception&) {
    return kError;
  }
}

sword OCIHandleAlloc(const void* parenth, void** hndlpp, ub4 type, std::size_t, void** usrmempp) {
  try {
    const auto environment = EnvironmentOf(parenth);
    if (hndlpp == nullptr || !environment) return kInvalidHandle;
    if (reinterpret_cast<HandleId>(parenth) != environment->id()) return kInvalidHandle;
    const std::lock_guard lock(environment->mutex);
    void* handle = environment->Allocate(type);
    if (handle == nullptr) return kInvalidHandle;
    *hndlpp = handle;
    if (usrmempp != nullptr) *usrmempp = nullptr;
    return kSuccess;
  } catch (const std::exception&) {
    return kInvalidHandle;
  }
}

sword OCIHandleFree(void* hndlp, ub4 type) {
  try {
    const auto id = reinterpret_cast<HandleId>(hndlp);
    const auto environment = EnvironmentOf(hndlp);
    if (!environment) return kInvalidHandle;
    const std::lock_guard lock(environment->mutex);
    if (type != kHtypeEnv) return environment->Free(id, type) ? kSuccess : kInvalidHandle;
    if (id != environment->id()) return kInvalidHandle;
    RemoveEnvironment(id);
    return kSuccess;
  } catch (const std::exception&) {
    return kError;
  }
}

sword OCIErrorGet(void* hndlp, ub4 recordno, OraText* sqlstate, sb4* errcodep, OraText* bufp,
                  ub4 bufsiz, ub4 type) {
  try {
    const auto environment = EnvironmentOf(hndlp);
    if (!environment) return kInvalidHandle;
    const std::lock_guard lock(environment->mutex);
    const auto* error = environment->Find<ErrorHandle>(hndlp);
    const bool own = type == kHtypeEnv && reinterpret_cast<HandleId>(hndlp) == environment->id();
    if (!own && (type != kHtypeError || error == nullptr)) return kInvalidHandle;
    if (sqlstate != nullptr) *sqlstate = '\0';
    if (bufp != nullptr && bufsiz > 0) *bufp = '\0';
    // Nothing is ever reported on an environment itself.
    if (own || recordno != 1 || error->last.ok()) return kNoData;
    if (errcodep != nullptr) *errcodep = error->last.code();
    if (bufp != nullptr && bufsiz > 0) {
      const std::string text = error->last.Text() + "\n";
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
