// Runs in which an allocation fails, one after the other. This program's own, since the allocator is, too.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <new>
#include <string>
#include <vector>

#include "batch/many.h"
#include "support/small_night.h"
#include "support/test_session.h"

namespace {

// The allocation that fails, counted from the next one on in all threads; 0 or less for none.
std::atomic<long> failing = 0;

bool Fails() { return failing > 0 && failing.fetch_sub(1) == 1; }

void* Allocated(size_t size) { return Fails() ? nullptr : std::malloc(size); }

void* AllocatedOrThrown(size_t size) {
  void* const memory = Allocated(size);
  return memory != nullptr ? memory : throw std::bad_alloc();
}

}  // namespace

void* operator new(size_t size) { return AllocatedOrThrown(size); }
void* operator new[](size_t size) { return AllocatedOrThrown(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Allocated(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return Allocated(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, size_t) noexcept { std::free(memory); }

// The linker puts it in the place of calloc.
extern "C" void* __real_calloc(size_t count, size_t size);
extern "C" void* __wrap_calloc(size_t count, size_t size) {
  return Fails() ? nullptr : __real_calloc(count, size);
}

namespace halmek::batch {
namespace {

using test::FilesIn;
using test::ReadFile;

constexpr const char* recipe =
    "load frame arc.fts\naperture 29 30\nbackground 2 12 48 58 1\ncrunch\nsave spectrum $n.fts 16\n"
    "load arc1 $n.fts\narcs 1\nidentify arc1 40 5000\nidentify arc1 240 5200\nidentify arc1 340 5300\n"
    "fit-deviations arc1 2\nsave mask arc1 $n.dat\n";

// Starts these runs at once, again and again, and lets another allocation fail each time: the first, the one
// that comes `stride` later, and so on.
void Sweep(const std::vector<std::string>& names, bool drawsFigures, long stride) {
  const test::TemporaryFolder folder;
  test::WriteSmallNight(folder.path());
  std::filesystem::current_path(folder.path());
  const std::vector<std::string> input = FilesIn(".");
  std::vector<Job> jobs;
  for (const std::string& name : names) {
    jobs.push_back(JobOf("r.recipe", recipe, {{"n", name}}));
    jobs.back().drawsFigures = drawsFigures;
  }
  const auto run = [&] { return RunMany(names, jobs, static_cast<int>(names.size())); };
  run();
  std::map<std::string, std::string> expected;
  for (const std::string& file : FilesIn("."))
    expected[file] = ReadFile(file);
  ASSERT_EQ(expected.size(), input.size() + 2 * names.size());

  long at = 1, endedRuns = 0;
  for (bool hasFailed = true; hasFailed; at += stride) {
    AllRan all;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    failing = at;
    try {
      all = run();
    } catch (const std::bad_alloc&) {
      // Before the runs or after them.
    }
    hasFailed = failing.exchange(0) <= 0;
    const std::string said = testing::internal::GetCapturedStderr();
    testing::internal::GetCapturedStdout();

    SCOPED_TRACE(testing::Message() << "allocation " << at << " of " << names.size() << " runs: " << said);
    for (const std::string& file : FilesIn("."))
      EXPECT_EQ(ReadFile(file), expected[file]) << file;
    int failed = 0;
    for (const auto& [name, result] : all.runs) {
      if (result.succeeded) {
        EXPECT_TRUE(std::filesystem::exists(name + ".fts") && std::filesystem::exists(name + ".dat"));
        continue;
      }
      ++failed;
      EXPECT_TRUE(result.failure.ends_with("Error: 7  Out of memory.")) << result.failure;
      EXPECT_NE(said.find(name + ": " + result.failure + "\n"), std::string::npos);
    }
    EXPECT_LE(failed, hasFailed ? 1 : 0);
    endedRuns += failed;
  }
  EXPECT_GT(endedRuns * stride, 500 * static_cast<long>(names.size()));
}

TEST(OutOfMemory, EndsOneRunOfSeveralInWords) { Sweep({"1", "2", "3"}, false, 17); }

TEST(OutOfMemory, EndsASingleRunInWords) { Sweep({"1"}, true, 7); }

}  // namespace
}  // namespace halmek::batch
