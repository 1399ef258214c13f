// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstdlib>

#include "oracle/platform.h"

namespace quillmere {

void* OpenLibrary(const std::string& name, std::string& reason) {
  HMODULE library = LoadLibraryA(name.c_str());
  if (library == nullptr) {
    reason = name + ": error " + std::to_string(GetLastError());
  }
  return reinterpret_cast<void*>(library);
}

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(library), name));
}

std::vector<std::string> OracleClientNames() {
  std::vector<std::string> names{"oci.dll"};
  if (const char* home = std::getenv("ORACLE_HOME"); home != nullptr && *home != '\0') {
    names.push_back(std::string(home) + "\\bin\\oci.dll");
  }
  return names;
}

std::string SandboxLibraryName() {
  return "quillmere_sandbox.dll";
}

std::string ClientInstallHint() {
  return "Install the 64-bit Oracle Instant Client (Basic) and put its folder on PATH, or name the "
         "library with --client PATH; --client sandbox gives a database to try without Oracle";
}

void SetEnvironmentDefault(const char* name, const char* value) {
  if (std::getenv(name) == nullptr) _putenv_s(name, value);
}

}  // namespace quillmere
