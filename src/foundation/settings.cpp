// SPDX-License-Identifier: MIT
#include "foundation/settings.h"

#include <algorithm>

#include "foundation/text.h"
#include "foundation/xml_document.h"

namespace quillmere {

namespace {

constexpr int kMostMessages = 1'000'000;

bool ReadBool(const XmlNode& node, std::string_view name) {
  return node.ChildValue(name) == "true";
}

}  // namespace

bool LoadSettings(FileSystem& files, const std::filesystem::path& file, Settings& settings,
                  std::string& error) {
  settings.debug = false;
  settings.statement_trace = false;
  settings.registry_messages = false;
  settings.message_limit = kDefaultMessageLimit;
  settings.client_library.clear();

  XmlDocument document;
  if (const FileStatus loaded = document.Load(files, file); !loaded) {
    if (loaded.Missing()) return true;
    error = "Can not read the settings in " + PathText(file) + ": " + document.Message();
    return false;
  }
  const XmlNode* node = document.Root().Child("settings");
  if (node == nullptr) return true;
  settings.debug = ReadBool(*node, "debug");
  settings.statement_trace = ReadBool(*node, "statement_trace");
  settings.registry_messages = ReadBool(*node, "registry_messages");
  if (node->Child("message_limit") != nullptr) {
    settings.message_limit = std::clamp(node->ChildNumber("message_limit"), 1, kMostMessages);
  }
  settings.client_library = node->ChildValue("client_library");
  return true;
}

bool SaveSettings(FileSystem& files, const std::filesystem::path& file, const Settings& settings,
                  std::string& error) {
  XmlDocument document;
  const FileStatus old = document.Load(files, file);
  if (!old && !old.Missing() && !KeepBadFile(files, file, error)) return false;
  document.Clear();
  XmlNode& node = document.Root().AddChild("settings");
  node.AddChild("debug", BoolText(settings.debug));
  node.AddChild("statement_trace", BoolText(settings.statement_trace));
  node.AddChild("registry_messages", BoolText(settings.registry_messages));
  node.AddNumber("message_limit", settings.message_limit);
  node.AddChild("client_library", settings.client_library);
  return MakeFolders(files, file.parent_path(), error) &&
         ReplaceTextFile(files, file, document.Text(), FileAccess::Everyone, error);
}

}  // namespace quillmere
