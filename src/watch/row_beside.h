// SPDX-License-Identifier: MIT
// The destination's row beside the change that was refused: what it has against what the change
// expects and gives.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "oracle/H_oracle.h"
#include "watch/problem_file.h"

namespace quillmere {

struct RowBeside {
  std::string why_not;           // there is nothing to be shown; else empty
  std::vector<std::string> key;  // the columns that the row was looked for with
  std::size_t rows = 0;          // that the destination has of it; the first one is below
  struct Column {
    std::string name;
    std::optional<std::string> there, before, after;  // nothing: NULL, or not told
    bool expected = false;                            // before is what the change expects
    bool given = false;                               // after is what it gives
    bool differs = false;                             // what is there is not what is expected
  };
  std::vector<Column> columns;  // that the statement names
};

// Why there is nothing, or how many rows were found with which key.
std::string RowSummary(const RowBeside& row);

// Asks the destination, which is connected, and changes nothing. On the thread of the session.
RowBeside LookAtRow(OracleSession& destination, const JobProblem& problem);

}  // namespace quillmere
