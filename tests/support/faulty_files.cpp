// File operations that fail.
#include "support/faulty_files.h"

#include <cerrno>

namespace halmek::test {

bool FaultyFiles::IsAtFault(std::string_view name) {
  ++calls_;
  if (fault_.kills)
    return false;
  if (calls_ == fault_.at)
    faulty_ = name;
  return calls_ == fault_.at ||
         (calls_ > fault_.at && !faulty_.empty() &&
          (fault_.lasting == Lasting::everything || (fault_.lasting == Lasting::always && faulty_ == name)));
}

template <typename Result, typename... Args>
void FaultyFiles::Watch(std::function<Result(Args...)>& operation, std::string_view name) {
  operation = [this, name, real = operation](Args... args) -> Result {
    const bool fails = IsAtFault(name) && !fault_.isShortWrite;
    // A file is closed whatever is said of it.
    if (fails && name != "close") {
      errno = fault_.error;
      return -1;
    }
    const Result result = real(args...);
    if (fault_.kills && calls_ == fault_.at)
      _exit(0);
    if (!fails)
      return result;
    errno = fault_.error;
    return -1;
  };
}

FileOperations FaultyFiles::Operations() {
  FileOperations files;
  if (fault_.isShortWrite)
    files.write = [this, real = files.write](int file, const void* bytes, size_t size) {
      const bool isShort = calls_ == fault_.at || (fault_.lasting != Lasting::once && !faulty_.empty());
      return real(file, bytes, isShort ? (size + 1) / 2 : size);
    };
  Watch(files.readlink, "readlink");
  Watch(files.stat, "stat");
  Watch(files.access, "access");
  Watch(files.open, "open");
  Watch(files.flock, "flock");
  Watch(files.fstat, "fstat");
  Watch(files.fchown, "fchown");
  Watch(files.fchmod, "fchmod");
  Watch(files.write, "write");
  Watch(files.fsync, "fsync");
  Watch(files.dup, "dup");
  Watch(files.linkOpenFile, "link");
  Watch(files.rename, "rename");
  Watch(files.unlink, "unlink");
  Watch(files.flushFolder, "flushFolder");
  Watch(files.close, "close");
  return files;
}

FileOperations FaultyFiles::OperationsWithHiddenNames() {
  FileOperations files = Operations();
  files.open = [real = files.open](const char* path, int flags, mode_t mode) {
    if ((flags & O_TMPFILE) != O_TMPFILE)
      return real(path, flags, mode);
    errno = EOPNOTSUPP;
    return -1;
  };
  return files;
}

}  // namespace halmek::test
