// SPDX-License-Identifier: MIT
#include "watch/health_json.h"

#include <optional>

#include "foundation/clock.h"
#include "watch/advice.h"
#include "watch/health_text.h"
#include "watch/refused_row.h"

namespace quillmere {
namespace {

using Json = nlohmann::ordered_json;
using Age = std::optional<std::chrono::seconds>;

Json Number(const Age& age) {
  return age ? Json(age->count()) : Json(nullptr);
}

Json ProblemObject(const JobProblem& problem) {
  const PassProblem& what = problem.what;
  const bool statement = what.where == PassProblem::Where::Statement;
  return {{"where", statement ? "statement" : PlaceText(what)},
          {"ora", problem.ora},
          {"operation", OperationOf(what.statement)},
          {"table", TableText(what)},
          {"row", RowOf(what.statement)},
          {"number", what.number},
          {"of", what.of},
          {"error", what.error},
          {"statement", what.statement},
          {"first", FormatTimeStamp(problem.first)},
          {"last", FormatTimeStamp(problem.last)},
          {"tries", problem.tries},
          {"advice", AdviceFor(problem)}};
}

}  // namespace

void AddHealth(Json& object, const WatchedJob& job) {
  object["health"] = HealthName(job.health);
  object["last_good_pass"] = Number(job.since_good);
  object["behind"] = Number(job.behind);
  object["next_pass"] = Number(job.next_pass);
  object["waiting"] = job.waiting;
  object["time_to_loss"] = Number(job.time_to_loss);
  object["redo"] =
      job.room && job.room->oldest_scn != 0
          ? Json{{"needed_scn", job.room->needed_scn}, {"oldest_scn", job.room->oldest_scn}}
          : Json(nullptr);
  Json definitions = Json::array();
  if (job.definitions) {
    for (const DefinitionDifference& one : *job.definitions) {
      definitions.push_back({{"owner", one.owner},
                             {"table", one.table},
                             {"column", one.column},
                             {"what", one.what},
                             {"cure", one.cure}});
    }
  }
  object["definitions"] = std::move(definitions);
  object["problem"] = job.problem ? ProblemObject(*job.problem) : Json(nullptr);
}

std::string JsonText(const Json& value) {
  return value.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string HealthEvent(std::string_view folder, std::string_view name, LocalTime time, Health was,
                        const WatchedJob& job) {
  Json object = {{"folder", folder},
                 {"time", FormatTimeStamp(time)},
                 {"name", name},
                 {"was", HealthName(was)},
                 {"held", job.held}};
  AddHealth(object, job);
  return JsonText(object);
}

}  // namespace quillmere
