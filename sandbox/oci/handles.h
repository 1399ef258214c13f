// SPDX-License-Identifier: MIT
// The handles that clients hold. A handle's value is a number that is never given twice, not an
// address: a wrong, freed or null handle is always known as such. Calls may come on any thread;
// those with handles of one environment run one after another under its lock, those of different
// environments do not meet.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <typeinfo>
#include <unordered_map>
#include <vector>

#include "oracle/oci_abi.h"
#include "sandbox/session/session.h"

namespace quillmere::sandbox {

using HandleId = std::uintptr_t;

// What is behind a handle; lives until it, or its environment, is freed.
struct Handle {
  virtual ~Handle() = default;
};

struct ErrorHandle : Handle {
  static constexpr oci::ub4 kType = oci::kHtypeError;
  Status last;
};

struct ServerHandle : Handle {
  static constexpr oci::ub4 kType = oci::kHtypeServer;
  std::shared_ptr<Link> link;  // while attached
};

struct ServiceHandle : Handle {
  static constexpr oci::ub4 kType = oci::kHtypeSvcCtx;
  HandleId server = 0;
  HandleId session = 0;
};

struct SessionHandle : Handle {
  static constexpr oci::ub4 kType = oci::kHtypeSession;
  std::string user;
  std::string password;
  std::unique_ptr<Session> session;  // while begun; resetting it rolls back
  HandleId server = 0;               // that it was begun on
  // The service context it is used with: when that is freed and the session has ended, nobody
  // will free this handle any more, and the next allocation takes its place.
  HandleId service = 0;
};

struct DefineBuffer {
  void* value = nullptr;
  oci::sb4 size = 0;
  oci::sb2* indicator = nullptr;
  oci::ub2* length = nullptr;
  oci::ub2* code = nullptr;
};

// A statement: the text, the buffers that columns are fetched into, and the rows that have crossed
// the wire but were not asked for yet.
struct StatementHandle : Handle {
  static constexpr oci::ub4 kType = oci::kHtypeStmt;
  std::string text;
  oci::ub4 prefetch_rows = 1;
  oci::ub4 prefetch_memory = 0;
  std::vector<DefineBuffer> defines;  // by position, from 0; an empty one has no buffer
  HandleId session = 0;               // that the cursor belongs to
  std::shared_ptr<Cursor> cursor;
  std::deque<DisplayRow> ahead;
  bool at_end = false;
};

// One environment with all its handles. Everything in it is used under its lock.
class Environment {
 public:
  explicit Environment(HandleId id) : id_(id), next_(id) {}

  HandleId id() const { return id_; }
  // Null for a type that there is none of.
  void* Allocate(oci::ub4 type);
  // False when it is no such handle. Sessions that used it are rolled back.
  bool Free(HandleId id, oci::ub4 type);
  // Rolls back the sessions begun on a server or used with a service context.
  void EndSessionsOn(HandleId id);

  // Null unless it is live and of that type.
  template <typename T>
  T* Find(HandleId id) {
    const auto found = handles_.find(id);
    return found == handles_.end() ? nullptr : dynamic_cast<T*>(found->second.get());
  }
  template <typename T>
  T* Find(const void* handle) {
    return Find<T>(reinterpret_cast<HandleId>(handle));
  }

  std::mutex mutex;
  Status last;  // error, as its own error handle

 private:
  template <typename Visit>
  void EachSession(Visit visit) {
    for (auto& [id, handle] : handles_) {
      if (auto* session = dynamic_cast<SessionHandle*>(handle.get())) visit(id, session);
    }
  }

  const HandleId id_;
  HandleId next_;
  HandleId newest_service_ = 0;
  std::unordered_map<HandleId, std::unique_ptr<Handle>> handles_;
};

std::shared_ptr<Environment> AddEnvironment();
// The environment that a handle, or the environment's own, is or was of; null when there is none.
std::shared_ptr<Environment> EnvironmentOf(const void* handle);
// Takes all its handles along.
void RemoveEnvironment(HandleId id);

// How a call ends: its result, and the error that OCIErrorGet is to tell.
struct Outcome {
  // NOLINTBEGIN: they read like returns
  Outcome(oci::sword code) : result(code) {}
  Outcome(Status error)
      : result(error.ok() ? oci::kSuccess : oci::kError), status(std::move(error)) {}
  // NOLINTEND
  Outcome(oci::sword code, Status error) : result(code), status(std::move(error)) {}

  oci::sword result;
  Status status;
};

// Runs the body of an exported function under the lock of the error handle's environment: no
// exception may reach the client.
template <typename Body>
oci::sword Guarded(oci::OCIError* errhp, Body body) {
  try {
    const auto environment = EnvironmentOf(errhp);
    if (!environment) return oci::kInvalidHandle;
    const std::lock_guard lock(environment->mutex);
    auto* error = environment->Find<ErrorHandle>(errhp);
    if (error == nullptr) return oci::kInvalidHandle;
    Outcome outcome(oci::kSuccess);
    try {
      outcome = body(*environment);
    } catch (const std::bad_alloc&) {
      outcome = Ora(4030);
    } catch (const std::exception& failure) {
      outcome = Status(600, std::string("internal error: ") + failure.what());
    }
    if (!outcome.status.ok()) error->last = std::move(outcome.status);
    return outcome.result;
  } catch (const std::exception&) {
    return oci::kError;
  }
}

// Takes the rows of one exchange: those wanted, and those the prefetch takes along (fetch.cpp).
Status TakeRows(StatementHandle* statement, std::size_t wanted);

// Delivers `rows` rows into the buffers. Exchanges with the server happen only when too few rows
// are here (fetch.cpp).
Outcome FetchRows(Environment& environment, StatementHandle* statement, oci::ub4 rows);

}  // namespace quillmere::sandbox
