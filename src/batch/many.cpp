// Many runs at once.
#include "batch/many.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace halmek::batch {
namespace {

// Prints results as they can be printed in order, with the progress bar below them.
class Reporter {
 public:
  Reporter(const std::vector<std::string>& names, size_t count)
      : names_(names), results_(count), showsBar_(isatty(STDERR_FILENO) == 1) {
    ShowBar();
  }

  void Take(size_t index, JobResult result) {
    const std::lock_guard lock(mutex_);
    ++finished_;
    results_[index] = std::move(result);
    HideBar();
    for (; printed_ < results_.size() && results_[printed_]; ++printed_)
      Print(names_[printed_], *results_[printed_]);
    ShowBar();
  }

  // Complains of files that several runs wrote, and hands over all results.
  AllRan Finish() {
    HideBar();
    AllRan all{{}, Overwritten()};
    for (const std::string& sentence : all.overwritten)
      Complain(sentence);
    for (size_t i = 0; i < results_.size(); ++i)
      all.runs.push_back({names_[i], std::move(*results_[i])});
    return all;
  }

 private:
  std::vector<std::string> Overwritten() const {
    std::vector<std::string> sentences;
    std::map<std::string, std::string> writers;
    for (size_t i = 0; i < results_.size(); ++i) {
      std::vector<std::string> written;
      for (const std::string& file : results_[i]->writtenFiles)
        written.push_back(std::filesystem::path(file).lexically_normal().string());
      std::sort(written.begin(), written.end());
      written.erase(std::unique(written.begin(), written.end()), written.end());
      for (const std::string& file : written) {
        const auto [earlier, isNew] = writers.emplace(file, names_[i]);
        if (!isNew)
          sentences.push_back(file + ": written for " + earlier->second + " and for " + names_[i] +
                              "; only one of them is left");
      }
    }
    return sentences;
  }

  void Print(const std::string& file, const JobResult& result) {
    for (const std::string& warning : result.warnings)
      std::fprintf(stderr, "warning: %s\n", Printable(file + ": " + warning).c_str());
    if (result.succeeded) {
      std::puts(Printable(file + ": done, wrote " + Names(result.writtenFiles)).c_str());
      std::fflush(stdout);
    } else {
      Complain(file + ": " + result.failure);
    }
  }

  static void Complain(const std::string& text) { std::fprintf(stderr, "%s\n", Printable(text).c_str()); }

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

  const std::vector<std::string>& names_;
  std::vector<std::optional<JobResult>> results_;
  std::mutex mutex_;
  size_t finished_ = 0;
  size_t printed_ = 0;
  const bool showsBar_;
};

}  // namespace

AllRan RunMany(const std::vector<std::string>& names, const std::vector<Job>& jobs, int atOnce) {
  Reporter reporter(names, jobs.size());
  std::mutex mutex;
  size_t next = 0;
  const JobOutput silent{[](const std::string&) {}, [](const std::string&) {}};
  const auto work = [&] {
    for (;;) {
      size_t index;
      {
        const std::lock_guard lock(mutex);
        if (next == jobs.size())
          return;
        index = next++;
      }
      reporter.Take(index, Run(jobs[index], silent));
    }
  };

  // This thread works, too; where the system has no more threads to give, those there are do it all.
  std::vector<std::thread> threads;
  try {
    for (size_t i = 1; i < std::min(static_cast<size_t>(atOnce), jobs.size()); ++i)
      threads.emplace_back(work);
  } catch (const std::exception&) {
    // Fewer at once.
  }
  work();
  for (std::thread& thread : threads)
    thread.join();
  return reporter.Finish();
}

}  // namespace halmek::batch
