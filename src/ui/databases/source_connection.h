// SPDX-License-Identifier: MIT
// Connects, refreshes and disconnects registered data sources, with the dialogs that this takes.
// User-interface thread.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "ui/H_global.h"
#include "workspace/source_operations.h"

class QWidget;

namespace quillmere {

class SourceConnection {
 public:
  // Both must outlive it. parent: of the dialogs.
  SourceConnection(UiContext& context, QWidget* parent) : context_(context), parent_(parent) {}

  // Tries the stored log-on and asks for another one when it fails. logged_on: called once the data
  // source is marked connected, before its catalogue is read.
  void Connect(std::size_t index, const std::function<void()>& logged_on);

  // Reads the catalogue into the registry.
  void Refresh(std::size_t index) { Refresh(index, nullptr); }

  // Marks it so; its lists stay.
  void Disconnect(std::size_t index);

 private:
  // False: the operator gave up. session: stays empty where the log-on was stored.
  bool LogIn(std::size_t index, std::unique_ptr<OracleSession>& session);
  // session: the connection to read on; null takes the stored log-on.
  void Refresh(std::size_t index, OracleSession* session);

  UiContext& context_;
  QWidget* const parent_;
};

}  // namespace quillmere
