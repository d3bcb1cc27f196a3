// Atomic writing: temporary file, flush, rename.
#include "files/atomic_write.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "files/failure.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

// A file open for writing that is closed, and removed if it is temporary and was not kept, on every way out.
class OutputFile {
 public:
  OutputFile(const std::string& path, int flags, mode_t mode, bool temporary)
      : path_(path),
        temporary_(temporary),
        descriptor_(open(path.c_str(), flags | O_WRONLY | O_CLOEXEC, mode)) {
    if (descriptor_ < 0)
      throw ErrorFromSystem(errno, path);
  }
  ~OutputFile() {
    if (descriptor_ >= 0)
      close(descriptor_);
    if (temporary_)
      unlink(path_.c_str());
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR)
        continue;
      if (written < 0)
        throw ErrorFromSystem(errno, path_);
      bytes.remove_prefix(static_cast<size_t>(written));
    }
  }

  void SetMode(mode_t mode) {
    if (fchmod(descriptor_, mode) != 0)
      throw ErrorFromSystem(errno, path_);
  }

  // Some file systems report a full disk only here.
  void FlushAndClose(bool isFile) {
    // File systems that cannot flush say EINVAL.
    const bool flushed = !isFile || fsync(descriptor_) == 0 || errno == EINVAL;
    const int flushError = errno;
    const bool closed = close(descriptor_) == 0;
    descriptor_ = -1;
    if (!flushed || !closed)
      throw ErrorFromSystem(flushed ? errno : flushError, path_);
  }

  void RenameTo(const std::string& target) {
    if (rename(path_.c_str(), target.c_str()) != 0)
      throw ErrorFromSystem(errno, target);
    temporary_ = false;
  }

 private:
  std::string path_;
  bool temporary_;
  int descriptor_;
};

// The file that is meant, where `path` is a link, whether it exists or not.
std::string FollowLinks(const std::string& path) {
  constexpr int mostLinks = 40;
  fs::path target = path;
  std::error_code failed;
  for (int i = 0; fs::is_symlink(target, failed); ++i) {
    if (i == mostLinks)
      throw ErrorFromSystem(ELOOP, path);
    target = target.parent_path() / fs::read_symlink(target, failed);
  }
  return target.string();
}

// A hidden name in the folder of `target` that no other write of this or another process uses.
std::string TemporaryName(const std::string& target) {
  static std::atomic<unsigned> count{0};
  const fs::path path(target);
  // Cut so that the suffix fits where the target's own name is as long as the system allows.
  const std::string name = path.filename().string().substr(0, 200);
  return (path.parent_path() /
          ("." + name + "." + std::to_string(getpid()) + "-" + std::to_string(++count) + ".tmp"))
      .string();
}

}  // namespace

void AtomicWrite(const std::string& path, std::string_view bytes) {
  const std::string target = path.find('\0') == std::string::npos ? FollowLinks(path) : std::string();
  if (fs::path(target).filename().empty())
    throw RunTimeError(run_time_error::badFileName);

  std::optional<mode_t> mode;
  struct stat status {};
  if (stat(target.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode))
      throw RunTimeError(run_time_error::pathAccess, "it is a folder");
    if (!S_ISREG(status.st_mode) && !S_ISCHR(status.st_mode))
      throw RunTimeError(run_time_error::pathAccess, "it is not a regular file");
    if (S_ISCHR(status.st_mode)) {
      OutputFile device(target, O_NONBLOCK, 0, false);
      device.Write(bytes);
      device.FlushAndClose(false);
      return;
    }
    // A file that may not be written is not replaced either, though its folder would allow it.
    if (access(target.c_str(), W_OK) != 0)
      throw ErrorFromSystem(errno, target);
    mode = status.st_mode & 07777;
  }

  OutputFile file(TemporaryName(target), O_CREAT | O_EXCL, 0666, true);
  if (mode)
    file.SetMode(*mode);
  file.Write(bytes);
  file.FlushAndClose(true);
  file.RenameTo(target);
}

}  // namespace halmek
