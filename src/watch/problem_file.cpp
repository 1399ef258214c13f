// SPDX-License-Identifier: MIT
#include "watch/problem_file.h"

#include <algorithm>
#include <array>

#include "foundation/text.h"
#include "foundation/xml_document.h"
#include "foundation/xml_long_text.h"

namespace quillmere {
namespace {

using Where = PassProblem::Where;

constexpr std::array<std::pair<Where, std::string_view>, 4> kPlaces = {
    {{Where::Source, "source"},
     {Where::Destination, "destination"},
     {Where::Statement, "statement"},
     {Where::Disk, "disk"}}};
constexpr std::size_t kMostOfStatement = 64 << 10;
template <typename Number>
bool ReadNumber(const XmlNode& node, std::string_view name, Number& number) {
  return ParseNumber(node.ChildValue(name), number) && number >= 0;
}

bool ReadProblem(const XmlNode& node, JobProblem& problem) {
  const std::string_view place = node.ChildValue("where");
  const auto found = std::find_if(kPlaces.begin(), kPlaces.end(),
                                  [&](const auto& one) { return one.second == place; });
  if (found == kPlaces.end()) return false;
  problem.what = {found->first,
                  LongTextOf(node, "error"),
                  LongTextOf(node, "owner"),
                  LongTextOf(node, "table"),
                  0,
                  0,
                  LongTextOf(node, "statement")};
  return !problem.what.error.empty() && ReadNumber(node, "ora", problem.ora) &&
         ReadNumber(node, "number", problem.what.number) &&
         ReadNumber(node, "of", problem.what.of) && ReadNumber(node, "first", problem.first.ms) &&
         ReadNumber(node, "last", problem.last.ms) && ReadNumber(node, "tries", problem.tries) &&
         ReadNumber(node, "reached_scn", problem.reached_scn) &&
         ReadNumber(node, "complete_until", problem.complete_until.ms);
}

}  // namespace

int OraNumber(std::string_view text) {
  constexpr std::string_view kMark = "ORA-";
  const std::size_t mark = text.find(kMark);
  int number = 0;
  if (mark == std::string_view::npos) return 0;
  const char* const digits = text.data() + mark + kMark.size();
  std::from_chars(digits, text.data() + text.size(), number);
  return std::max(number, 0);
}

bool SameProblem(const JobProblem& a, const JobProblem& b) {
  return a.what.where == b.what.where && a.ora == b.ora && a.what.owner == b.what.owner &&
         a.what.table == b.what.table && a.what.number == b.what.number && a.what.of == b.what.of &&
         (a.ora != 0 || a.what.error == b.what.error);
}

bool WriteProblemFile(FileSystem& files, const JobFolder& folder, const JobProblem& problem,
                      std::string& error) {
  const PassProblem& what = problem.what;
  XmlDocument document;
  XmlNode& node = document.Root().AddChild("problem");
  const auto place = std::find_if(kPlaces.begin(), kPlaces.end(),
                                  [&](const auto& one) { return one.first == what.where; });
  node.AddChild("where", place->second);
  for (const auto& [name, number] : {std::pair<const char*, std::int64_t>{"ora", problem.ora},
                                     {"number", static_cast<std::int64_t>(what.number)},
                                     {"of", static_cast<std::int64_t>(what.of)},
                                     {"first", problem.first.ms},
                                     {"last", problem.last.ms},
                                     {"tries", problem.tries},
                                     {"reached_scn", problem.reached_scn},
                                     {"complete_until", problem.complete_until.ms}}) {
    node.AddChild(name, std::to_string(number));
  }
  AddLongText(node, "owner", what.owner);
  AddLongText(node, "table", what.table);
  AddLongText(node, "error", what.error);
  AddLongText(node, "statement", std::string_view(what.statement).substr(0, kMostOfStatement));
  return MakeFolders(files, folder.Path(), error) &&
         ReplaceTextFile(files, folder.File(JobFile::Problem), document.Text(),
                         FileAccess::OwnerOnly, error);
}

FileStatus ReadProblemFile(FileSystem& files, const JobFolder& folder, JobProblem& problem) {
  const std::filesystem::path path = folder.File(JobFile::Problem);
  std::string text;
  FileStatus status = ReadFile(files, path, text);
  if (!status) return status;
  XmlDocument document;
  const XmlNode* const node = document.Parse(text) ? document.Root().Child("problem") : nullptr;
  JobProblem read;
  if (node == nullptr || !ReadProblem(*node, read)) {
    return {FileCode::Damaged, PathText(path) + " is damaged"};
  }
  problem = std::move(read);
  return {};
}

}  // namespace quillmere
