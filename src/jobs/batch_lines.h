// SPDX-License-Identifier: MIT
// The lines of a batch file that are no statements: of a batch of whole transactions the first one,
// and one before each transaction. All begin with "-- ", which no statement of such a batch does.
// Pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "jobs/pending_batch.h"

namespace quillmere {

inline constexpr std::string_view kBatchLine = "-- ";

// "-- 1000 2000 17": the range it was taken from, from and upto, and how many entries follow.
struct BatchHeader {
  PendingBatch::Range range;
  std::uint64_t entries = 0;
};
std::string BatchHeaderLine(const BatchHeader& header);
std::optional<BatchHeader> ReadBatchHeader(std::string_view line);

// "-- 4.12.9153 1517 2026-01-31 23:59:07": XID, commit SCN and the time of the commit by the
// source's clock; without the time when it is not known.
std::string TransactionLine(const PendingBatch::Transaction& transaction);
std::optional<PendingBatch::Transaction> ReadTransactionLine(std::string_view line);

// "4.12.9153" into the transaction's name. False: it is none.
bool ReadXid(std::string_view text, PendingBatch::Transaction& transaction);

// Seconds since 1970 of "2026-01-31 23:59:07"; 0 for anything else.
std::int64_t ReadCommitTime(std::string_view text);
std::string CommitTime(std::int64_t second);

}  // namespace quillmere
