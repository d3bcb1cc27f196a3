// Many runs at once.
#include "batch/many.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <map>
#include <mutex>
#include <string_view>
#include <thread>

namespace halmek::batch {
namespace {

// Prints results as they can be printed in order, with the progress bar below them. It needs no memory once
// it is made, so that runs that ran out of it are told.
class Reporter {
 public:
  explicit Reporter(const std::vector<Ran>& runs)
      : runs_(runs), isOver_(runs.size()), showsBar_(isatty(STDERR_FILENO) == 1) {
    ShowBar();
  }
  ~Reporter() { HideBar(); }
  Reporter(const Reporter&) = delete;
  Reporter& operator=(const Reporter&) = delete;

  // The run `index` is over.
  void Take(size_t index) {
    const std::lock_guard lock(mutex_);
    ++finished_;
    isOver_[index] = true;
    HideBar();
    for (; printed_ < runs_.size() && isOver_[printed_]; ++printed_)
      Print(runs_[printed_].name.c_str(), runs_[printed_].result);
    ShowBar();
  }

 private:
  static void Print(const char* name, const JobResult& result) {
    for (const std::string& warning : result.warnings)
      std::fprintf(stderr, "warning: %s: %s\n", name, warning.c_str());
    if (result.succeeded) {
      std::printf("%s: done, wrote %s\n", name, result.wrote.c_str());
      std::fflush(stdout);
    } else {
      std::fprintf(stderr, "%s: %s\n", name, result.failure.c_str());
    }
  }

  void ShowBar() const {
    if (!showsBar_)
      return;
    constexpr std::string_view done = "########################################";
    constexpr std::string_view open = "........................................";
    const size_t filled = done.size() * finished_ / std::max<size_t>(1, runs_.size());
    std::fprintf(stderr, "\r[%.*s%s] %zu of %zu", static_cast<int>(filled), done.data(), open.data() + filled,
                 finished_, runs_.size());
    std::fflush(stderr);
  }
  void HideBar() const {
    if (showsBar_)
      std::fputs("\r\033[K", stderr);
  }

  const std::vector<Ran>& runs_;
  std::vector<bool> isOver_;
  std::mutex mutex_;
  size_t finished_ = 0;
  size_t printed_ = 0;
  const bool showsBar_;
};

void RunAll(const std::vector<Job>& jobs, int atOnce, std::vector<Ran>& runs) {
  Reporter reporter(runs);
  std::atomic<size_t> next = 0;
  const JobOutput silent{[](const std::string&) {}, [](const std::string&) {}};
  const auto work = [&] {
    for (size_t index = next++; index < jobs.size(); index = next++) {
      Run(jobs[index], silent, runs[index].result);
      reporter.Take(index);
    }
  };

  // This thread works, too; where the system has no more threads to give, those there are do it all.
  std::vector<std::jthread> threads;
  try {
    for (size_t i = 1; i < std::min(static_cast<size_t>(atOnce), jobs.size()); ++i)
      threads.emplace_back(work);
  } catch (const std::exception&) {
    // Fewer at once.
  }
  work();
}

std::vector<std::string> Overwritten(const std::vector<Ran>& runs) {
  std::vector<std::string> sentences;
  std::map<std::string, std::string> writers;
  for (const Ran& run : runs) {
    std::vector<std::string> written;
    for (const std::string& file : run.result.writtenFiles)
      written.push_back(std::filesystem::path(file).lexically_normal().string());
    std::sort(written.begin(), written.end());
    written.erase(std::unique(written.begin(), written.end()), written.end());
    for (const std::string& file : written) {
      const auto [earlier, isNew] = writers.emplace(file, run.name);
      if (!isNew)
        sentences.push_back(Printable(file + ": written for ") + earlier->second + " and for " + run.name +
                            "; only one of them is left");
    }
  }
  return sentences;
}

}  // namespace

AllRan RunMany(const std::vector<std::string>& names, const std::vector<Job>& jobs, int atOnce) {
  AllRan all;
  for (size_t i = 0; i < jobs.size(); ++i)
    all.runs.push_back({Printable(names[i]), UnfinishedRun(jobs[i])});
  RunAll(jobs, atOnce, all.runs);
  all.overwritten = Overwritten(all.runs);
  for (const std::string& sentence : all.overwritten)
    std::fprintf(stderr, "%s\n", sentence.c_str());
  return all;
}

}  // namespace halmek::batch
