// SPDX-License-Identifier: MIT
#include "ui/toolkit/row_order.h"

#include <algorithm>
#include <cstring>

#include "foundation/text.h"

namespace quillmere {
namespace {

// Lists mostly come as a few sorted runs (each owner's tables by name), so the runs that are there
// are merged pairwise; what has no runs is sorted as a whole.
template <typename Entry, typename Less>
void SortRuns(std::vector<Entry>& entries, const Less& less) {
  constexpr std::size_t kMostRuns = 256;
  std::vector<std::size_t> starts{0};
  for (std::size_t i = 1; i < entries.size() && starts.size() <= kMostRuns; ++i) {
    if (less(entries[i], entries[i - 1])) starts.push_back(i);
  }
  if (starts.size() > kMostRuns) {
    std::stable_sort(entries.begin(), entries.end(), less);
    return;
  }
  const auto at = [&](std::size_t run) {
    const std::size_t place = run < starts.size() ? starts[run] : entries.size();
    return entries.begin() + static_cast<std::ptrdiff_t>(place);
  };
  for (std::size_t width = 1; width < starts.size(); width *= 2) {
    for (std::size_t run = 0; run + width < starts.size(); run += 2 * width) {
      std::inplace_merge(at(run), at(run + width), at(run + 2 * width), less);
    }
  }
}

template <typename Entry, typename Less>
void SortEntries(std::vector<Entry>& entries, std::vector<std::uint32_t>& rows, bool descending,
                 const Less& less) {
  if (descending) {
    SortRuns(entries, [&](const Entry& a, const Entry& b) { return less(b, a); });
  } else {
    SortRuns(entries, less);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = entries[i].row;
}

// The first bytes as a number that sorts as they do: most comparisons need no look at the text.
std::uint64_t Prefix(std::string_view text) {
  unsigned char bytes[8] = {};
  std::memcpy(bytes, text.data(), std::min<std::size_t>(text.size(), sizeof bytes));
  std::uint64_t value = 0;
  for (unsigned char byte : bytes) value = value << 8 | byte;
  return value;
}

}  // namespace

void SortByText(std::vector<std::uint32_t>& rows,
                const std::function<std::string_view(std::uint32_t)>& text, bool descending) {
  struct Entry {
    std::uint64_t prefix;
    std::string_view text;
    std::uint32_t row;
  };
  std::vector<Entry> entries;
  entries.reserve(rows.size());
  for (std::uint32_t row : rows) {
    const std::string_view value = text(row);
    entries.push_back({value.empty() ? 0 : Prefix(value), value, row});
  }
  SortEntries(entries, rows, descending, [](const Entry& a, const Entry& b) {
    return a.prefix != b.prefix ? a.prefix < b.prefix : a.text < b.text;
  });
}

void SortByNumber(std::vector<std::uint32_t>& rows,
                  const std::function<std::int64_t(std::uint32_t)>& number, bool descending) {
  struct Entry {
    std::int64_t number;
    std::uint32_t row;
  };
  std::vector<Entry> entries;
  entries.reserve(rows.size());
  for (std::uint32_t row : rows) entries.push_back({number(row), row});
  SortEntries(entries, rows, descending,
              [](const Entry& a, const Entry& b) { return a.number < b.number; });
}

bool ContainsFolded(std::string_view text, std::string_view needle) {
  return std::search(text.begin(), text.end(), needle.begin(), needle.end(),
                     [](char a, char b) { return LowerCase(a) == b; }) != text.end();
}

}  // namespace quillmere
