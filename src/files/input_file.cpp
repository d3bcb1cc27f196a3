// Reading of files through the system's own calls, which say exactly what failed.
#include "files/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "files/failure.h"
#include "files/uninterrupted.h"

namespace halmek {

InputFile::InputFile(const std::string& path, ReadCall read) : path_(path), read_(std::move(read)) {
  if (path.find('\0') != std::string::npos)
    throw RunTimeError(run_time_error::badFileName);
  // Non-blocking, so that opening a pipe without a writer returns; it has no effect on regular files.
  descriptor_ = Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
  if (descriptor_ < 0)
    throw ErrorFromSystem(errno, path);
  struct stat status {};
  if (fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
    close(descriptor_);
    throw RunTimeError(run_time_error::pathAccess,
                       S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a regular file");
  }
  size_ = status.st_size;
}

InputFile::~InputFile() { close(descriptor_); }

void InputFile::ReadAt(int64_t offset, std::span<std::byte> bytes) const {
  while (!bytes.empty()) {
    const ssize_t got = Uninterrupted([&] { return read_(descriptor_, bytes.data(), bytes.size(), offset); });
    if (got < 0)
      throw ErrorFromSystem(errno, path_);
    if (got == 0)
      throw RunTimeError(run_time_error::pastEndOfFile);
    bytes = bytes.subspan(static_cast<size_t>(got));
    offset += got;
  }
}

std::string InputFile::ReadStart(int64_t limit) const {
  std::string text(static_cast<size_t>(std::min(size_, limit)), '\0');
  ReadAt(0, std::as_writable_bytes(std::span(text)));
  return text;
}

std::string ReadWholeFile(const std::string& path, int64_t limit) {
  const InputFile file(path);
  if (file.size() > limit)
    throw RunTimeError(run_time_error::outOfMemory, "the file is too large for a text file of this program");
  return file.ReadStart(limit);
}

}  // namespace halmek
