// A small file that is rewritten in place, again and again, without ever being empty in between.
#pragma once

#include <cstddef>
#include <filesystem>

namespace quillmere {

// One thread at a time. Each platform has a file of its own.
class InPlaceFile {
 public:
  InPlaceFile() = default;
  ~InPlaceFile() { Close(); }
  InPlaceFile(const InPlaceFile&) = delete;
  InPlaceFile& operator=(const InPlaceFile&) = delete;

  // Opens for writing, creating the file if it is missing and leaving its content alone.
  bool Open(const std::filesystem::path& path);
  bool IsOpen() const { return handle_ != kClosed; }
  // One write at offset 0.
  bool Write(const void* bytes, std::size_t count);
  // Down to the disk.
  bool Flush();
  void Close();

 private:
  static constexpr std::ptrdiff_t kClosed = -1;
  std::ptrdiff_t handle_ = kClosed;
};

// Removes the file, down to the disk: after a power failure it does not come back. A missing file
// is success.
bool RemoveForGood(const std::filesystem::path& path);

}  // namespace quillmere
