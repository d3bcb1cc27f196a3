// Texts of run-time errors, and their numbers for what the operating system reports.
#include "files/failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>

namespace halmek {
namespace {

struct Entry {
  int number;
  std::string_view text;
};

constexpr std::array entries = {
    Entry{4, "Error: Out of data."},
    Entry{6, "Error: Overflow."},
    Entry{7, "Out of memory."},
    Entry{9, "Subscript out of range."},
    Entry{24, "Device timeout."},
    Entry{25, "Device fault."},
    Entry{27, "Error: Out of paper."},
    Entry{52, "Error: Bad file name or number."},
    Entry{53, "Error: File not found."},
    Entry{54, "Error: Bad file mode."},
    Entry{55, "Error: File already open."},
    Entry{57, "Error: Device I/O error."},
    Entry{58, "Error: File already exists."},
    Entry{59, "Bad record length."},
    Entry{61, "Error: Disk full."},
    Entry{62, "Error: Input past end of file."},
    Entry{63, "Error: Bad record number."},
    Entry{64, "Error: Bad file name."},
    Entry{67, "Error: Too many files."},
    Entry{68, "Error: Device unavailable."},
    Entry{70, "Error: Permission denied."},
    Entry{71, "Error: Disk not ready."},
    Entry{72, "Error: Disk media error"},
    Entry{74, "Error: Rename across disks"},
    Entry{75, "Error: Path/file access error."},
    Entry{76, "Error: Path not found."},
    Entry{321, "Error: Invalid file format."},
    Entry{708, "Error: File not found."},
    Entry{712, "Error: Device I/O error."},
    Entry{716, "Error: Disk full."},
    Entry{719, "Error: Bad file name."},
    Entry{725, "Error: Permission denied."},
    Entry{730, "Error: Path access error."},
    Entry{731, "Error: Path not found."},
};

bool FolderExists(const std::string& path) {
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  std::error_code ignored;
  return folder.empty() || std::filesystem::is_directory(folder, ignored);
}

int NumberFor(int systemError, const std::string& path) {
  switch (systemError) {
    case ENOENT:
      return FolderExists(path) ? run_time_error::fileNotFound : run_time_error::pathNotFound;
    case ENOTDIR:
      return run_time_error::pathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return run_time_error::permissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return run_time_error::diskFull;
    case ENAMETOOLONG:
    case EINVAL:
    case ELOOP:
      return run_time_error::badFileName;
    case EMFILE:
    case ENFILE:
      return run_time_error::tooManyFiles;
    case ENOMEM:
      return run_time_error::outOfMemory;
    case EIO:
      return run_time_error::deviceIo;
    default:
      return run_time_error::pathAccess;
  }
}

}  // namespace

std::string_view ErrorText(int number) {
  const auto* entry =
      std::find_if(entries.begin(), entries.end(), [=](const Entry& e) { return e.number == number; });
  return entry == entries.end() ? std::string_view{} : entry->text;
}

RunTimeError::RunTimeError(int number, std::string detail)
    : Failure("Error: " + std::to_string(number) + "  " + std::string(ErrorText(number)), std::move(detail)),
      number_(number) {}

RunTimeError ErrorFromSystem(int systemError, const std::string& path) {
  return RunTimeError(NumberFor(systemError, path),
                      systemError == EINTR ? "the system was interrupted again and again" : "");
}

}  // namespace halmek
