// SPDX-License-Identifier: MIT
#include "oracle/oci_library.h"

#include <system_error>

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
  Load(clients_.emplace_back(), choice, program_folder);
  now_ = &clients_.back();
}

void OciLibrary::Load(Client& client, std::string_view choice,
                      const std::filesystem::path& program_folder) {
  std::string tried;
  std::string first_reason;
  for (const std::string& name : Candidates(choice, program_folder)) {
    std::string reason;
    if (void* library = OpenLibrary(name, reason); library != nullptr) {
      OciApi api;
      const std::string missing = BindAll(library, api);
      if (missing.empty()) {
        client.api = api;
        client.loaded = true;
        client.path = name;
        return;
      }
      reason = name + " has no function " + missing;
    }
    tried += (tried.empty() ? "" : ", ") + name;
    if (first_reason.empty()) first_reason = reason;
  }
  client.load_error = "no client library could be loaded. Tried: " + tried + " (" + first_reason +
                      "). " + ClientInstallHint();
}

OciLibrary::OciLibrary(const OciApi& api) {
  now_ = &clients_.emplace_back(Client{api, true, "(built in)", {}});
}

bool OciLibrary::Replace(std::string_view choice, const std::filesystem::path& program_folder,
                         std::string& reason) {
  Client& client = clients_.emplace_back();
  Load(client, choice, program_folder);
  if (client.loaded) {
    now_ = &client;
    return true;
  }
  reason = client.load_error;
  clients_.pop_back();
  return false;
}

void OciLibrary::TakeBack() {
  if (clients_.size() > 1) now_ = &clients_[clients_.size() - 2];
}

OciLibrary::Environment OciLibrary::ThreadEnvironment() {
  const Client& client = Now();
  if (!client.loaded) return {nullptr, false, &client.api};
  const MutexLock lock(mutex_);
  Environment& environment = environments_[{std::this_thread::get_id(), &client}];
  environment.api = &client.api;
  if (!environment.ready) {
    const oci::sword status = client.api.EnvCreate(&environment.handle, oci::kDefault, nullptr,
                                                   nullptr, nullptr, nullptr, 0, nullptr);
    environment.ready = status == oci::kSuccess || status == oci::kSuccessWithInfo;
  }
  return environment;
}

std::filesystem::path FindSandboxLibrary(const std::filesystem::path& program_folder) {
  std::error_code error;
  for (const std::string& name : Candidates("sandbox", program_folder)) {
    if (std::filesystem::is_regular_file(name, error)) return name;
  }
  return {};
}

}  // namespace quillmere
