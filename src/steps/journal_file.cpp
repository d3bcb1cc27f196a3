// Journals of sessions at the screen.
#include "steps/journal_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "files/failure.h"
#include "files/input_file.h"
#include "files/known_file.h"
#include "files/text_records.h"
#include "steps/step_text.h"

namespace halmek {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".recipe", start = "session-";

// Sorts as time goes. `number` tells apart what begins in the same second.
std::string NameNow(int number) {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  char text[40];
  std::strftime(text, sizeof text, "%Y%m%dT%H%M%S", &utc);
  return std::string(start) + text + "-" + std::to_string(getpid()) + "-" + std::to_string(number) +
         std::string(ending);
}

void WriteAll(int file, std::string_view text, const std::string& path) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR)
      continue;
    if (written <= 0)
      throw ErrorFromSystem(written == 0 ? EIO : errno, path);
    text.remove_prefix(static_cast<size_t>(written));
  }
  if (fdatasync(file) != 0 && errno != EINVAL)
    throw ErrorFromSystem(errno, path);
}

// False where the session that writes it lives.
bool IsLeft(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (file < 0)
    return false;
  const bool isLeft = flock(file, LOCK_EX | LOCK_NB) == 0;
  close(file);
  return isLeft;
}

LeftJournal Summarised(const std::string& path) {
  LeftJournal left{.path = path, .lastStep = {}};
  const std::string text = ReadWholeFile(path, int64_t{64} << 20);
  int lines = 0;
  for (const std::string_view line : Lines(text))
    if (!line.empty() && line[0] != '#') {
      ++lines;
      left.lastStep = line;
    }
  // The first says where the session began.
  left.steps = lines - 1;
  return left;
}

}  // namespace

std::string StateFolder() {
  const auto value = [](const char* name) {
    const char* const text = std::getenv(name);
    return std::string(text == nullptr ? "" : text);
  };
  // The XDG Base Directory Specification takes no relative path.
  if (const std::string state = value("XDG_STATE_HOME"); state.starts_with('/'))
    return state + "/halmek";
  const std::string home = value("HOME");
  return home.starts_with('/') ? home + "/.local/state/halmek" : std::string();
}

JournalFile::JournalFile(const std::string& stateFolder, const std::string& startFolder)
    : stateFolder_(stateFolder), startFolder_(startFolder) {}

JournalFile::~JournalFile() {
  if (file_ >= 0)
    close(file_);
}

void JournalFile::Open() {
  if (stateFolder_.empty())
    throw RunTimeError(run_time_error::pathNotFound, "there is no home folder");
  std::error_code failed;
  fs::create_directories(stateFolder_, failed);
  // Names of files and objects are the observer's own business.
  constexpr mode_t onlyOwner = 0600;
  constexpr int mostNames = 100;
  for (int i = 1; file_ < 0; ++i) {
    path_ = stateFolder_ + "/" + NameNow(i);
    file_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, onlyOwner);
    if (file_ < 0 && (errno != EEXIST || i == mostNames))
      throw ErrorFromSystem(errno, path_);
  }
  flock(file_, LOCK_EX | LOCK_NB);
  WriteAll(file_, std::string(first_lines::recipe) + "\n" + TextOf(steps::Folder{startFolder_}) + "\n",
           path_);
}

void JournalFile::Append(const std::string& line) {
  if (file_ < 0)
    Open();
  WriteAll(file_, line + "\n", path_);
}

void JournalFile::Remove() {
  if (file_ < 0)
    return;
  unlink(path_.c_str());
  close(file_);
  file_ = -1;
}

std::vector<LeftJournal> LeftJournals(const std::string& stateFolder) {
  std::vector<LeftJournal> left;
  std::error_code failed;
  for (const fs::directory_entry& entry : fs::directory_iterator(stateFolder, failed)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(start) || !name.ends_with(ending) || !IsLeft(entry.path().string()))
      continue;
    try {
      if (LeftJournal journal = Summarised(entry.path().string()); journal.steps > 0)
        left.push_back(std::move(journal));
    } catch (const RunTimeError&) {
      // It stays where it is.
    }
  }
  std::sort(left.begin(), left.end(),
            [](const LeftJournal& a, const LeftJournal& b) { return a.path > b.path; });
  return left;
}

}  // namespace halmek
