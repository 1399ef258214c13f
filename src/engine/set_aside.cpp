// SPDX-License-Identifier: MIT
#include "engine/set_aside.h"

#include <algorithm>

#include "foundation/text.h"

namespace quillmere {
namespace {

constexpr std::size_t kMostTablesTold = 20;
constexpr std::size_t kBeginning = 120;  // bytes

// Not cut inside a character.
std::string BeginningOf(std::string_view text) {
  std::size_t end = std::min(text.size(), kBeginning);
  while (end > 0 && end < text.size() && ContinuesCharacter(text[end])) --end;
  return OnOneLine(text.substr(0, end)) + (end < text.size() ? " ..." : "");
}

std::string NameOf(std::string_view owner, std::string_view table) {
  if (table.empty()) return "a table that is not named";
  return OnOneLine(owner) + "." + OnOneLine(table);
}

}  // namespace

void SetAside::Add(std::int64_t scn, std::string_view owner, std::string_view table, Safety why,
                   std::string_view mined) {
  const auto [place, is_new] =
      by_name_.try_emplace({std::string(owner), std::string(table)}, tables_.size());
  if (is_new) {
    tables_.push_back({std::string(owner), std::string(table), 0, scn, why, BeginningOf(mined)});
  }
  ++tables_[place->second].count;
  text_ += "-- SCN " + std::to_string(scn) + ", " + NameOf(owner, table) + ": ";
  text_.append(WhyUnsafe(why)).append("\n").append(mined);
  text_ += TrimRight(mined).ends_with(';') ? "\n\n" : ";\n\n";
}

std::vector<std::string> SetAside::Messages(std::string_view file) const {
  std::vector<std::string> messages;
  for (const Table& table : tables_) {
    if (messages.size() == kMostTablesTold) {
      messages.push_back("... and changes of " + std::to_string(tables_.size() - kMostTablesTold) +
                         " more tables");
      break;
    }
    messages.push_back("changes of " + NameOf(table.owner, table.name) +
                       " set aside and not applied: " + std::to_string(table.count) +
                       ". The first, at SCN " + std::to_string(table.first_scn) + ": " +
                       std::string(WhyUnsafe(table.first_why)) + ": " + table.beginning +
                       ". All are in " + std::string(file) + "; compare the table");
  }
  return messages;
}

}  // namespace quillmere
