// SPDX-License-Identifier: MIT
// Where the part of an operation runs that waits for databases. The command line runs it in place;
// the window on a thread of its own, and lives on meanwhile.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "messages/message_log.h"
#include "schemaops/schema_operations.h"

namespace quillmere {

class DatabaseWork {
 public:
  // Hears how far it is, and takes its lines for the log; both are valid during the call.
  using Part = std::function<void(SchemaListener& listener, LogLines& log)>;

  virtual ~DatabaseWork() = default;

  // Runs the part to its end. False: the operator left before; then the part may still be running,
  // for as long as a connection attempt takes. So it works with nothing but values of its own and
  // what lives as long as the workspace: the client library and the settings.
  virtual bool Run(LogLines& log, Part part) = 0;

  // Whether all lines of the last part could be kept, as far as it did not hear that itself.
  virtual bool AllLogged() const { return true; }
};

// Runs `work`, which returns a value; nothing when the operator left before.
template <typename Work>
auto RunFor(DatabaseWork& place, LogLines& log, Work work) {
  using Result = std::invoke_result_t<Work&, SchemaListener&, LogLines&>;
  const auto result = std::make_shared<std::optional<Result>>();
  const bool ended = place.Run(
      log, [result, work = std::move(work)](SchemaListener& listener, LogLines& lines) mutable {
        *result = work(listener, lines);
      });
  return ended ? std::move(*result) : std::optional<Result>();
}

// In place: nobody watches, nobody cancels, unless a derived class does.
class InPlace : public DatabaseWork, public SchemaListener {
 public:
  bool Run(LogLines& log, Part part) override {
    part(*this, log);
    return true;
  }
  bool OnProgress(std::string_view, std::size_t, std::size_t) override { return true; }
  void OnResult(std::string_view, bool) override {}
  void OnDetail(std::string_view) override {}
};

}  // namespace quillmere
