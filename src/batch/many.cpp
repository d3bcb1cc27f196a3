// Many runs at once.
#include "batch/many.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace halmek::batch {
namespace {

// Prints results as they can be printed in order, with the progress bar below them.
class Reporter {
 public:
  Reporter(const std::vector<std::string>& files, size_t count)
      : files_(files), results_(count), showsBar_(isatty(STDERR_FILENO) == 1) {
    ShowBar();
  }

  void Take(size_t index, JobResult result) {
    const std::lock_guard lock(mutex_);
    ++finished_;
    results_[index] = std::move(result);
    HideBar();
    for (; printed_ < results_.size() && results_[printed_]; ++printed_)
      Print(files_[printed_], *results_[printed_]);
    ShowBar();
  }

  // Says which files were written for more than one input, of which only the last remains; 1 where there are
  // any.
  int Finish() {
    HideBar();
    std::map<std::string, std::string> writers;
    for (size_t i = 0; i < results_.size(); ++i) {
      std::vector<std::string> written = results_[i]->writtenFiles;
      std::sort(written.begin(), written.end());
      written.erase(std::unique(written.begin(), written.end()), written.end());
      for (const std::string& file : written) {
        const auto [earlier, isNew] = writers.emplace(file, files_[i]);
        if (isNew)
          continue;
        std::fprintf(stderr, "%s: written for %s and for %s; only one of them is left\n", file.c_str(),
                     earlier->second.c_str(), files_[i].c_str());
        failed_ = true;
      }
    }
    return failed_ ? 1 : 0;
  }

 private:
  void Print(const std::string& file, const JobResult& result) {
    for (const std::string& warning : result.warnings)
      std::fprintf(stderr, "warning: %s: %s\n", file.c_str(), warning.c_str());
    if (result.succeeded) {
      std::printf("%s: done, wrote %s\n", file.c_str(), Names(result.writtenFiles).c_str());
      std::fflush(stdout);
    } else {
      std::fprintf(stderr, "%s: %s\n", file.c_str(), result.failure.c_str());
      failed_ = true;
    }
  }

  static std::string Names(const std::vector<std::string>& files) {
    std::string names;
    for (const std::string& file : files)
      names += (names.empty() ? "" : ", ") + LeafName(file);
    return names.empty() ? "nothing" : names;
  }

  void ShowBar() const {
    if (!showsBar_)
      return;
    constexpr size_t width = 40;
    const size_t filled = width * finished_ / std::max<size_t>(1, results_.size());
    std::fprintf(stderr, "\r[%s%s] %zu of %zu", std::string(filled, '#').c_str(),
                 std::string(width - filled, '.').c_str(), finished_, results_.size());
    std::fflush(stderr);
  }
  void HideBar() const {
    if (showsBar_)
      std::fputs("\r\033[K", stderr);
  }

  const std::vector<std::string>& files_;
  std::vector<std::optional<JobResult>> results_;
  std::mutex mutex_;
  size_t finished_ = 0;
  size_t printed_ = 0;
  bool failed_ = false;
  const bool showsBar_;
};

}  // namespace

int RunMany(const std::vector<std::string>& files, const std::vector<Job>& jobs, int atOnce) {
  Reporter reporter(files, jobs.size());
  std::mutex mutex;
  size_t next = 0;
  const auto work = [&] {
    for (;;) {
      size_t index;
      {
        const std::lock_guard lock(mutex);
        if (next == jobs.size())
          return;
        index = next++;
      }
      reporter.Take(index, Run(jobs[index], [](const std::string&) {}));
    }
  };

  std::vector<std::thread> threads;
  for (size_t i = 0; i < std::min(static_cast<size_t>(atOnce), jobs.size()); ++i)
    threads.emplace_back(work);
  for (std::thread& thread : threads)
    thread.join();
  return reporter.Finish();
}

}  // namespace halmek::batch
