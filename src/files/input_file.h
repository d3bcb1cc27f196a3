// Reading of files that nobody vouches for.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace halmek {

// A regular file open for reading; closed when it goes out of scope. Folders, pipes and devices are refused,
// so that no read can hang.
class InputFile {
 public:
  // The call by which files are read, as the system's own. Tests put others in its place.
  using ReadCall = std::function<ssize_t(int file, void* bytes, size_t size, off_t offset)>;

  // Throws RunTimeError 53 (no such file), 76 (no such folder), 75 (not a regular file) or another.
  explicit InputFile(const std::string& path, ReadCall read = ::pread);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  int64_t size() const { return size_; }

  // Fills `bytes` from the offset on. Throws RunTimeError 62 where the file ends before, and 75 where signals
  // interrupt the reading without end.
  void ReadAt(int64_t offset, std::span<std::byte> bytes) const;

  // Reads the file's first bytes, at most `limit` of them.
  std::string ReadStart(int64_t limit) const;

 private:
  std::string path_;
  ReadCall read_;
  int descriptor_ = -1;
  int64_t size_ = 0;
};

// The whole of a text file. Throws as InputFile does, and RunTimeError 7 for a file above `limit` bytes,
// which is no text of ours.
std::string ReadWholeFile(const std::string& path, int64_t limit = 4 << 20);

}  // namespace halmek
