// SPDX-License-Identifier: MIT
// What becomes of a captured statement: whether it belongs to a job, decided by its owner and table
// alone, and then its form for the destination.
#pragma once

#include <string>
#include <string_view>

#include "jobs/sync_job.h"

namespace quillmere {

enum class Verb { Insert, Delete, Update };

// What a statement says of itself. Views into the statement, which must outlive them. Owner or
// table is empty when it cannot be parsed. Any thread.
struct ParsedStatement {
  std::string_view verb_text;
  Verb verb = Verb::Update;
  std::string_view owner, table;  // without their double quotes
  bool owner_quoted = false, table_quoted = false;
  std::string_view rest;  // from where parsing stopped
};

ParsedStatement ParseStatement(std::string_view statement);

enum class Decision {
  Accepted,
  Blocked,   // not of this job, or not to be told whose it is
  Excluded,  // blocked because the job excludes the table
};

struct Verdict {
  Decision decision = Decision::Blocked;
  JobTable* table = nullptr;  // whose counters change; null when the job does not list it
  std::string_view owner;     // of an accepted statement, on the destination
};

// Takes the job's configuration lock. Worker's thread: what the verdict points to stays where it is
// while the job runs.
Verdict Decide(SyncJob& job, const ParsedStatement& parsed);

// False for a name that means the same without quotes: capital letters, digits, _ $ and #, a letter
// first. Other alphabets are taken for letters that need them.
bool NeedsQuotes(std::string_view name);

// A name as it is written by hand: with quotes where it needs them.
std::string SqlName(std::string_view name);
std::string SqlName(std::string_view owner, std::string_view table);

enum class NameQuotes {
  Dropped,
  Kept,  // where they were and the name needs them; an owner that an operator chose stays as typed
};

// The statement for the destination, where the table belongs to that owner. Overwrites to_execute,
// whose memory is used again from call to call.
void Rewrite(const ParsedStatement& parsed, std::string_view owner, NameQuotes quotes,
             std::string& to_execute);

// "INSERT INTO", "DELETE FROM" or the verb in upper case.
std::string OperationName(const ParsedStatement& parsed);

}  // namespace quillmere
