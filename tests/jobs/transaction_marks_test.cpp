// SPDX-License-Identifier: MIT
// Marks against a plain list of them.
#include "jobs/transaction_marks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace quillmere {
namespace {

TEST(TransactionMarks, AreWhatWasAddedFromAnyEntryOn) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 60; ++round) {
    TransactionMarks marks;
    std::vector<TransactionMark> plain;
    TransactionMark mark;
    for (std::uint64_t i = random() % 1000; i > 0; --i) {
      // Near the one before, or anywhere.
      const bool near = random() % 8 != 0;
      const auto move = [&](auto& number, std::uint64_t by) {
        number = static_cast<std::decay_t<decltype(number)>>(
            near ? static_cast<std::uint64_t>(number) + random() % by - by / 4 : random());
      };
      mark.first += static_cast<std::uint32_t>(random() % 4 == 0 ? random() % 300 : random() % 2);
      move(mark.segment, 9), move(mark.slot, 9), move(mark.sequence, 999);
      move(mark.commit_scn, 50), move(mark.commit_second, 5);
      if (!plain.empty() && plain.back().first == mark.first) plain.pop_back();
      plain.push_back(mark);
      marks.Add(mark);
    }
    for (std::uint32_t entry = 0; entry < mark.first + 3; entry += 1 + entry / 7) {
      auto at = std::find_if(plain.begin(), plain.end(),
                             [&](const TransactionMark& one) { return one.first > entry; });
      if (at != plain.begin()) --at;
      TransactionMarks::Walk walk(marks, entry);
      for (; at != plain.end(); ++at, walk.Next()) ASSERT_EQ(*walk.Mark(), *at) << round;
      ASSERT_EQ(walk.Mark(), nullptr);
    }
  }
}

}  // namespace
}  // namespace quillmere
