// Atomic writing: a new file, flushed, then renamed.
#include "files/atomic_write.h"

#include <dirent.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <utility>

#include "files/failure.h"
#include "files/uninterrupted.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

// What of a mode says who may do what; not what a program needs to run as somebody else.
constexpr mode_t permissions = 0777;

// Where a file is to be put, with all links followed, and what is there.
struct Target {
  std::string path;
  bool exists = false;
  bool isDevice = false;
  // Of the existing file.
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;
};

std::string FollowLinks(const std::string& path, const FileOperations& system) {
  constexpr int mostLinks = 40;
  fs::path target = path;
  for (int i = 0; i <= mostLinks; ++i) {
    char text[4096];
    const ssize_t size = Uninterrupted([&] { return system.readlink(target.c_str(), text, sizeof text); });
    // No link, or nothing there yet. Any other failure may hide a link, which must not be replaced.
    if (size < 0 && (errno == EINVAL || errno == ENOENT))
      return target.string();
    if (size < 0)
      throw ErrorFromSystem(errno, path);
    target = target.parent_path() / std::string(text, static_cast<size_t>(size));
  }
  throw ErrorFromSystem(ELOOP, path);
}

Target TargetOf(const std::string& path, const FileOperations& system) {
  if (path.find('\0') != std::string::npos || fs::path(path).filename().empty())
    throw RunTimeError(run_time_error::badFileName);
  Target target{.path = FollowLinks(path, system)};
  struct stat status {};
  if (Uninterrupted([&] { return system.stat(target.path.c_str(), &status); }) != 0) {
    if (errno != ENOENT)
      throw ErrorFromSystem(errno, target.path);
    return target;
  }
  target.exists = true;
  target.isDevice = S_ISCHR(status.st_mode);
  target.owner = status.st_uid;
  target.group = status.st_gid;
  target.mode = status.st_mode & permissions;
  if (S_ISDIR(status.st_mode))
    throw RunTimeError(run_time_error::pathAccess, "it is a folder");
  if (!S_ISREG(status.st_mode) && !target.isDevice)
    throw RunTimeError(run_time_error::pathAccess, "it is not a regular file");
  // A file that may not be written is not replaced either, though its folder would allow it.
  if (Uninterrupted([&] { return system.access(target.path.c_str(), W_OK); }) != 0)
    throw ErrorFromSystem(errno, target.path);
  return target;
}

fs::path FolderOf(const Target& target) {
  const fs::path folder = fs::path(target.path).parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

// Hidden names are ".NAME.halmek-PID-N.tmp".
constexpr std::string_view hiddenEnd = ".tmp";

// What they begin with. The name is cut so that the rest fits where it is as long as the system allows.
std::string HiddenStart(const Target& target) {
  return "." + fs::path(target.path).filename().string().substr(0, 200) + ".halmek-";
}

// One beside the target that no other write of this process uses, nor of another one on this machine.
std::string HiddenName(const Target& target) {
  static std::atomic<unsigned> count{0};
  const std::string numbers = std::to_string(getpid()) + "-" + std::to_string(++count);
  return (FolderOf(target) / (HiddenStart(target) + numbers + std::string(hiddenEnd))).string();
}

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// `start` is what the hidden names of the target begin with.
bool IsHiddenName(std::string_view name, std::string_view start) {
  if (name.size() < start.size() + hiddenEnd.size() || !name.starts_with(start) || !name.ends_with(hiddenEnd))
    return false;
  const std::string_view numbers = name.substr(start.size(), name.size() - start.size() - hiddenEnd.size());
  const size_t dash = std::min(numbers.find('-'), numbers.size() - 1);
  return IsNumber(numbers.substr(0, dash)) && IsNumber(numbers.substr(dash + 1));
}

// Removes what killed programs left of earlier writes of this file. Whoever still writes one holds its lock.
void RemoveLeftovers(const Target& target, const FileOperations& system) {
  const std::string start = HiddenStart(target);
  const fs::path folder = FolderOf(target);
  // Not the library's iterator, which makes a path of every name.
  const std::unique_ptr<DIR, int (*)(DIR*)> names(opendir(folder.c_str()), closedir);
  while (const dirent* const entry = names ? readdir(names.get()) : nullptr) {
    if (!IsHiddenName(entry->d_name, start))
      continue;
    const std::string path = (folder / entry->d_name).string();
    // For writing, since network file systems lock nothing else.
    const int file = system.open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW, 0);
    if (file < 0)
      continue;
    if (system.flock(file, LOCK_EX | LOCK_NB) == 0)
      system.unlink(path.c_str());
    system.close(file);
  }
}

