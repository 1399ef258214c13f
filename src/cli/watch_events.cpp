// SPDX-License-Identifier: MIT
#include "cli/watch_events.h"

#include "watch/health_json.h"

namespace quillmere::cli {
namespace {

using Json = nlohmann::ordered_json;

Json Event(const Workspace& workspace, std::string_view event) {
  return {{"time", FormatTimeStamp(workspace.TimeSource().Now())}, {"event", event}};
}

std::string Line(const Json& event) {
  return event.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string_view OutcomeName(PassReport::Outcome outcome) {
  switch (outcome) {
    case PassReport::Outcome::WorkedOff:
      return "good";
    case PassReport::Outcome::Interrupted:
      return "interrupted";
    case PassReport::Outcome::Failed:
      return "failed";
    case PassReport::Outcome::Later:
      break;
  }
  return "later";
}

}  // namespace

std::string EventText(const Workspace& workspace, const MessageQueue::Message& message) {
  Json event = Event(workspace, message.pass ? "pass" : "message");
  const bool of_job = message.job < workspace.Jobs().Count();
  if (of_job) event["job"] = NameOf(workspace.Jobs().At(message.job));
  if (!message.pass) {
    event["level"] = message.error ? "error" : "information";
    event["text"] = message.text;
    return Line(event);
  }
  const PassReport& pass = *message.pass;
  event["outcome"] = OutcomeName(pass.outcome);
  event["captured"] = pass.captured;
  event["applied"] = pass.applied;
  event["blocked"] = pass.blocked;
  event["milliseconds"] = pass.took.count();
  event["reached_scn"] = pass.reached_scn;
  AddHealth(event, workspace.Watch().Look(message.job));
  return Line(event);
}

std::string ProgressEvent(const Workspace& workspace, const ProgressFigures& figures) {
  Json event = Event(workspace, "progress");
  event["captured"] = figures.captured;
  event["applied"] = figures.applied;
  event["blocked"] = figures.blocked;
  event["remaining"] = figures.remaining;
  event["rate"] = figures.rate;
  return Line(event);
}

}  // namespace quillmere::cli
