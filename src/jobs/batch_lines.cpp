// SPDX-License-Identifier: MIT
#include "jobs/batch_lines.h"

#include <charconv>
#include <chrono>
#include <cstdio>

namespace quillmere {
namespace {

// Takes a whole number off the front of the text, and the separator behind it.
template <typename Number>
bool TakeNumber(std::string_view& text, char separator, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc()) return false;
  if (stop != end && *stop != separator) return false;
  text.remove_prefix(static_cast<std::size_t>(stop - text.data()) + (stop == end ? 0 : 1));
  return true;
}

bool TakeBeginning(std::string_view& line) {
  if (!line.starts_with(kBatchLine)) return false;
  line.remove_prefix(kBatchLine.size());
  return true;
}

}  // namespace

std::string BatchHeaderLine(const BatchHeader& header) {
  return std::string(kBatchLine) + std::to_string(header.range.from) + " " +
         std::to_string(header.range.upto) + " " + std::to_string(header.entries);
}

std::optional<BatchHeader> ReadBatchHeader(std::string_view line) {
  BatchHeader header;
  const bool good = TakeBeginning(line) && TakeNumber(line, ' ', header.range.from) &&
                    TakeNumber(line, ' ', header.range.upto) &&
                    TakeNumber(line, ' ', header.entries) && line.empty();
  return good ? std::optional(header) : std::nullopt;
}

std::string TransactionLine(const PendingBatch::Transaction& transaction) {
  std::string line(kBatchLine);
  line += transaction.Xid() + " " + std::to_string(transaction.commit_scn);
  if (transaction.commit_second != 0) line += " " + CommitTime(transaction.commit_second);
  return line;
}

std::optional<PendingBatch::Transaction> ReadTransactionLine(std::string_view line) {
  PendingBatch::Transaction transaction;
  if (!TakeBeginning(line)) return std::nullopt;
  const std::size_t xid = line.find(' ');
  if (xid == std::string_view::npos || !ReadXid(line.substr(0, xid), transaction)) {
    return std::nullopt;
  }
  line.remove_prefix(xid + 1);
  if (!TakeNumber(line, ' ', transaction.commit_scn)) return std::nullopt;
  transaction.commit_second = ReadCommitTime(line);
  return transaction;
}

bool ReadXid(std::string_view text, PendingBatch::Transaction& transaction) {
  return TakeNumber(text, '.', transaction.segment) && TakeNumber(text, '.', transaction.slot) &&
         TakeNumber(text, '.', transaction.sequence) && text.empty();
}

std::int64_t ReadCommitTime(std::string_view text) {
  using namespace std::chrono;
  int years = 0;
  unsigned months = 0;
  unsigned day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  if (!TakeNumber(text, '-', years) || !TakeNumber(text, '-', months) ||
      !TakeNumber(text, ' ', day) || !TakeNumber(text, ':', hour) ||
      !TakeNumber(text, ':', minute) || !TakeNumber(text, ' ', second)) {
    return 0;
  }
  const year_month_day date = year{years} / month{months} / std::chrono::day{day};
  if (!date.ok()) return 0;
  const auto moment = sys_days{date} + hours{hour} + minutes{minute} + seconds{second};
  return duration_cast<seconds>(moment.time_since_epoch()).count();
}

std::string CommitTime(std::int64_t second) {
  using namespace std::chrono;
  const sys_seconds moment{seconds{second}};
  const auto start_of_day = floor<days>(moment);
  const year_month_day date{start_of_day};
  const auto of_day = static_cast<int>((moment - start_of_day).count());
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                of_day / 3600, of_day / 60 % 60, of_day % 60);
  return text;
}

}  // namespace quillmere
