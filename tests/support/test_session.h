// Sessions for tests: frames and spectra from numbers, and folders that are removed afterwards.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/session.h"

namespace halmek::test {

// A folder of its own under the system's temporary folder; removed with all it holds.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path() const { return path_.string(); }
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

// A session whose data folder is `folder`.
std::unique_ptr<Session> SessionIn(const std::string& folder);

// Makes the session hold a frame as if it had been loaded from frame.fts: with a header of the mandatory
// cards, as 32-bit real, and pixel (column, row) = value(column, row).
void SetFrame(Session& session, int columns, int rows,
              const std::function<double(int column, int row)>& value);

// The same for a spectrum in slot 1 to 4, of pixels 1..values.size().
void SetSpectrum(Session& session, int slot, const std::vector<double>& values);

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& bytes);

// The names of the files in a folder, sorted, hidden ones included.
std::vector<std::string> FilesIn(const std::string& folder);

// The text of the Refusal or RunTimeError that `action` throws; empty where it throws none.
std::string RefusalOf(const std::function<void()>& action);

}  // namespace halmek::test
