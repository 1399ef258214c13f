#include "sandbox/oci/handles.h"

#include <algorithm>

namespace quillmere::sandbox {

HandlePtr HandleRegistry::Insert(oci::ub4 type, HandleId env) {
  auto handle = std::make_shared<Handle>();
  handle->id = next_;
  next_ += 16;
  handle->type = type;
  handle->env = env == 0 ? handle->id : env;
  handles_.emplace(handle->id, handle);
  return handle;
}

HandlePtr HandleRegistry::AddEnvironment() {
  const std::lock_guard lock(mutex_);
  HandlePtr handle = Insert(oci::kHtypeEnv, 0);
  environments_.try_emplace(handle->id);
  return handle;
}

HandlePtr HandleRegistry::Add(const void* parent, oci::ub4 type) {
  const std::lock_guard lock(mutex_);
  const auto found = handles_.find(reinterpret_cast<HandleId>(parent));
  if (found == handles_.end() || found->second->type != oci::kHtypeEnv) return nullptr;
  const HandleId env = found->first;
  if (type == oci::kHtypeSession) RecycleSessions(env);
  HandlePtr handle = Insert(type, env);
  Environment& environment = environments_[env];
  if (type == oci::kHtypeSvcCtx) environment.newest_svcctx = handle->id;
  if (type == oci::kHtypeSession) {
    handle->session.svcctx = environment.newest_svcctx;
    environment.sessions.push_back(handle->id);
  }
  return handle;
}

// Lets go of session handles whose session is over and whose service context is gone. Each
// allocation looks at all that are live, which is a handful, because each one clears up.
void HandleRegistry::RecycleSessions(HandleId env) {
  std::erase_if(environments_[env].sessions, [this](HandleId id) {
    const auto found = handles_.find(id);
    if (found == handles_.end()) return true;
    {
      const std::lock_guard lock(found->second->mutex);
      const SessionState& session = found->second->session;
      if (session.slot || session.svcctx == 0 || handles_.contains(session.svcctx)) return false;
    }
    handles_.erase(found);
    return true;
  });
}

std::vector<HandlePtr> HandleRegistry::SessionsOf(HandleId env) {
  const std::lock_guard lock(mutex_);
  std::vector<HandlePtr> sessions;
  const auto environment = environments_.find(env);
  if (environment == environments_.end()) return sessions;
  for (const HandleId id : environment->second.sessions) {
    if (const auto found = handles_.find(id); found != handles_.end()) {
      sessions.push_back(found->second);
    }
  }
  return sessions;
}

HandlePtr HandleRegistry::Find(HandleId id, oci::ub4 type) {
  const std::lock_guard lock(mutex_);
  const auto found = handles_.find(id);
  return found == handles_.end() || found->second->type != type ? nullptr : found->second;
}

HandlePtr HandleRegistry::Find(const void* handle, oci::ub4 type) {
  return Find(reinterpret_cast<HandleId>(handle), type);
}

std::vector<HandlePtr> HandleRegistry::Remove(const void* handle, oci::ub4 type) {
  const std::lock_guard lock(mutex_);
  std::vector<HandlePtr> removed;
  const auto found = handles_.find(reinterpret_cast<HandleId>(handle));
  if (found == handles_.end() || found->second->type != type) return removed;
  const HandleId id = found->first;
  removed.push_back(std::move(found->second));
  handles_.erase(found);
  if (type == oci::kHtypeEnv) {
    std::erase_if(handles_, [&](auto& entry) {
      if (entry.second->env != id) return false;
      removed.push_back(std::move(entry.second));
      return true;
    });
    environments_.erase(id);
  }
  return removed;
}

}  // namespace quillmere::sandbox
