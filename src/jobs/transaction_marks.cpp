// SPDX-License-Identifier: MIT
#include "jobs/transaction_marks.h"

#include <algorithm>

namespace quillmere {
namespace {

constexpr std::size_t kBlockBytes = 2048;
constexpr std::size_t kLongestMark = 1 + 6 * 10;

// The first byte of a mark: one entry from the one before, how many seconds, how many SCNs; the
// largest number says that it is written out behind.
constexpr unsigned kNextEntry = 1;
constexpr unsigned kSecondsShift = 1, kMostSeconds = 3;
constexpr unsigned kScnShift = 3, kMostScns = 31;

// Groups of seven bits, the lowest first.
void Put(std::vector<unsigned char>& bytes, std::uint64_t number) {
  for (; number >= 0x80; number >>= 7) {
    bytes.push_back(static_cast<unsigned char>((number & 0x7F) | 0x80));
  }
  bytes.push_back(static_cast<unsigned char>(number));
}

std::uint64_t Take(const std::vector<unsigned char>& bytes, std::size_t& place) {
  std::uint64_t number = 0;
  for (unsigned shift = 0;; shift += 7) {
    const unsigned char byte = bytes[place++];
    number |= std::uint64_t{byte & 0x7FU} << shift;
    if (byte < 0x80) return number;
  }
}

// Small differences of either sign become small numbers.
std::uint64_t Difference(std::int64_t to, std::int64_t from) {
  const std::uint64_t difference =
      static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from);
  return difference >> 63 != 0 ? ~(difference << 1) : difference << 1;
}

std::int64_t Moved(std::int64_t from, std::uint64_t difference) {
  const std::uint64_t by = (difference & 1) != 0 ? ~(difference >> 1) : difference >> 1;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(from) + by);
}

// A number that is below most, and most for all others.
unsigned Short(std::int64_t number, unsigned most) {
  return number >= 0 && number < most ? static_cast<unsigned>(number) : most;
}

std::int64_t Minus(std::int64_t a, std::int64_t b) {
  return Moved(0, Difference(a, b));
}

void Write(std::vector<unsigned char>& bytes, const TransactionMark& mark,
           const TransactionMark& before) {
  const unsigned entry = mark.first - before.first == 1 ? kNextEntry : 0;
  const unsigned seconds = Short(Minus(mark.commit_second, before.commit_second), kMostSeconds);
  const unsigned scns = Short(Minus(mark.commit_scn, before.commit_scn), kMostScns);
  bytes.push_back(static_cast<unsigned char>(entry | seconds << kSecondsShift | scns << kScnShift));
  if (entry == 0) Put(bytes, mark.first - before.first);
  if (seconds == kMostSeconds) Put(bytes, Difference(mark.commit_second, before.commit_second));
  if (scns == kMostScns) Put(bytes, Difference(mark.commit_scn, before.commit_scn));
  Put(bytes, mark.segment);
  Put(bytes, mark.slot);
  Put(bytes, Difference(mark.sequence, before.sequence));
}

void Read(const std::vector<unsigned char>& bytes, std::size_t& place, TransactionMark& mark) {
  const unsigned head = bytes[place++];
  const unsigned seconds = head >> kSecondsShift & kMostSeconds;
  const unsigned scns = head >> kScnShift & kMostScns;
  mark.first += (head & kNextEntry) != 0 ? 1U : static_cast<std::uint32_t>(Take(bytes, place));
  mark.commit_second = seconds < kMostSeconds ? mark.commit_second + seconds
                                              : Moved(mark.commit_second, Take(bytes, place));
  mark.commit_scn =
      scns < kMostScns ? mark.commit_scn + scns : Moved(mark.commit_scn, Take(bytes, place));
  mark.segment = static_cast<std::uint32_t>(Take(bytes, place));
  mark.slot = static_cast<std::uint32_t>(Take(bytes, place));
  mark.sequence = static_cast<std::uint32_t>(Moved(mark.sequence, Take(bytes, place)));
}

}  // namespace

std::string TransactionMark::Xid() const {
  return std::to_string(segment) + "." + std::to_string(slot) + "." + std::to_string(sequence);
}

void TransactionMarks::Add(const TransactionMark& mark) {
  if (last_ && last_->first != mark.first) Keep(*last_);
  last_ = mark;
}

void TransactionMarks::Keep(const TransactionMark& mark) {
  if (blocks_.empty() || blocks_.back().bytes.size() + kLongestMark > kBlockBytes) {
    blocks_.push_back({mark.first, {}});
    blocks_.back().bytes.reserve(kBlockBytes);
    kept_ = {};
  }
  Write(blocks_.back().bytes, mark, kept_);
  kept_ = mark;
}

TransactionMarks::Walk::Walk(const TransactionMarks& marks, std::size_t entry) : marks_(marks) {
  const auto behind =
      std::partition_point(marks.blocks_.begin(), marks.blocks_.end(),
                           [&](const Begin& block) { return block.first <= entry; });
  if (behind != marks.blocks_.begin()) {
    block_ = static_cast<std::size_t>(behind - marks.blocks_.begin()) - 1;
  }
  Read();
  for (Walk next = *this; !at_end_; next.Read()) {
    if (next.at_end_ || next.mark_.first > entry) return;
    block_ = next.block_;
    place_ = next.place_;
    at_end_ = next.at_end_;
    mark_ = next.mark_;
  }
}

// Behind the blocks stands the last mark.
void TransactionMarks::Walk::Read() {
  const auto& blocks = marks_.blocks_;
  if (block_ < blocks.size() && place_ == blocks[block_].bytes.size()) {
    ++block_;
    place_ = 0;
  }
  if (block_ < blocks.size()) {
    if (place_ == 0) mark_ = {};
    return quillmere::Read(blocks[block_].bytes, place_, mark_);
  }
  at_end_ = place_ != 0 || !marks_.last_;
  place_ = 1;
  if (!at_end_) mark_ = *marks_.last_;
}

}  // namespace quillmere
