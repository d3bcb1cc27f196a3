// What writing asks of the operating system.
#pragma once

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

namespace halmek {

// Opens a folder, flushes and closes it.
int FlushFolder(const char* path);

// The calls by which files are written, each as the system's own of that name but for two: a failure is
// -1, with its cause in `errno`. Tests put others in their place, to be a disk that fills or a program that
// is killed.
struct FileOperations {
  std::function<ssize_t(const char* path, char* text, size_t size)> readlink = ::readlink;
  std::function<int(const char* path, struct stat* status)> stat = ::stat;
  std::function<int(const char* path, int mode)> access = ::access;
  std::function<int(const char* path, int flags, mode_t mode)> open =
      [](const char* path, int flags, mode_t mode) { return ::open(path, flags, mode); };
  std::function<int(int file, int how)> flock = ::flock;
  std::function<int(int file, struct stat* status)> fstat = ::fstat;
  std::function<int(int file, uid_t owner, gid_t group)> fchown = ::fchown;
  std::function<int(int file, mode_t mode)> fchmod = ::fchmod;
  std::function<ssize_t(int file, const void* bytes, size_t size)> write = ::write;
  std::function<int(int file)> fsync = ::fsync;
  std::function<int(int file)> dup = ::dup;
  // Gives a name to an open file, which has the path that /proc has for it: linkat, following that link.
  std::function<int(const char* path, const char* name)> linkOpenFile = [](const char* path,
                                                                           const char* name) {
    return ::linkat(AT_FDCWD, path, AT_FDCWD, name, AT_SYMLINK_FOLLOW);
  };
  std::function<int(const char* path, const char* name)> rename = ::rename;
  std::function<int(const char* path)> unlink = ::unlink;
  // Flushes the names in a folder to the disk. A folder that may not be read cannot be flushed, and is not.
  std::function<int(const char* path)> flushFolder = FlushFolder;
  std::function<int(int file)> close = ::close;
};

}  // namespace halmek
