// SPDX-License-Identifier: MIT
// Whether a job's destination still takes the rows of its source: asked at a pass, which it never
// fails. Each side is asked at most once a pass for its newest change, and only when that moved are
// columns read and compared. Internal to engine/.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/definitions_file.h"
#include "engine/engine_context.h"
#include "engine/job_view.h"
#include "oracle/H_oracle.h"

namespace quillmere {

// What is known from pass to pass, as long as the runner lives.
struct DefinitionMemory {
  bool loaded = false;
  // As in the file. The source's columns are here only while they are due.
  Definitions known;
  bool due = false;                       // the source's columns were read, and not compared yet
  std::optional<std::uint64_t> revision;  // of the job's tables, from which the rest is
  std::vector<std::string> owners, to_owners;
  std::string source_refused, destination_refused, file_refused;  // which was told
};

// Made for one pass, on its thread.
class DefinitionCheck {
 public:
  DefinitionCheck(EngineContext& context, std::size_t index, const JobView& view,
                  DefinitionMemory& memory);

  // Behind the capture: the session is left in the container that the job follows.
  void LookAtSource(OracleSession& source);
  // Before the first statement.
  void LookAtDestination(OracleSession& destination);
  // The same for a pass without a batch, on a session of its own, when there is something to
  // compare.
  void FinishWithoutBatch(const OracleSession::StopCondition& stop);

  // All that was found by this pass; null when it did not compare.
  const std::shared_ptr<const std::vector<DefinitionDifference>>& Found() const { return found_; }

 private:
  bool Begin();
  void TakeCarried();
  // The source's come from the whole dictionary: its user may not see the tables themselves.
  bool ReadColumns(OracleSession& session, Dictionary dictionary, TableColumns& columns);
  bool LoadSourceColumns();
  std::vector<DefinitionDifference> Compare(const TableColumns& there) const;
  void Keep(std::vector<DefinitionDifference> differences);
  void Tell(const std::vector<DefinitionDifference>& differences);
  void FileRefused(const std::string& reason);
  void Refused(const OracleSession& session, std::string& told);
  void Refused(const std::string& reason, std::string& told);

  EngineContext& context_;
  const std::size_t index_;
  const JobView& view_;
  DefinitionMemory& memory_;
  const SyncJob& job_;
  const JobFolder folder_;
  std::vector<CarriedTable> carried_;  // while columns are compared
  std::shared_ptr<const std::vector<DefinitionDifference>> found_;
};

}  // namespace quillmere
