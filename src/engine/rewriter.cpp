// SPDX-License-Identifier: MIT
#include "engine/rewriter.h"

#include <algorithm>

#include "foundation/text.h"
#include "oracle/H_oracle.h"
#include "oracle/position_row.h"

namespace quillmere {
namespace {

constexpr std::size_t kMostTokenBytes = 80;

std::string_view TakeUpTo(std::string_view& text, char end) {
  const std::string_view token = text.substr(0, text.find(end));
  text.remove_prefix(token.size());
  return token;
}

// A name in double quotes is taken to its closing quote, whatever stands in it; another one up to
// the end character.
std::string_view TakeName(std::string_view& text, char end, bool& quoted) {
  text = TrimLeft(text, " ");
  quoted = text.starts_with('"');
  if (!quoted) return TrimRight(TakeUpTo(text, end), " ");
  text.remove_prefix(1);
  const std::size_t close = text.find('"');
  if (close == std::string_view::npos) return {};
  const std::string_view name = text.substr(0, close);
  text.remove_prefix(close + 1);
  return name;
}

void AppendName(std::string& text, std::string_view name, bool in_quotes) {
  if (in_quotes) text += '"';
  text += name;
  if (in_quotes) text += '"';
}

}  // namespace

ParsedStatement ParseStatement(std::string_view statement) {
  ParsedStatement parsed;
  std::string_view text = statement;
  parsed.verb_text = TakeUpTo(text, ' ');
  if (EqualsIgnoringCase(parsed.verb_text, "INSERT")) parsed.verb = Verb::Insert;
  if (EqualsIgnoringCase(parsed.verb_text, "DELETE")) parsed.verb = Verb::Delete;
  text = TrimLeft(text, " ");
  if (parsed.verb != Verb::Update) {
    TakeUpTo(text, ' ');  // INTO or FROM
    text = TrimLeft(text, " ");
  }
  const std::string_view owner = TakeName(text, '.', parsed.owner_quoted);
  if (!text.starts_with('.')) return parsed;
  text.remove_prefix(1);
  const std::string_view table =
      TakeName(text, parsed.verb == Verb::Insert ? '(' : ' ', parsed.table_quoted);
  if (parsed.verb == Verb::Insert) {  // the list stands right behind the name, quoted or not
    const std::string_view list = TrimLeft(text, " ");
    if (list.starts_with('(')) text = list;
  }
  if (owner.size() > kMostTokenBytes || table.size() > kMostTokenBytes ||
      parsed.verb_text.size() > kMostTokenBytes) {
    return parsed;
  }
  parsed.owner = owner;
  parsed.table = table;
  parsed.rest = text;
  return parsed;
}

Verdict Decide(SyncJob& job, const ParsedStatement& parsed) {
  Verdict verdict;
  if (parsed.owner.empty() || parsed.table.empty() || IsSystemOwner(parsed.owner)) return verdict;
  // Another program's, when the source is somebody's destination.
  if (parsed.table == kPositionTable) return verdict;
  const MutexLock lock(job.config_mutex);
  const auto schema = job.config.schemas.find(parsed.owner);
  if (schema == job.config.schemas.end()) return verdict;
  JobTable* const table = verdict.table = schema->second.Find(parsed.table);
  const bool excluded = table != nullptr && !table->includeflag;
  verdict.decision = excluded ? Decision::Excluded : Decision::Accepted;
  const bool moved = table != nullptr && !table->desowner.empty();
  verdict.owner = moved ? std::string_view(table->desowner) : parsed.owner;
  return verdict;
}

bool NeedsQuotes(std::string_view name) {
  const auto is_letter = [](char c) { return c >= 'A' && c <= 'Z'; };
  const auto is_plain = [&](char c) {
    return is_letter(c) || (c >= '0' && c <= '9') || c == '_' || c == '$' || c == '#';
  };
  return name.empty() || !is_letter(name.front()) ||
         !std::all_of(name.begin(), name.end(), is_plain);
}

std::string SqlName(std::string_view name) {
  return NeedsQuotes(name) ? '"' + std::string(name) + '"' : std::string(name);
}

std::string SqlName(std::string_view owner, std::string_view table) {
  return SqlName(owner) + "." + SqlName(table);
}

void Rewrite(const ParsedStatement& parsed, std::string_view owner, NameQuotes quotes,
             std::string& to_execute) {
  constexpr std::string_view kKeywords[] = {"INTO", "FROM", ""};  // an update has none
  const std::string_view keyword = kKeywords[static_cast<std::size_t>(parsed.verb)];
  to_execute.clear();
  to_execute.reserve(parsed.verb_text.size() + keyword.size() + owner.size() + parsed.table.size() +
                     parsed.rest.size() + 7);
  for (const char c : parsed.verb_text) to_execute += UpperCase(c);
  to_execute += ' ';
  to_execute += keyword;
  to_execute += ' ';
  const bool kept = quotes == NameQuotes::Kept;
  AppendName(to_execute, owner,
             kept && parsed.owner_quoted && owner == parsed.owner && NeedsQuotes(owner));
  to_execute += '.';
  AppendName(to_execute, parsed.table, kept && parsed.table_quoted && NeedsQuotes(parsed.table));
  to_execute += parsed.rest;
}

std::string OperationName(const ParsedStatement& parsed) {
  if (parsed.verb == Verb::Insert) return "INSERT INTO";
  if (parsed.verb == Verb::Delete) return "DELETE FROM";
  return UpperCase(parsed.verb_text);
}

}  // namespace quillmere
