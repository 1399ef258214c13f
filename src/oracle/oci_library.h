// SPDX-License-Identifier: MIT
// The client library behind all sessions: found and loaded at run time, or a table that is handed
// in. Owned by the workspace; must outlive every session. Never unloaded: a client library keeps
// threads and memory of its own.
#pragma once

#include <atomic>
#include <deque>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "foundation/mutex.h"
#include "oracle/oci_abi.h"

namespace quillmere {

class OciLibrary {
 public:
  struct Environment {
    oci::OCIEnv* handle = nullptr;  // may be set although it is not ready: its errors can be read
    bool ready = false;
    const OciApi* api = nullptr;  // whose it is; lives as long as the library
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

  // Takes another library for the sessions that are made from now on; those that are there go on
  // with the one they have. False, with the reason: nothing has changed. One thread at a time.
  bool Replace(std::string_view choice, const std::filesystem::path& program_folder,
               std::string& reason);
  // Back to the one before the last that was taken so.
  void TakeBack();

  bool Loaded() const { return Now().loaded; }
  const OciApi& Api() const { return Now().api; }

  // The file in use, or why there is none: which names were tried and what to install.
  const std::string& Path() const { return Now().path; }
  const std::string& LoadError() const { return Now().load_error; }

  // The calling thread's OCI environment: made at its first call, used by all later ones and never
  // freed, so that sessions can come and go without the process growing. One that could not be made
  // ready is tried again at the next call. Any thread.
  Environment ThreadEnvironment();

 private:
  struct Client {
    OciApi api;
    bool loaded = false;
    std::string path;
    std::string load_error;
  };

  static void Load(Client& client, std::string_view choice,
                   const std::filesystem::path& program_folder);
  const Client& Now() const { return *now_; }

  std::deque<Client> clients_;  // none ever goes: sessions may have it
  std::atomic<const Client*> now_;
  Mutex mutex_;
  std::map<std::pair<std::thread::id, const Client*>, Environment> environments_ GUARDED_BY(mutex_);
};

// The sandbox library that belongs to the program in that folder; empty when it is not installed.
std::filesystem::path FindSandboxLibrary(const std::filesystem::path& program_folder);

}  // namespace quillmere
