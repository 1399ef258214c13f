// SPDX-License-Identifier: MIT
#include "oracle/oci_library.h"

#include "oracle/nls_defaults.h"
#include "oracle/platform.h"

namespace quillmere {
namespace {

// Fills one pointer of the table; the first missing name is kept.
template <typename Function>
void Bind(void* library, const char* name, Function*& pointer, std::string& missing) {
  pointer = reinterpret_cast<Function*>(FindSymbol(library, name));
  if (pointer == nullptr && missing.empty()) missing = name;
}

// The name of the first of the 13 functions that the library lacks; empty when none is missing.
std::string BindAll(void* library, OciApi& api) {
  std::string missing;
  Bind(library, "OCIEnvCreate", api.EnvCreate, missing);
  Bind(library, "OCIHandleAlloc", api.HandleAlloc, missing);
  Bind(library, "OCIHandleFree", api.HandleFree, missing);
  Bind(library, "OCIServerAttach", api.ServerAttach, missing);
  Bind(library, "OCIServerDetach", api.ServerDetach, missing);
  Bind(library, "OCIAttrSet", api.AttrSet, missing);
  Bind(library, "OCISessionBegin", api.SessionBegin, missing);
  Bind(library, "OCISessionEnd", api.SessionEnd, missing);
  Bind(library, "OCIStmtPrepare", api.StmtPrepare, missing);
  Bind(library, "OCIStmtExecute", api.StmtExecute, missing);
  Bind(library, "OCIDefineByPos", api.DefineByPos, missing);
  Bind(library, "OCIStmtFetch2", api.StmtFetch2, missing);
  Bind(library, "OCIErrorGet", api.ErrorGet, missing);
  return missing;
}

std::vector<std::string> Candidates(std::string_view choice, const std::filesystem::path& folder) {
  if (choice.empty() || choice == "oracle") return OracleClientNames();
  if (choice == "sandbox") {
    // Beside the program in a build, in its private folder when installed.
    const std::string name = SandboxLibraryName();
    const std::filesystem::path installed =
        (folder / QUILLMERE_PRIVATE_LIBRARIES).lexically_normal();
    return {(folder / name).string(), (installed / name).string()};
  }
  return {std::string(choice)};
}

}  // namespace

OciLibrary::OciLibrary(std::string_view choice, const std::filesystem::path& program_folder) {
  SetNlsDefaults();
  std::string tried;
  std::string first_reason;
  for (const std::string& name : Candidates(choice, program_folder)) {
    std::string reason;
    if (void* library = OpenLibrary(name, reason); library != nullptr) {
      OciApi api;
      const std::string missing = BindAll(library, api);
      if (missing.empty()) {
        api_ = api;
        loaded_ = true;
        path_ = name;
        return;
      }
      reason = name + " has no function " + missing;
    }
    tried += (tried.empty() ? "" : ", ") + name;
    if (first_reason.empty()) first_reason = reason;
  }
  load_error_ = "no client library could be loaded. Tried: " + tried + " (" + first_reason + "). " +
                ClientInstallHint();
}

OciLibrary::OciLibrary(const OciApi& api) : api_(api), loaded_(true), path_("(built in)") {}

OciLibrary::Environment OciLibrary::ThreadEnvironment() {
  if (!loaded_) return {};
  const MutexLock lock(mutex_);
  Environment& environment = environments_[std::this_thread::get_id()];
  if (!environment.ready) {
    const oci::sword status = api_.EnvCreate(&environment.handle, oci::kDefault, nullptr, nullptr,
                                             nullptr, nullptr, 0, nullptr);
    environment.ready = status == oci::kSuccess || status == oci::kSuccessWithInfo;
  }
  return environment;
}

}  // namespace quillmere
