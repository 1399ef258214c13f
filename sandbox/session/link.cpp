// SPDX-License-Identifier: MIT
#include "sandbox/session/link.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>

namespace quillmere::sandbox {

namespace {

long long NumberFromEnvironment(const char* name, long long usual) {
  const char* text = std::getenv(name);
  if (text == nullptr) return usual;
  long long value = 0;
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, value);
  return error == std::errc() && stop == end && value >= 0 && value <= 1000000000 ? value : usual;
}

}  // namespace

std::filesystem::path DatabaseDirectory() {
  const char* directory = std::getenv("QUILLMERE_SANDBOX_DIR");
  return directory != nullptr && *directory != '\0' ? directory : "./sandbox";
}

Status Link::Attach(const std::string& name, std::shared_ptr<Link>* out) {
  constexpr std::string_view kNew = "new:";  // which no name of a database can begin with
  const bool make = name.starts_with(kNew);
  DatabasePath path;
  if (!FindDatabasePath(DatabaseDirectory(), make ? name.substr(kNew.size()) : name, &path)) {
    return Ora(12154);
  }
  if (make) {
    if (Status status = CreateDatabase(path, "sandbox"); !status.ok()) return status;
  }
  return AttachFile(path, out);
}

Status Link::AttachFile(const DatabasePath& path, std::shared_ptr<Link>* out) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path.file, error)) return Ora(12154);
  std::shared_ptr<Link> link(new Link());
  link->path_ = path;
  if (Status status = OpenTransaction::Open(path.open, &link->open_); !status.ok()) return status;
  link->latency_ =
      std::chrono::microseconds(NumberFromEnvironment("QUILLMERE_SANDBOX_LATENCY_US", 0));
  link->lock_wait_ =
      std::chrono::milliseconds(NumberFromEnvironment("QUILLMERE_SANDBOX_LOCK_WAIT_MS", 60000));
  *out = std::move(link);
  (*out)->RoundTrip();
  return {};
}

void Link::RoundTrip() const {
  if (latency_.count() > 0) std::this_thread::sleep_for(latency_);
}

}  // namespace quillmere::sandbox
