// SPDX-License-Identifier: MIT
#include "sandbox/oci/handles.h"

namespace quillmere::sandbox {

namespace {

// An environment's number stands above those of its handles, which come in steps of sixteen.
constexpr unsigned kEnvironmentShift = 44;
constexpr HandleId kStep = 16;

struct Registry {
  std::mutex mutex;
  HandleId next = 1;
  std::unordered_map<HandleId, std::shared_ptr<Environment>> environments;  // by number
};

// The client interface has no other place to keep them. Never destroyed: threads of the client may
// still call while the process ends.
Registry& TheRegistry() {
  static auto* registry = new Registry();
  return *registry;
}

std::unique_ptr<Handle> Make(oci::ub4 type) {
  if (type == ErrorHandle::kType) return std::make_unique<ErrorHandle>();
  if (type == ServerHandle::kType) return std::make_unique<ServerHandle>();
  if (type == ServiceHandle::kType) return std::make_unique<ServiceHandle>();
  if (type == SessionHandle::kType) return std::make_unique<SessionHandle>();
  if (type == StatementHandle::kType) return std::make_unique<StatementHandle>();
  return nullptr;
}

}  // namespace

std::shared_ptr<Environment> AddEnvironment() {
  Registry& registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  const HandleId number = registry.next++;
  auto environment = std::make_shared<Environment>(number << kEnvironmentShift);
  registry.environments.emplace(number, environment);
  return environment;
}

std::shared_ptr<Environment> EnvironmentOf(const void* handle) {
  Registry& registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  const auto found =
      registry.environments.find(reinterpret_cast<HandleId>(handle) >> kEnvironmentShift);
  return found == registry.environments.end() ? nullptr : found->second;
}

void RemoveEnvironment(HandleId id) {
  Registry& registry = TheRegistry();
  const std::lock_guard lock(registry.mutex);
  registry.environments.erase(id >> kEnvironmentShift);
}

void* Environment::Allocate(oci::ub4 type) {
  std::unique_ptr<Handle> handle = Make(type);
  if (!handle) return nullptr;
  next_ += kStep;
  if (type == ServiceHandle::kType) newest_service_ = next_;
  if (auto* session = dynamic_cast<SessionHandle*>(handle.get())) {
    std::vector<HandleId> abandoned;
    EachSession([&](HandleId id, SessionHandle* other) {
      const bool used = other->session || other->service == 0 || handles_.contains(other->service);
      if (!used) abandoned.push_back(id);
    });
    for (const HandleId id : abandoned) handles_.erase(id);
    session->service = newest_service_;
  }
  handles_.emplace(next_, std::move(handle));
  return reinterpret_cast<void*>(next_);
}

void Environment::EndSessionsOn(HandleId id) {
  EachSession([id](HandleId, SessionHandle* session) {
    if (session->server == id || session->service == id) session->session.reset();
  });
}

bool Environment::Free(HandleId id, oci::ub4 type) {
  const auto found = handles_.find(id);
  if (found == handles_.end()) return false;
  const std::unique_ptr<Handle> made = Make(type);
  if (!made) return false;
  const Handle& asked_for = *made;
  const Handle& there = *found->second;
  if (typeid(asked_for) != typeid(there)) return false;
  EndSessionsOn(id);
  handles_.erase(found);
  return true;
}

}  // namespace quillmere::sandbox
