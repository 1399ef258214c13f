// SPDX-License-Identifier: MIT
// A session's LogMiner: the logs added, the range started, and the functions that
// v$logmnr_contents is made of, which write the redo as it is read, however long it is.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "sandbox/store/redo_logs.h"
#include "sandbox/store/sqlite.h"
#include "sandbox/values/datum.h"

namespace quillmere::sandbox {

// Used by the thread that holds the session. A call that fails changes nothing.
class LogMiner {
 public:
  // `database`: the database's file, from which the names of logs are made.
  explicit LogMiner(std::string database) : database_(std::move(database)) {}

  // `fresh` begins a new list of logs. ORA-01284 for a file that is no log of this database, 01289
  // for a log that is in the list, also by another member's name.
  Status AddFile(SqliteConnection* connection, const std::string& file, bool fresh);
  // ORA-01291 when no log of the list holds `start_scn`, or one between is missing.
  Status Start(std::int64_t start_scn, std::int64_t end_scn);
  Status End();

  bool started() const { return started_; }
  std::int64_t start_scn() const { return start_scn_; }
  std::int64_t end_scn() const { return end_scn_; }

 private:
  std::string database_;
  std::map<std::int64_t, RedoLog> logs_;  // by sequence
  bool started_ = false;
  std::int64_t start_scn_ = 0;
  std::int64_t end_scn_ = 0;
};

// Makes qm_pieces and qm_piece known to a connection. Both take a record of the redo, that is its
// row in qm_redo and that of its qm_shape: the first gives a JSON list with an element for each
// piece of its statements: the operation's code plus 16 times the statement's number, negative when
// the statement goes on in the next piece; the second, with a piece's number behind the record,
// gives its text. `context`, whose formats dates are written in, must outlive the connection.
Status RegisterRedoFunctions(SqliteConnection* connection, const EvalContext* context);

}  // namespace quillmere::sandbox
