// SPDX-License-Identifier: MIT
#include "engine/set_aside.h"

#include <algorithm>

#include "foundation/text.h"

namespace quillmere {
namespace {

constexpr std::size_t kMostTablesTold = 20;
constexpr std::size_t kBeginning = 120;  // bytes

// One line of it, not cut inside a character.
std::string BeginningOf(std::string_view text) {
  std::size_t end = std::min(text.size(), kBeginning);
  while (end > 0 && end < text.size() && ContinuesCharacter(text[end])) --end;
  std::string beginning(text.substr(0, end));
  std::replace_if(beginning.begin(), beginning.end(), IsControlCharacter, ' ');
  return end < text.size() ? beginning + " ..." : beginning;
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
}

std::vector<std::string> SetAside::Messages() const {
  std::vector<std::string> messages;
  for (const Table& table : tables_) {
    if (messages.size() == kMostTablesTold) {
      messages.push_back("... and changes of " + std::to_string(tables_.size() - kMostTablesTold) +
                         " more tables");
      break;
    }
    const std::string name =
        table.name.empty() ? "a table that is not named" : table.owner + "." + table.name;
    messages.push_back("Changes of " + name +
                       " set aside and not applied: " + std::to_string(table.count) +
                       ". The first, at SCN " + std::to_string(table.first_scn) + ": " +
                       std::string(WhyUnsafe(table.first_why)) + ": " + table.beginning +
                       ". Their texts are in ravelkin.log; repeat them on the destination by hand");
  }
  return messages;
}

}  // namespace quillmere
