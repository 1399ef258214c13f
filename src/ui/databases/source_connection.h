// SPDX-License-Identifier: MIT
// Connects, refreshes and disconnects registered data sources, with the dialogs that this takes.
// User-interface thread.
#pragma once

#include <QCoreApplication>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "ui/H_global.h"
#include "workspace/source_operations.h"

class QWidget;

namespace quillmere {

class SourceConnection {
  Q_DECLARE_TR_FUNCTIONS(SourceConnection)

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
  // Nothing: the operator gave up. why: what the stored log-on was refused with.
  std::optional<LogOn> LogIn(std::size_t index, const std::string& why);
  // log_on: for this time; null takes the stored one.
  void Refresh(std::size_t index, const LogOn* log_on);

  UiContext& context_;
  QWidget* const parent_;
};

}  // namespace quillmere
