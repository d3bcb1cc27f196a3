// Sessions and folders for tests.
#include "support/test_session.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "fits/header.h"

namespace halmek::test {
namespace {

namespace fs = std::filesystem;

void SetHeader(FitsHeader& header, int naxis, int naxis1, int naxis2) {
  const auto card = [](const char* keyword, int value) {
    return NumberCard(keyword, std::to_string(value), " /");
  };
  std::vector<std::string> cards{NumberCard("SIMPLE", "T", " /"), card("BITPIX", -32), card("NAXIS", naxis),
                                 card("NAXIS1", naxis1)};
  if (naxis > 1)
    cards.push_back(card("NAXIS2", naxis2));
  cards.emplace_back("OBJECT  = 'Test star'");
  SetCards(header, cards);
  ReadObjectName(header);
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  static std::atomic<int> count{0};
  // In memory, where flushing takes no time, on systems that have a place for that.
  const fs::path memory = "/dev/shm";
  const bool hasMemory = std::getenv("TMPDIR") == nullptr && access(memory.c_str(), W_OK | X_OK) == 0;
  path_ = (hasMemory ? memory : fs::temp_directory_path()) /
          ("halmek-test-" + std::to_string(getpid()) + "-" + std::to_string(++count));
  fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::unique_ptr<Session> SessionIn(const std::string& folder) {
  auto session = std::make_unique<Session>();
  session->dataFolder = folder;
  return session;
}

void SetFrame(Session& s, int columns, int rows, const std::function<double(int, int)>& value) {
  Slot& frame = s.slot[slots::frame];
  SetHeader(frame, 2, columns, rows);
  frame.fileName = "frame.fts";
  s.imageMin = 99999;
  s.imageMax = -99999;
  for (int row = 1; row <= rows; ++row) {
    for (int column = 1; column <= columns; ++column) {
      const double v = value(column, row);
      s.image(row, column) = v;
      s.imageMin = std::min(s.imageMin, v);
      s.imageMax = std::max(s.imageMax, v);
    }
  }
  s.workflow.trimEnabled = s.workflow.fixColumnEnabled = true;
  s.workflow.sliceEnabled = s.workflow.fixTraceEnabled = true;
}

void SetSpectrum(Session& s, int slot, const std::vector<double>& values) {
  Slot& spectrum = s.slot[slot];
  SetHeader(spectrum, 1, static_cast<int>(values.size()), 1);
  spectrum.fileName = "spectrum" + std::to_string(slot) + ".fts";
  std::copy(values.begin(), values.end(),
            spectrum.spectrum.Range(1, static_cast<int>(values.size())).begin());
  s.workflow.correctEnabled = s.workflow.correctEnabled || slot == slots::object;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> FilesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string RefusalOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.text();
  }
  return {};
}

}  // namespace halmek::test
