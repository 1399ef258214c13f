// SPDX-License-Identifier: MIT
// Where the source's transactions begin in a batch, and which they are: a batch of small ones has
// nearly as many as statements, so one costs some seven bytes instead of a record's 32.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillmere {

// A source's transaction, from its first entry on.
struct TransactionMark {
  std::uint32_t first = 0;                            // entry
  std::uint32_t segment = 0, slot = 0, sequence = 0;  // its XID
  std::int64_t commit_scn = 0;
  std::int64_t commit_second = 0;  // by the source's clock; 0: not known

  std::string Xid() const;  // "4.12.9153"
  bool operator==(const TransactionMark&) const = default;
};

// In the order of their first entries. One thread at a time.
class TransactionMarks {
 public:
  // first is not below that of the mark before; one of the same entry takes its place.
  void Add(const TransactionMark& mark);
  // Gives the memory back.
  void Clear() { *this = {}; }

  // Walks over the marks. The marks must outlive it and stay as they are.
  class Walk {
   public:
    // From the first mark on.
    explicit Walk(const TransactionMarks& marks) : marks_(marks) { Read(); }
    // From the mark on that the entry belongs to; from the first on when it is before that.
    Walk(const TransactionMarks& marks, std::size_t entry);

    // Null behind the last one.
    const TransactionMark* Mark() const { return at_end_ ? nullptr : &mark_; }
    void Next() { Read(); }

   private:
    void Read();

    const TransactionMarks& marks_;
    std::size_t block_ = 0, place_ = 0;
    bool at_end_ = false;
    TransactionMark mark_;
  };

 private:
  // Each mark as what differs from the one before it; the first of a block from nothing.
  using Block = std::vector<unsigned char>;
  struct Begin {
    std::uint32_t first;  // of its first mark
    Block bytes;
  };

  void Keep(const TransactionMark& mark);

  std::vector<Begin> blocks_;
  TransactionMark kept_;                 // the latest of the last block
  std::optional<TransactionMark> last_;  // not in a block yet: another may take its place
};

}  // namespace quillmere
