// SPDX-License-Identifier: MIT
#include <dlfcn.h>

#include <cstdlib>

#include "oracle/platform.h"

namespace quillmere {

void* OpenLibrary(const std::string& name, std::string& reason) {
  void* library = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    const char* text = dlerror();
    reason = text != nullptr ? text : "cannot be loaded";
  }
  return library;
}

void* FindSymbol(void* library, const char* name) {
  return dlsym(library, name);
}

std::vector<std::string> OracleClientNames() {
  // An Instant Client may lack the bare name, hence the numbered ones.
  static const char* const kNames[] = {
      "libclntsh.so",      "libclntsh.so.19.1", "libclntsh.so.18.1", "libclntsh.so.12.1",
      "libclntsh.so.11.1", "libclntsh.so.20.1", "libclntsh.so.21.1"};
  std::vector<std::string> names(std::begin(kNames), std::end(kNames));
  if (const char* home = std::getenv("ORACLE_HOME"); home != nullptr && *home != '\0') {
    for (const char* name : kNames) names.push_back(std::string(home) + "/lib/" + name);
  }
  return names;
}

std::string SandboxLibraryName() {
  return "libquillmere_sandbox.so";
}

std::string ClientInstallHint() {
  return "Install the 64-bit Oracle Instant Client (Basic) and put its folder on LD_LIBRARY_PATH "
         "or "
         "into /etc/ld.so.conf.d, or name the library with --client PATH; --client sandbox gives a "
         "database to try without Oracle";
}

void SetEnvironmentDefault(const char* name, const char* value) {
  setenv(name, value, 0);
}

}  // namespace quillmere
