// Decides whether a captured statement belongs to a job and rewrites its owner for the destination.
#pragma once

#include <string>
#include <string_view>

#include "jobs/sync_job.h"

namespace quillmere {

enum class Verb { Insert, Delete, Update };

// What a statement says of itself. Views into the statement. Owner or table is empty when it cannot
// be parsed.
struct ParsedStatement {
  std::string_view verb_text;
  Verb verb = Verb::Update;
  std::string_view owner, table;  // without their double quotes
  std::string_view rest;          // from where parsing stopped
};

ParsedStatement ParseStatement(std::string_view statement);

struct Rewritten {
  bool accepted = false;
  bool excluded = false;  // blocked because the job excludes the table
  ParsedStatement parsed;
  JobTable* table = nullptr;  // whose counters change; null when the job does not list it
};

// Thread: the job's worker. Holds the job's configuration lock for the look-ups. to_execute is
// overwritten when the statement is accepted; its memory is used again from call to call.
Rewritten RewriteStatement(SyncJob& job, std::string_view statement, std::string& to_execute);

// "INSERT INTO", "DELETE FROM" or the verb in upper case.
std::string OperationName(const ParsedStatement& parsed);

}  // namespace quillmere
