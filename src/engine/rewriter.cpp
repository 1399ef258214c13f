#include "engine/rewriter.h"

#include "oracle/H_oracle.h"

namespace quillmere {
namespace {

constexpr std::size_t kMostTokenBytes = 80;

// ASCII only: no locale has a say in what is sent to a database.
char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool EqualsUpper(std::string_view text, std::string_view upper) {
  if (text.size() != upper.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (Upper(text[i]) != upper[i]) return false;
  }
  return true;
}

std::string_view TakeUpTo(std::string_view& text, char end) {
  const std::string_view token = text.substr(0, text.find(end));
  text.remove_prefix(token.size());
  return token;
}

void SkipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view Trim(std::string_view text) {
  SkipBlanks(text);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// A name in double quotes is taken to its closing quote, whatever stands in it; another one up to
// the end character.
std::string_view TakeName(std::string_view& text, char end) {
  SkipBlanks(text);
  if (!text.starts_with('"')) return Trim(TakeUpTo(text, end));
  text.remove_prefix(1);
  const std::size_t close = text.find('"');
  if (close == std::string_view::npos) return {};
  const std::string_view name = text.substr(0, close);
  text.remove_prefix(close + 1);
  return name;
}

}  // namespace

ParsedStatement ParseStatement(std::string_view statement) {
  ParsedStatement parsed;
  std::string_view text = statement;
  parsed.verb_text = TakeUpTo(text, ' ');
  if (EqualsUpper(parsed.verb_text, "INSERT")) parsed.verb = Verb::Insert;
  if (EqualsUpper(parsed.verb_text, "DELETE")) parsed.verb = Verb::Delete;
  SkipBlanks(text);
  if (parsed.verb != Verb::Update) {
    TakeUpTo(text, ' ');  // INTO or FROM
    SkipBlanks(text);
  }
  const std::string_view owner = TakeName(text, '.');
  if (!text.starts_with('.')) return parsed;
  text.remove_prefix(1);
  const std::string_view table = TakeName(text, parsed.verb == Verb::Insert ? '(' : ' ');
  if (owner.size() > kMostTokenBytes || table.size() > kMostTokenBytes ||
      parsed.verb_text.size() > kMostTokenBytes) {
    return parsed;
  }
  parsed.owner = owner;
  parsed.table = table;
  parsed.rest = text;
  return parsed;
}

Rewritten RewriteStatement(SyncJob& job, std::string_view statement, std::string& to_execute) {
  Rewritten result;
  result.parsed = ParseStatement(statement);
  const ParsedStatement& parsed = result.parsed;
  if (parsed.owner.empty() || parsed.table.empty() || IsSystemOwner(parsed.owner)) return result;

  const std::lock_guard lock(job.config_mutex);
  const auto schema = job.schemas.find(parsed.owner);
  if (schema == job.schemas.end()) return result;
  result.table = schema->second.Find(parsed.table);
  if (result.table != nullptr && !result.table->includeflag) {
    result.excluded = true;
    return result;
  }
  result.accepted = true;
  const std::string_view owner = result.table != nullptr && !result.table->desowner.empty()
                                     ? std::string_view(result.table->desowner)
                                     : parsed.owner;
  to_execute.clear();
  to_execute.reserve(statement.size() + owner.size() + 16);
  for (const char c : parsed.verb_text) to_execute += Upper(c);
  // An update has no keyword between the two blanks.
  to_execute += ' ';
  if (parsed.verb == Verb::Insert) to_execute += "INTO";
  if (parsed.verb == Verb::Delete) to_execute += "FROM";
  to_execute += ' ';
  to_execute += owner;
  to_execute += '.';
  to_execute += parsed.table;
  to_execute += parsed.rest;
  return result;
}

std::string OperationName(const ParsedStatement& parsed) {
  if (parsed.verb == Verb::Insert) return "INSERT INTO";
  if (parsed.verb == Verb::Delete) return "DELETE FROM";
  std::string name;
  for (const char c : parsed.verb_text) name += Upper(c);
  return name;
}

}  // namespace quillmere
