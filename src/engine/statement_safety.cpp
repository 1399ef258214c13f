// SPDX-License-Identifier: MIT
#include "engine/statement_safety.h"

#include <algorithm>
#include <cstring>

#include "engine/rewriter.h"

namespace quillmere {
namespace {

constexpr std::string_view kConjunction = " and ROWID = '";
constexpr std::string_view kOnlyCondition = " where ROWID = '";
constexpr std::size_t kRowAddress = 18;
constexpr std::size_t kCut = 33;
static_assert(kConjunction.size() + kRowAddress + 1 == kCut);

bool EndsWithAddress(std::string_view statement, std::string_view condition) {
  const std::size_t length = condition.size() + kRowAddress + 1;
  if (statement.size() <= length) return false;
  const std::string_view tail = statement.substr(statement.size() - length);
  return tail.starts_with(condition) && tail.back() == '\'' &&
         tail.substr(condition.size(), kRowAddress).find('\'') == std::string_view::npos;
}

// "OBJ# 73640", "COL 3": what stands for a name that the server can not tell.
bool IsNumbered(std::string_view name, std::string_view kind) {
  if (!name.starts_with(kind) || name.size() == kind.size()) return false;
  name.remove_prefix(kind.size());
  return name.find_first_not_of("0123456789") == std::string_view::npos;
}

// Looks at what stands outside of literals, once. Most of a statement is literals, which the
// library skips.
Safety JudgeOutsideLiterals(std::string_view text) {
  const char* position = text.data();
  const char* const end = position + text.size();
  while (position < end) {
    const char c = *position++;
    if (c == '\'' || c == '"') {
      const auto left = static_cast<std::size_t>(end - position);
      const auto* close = static_cast<const char*>(std::memchr(position, c, left));
      if (close == nullptr) break;
      const std::string_view inside(position, static_cast<std::size_t>(close - position));
      if (IsNumbered(inside, "COL ") && c == '"') return Safety::UnknownColumn;
      position = close + 1;
    } else if (c == 'U') {
      const std::string_view rest(position, static_cast<std::size_t>(end - position));
      if (rest.starts_with("nsupported Type")) return Safety::UnsupportedType;
    }
  }
  return Safety::Safe;
}

}  // namespace

Judgement JudgeStatement(std::string_view mined, const RowFacts& facts) {
  const ParsedStatement parsed = ParseStatement(mined);
  if (parsed.owner.empty() || parsed.table.empty()) return {Safety::NoTable, {}};
  if (parsed.owner == "UNKNOWN" || IsNumbered(parsed.table, "OBJ# ")) {
    return {Safety::UnknownObject, {}};
  }
  const Safety outside = JudgeOutsideLiterals(parsed.rest);
  if (outside != Safety::Safe) return {outside, {}};
  if (facts.not_executable) return {Safety::NotExecutable, {}};
  if (parsed.verb == Verb::Insert && mined.ends_with(')')) return {Safety::Safe, mined};
  if (EndsWithAddress(mined, kOnlyCondition)) return {Safety::RowAddressAlone, {}};
  if (!EndsWithAddress(mined, kConjunction)) return {Safety::NoRowAddress, {}};
  if (parsed.rest.size() < kCut) return {Safety::NoTable, {}};  // it is in the address
  return {Safety::Safe, mined.substr(0, mined.size() - kCut)};
}

std::string_view WhyUnsafe(Safety safety) {
  switch (safety) {
    case Safety::Safe:
      break;
    case Safety::NoRowAddress:
      return "it does not end with a row address, so it could match other rows";
    case Safety::RowAddressAlone:
      return "nothing but the row address tells which row it means. So a server writes that it "
             "takes back part of a transaction, and what it takes back may have been applied: the "
             "table must be compared";
    case Safety::NoTable:
      return "no owner and table can be found in it";
    case Safety::UnknownObject:
      return "the source no longer knows the table it was made in";
    case Safety::UnknownColumn:
      return "the source no longer knows the columns it was made in";
    case Safety::UnsupportedType:
      return "a value in it is of a type that LogMiner can not write out";
    case Safety::NotExecutable:
      return "LogMiner says that it can not be executed";
    case Safety::Unfinished:
      return "it does not end: its quotes do not pair, or its semicolon is missing";
  }
  return {};
}

}  // namespace quillmere
