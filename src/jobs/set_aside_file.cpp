// SPDX-License-Identifier: MIT
#include "jobs/set_aside_file.h"

#include <memory>

namespace quillmere {
namespace {

constexpr std::string_view kHead =
    "-- Changes that were mined from the source and not applied to the destination, because they\n"
    "-- could do harm there. Do not run this file as it is: look at each change, and compare the\n"
    "-- table. Whoever has done so may move the file away or empty it.\n\n";

// As it was, when it can not be done: half a statement must not stand there, nor the whole of one
// that is mined again.
FileStatus AppendDown(OpenFile& file, std::uint64_t size, std::string_view text) {
  FileStatus status;
  if (size == 0) status = file.Append(kHead);
  if (status) status = file.Append(text);
  if (status) status = file.Flush();
  if (!status) static_cast<void>(file.Truncate(size));
  return status;
}

}  // namespace

bool AppendSetAside(FileSystem& files, const JobFolder& folder, std::string_view text,
                    std::string& error) {
  const std::filesystem::path path = folder.File(JobFile::SetAside);
  if (!folder.Make(files, error)) return false;
  std::unique_ptr<OpenFile> file;
  FileStatus status = files.Open(path, OpenMode::Append, FileSystem::kOwnerOnly, file);
  const std::uint64_t size = status ? file->Size() : 0;
  if (size > kMostSetAsideBytes) {
    error = PathText(path) + " is above " + std::to_string(kMostSetAsideBytes >> 20) +
            " MiB: so many changes could not be applied. Look at them, see to their cause, move "
            "the file away, and the job goes on";
    return false;
  }
  if (status) status = AppendDown(*file, size, text);
  if (status) status = file->Close();
  if (status && size == 0) status = files.FlushFolder(folder.Path());
  if (!status) error = "Can not write " + PathText(path) + ": " + status.reason;
  return static_cast<bool>(status);
}

}  // namespace quillmere
