// SPDX-License-Identifier: MIT
// The modal dialog of long work on the user-interface thread: what is being done, how far it is,
// and Cancel, which takes effect between two items. What was done before a Cancel stays done.
#pragma once

#include <QElapsedTimer>
#include <memory>
#include <string>

#include "schemaops/schema_operations.h"

class QWidget;

namespace quillmere {

// On screen, painted, from its construction until it is destroyed. The window goes on painting at
// each step it hears of; until the next step it cannot. OnProgress answers false from the first
// Cancel on. Not from within another one's step. parent must outlive it.
class ProgressDialog final : public SchemaListener {
 public:
  ProgressDialog(QWidget* parent, const QString& title, std::string_view first_step);
  ~ProgressDialog() override;
  ProgressDialog(const ProgressDialog&) = delete;
  ProgressDialog& operator=(const ProgressDialog&) = delete;

  bool OnProgress(std::string_view what, std::size_t done, std::size_t total) override;
  void OnResult(std::string_view line, bool failed) override;
  void OnDetail(std::string_view line) override;

  // For work that cannot be cancelled, such as one connection attempt.
  void HideCancel();

 private:
  class Window;
  void Serve();

  std::unique_ptr<Window> window_;
  QElapsedTimer served_;  // since events were last served
};

}  // namespace quillmere
