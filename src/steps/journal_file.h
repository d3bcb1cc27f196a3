// The journal of a session at the screen as a file that grows step by step, so that an evening outlives the
// program.
#pragma once

#include <string>
#include <vector>

namespace halmek {

// "halmek" in the user's folder of state: $XDG_STATE_HOME, or ~/.local/state. Empty where there is no home.
std::string StateFolder();

// The journal file of one session. It is a recipe that begins in the folder where the session did, and locked
// while the session lives.
class JournalFile {
 public:
  // Makes nothing yet: the file comes with the first line.
  JournalFile(const std::string& stateFolder, const std::string& startFolder);
  ~JournalFile();
  JournalFile(const JournalFile&) = delete;
  JournalFile& operator=(const JournalFile&) = delete;

  // Appends a line and flushes it to the disk. Throws RunTimeError.
  void Append(const std::string& line);

  // Removes the file at a clean end.
  void Remove();

  const std::string& path() const { return path_; }

 private:
  void Open();

  const std::string stateFolder_, startFolder_;
  std::string path_;
  int file_ = -1;
};

// What sessions left that did not end cleanly: files whose sessions live no more, the latest first.
struct LeftJournal {
  std::string path;
  int steps = 0;         // how many were performed
  std::string lastStep;  // the recipe line of the last of them
};
std::vector<LeftJournal> LeftJournals(const std::string& stateFolder);

}  // namespace halmek
