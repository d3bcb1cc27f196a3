// Preparation of the process.
#include "files/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

namespace halmek {
namespace {

// The descriptor that the next file gets in a process without standard streams, as its exit status.
[[noreturn]] void ExitWithNextDescriptor(bool prepared) {
  for (int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    close(descriptor);
  if (prepared)
    PrepareProcess();
  _exit(open("/dev/null", O_WRONLY));
}

TEST(PrepareProcess, KeepsFilesOffTheClosedStandardStreams) {
  EXPECT_EXIT(ExitWithNextDescriptor(false), testing::ExitedWithCode(STDIN_FILENO), "");
  EXPECT_EXIT(
      ExitWithNextDescriptor(true), [](int status) { return WEXITSTATUS(status) > STDERR_FILENO; }, "");
}

TEST(PrepareProcess, SurvivesASizeLimitAndAReaderThatWentAway) {
  const auto raise = [] {
    PrepareProcess();
    std::raise(SIGXFSZ);
    std::raise(SIGPIPE);
    _exit(0);
  };
  EXPECT_EXIT(raise(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace halmek
