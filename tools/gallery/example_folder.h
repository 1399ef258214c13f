// SPDX-License-Identifier: MIT
// A working folder with believable contents, the same each time: three sandbox databases, the data
// sources and jobs between them, and a day's messages.
#pragma once

#include <QStringList>
#include <filesystem>
#include <memory>
#include <string>

#include "workspace/workspace.h"

namespace quillmere {

// A clock that stands still until it is turned.
class StandingClock final : public Clock {
 public:
  LocalTime Now() const override { return now_; }
  SteadyTime Steady() const override { return SteadyTime{now_.ms}; }
  void Turn(std::int64_t seconds) { now_.ms += seconds * 1000; }

 private:
  LocalTime now_{1'772'442'000'000};  // 2026-03-02 09:00:00
};

class ExampleFolder {
 public:
  // programs: where quillmere-sandbox and the sandbox library stand.
  explicit ExampleFolder(std::filesystem::path programs);
  ~ExampleFolder();  // removes the folder
  ExampleFolder(const ExampleFolder&) = delete;
  ExampleFolder& operator=(const ExampleFolder&) = delete;

  // False: the reason. Once.
  bool Make(std::string& reason);

  Workspace& Opened() { return *workspace_; }

  // A folder as a newcomer has it, in the example's. To be closed before the example goes.
  std::unique_ptr<Workspace> OpenEmpty(std::string& reason) const;

  // A folder with one job, which a refused row holds up; likewise. Once.
  std::unique_ptr<Workspace> OpenStuck(std::string& reason);

 private:
  std::unique_ptr<Workspace> Open(const std::filesystem::path& folder, std::string& reason) const;
  bool MakeDatabase(const std::string& name, const std::string& script, std::string& reason);
  bool Enter(const std::string& database, const std::string& script, std::string& reason);
  bool UseTool(const QStringList& arguments, std::string& reason);
  bool Register(std::string& reason);
  bool MakeJobs(std::string& reason);
  void SetCounts();
  void SetStates();
  void WriteMessages();

  const std::filesystem::path programs_;
  const std::filesystem::path folder_;
  StandingClock clock_;
  std::unique_ptr<Workspace> workspace_;
};

}  // namespace quillmere
