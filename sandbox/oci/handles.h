// The handles that clients hold. A handle's value is a number that is never given twice, not an
// address: a wrong, freed or null handle is always known as such. Every call may come on any
// thread; the registry's lock guards the table, each session's lock what runs on it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "oracle/oci_abi.h"
#include "sandbox/oci/statement_handle.h"
#include "sandbox/session/session.h"

namespace quillmere::sandbox {

using HandleId = std::uintptr_t;

// A log-on and the lock that everything running on it holds.
struct SessionSlot {
  std::mutex mutex;
  std::unique_ptr<Session> session;
};

struct SvcCtxState {
  HandleId server = 0;
  HandleId session = 0;
};

struct SessionState {
  std::string user;
  std::string password;
  std::shared_ptr<SessionSlot> slot;  // while begun
  HandleId server = 0;                // that it was begun on
  // The service context it is used with: when that is freed and the session has ended, nobody
  // will free this handle any more, and the next allocation takes its place.
  HandleId svcctx = 0;
};

struct Handle {
  HandleId id = 0;
  oci::ub4 type = 0;
  HandleId env = 0;
  std::mutex mutex;            // guards the fields below
  Status error;                // the last one, of environment and error handles
  std::shared_ptr<Link> link;  // of an attached server handle
  SvcCtxState svcctx;
  SessionState session;
  StatementState statement;
};
using HandlePtr = std::shared_ptr<Handle>;

class HandleRegistry {
 public:
  HandlePtr AddEnvironment();
  // Null when `parent` is no live handle.
  HandlePtr Add(const void* parent, oci::ub4 type);
  // Null unless it is live and of that type.
  HandlePtr Find(const void* handle, oci::ub4 type);
  HandlePtr Find(HandleId id, oci::ub4 type);
  std::vector<HandlePtr> SessionsOf(HandleId env);
  // Takes it out; environments take all their handles along. Empty when it is no such handle.
  std::vector<HandlePtr> Remove(const void* handle, oci::ub4 type);

 private:
  // Guarded by mutex_ like everything here.
  HandlePtr Insert(oci::ub4 type, HandleId env);
  void RecycleSessions(HandleId env);

  struct Environment {
    std::vector<HandleId> sessions;  // live session handles
    HandleId newest_svcctx = 0;
  };

  std::mutex mutex_;
  HandleId next_ = 0x1000;
  std::unordered_map<HandleId, HandlePtr> handles_;
  std::unordered_map<HandleId, Environment> environments_;
};

}  // namespace quillmere::sandbox
