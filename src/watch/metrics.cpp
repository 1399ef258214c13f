// SPDX-License-Identifier: MIT
#include "watch/metrics.h"

#include <functional>
#include <memory>

namespace quillmere {
namespace {

std::string LabelText(std::string_view value) {
  std::string text;
  for (const char c : value) {
    if (c == '\\' || c == '"') text += '\\';
    text += c == '\n' ? ' ' : c;
  }
  return text;
}

// One family: its head, then what each job adds.
class Family {
 public:
  Family(std::string& text, std::string_view name, std::string_view kind, std::string_view help)
      : text_(text), name_(std::string("quillmere_job_").append(name)) {
    text_.append("# HELP ").append(name_).append(" ").append(help);
    text_.append("\n# TYPE ").append(name_).append(" ").append(kind).append("\n");
  }
  void Add(const JobFigures& job, const std::string& value, std::string_view label = {},
           std::string_view label_value = {}) {
    text_.append(name_).append("{job=\"").append(LabelText(job.job)).append("\"");
    if (!label.empty()) text_.append(",").append(label).append("=\"").append(label_value) += '"';
    text_.append("} ").append(value).append("\n");
  }

 private:
  std::string& text_;
  const std::string name_;
};

std::string SecondsText(std::int64_t ms) {
  std::string rest = std::to_string(ms % 1000);
  return std::to_string(ms / 1000) + "." + std::string(3 - rest.size(), '0') + rest;
}

}  // namespace

std::string MetricsText(const std::vector<JobFigures>& jobs) {
  std::string text;
  const auto each =
      [&](std::string_view name, std::string_view kind, std::string_view help,
          const std::function<std::optional<std::int64_t>(const JobFigures&)>& value) {
        Family family(text, name, kind, help);
        for (const JobFigures& job : jobs) {
          if (const auto found = value(job)) family.Add(job, std::to_string(*found));
        }
      };
  Family health(text, "health", "gauge", "1 for how the job is, 0 for what it is not.");
  for (const JobFigures& job : jobs) {
    for (const Health one : kAllHealth) {
      health.Add(job, one == job.health ? "1" : "0", "health", HealthName(one));
    }
  }
  Family passes(text, "passes_total", "counter", "Passes since the program began.");
  for (const JobFigures& job : jobs) {
    constexpr std::string_view kResults[] = {"good", "failed", "interrupted"};
    for (std::size_t i = 0; i < 3; ++i) {
      passes.Add(job, std::to_string(job.passes[i]), "result", kResults[i]);
    }
  }
  Family took(text, "pass_seconds_total", "counter", "What the passes took.");
  for (const JobFigures& job : jobs) took.Add(job, SecondsText(job.took_ms));
  each("applied_total", "counter", "Changes applied since the job was started.",
       [](const JobFigures& job) { return std::optional(job.applied); });
  each("blocked_total", "counter", "Changes blocked since the job was started.",
       [](const JobFigures& job) { return std::optional(job.blocked); });
  each("waiting_changes", "gauge", "Changes of the batch at hand that are not applied yet.",
       [](const JobFigures& job) { return std::optional(job.waiting); });
  each("failed_tries", "gauge", "Passes that failed since the last good one.",
       [](const JobFigures& job) { return std::optional(job.tries); });
  each("last_good_pass_timestamp_seconds", "gauge", "End of the last good pass.",
       [](const JobFigures& job) { return job.last_good; });
  each("complete_until_timestamp_seconds", "gauge",
       "What was committed on the source before is on the destination.",
       [](const JobFigures& job) { return job.complete_until; });
  each("failing_since_timestamp_seconds", "gauge",
       "First pass that failed since the last good one.",
       [](const JobFigures& job) { return job.failing_since; });
  return text;
}

bool ReplaceQuickly(FileSystem& files, const std::filesystem::path& path, std::string_view text,
                    std::string& error) {
  std::filesystem::path temporary = path;
  temporary +=
      ".tmp-" + std::to_string(files.ProcessId()) + "-" + std::to_string(files.NextNumber());
  std::unique_ptr<OpenFile> file;
  FileStatus status = files.Open(temporary, OpenMode::New, FileSystem::kUsualMode, file);
  if (status) status = file->Append(text);
  if (status) status = file->Close();
  file.reset();
  if (status) status = files.Rename(temporary, path);
  if (status) return true;
  static_cast<void>(files.RemoveFile(temporary));
  error = "Can not write " + PathText(path) + ": " + status.reason;
  return false;
}

}  // namespace quillmere
