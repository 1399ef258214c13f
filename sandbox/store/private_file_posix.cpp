// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sandbox/store/private_file.h"

namespace quillmere::sandbox {

bool MakePrivateFile(const std::filesystem::path& path, std::string* reason) {
  const int file = open(path.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
  if (file < 0) {
    *reason = errno == EEXIST ? path.string() + " exists already"
                              : "cannot make " + path.string() + ": " + std::strerror(errno);
    return false;
  }
  close(file);
  return true;
}

}  // namespace quillmere::sandbox
