// SPDX-License-Identifier: MIT
// What `run --json` prints: one JSON object a line for each thing that happens.
#pragma once

#include <cstdint>
#include <string>

#include "cli/message_queue.h"
#include "workspace/workspace.h"

namespace quillmere::cli {

struct ProgressFigures {
  std::int64_t captured, applied, blocked, remaining, rate;
};

// With the line feed. "message" with level and text, or "pass" with what it was and how the job is
// now.
std::string EventText(const Workspace& workspace, const MessageQueue::Message& message);
std::string ProgressEvent(const Workspace& workspace, const ProgressFigures& figures);

}  // namespace quillmere::cli
