// SPDX-License-Identifier: MIT
// The client library behind all sessions: found and loaded at run time, or a table that is handed
// in. Owned by the workspace; must outlive every session. Never unloaded: a client library keeps
// threads and memory of its own.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "foundation/mutex.h"
#include "oracle/oci_abi.h"

namespace quillmere {

class OciLibrary {
 public:
  struct Environment {
    oci::OCIEnv* handle = nullptr;  // may be set although it is not ready: its errors can be read
    bool ready = false;
  };

  // choice: "" or "oracle" tries the platform's usual names, "sandbox" the sandbox library in
  // program_folder or in the private library folder that belongs to it, anything else is a path. A
  // library that cannot be loaded is no failure here: the first connect reports LoadError(). Sets
  // the NLS defaults (nls_defaults.h) before loading, so it is to be constructed before other
  // threads start.
  OciLibrary(std::string_view choice, const std::filesystem::path& program_folder);

  // Uses the given table, all 13 pointers set.
  explicit OciLibrary(const OciApi& api);

  OciLibrary(const OciLibrary&) = delete;
  OciLibrary& operator=(const OciLibrary&) = delete;

  bool Loaded() const { return loaded_; }
  const OciApi& Api() const { return api_; }

  // The file in use, or why there is none: which names were tried and what to install.
  const std::string& Path() const { return path_; }
  const std::string& LoadError() const { return load_error_; }

  // The calling thread's OCI environment: made at its first call, used by all later ones and never
  // freed, so that sessions can come and go without the process growing. One that could not be made
  // ready is tried again at the next call. Any thread.
  Environment ThreadEnvironment();

 private:
  OciApi api_;
  bool loaded_ = false;
  std::string path_;
  std::string load_error_;
  Mutex mutex_;
  std::map<std::thread::id, Environment> environments_ GUARDED_BY(mutex_);
};

}  // namespace quillmere