// A file being written. It is closed, and removed where it has a hidden name, on every way out.
class OutputFile {
 public:
  OutputFile(const Target& target, const FileOperations& system) : target_(target), system_(system) {}
  ~OutputFile() {
    if (file_ >= 0)
      system_.close(file_);
    if (!hiddenName_.empty())
      Uninterrupted([&] { return system_.unlink(hiddenName_.c_str()); });
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void OpenDevice() { Require(Open(target_.path, O_NONBLOCK)); }

  // Says whether the file system knows files without a name.
  bool OpenNameless() {
    if (!Open(FolderOf(target_).string(), O_TMPFILE))
      return false;
    Lock();
    return true;
  }

  void OpenHidden() {
    constexpr int mostNames = 100;
    for (int i = 1; hiddenName_.empty(); ++i) {
      // Another machine may use the same name on a common disk.
      std::string name = HiddenName(target_);
      const bool isOpen = Open(name, O_CREAT | O_EXCL);
      Require(isOpen || (errno == EEXIST && i < mostNames));
      if (isOpen)
        KeepIfNotRemoved(std::move(name));
    }
  }

  void Write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = Uninterrupted([&] { return system_.write(file_, bytes.data(), bytes.size()); });
      if (written == 0)
        errno = EIO;
      Require(written > 0);
      bytes.remove_prefix(static_cast<size_t>(written));
    }
  }

  // Lets the same people read and write the file as the one that it replaces, as far as the system lets us
  // give it away: only root may give it to another owner, and others to a group of theirs.
  void TakeOverPermissions() {
    constexpr uid_t sameOwner = static_cast<uid_t>(-1);
    if (Uninterrupted([&] { return system_.fchown(file_, target_.owner, target_.group); }) != 0)
      Uninterrupted([&] { return system_.fchown(file_, sameOwner, target_.group); });
    // Some file systems have one mode for all files and refuse any change.
    if ((Status().st_mode & permissions) != target_.mode)
      Require(Uninterrupted([&] { return system_.fchmod(file_, target_.mode); }) == 0);
  }

  // File systems that cannot flush say EINVAL.
  void Flush() {
    Require(Uninterrupted([&] { return system_.fsync(file_); }) == 0 || errno == EINVAL);
  }

  // Some file systems report a full disk only when a file is closed, be it a copy. Ours stays open for its
  // lock, until it has its place.
  void CloseCopy() {
    const int copy = Uninterrupted([&] { return system_.dup(file_); });
    Require(copy >= 0 && (system_.close(copy) == 0 || errno == EINTR));
  }

  // Puts a nameless file in the target's place. Says whether the system can give names to such files.
  bool NameAndReplace() {
    if (!target_.exists && Link(target_.path))
      return true;
    // Only a file with a name can replace another.
    std::string name = HiddenName(target_);
    if (!Link(name))
      return false;
    hiddenName_ = std::move(name);
    Replace();
    return true;
  }

  // Puts a file with a hidden name in the target's place.
  void Replace() {
    Require(Uninterrupted([&] { return system_.rename(hiddenName_.c_str(), target_.path.c_str()); }) == 0);
    hiddenName_.clear();
  }

 private:
  bool Open(const std::string& path, int flags) {
    constexpr mode_t readAndWrite = 0666;
    file_ =
        Uninterrupted([&] { return system_.open(path.c_str(), flags | O_WRONLY | O_CLOEXEC, readAndWrite); });
    return file_ >= 0;
  }

  // Keeps the file from being taken for a leftover. Where files cannot be locked, nobody takes them for one.
  void Lock() { system_.flock(file_, LOCK_EX | LOCK_NB); }

  // It may have been taken for one before it was locked.
  void KeepIfNotRemoved(std::string name) {
    hiddenName_ = std::move(name);
    Lock();
    if (Status().st_nlink > 0)
      return;
    system_.close(std::exchange(file_, -1));
    hiddenName_.clear();
  }

  struct stat Status() const {
    struct stat status {};
    Require(Uninterrupted([&] { return system_.fstat(file_, &status); }) == 0);
    return status;
  }

  bool Link(const std::string& name) {
    const std::string openFile = "/proc/self/fd/" + std::to_string(file_);
    return Uninterrupted([&] { return system_.linkOpenFile(openFile.c_str(), name.c_str()); }) == 0;
  }

  void Require(bool succeeded) const {
    if (!succeeded)
      throw ErrorFromSystem(errno, target_.path);
  }

  const Target& target_;
  const FileOperations& system_;
  std::string hiddenName_;
  int file_ = -1;
};

// Until its folder is flushed, a power cut may take the new name of a file away.
void FlushFolderOf(const Target& target, const FileOperations& system) {
  const std::string folder = FolderOf(target).string();
  if (Uninterrupted([&] { return system.flushFolder(folder.c_str()); }) != 0 && errno != EINVAL)
    throw RunTimeError(ErrorFromSystem(errno, target.path).number(),
                       "the file is in its place, but its folder could not be flushed to the disk");
}

void WriteDevice(const Target& target, std::string_view bytes, const FileOperations& system) {
  OutputFile device(target, system);
  device.OpenDevice();
  device.Write(bytes);
  device.CloseCopy();
}

enum class NewFile { nameless, hidden };

// Says whether the file system could do it that way; it always can with a hidden name.
bool WriteBeside(const Target& target, std::string_view bytes, NewFile kind, const FileOperations& system) {
  OutputFile file(target, system);
  if (kind == NewFile::hidden)
    file.OpenHidden();
  else if (!file.OpenNameless())
    return false;
  if (target.exists)
    file.TakeOverPermissions();
  file.Write(bytes);
  file.Flush();
  if (kind == NewFile::nameless) {
    if (!file.NameAndReplace())
      return false;
  } else {
    file.CloseCopy();
    file.Replace();
  }
  FlushFolderOf(target, system);
  return true;
}

}  // namespace

int FlushFolder(const char* path) {
  const int folder = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0)
    return errno == EACCES ? 0 : -1;
  const int result = fsync(folder);
  const int error = errno;
  close(folder);
  errno = error;
  return result;
}

void AtomicWrite(const std::string& path, std::string_view bytes, const FileOperations& system) {
  const Target target = TargetOf(path, system);
  if (target.isDevice)
    return WriteDevice(target, bytes, system);
  // A new file that gets its name when it is whole leaves nothing, so that its folder need not be searched: a
  // night has thousands of files.
  if (target.exists)
    RemoveLeftovers(target, system);
  if (WriteBeside(target, bytes, NewFile::nameless, system))
    return;
  if (!target.exists)
    RemoveLeftovers(target, system);
  WriteBeside(target, bytes, NewFile::hidden, system);
}

}  // namespace halmek
