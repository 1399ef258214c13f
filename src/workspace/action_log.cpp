// SPDX-License-Identifier: MIT
#include "workspace/action_log.h"

#include <memory>
#include <utility>

#include "foundation/text.h"

namespace quillmere {
namespace {

// On one line, whatever was typed.
std::string Flat(std::string_view text) {
  std::string flat(text);
  for (char& c : flat) {
    if (IsControlCharacter(c)) c = ' ';
  }
  return flat;
}

}  // namespace

ActionLog::ActionLog(FileSystem& files, std::filesystem::path file, const Clock& clock,
                     MessageLog& log, std::string user, bool writes)
    : files_(files),
      file_(std::move(file)),
      clock_(clock),
      log_(log),
      writes_(writes),
      user_(std::move(user)) {}

void ActionLog::Note(std::string_view action, std::string_view object, std::string_view old_value,
                     std::string_view new_value) {
  if (!writes_) return;
  std::string line = FormatTimeStamp(clock_.Now()) + " " + Flat(user_) + " " + std::string(action) +
                     " " + Flat(object);
  if (!old_value.empty() || !new_value.empty()) line += ":";
  if (!old_value.empty()) line += " " + Flat(old_value) + " ->";
  if (!new_value.empty()) line += " " + Flat(new_value);
  std::unique_ptr<OpenFile> file;
  FileStatus status = files_.Open(file_, OpenMode::Append, FileSystem::kOwnerOnly, file);
  if (status) status = file->Append(line + "\n");
  if (status) status = file->Flush();
  if (status) status = file->Close();
  if (status || std::exchange(told_, true)) return;
  log_.Add(PathText(file_) + " can not be written: " + status.reason +
               ". What is done is not recorded there",
           true);
}

}  // namespace quillmere
