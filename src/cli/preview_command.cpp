// SPDX-License-Identifier: MIT
#include "cli/preview_command.h"

#include <algorithm>

#include "cli/text_table.h"
#include "preview/preview.h"
#include "watch/health_json.h"

namespace quillmere::cli::job {
namespace {

using Json = nlohmann::ordered_json;

struct Deaf final : RunnerListener {
  void OnJobChanged(std::size_t, bool) override {}
  void OnError(std::size_t, std::string_view) override {}
  void OnInformation(std::size_t, std::string_view) override {}
};

std::string TableName(const std::string& owner, const std::string& table) {
  return table.empty() ? "(no table)" : owner + "." + table;
}

const char* KindName(Preview::Kind kind) {
  constexpr const char* kNames[] = {"nothing", "failed", "pending", "captured"};
  return kNames[static_cast<std::size_t>(kind)];
}

const char* FateName(PreviewEntry::Fate fate) {
  constexpr const char* kNames[] = {"executed", "execute", "blocked"};
  return kNames[static_cast<std::size_t>(fate)];
}

std::string WhatItIs(const Preview& preview) {
  const std::string size = std::to_string(preview.Size());
  if (preview.What() == Preview::Kind::Captured) return size + " changes that the source has now";
  return "goes on with a batch of " + size + ", number " + std::to_string(preview.Next() + 1) +
         " is next";
}

std::size_t EndOfShown(const Preview& preview, const Arguments& arguments) {
  return std::min(preview.Size(), preview.Next() + static_cast<std::size_t>(arguments.limit));
}

std::string PreviewText(const Preview& preview, const Arguments& arguments) {
  std::vector<std::vector<std::string>> head = {
      {"JOB ID", arguments.name},
      {"Next pass", WhatItIs(preview)},
      {"Would execute", std::to_string(preview.ToExecute())},
      {"Would block", std::to_string(preview.ToBlock())}};
  if (!preview.Why().empty()) head.push_back({"Note", preview.Why()});
  for (const std::string& note : preview.Notes()) head.push_back({"Note", OneLine(note)});
  std::vector<std::vector<std::string>> rows = {
      {"Table", "Written To", "Inserts", "Updates", "Deletes", "Blocked", "Because"}};
  for (const PreviewTable& table : preview.Tables()) {
    rows.push_back({TableName(table.owner, table.table), table.to, std::to_string(table.inserts),
                    std::to_string(table.updates), std::to_string(table.deletes),
                    std::to_string(table.blocked), table.why});
  }
  std::string text = TextTable(head) + "\n" + TextTable(rows) + "\n";
  const std::size_t end = EndOfShown(preview, arguments);
  for (std::size_t i = preview.Next(); i < end; ++i) {
    const PreviewEntry entry = preview.At(i);
    text += std::to_string(i + 1) + "  ";
    if (!entry.why.empty()) text += "blocked, " + entry.why + ": ";
    text += OneLine(entry.statement) + "\n";
  }
  if (end < preview.Size()) {
    text += "... and " + std::to_string(preview.Size() - end) + " more; --limit shows them\n";
  }
  return text;
}

std::string PreviewJson(const Preview& preview, const Arguments& arguments) {
  Json object = {{"name", arguments.name},
                 {"preview", KindName(preview.What())},
                 {"why", preview.Why()},
                 {"size", preview.Size()},
                 {"next", preview.Size() == 0 ? 0 : preview.Next() + 1},
                 {"execute", preview.ToExecute()},
                 {"block", preview.ToBlock()},
                 {"notes", preview.Notes()},
                 {"tables", Json::array()},
                 {"statements", Json::array()}};
  for (const PreviewTable& table : preview.Tables()) {
    object["tables"].push_back({{"owner", table.owner},
                                {"table", table.table},
                                {"to", table.to},
                                {"inserts", table.inserts},
                                {"updates", table.updates},
                                {"deletes", table.deletes},
                                {"blocked", table.blocked},
                                {"why", table.why}});
  }
  const std::size_t end = EndOfShown(preview, arguments);
  for (std::size_t i = preview.Next(); i < end; ++i) {
    const PreviewEntry entry = preview.At(i);
    object["statements"].push_back({{"number", i + 1},
                                    {"fate", FateName(entry.fate)},
                                    {"owner", entry.owner},
                                    {"table", entry.table},
                                    {"commit_scn", entry.commit_scn},
                                    {"statement", entry.statement},
                                    {"why", entry.why}});
  }
  return JsonText(object);
}

}  // namespace

int ShowPreview(const CommandLine& line, const Arguments& arguments) {
  const auto workspace = OpenToLook(line);
  if (workspace == nullptr) return kFailed;
  const std::size_t index = FindJob(*workspace, arguments.name);
  if (index == JobList::kNotFound) return kFailed;
  Deaf listener;
  const EngineContext engine = workspace->EngineFor(listener);
  EndRequest end_request;
  const auto preview = LookAhead(engine, index, [&] { return end_request.Came(); });
  if (preview->What() == Preview::Kind::Failed) return Fail(preview->Why());
  if (arguments.json) return Print(PreviewJson(*preview, arguments));
  if (preview->What() == Preview::Kind::Nothing) return Print(preview->Why() + "\n");
  return Print(PreviewText(*preview, arguments));
}

}  // namespace quillmere::cli::job
